// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/MockedService.h"

#include <string>
#include <unistd.h>

namespace hushmode {

/// A stand-in for logind with one session "1" of this user at a seat.
class MockedLogind {
 public:
  MockedLogind() { addSession("1"); }

  MockedService& service() { return service_; }

  void addSession(const std::string& id, const std::string& seat = "seat0", unsigned user = getuid()) {
    service_.control(manager, "AddSession",
                     "('" + id + "', '" + seat + "', uint32 " + std::to_string(user) + ", 'somebody', true)");
  }
  void setLocked(bool isLocked, const std::string& id = "1") {
    service_.call(session(id), "org.freedesktop.login1.Session", "SetLockedHint", isLocked ? "(true,)" : "(false,)");
  }
  void prepareForSleep(bool begins) {
    const std::string value = begins ? "true" : "false";
    service_.control(manager, "UpdateProperties",
                     "('org.freedesktop.login1.Manager', {'PreparingForSleep': <" + value + ">})");
    service_.control(manager, "EmitSignal",
                     "('org.freedesktop.login1.Manager', 'PrepareForSleep', 'b', [<" + value + ">])");
  }
  /// How many locks keep the phone from sleeping at once.
  std::size_t delayLocks() {
    const auto reply = service_.call(manager, "org.freedesktop.login1.Manager", "ListInhibitors");
    Glib::VariantContainerBase list;
    reply.get_child(list, 0);
    return list.get_n_children();
  }

  static constexpr const char* manager = "/org/freedesktop/login1";
  static std::string session(const std::string& id) { return "/org/freedesktop/login1/session/" + id; }

 private:
  MockedService service_{"system", "org.freedesktop.login1", {"--template", "logind"}};
};

}  // namespace hushmode
