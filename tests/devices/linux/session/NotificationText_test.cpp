// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/NotificationText.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using namespace std::string_literals;

TEST(NotificationText, IsTheTextItself) {
  EXPECT_EQ(notificationText("B\xC3\xBCro <1 & 2>", false), "B\xC3\xBCro <1 & 2>");
  EXPECT_EQ(notificationText("", true), "");
}

TEST(NotificationText, IsWrittenForServersThatReadMarkup) {
  EXPECT_EQ(notificationText("<b>1 & 2</b>", true), "&lt;b&gt;1 &amp; 2&lt;/b&gt;");
}

TEST(NotificationText, HoldsNothingThatTheBusCannotCarry) {
  EXPECT_EQ(notificationText("Caf\xE9", false), "Caf\xEF\xBF\xBD");
  EXPECT_EQ(notificationText("before\0after"s, false), "before");
}

TEST(NotificationText, IsShortened) {
  EXPECT_EQ(notificationText(std::string(longestNotificationText, 'x'), false).size(), longestNotificationText);
  const Glib::ustring text = notificationText(std::string(10'000'000, 'x'), false);
  EXPECT_EQ(text.size(), longestNotificationText);
  EXPECT_EQ(text.substr(text.size() - 2), "x\u2026");
}

}  // namespace
}  // namespace hushmode::devices
