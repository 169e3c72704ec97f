// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Which of the two is switched, what moves from one to the other, and what is the user's.

#include "tests/devices/linux/desktop/DoNotDisturbTest.h"

#include <optional>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;

TEST_F(DoNotDisturbTest, WithoutANotificationServiceTheSettingIsUsed) {
  EXPECT_TRUE(waitForReport(theSetting));
  doNotDisturb.set(true);
  EXPECT_TRUE(doNotDisturb.isOn());
  EXPECT_FALSE(areBannersShown());
  EXPECT_EQ(told, std::vector{true});
  EXPECT_EQ(reports.size(), 1u);
}

TEST_F(DoNotDisturbTest, WithoutABusTheSettingIsUsed) {
  Services own;
  DoNotDisturb alone(nullptr, own);
  EXPECT_TRUE(own.isAvailable("do not disturb"));
  alone.set(true);
  EXPECT_TRUE(alone.isOn());
  EXPECT_FALSE(areBannersShown());
}

TEST_F(DoNotDisturbTest, ANotificationServiceWithoutInhibitionsLeavesTheSetting) {
  NotificationsStandIn service(false);
  ASSERT_TRUE(waitUntil([&] { return service.probes() == 1; }));
  EXPECT_TRUE(waitForReport(theSetting));
  doNotDisturb.set(true);
  EXPECT_FALSE(areBannersShown());
  exchangeWith(bus);
  service.receiveAll();
  EXPECT_EQ(service.calls(), Texts());
}

TEST_F(DoNotDisturbTest, ANotificationServiceWithInhibitionsIsAskedForOne) {
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  EXPECT_TRUE(doNotDisturb.isOn());
  EXPECT_TRUE(waitUntil([&] { return service.isInhibited(); }));
  EXPECT_TRUE(areBannersShown());
  EXPECT_EQ(service.calls(), Texts{"Inhibit hushmode"});
  EXPECT_EQ(told, std::vector{true});
  doNotDisturb.set(false);
  EXPECT_FALSE(doNotDisturb.isOn());
  EXPECT_TRUE(waitUntil([&] { return !service.isInhibited(); }));
  EXPECT_EQ(told, (std::vector{true, false}));
}

TEST_F(DoNotDisturbTest, WhatTheServiceDoesNotTellIsReadAfterEachRequest) {
  NotificationsStandIn service;
  service.setTells(false);
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service.isInhibited() && service.probes() == 2; }));
  exchangeWith(bus);
  EXPECT_TRUE(doNotDisturb.isOn());
}

TEST_F(DoNotDisturbTest, AnInhibitionOfAnotherProgramShowsAndStays) {
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  service.setOtherInhibition(true);
  ASSERT_TRUE(waitUntil([&] { return doNotDisturb.isOn(); }));
  doNotDisturb.set(false);
  exchangeWith(bus);
  service.receiveAll();
  EXPECT_TRUE(doNotDisturb.isOn());
  EXPECT_EQ(service.calls(), Texts());
}

TEST_F(DoNotDisturbTest, AnInhibitionEndsWithTheConnectionThatHoldsIt) {
  // What the class promises about its end: it leaves the desktop as it is.
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  const auto otherBus = connectToSessionBus();
  Services otherServices;
  std::optional<DoNotDisturb> other(std::in_place, otherBus, otherServices);
  ASSERT_TRUE(waitUntil([&] { return otherServices.isAvailable("do not disturb"); }));
  other->set(true);
  ASSERT_TRUE(waitUntil([&] { return doNotDisturb.isOn(); }));
  other.reset();
  exchangeWith(otherBus);
  exchangeWith(bus);
  EXPECT_TRUE(service.isInhibited());
  otherBus->close_sync();
  EXPECT_TRUE(waitUntil([&] { return !service.isInhibited(); }));
  EXPECT_TRUE(waitUntil([&] { return !doNotDisturb.isOn(); }));
}

TEST_F(DoNotDisturbTest, AServiceThatReturnsIsAskedAgain) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service->isInhibited(); }));
  service.reset();
  EXPECT_TRUE(waitForReport("-the notification service is away"));
  EXPECT_TRUE(doNotDisturb.isOn());
  service.emplace();
  EXPECT_TRUE(waitForReport(theInhibitions));
  EXPECT_TRUE(waitUntil([&] { return service->isInhibited(); }));
  EXPECT_EQ(told, std::vector{true});
  EXPECT_TRUE(areBannersShown());
}

