// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/MockedService.h"

#include <string>
#include <vector>

namespace hushmode {

/// A stand-in for a notification server: it keeps what it is asked to show.
class MockedNotifications {
 public:
  explicit MockedNotifications(std::string capabilities = "['body', 'actions', 'body-markup']")
      : capabilities_(std::move(capabilities)) {
    prepare();
  }

  MockedService& service() { return service_; }

  struct Shown {
    std::uint32_t id;
    std::string summary, body;
    std::vector<std::string> actions;
    Glib::VariantBase hints;
    std::int32_t expires;
  };
  /// What is on the screen, the oldest first.
  std::vector<Shown> shown() {
    const auto reply = service_.call(path, name, "GetShown");
    Glib::VariantContainerBase list;
    reply.get_child(list, 0);
    std::vector<Shown> result;
    for (gsize i = 0; i < list.get_n_children(); ++i) {
      Glib::VariantContainerBase entry;
      list.get_child(entry, i);
      const auto at = [&](gsize index) {
        Glib::VariantBase child;
        entry.get_child(child, index);
        return child;
      };
      const auto textAt = [&](gsize index) { return std::string(g_variant_get_string(at(index).gobj(), nullptr)); };
      std::vector<std::string> actions;
      for (const auto& action :
           Glib::VariantBase::cast_dynamic<Glib::Variant<std::vector<Glib::ustring>>>(at(3)).get()) {
        actions.push_back(action);
      }
      result.push_back({g_variant_get_uint32(at(0).gobj()), textAt(1), textAt(2), actions, at(4),
                        g_variant_get_int32(at(5).gobj())});
    }
    return result;
  }
  /// The user presses a button.
  void press(std::uint32_t id, const std::string& action) {
    service_.control(path, "EmitSignal",
                     "('" + std::string(name) + "', 'ActionInvoked', 'us', [<uint32 " + std::to_string(id) + ">, <'" +
                         action + "'>])");
  }
  /// The user, or the server itself, closes it.
  void close(std::uint32_t id, unsigned reason) {
    service_.control(path, "EmitSignal",
                     "('" + std::string(name) + "', 'NotificationClosed', 'uu', [<uint32 " + std::to_string(id) +
                         ">, <uint32 " + std::to_string(reason) + ">])");
  }
  void restart() {
    service_.kill();
    service_.start();
    prepare();
  }

  static constexpr const char* name = "org.freedesktop.Notifications";
  static constexpr const char* path = "/org/freedesktop/Notifications";

 private:
  void prepare() {
    service_.answer(path, name, "Notify", "susssasa{sv}i", "u",
                    "if not hasattr(self, 'shown'): self.shown = {}; self.next = 0\n"
                    "self.next += 1\n"
                    "self.shown[self.next] = args\n"
                    "ret = self.next");
    service_.answer(path, name, "CloseNotification", "u", "",
                    "if self.shown.pop(int(args[0]), None): self.EmitSignal('', 'NotificationClosed', 'uu', "
                    "[args[0], dbus.UInt32(3)])");
    service_.answer(path, name, "GetShown", "", "a(ussasa{sv}i)",
                    "ret = [(k, a[3], a[4], a[5], a[6], a[7]) for k, a in getattr(self, 'shown', {}).items()]");
    // The last: from here on it is a server.
    service_.answer(path, name, "GetCapabilities", "", "as", "ret = " + capabilities_);
  }

  std::string capabilities_;
  MockedService service_{"session", name, {name, path, name}};
};

}  // namespace hushmode
