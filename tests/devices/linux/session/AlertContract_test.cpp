// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/contracts/AlertContract.h"

#include "devices/linux/session/LinuxUIKit.h"
#include "tests/devices/linux/session/MockedNotifications.h"

namespace hushmode::contracts {
namespace {

class NotificationWorld final : public AlertWorld {
 public:
  NotificationWorld() {
    settle([&] { return services_.isAvailable("questions"); });
  }

  platform::UIKit& uiKit() override { return uiKit_; }
  std::vector<SeenAlert> seen() override {
    settle();
    std::vector<SeenAlert> alerts;
    for (const auto& shown : server_.shown()) {
      SeenAlert alert{shown.summary, unescaped(shown.body), {}};
      for (std::size_t i = 1; i < shown.actions.size(); i += 2) alert.buttons.push_back(shown.actions[i]);
      alerts.push_back(std::move(alert));
    }
    return alerts;
  }
  void tap(std::size_t alert, int button) override {
    settle();
    const auto shown = server_.shown().at(alert);
    server_.press(shown.id, shown.actions.at(static_cast<std::size_t>(button) * 2));
    settle([&] {
      for (const auto& each : server_.shown()) {
        if (each.id == shown.id) return false;
      }
      return true;
    });
  }
  void endProcess() override { alerts_.processEnded(); }

 private:
  static std::string unescaped(std::string text) {
    const std::pair<const char*, const char*> entities[] = {
        {"&lt;", "<"}, {"&gt;", ">"}, {"&apos;", "'"}, {"&quot;", "\""}, {"&amp;", "&"}};
    for (const auto& [entity, character] : entities) {
      for (std::size_t place; (place = text.find(entity)) != std::string::npos;) {
        text.replace(place, std::string(entity).size(), character);
      }
    }
    return text;
  }
  static void settle(const std::function<bool()>& condition) {
    if (!runUntil(condition)) throw std::runtime_error("the phone never settled");
  }
  /// What was asked for has reached the server, and its answers this process: a later call on the same connection is
  /// answered after them.
  void settle() {
    bool isAnswered = false;
    connection_->call(
        MockedNotifications::path, MockedNotifications::name, "GetShown", {},
        [&](const Glib::RefPtr<Gio::AsyncResult>& result) {
          connection_->call_finish(result);
          isAnswered = true;
        },
        MockedNotifications::name);
    settle([&] { return isAnswered; });
  }

  MockedNotifications server_;
  devices::Services services_;
  Glib::RefPtr<Gio::DBus::Connection> connection_ = connectTo("session");
  devices::NotificationAlerts alerts_{connection_, services_, {"Hush Mode", "hushmode", "com.quorvel.Hushmode"}};
  devices::Appearance appearance_{connection_, services_};
  devices::LinuxUIKit uiKit_{alerts_, appearance_};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Notifications, AlertContract, NotificationWorld);

}  // namespace
}  // namespace hushmode::contracts
