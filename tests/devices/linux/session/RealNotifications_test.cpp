// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/NotificationAlerts.h"
#include "tests/support/MockedService.h"
#include "tests/support/ServiceReports.h"

#include <gtest/gtest.h>
#include <iostream>

namespace hushmode::devices {
namespace {

/// Asks what runs as the notification server, and says which button was clicked. For check_clicks.py, which clicks.
TEST(RealNotifications, DISABLED_IsAnsweredByAClick) {
  const auto connection = connectTo("session");
  ServiceReports reports;
  NotificationAlerts alerts(connection, reports.services, {"Hush Mode", "dialog-question", "hushmode"});
  int answer = -1;
  alerts
      .makeAlertView({"Information",
                      "You changed the volume while 'Work <1 & 2>' is active. Keep it?",
                      std::nullopt,
                      {"Yes, please", "No, thanks"},
                      [&](const auto&, int button) { answer = button; }})
      ->show();
  ASSERT_TRUE(runUntil([&] { return answer >= 0; }));
  connection->flush_sync();  // The question is taken away before this process ends.
  std::cout << "answered with button " << answer << std::endl;
}

}  // namespace
}  // namespace hushmode::devices