TEST_F(DoNotDisturbTest, WhatWasSwitchedOffWhileTheServiceWasAwayStaysOff) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service->isInhibited(); }));
  service.reset();
  ASSERT_TRUE(waitForReport("-the notification service is away"));
  doNotDisturb.set(false);
  EXPECT_FALSE(doNotDisturb.isOn());
  service.emplace();
  ASSERT_TRUE(waitForReport(theInhibitions));
  exchangeWith(bus);
  service->receiveAll();
  EXPECT_EQ(service->calls(), Texts());
}

TEST_F(DoNotDisturbTest, WhatWasSwitchedOnMovesToTheServiceThatAppears) {
  ASSERT_TRUE(waitForReport(theSetting));
  doNotDisturb.set(true);
  ASSERT_FALSE(areBannersShown());
  NotificationsStandIn service;
  EXPECT_TRUE(waitUntil([&] { return service.isInhibited(); }));
  EXPECT_TRUE(areBannersShown());
  EXPECT_EQ(told, std::vector{true});
}

TEST_F(DoNotDisturbTest, WhatWasSwitchedOnMovesToTheSettingWhenAnotherServiceTakesOver) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service->isInhibited(); }));
  service.emplace(false);
  EXPECT_TRUE(waitForReport(theSetting));
  EXPECT_TRUE(doNotDisturb.isOn());
  EXPECT_FALSE(areBannersShown());
  // Switched off there, it does not come back with the first service.
  doNotDisturb.set(false);
  service.emplace();
  ASSERT_TRUE(waitForReport(theInhibitions));
  exchangeWith(bus);
  service->receiveAll();
  EXPECT_EQ(service->calls(), Texts());
}

TEST_F(DoNotDisturbTest, WhatTheUserHadSwitchedOnDoesNotMove) {
  showBanners(false);
  ASSERT_TRUE(waitUntil([&] { return doNotDisturb.isOn(); }));
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  exchangeWith(bus);
  service.receiveAll();
  EXPECT_FALSE(areBannersShown());
  EXPECT_EQ(service.calls(), Texts());
  EXPECT_FALSE(doNotDisturb.isOn());
  showBanners(true);
}

TEST_F(DoNotDisturbTest, WhatTheUserSwitchedOffAndOnAgainIsTheUsersAndDoesNotMove) {
  ASSERT_TRUE(waitForReport(theSetting));
  doNotDisturb.set(true);
  for (const bool shown : {true, false}) {
    showBanners(shown);
    ASSERT_TRUE(waitUntil([&] { return doNotDisturb.isOn() == !shown; }));
  }
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  exchangeWith(bus);
  service.receiveAll();
  EXPECT_FALSE(areBannersShown());
  EXPECT_EQ(service.calls(), Texts());
}

TEST_F(DoNotDisturbTest, WhatTheUserEndedDuringTheRequestIsEnded) {
  auto service = std::make_optional<NotificationsStandIn>();
  service->setTells(false);
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service->calls().size() == 1; }));
  service->clearInhibitions();
  EXPECT_TRUE(waitUntil([&] { return !doNotDisturb.isOn(); }));
  service.reset();
  ASSERT_TRUE(waitForReport("-the notification service is away"));
  service.emplace();
  ASSERT_TRUE(waitForReport(theInhibitions));
  exchangeWith(bus);
  service->receiveAll();
  EXPECT_EQ(service->calls(), Texts());
  doNotDisturb.set(true);
  EXPECT_TRUE(waitUntil([&] { return service->isInhibited(); }));
}

TEST_F(DoNotDisturbTest, WhatTheUserEndedIsNotAskedOfTheNextService) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service->probes() == 2; }));
  exchangeWith(bus);
  service->clearInhibitions();
  ASSERT_TRUE(waitUntil([&] { return !doNotDisturb.isOn(); }));
  service.reset();
  ASSERT_TRUE(waitForReport("-the notification service is away"));
  EXPECT_FALSE(doNotDisturb.isOn());
  service.emplace();
  ASSERT_TRUE(waitForReport(theInhibitions));
  exchangeWith(bus);
  service->receiveAll();
  EXPECT_EQ(service->calls(), Texts());
}

}  // namespace
}  // namespace hushmode::devices
