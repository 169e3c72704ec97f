// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A notification service that refuses, hangs, answers nonsense or dies.

#include "devices/linux/base/Variants.h"
#include "tests/devices/linux/desktop/DoNotDisturbTest.h"

#include <optional>

namespace hushmode::devices {
namespace {

using Behaviour = NotificationsStandIn::Behaviour;
using Texts = std::vector<std::string>;

class DoNotDisturbFaults : public DoNotDisturbTest {};

TEST_F(DoNotDisturbFaults, ARefusalIsReportedAndShows) {
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  service.setBehaviour(Behaviour::Refuses);
  doNotDisturb.set(true);
  EXPECT_TRUE(waitForReport("-the notification service does not follow: not today"));
  EXPECT_FALSE(doNotDisturb.isOn());
  EXPECT_EQ(told, (std::vector{true, false}));
  service.setBehaviour(Behaviour::Good);
  doNotDisturb.set(true);
  EXPECT_TRUE(waitForReport(theInhibitions));
  EXPECT_TRUE(service.isInhibited());
}

TEST_F(DoNotDisturbFaults, WhatWasRefusedIsNotAskedOfTheNextService) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitForReport(theInhibitions));
  service->setBehaviour(Behaviour::Refuses);
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return !services.isAvailable("do not disturb"); }));
  service.reset();
  ASSERT_TRUE(waitForReport("-the notification service is away"));
  service.emplace();
  ASSERT_TRUE(waitForReport(theInhibitions));
  exchangeWith(bus);
  service->receiveAll();
  EXPECT_EQ(service->calls(), Texts());
}

TEST_F(DoNotDisturbFaults, ARequestThatIsNeverAnsweredEndsAfterTheTimeLimit) {
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  service.setBehaviour(Behaviour::StopsRequests);
  doNotDisturb.set(true);
  EXPECT_TRUE(doNotDisturb.isOn());
  EXPECT_TRUE(waitUntil([&] { return !services.isAvailable("do not disturb"); }));
  EXPECT_FALSE(doNotDisturb.isOn());
  EXPECT_EQ(reportedNow().substr(0, 43), "-the notification service does not follow: ");
  EXPECT_EQ(service.calls(), Texts{"Inhibit hushmode"});
}

class UnansweredEndTest : public DoNotDisturbTest, public ::testing::WithParamInterface<Behaviour> {};

TEST_P(UnansweredEndTest, LeavesTheInhibitionHeldSoThatItCanBeEndedLater) {
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service.probes() == 2; }));
  exchangeWith(bus);
  service.setBehaviour(GetParam());
  doNotDisturb.set(false);
  EXPECT_FALSE(doNotDisturb.isOn());
  EXPECT_TRUE(waitUntil([&] { return doNotDisturb.isOn(); }));
  service.setBehaviour(Behaviour::Good);
  doNotDisturb.set(false);
  EXPECT_TRUE(waitUntil([&] { return !service.isInhibited(); }));
  EXPECT_TRUE(waitForReport(theInhibitions));
  EXPECT_FALSE(doNotDisturb.isOn());
  // And all goes on as before, changes of mind during a request included.
  const std::size_t before = service.calls().size();
  doNotDisturb.set(true);
  doNotDisturb.set(false);
  EXPECT_TRUE(waitUntil([&] { return service.calls().size() == before + 2; }));
  EXPECT_FALSE(service.isInhibited());
}

INSTANTIATE_TEST_SUITE_P(Behaviours, UnansweredEndTest,
                         ::testing::Values(Behaviour::StopsRequests, Behaviour::NeverAnswers));

TEST_F(DoNotDisturbFaults, AServiceThatNeverAnswersLeavesTheSettingUntilItDoes) {
  NotificationsStandIn service(true, Behaviour::NeverAnswers);
  ASSERT_TRUE(waitUntil([&] { return service.probes() == 1; }));
  EXPECT_TRUE(waitForReport(theSetting));
  doNotDisturb.set(true);
  EXPECT_FALSE(areBannersShown());
  service.setBehaviour(Behaviour::Good);
  EXPECT_TRUE(waitForReport(theInhibitions));
  EXPECT_TRUE(waitUntil([&] { return service.isInhibited(); }));
  EXPECT_TRUE(areBannersShown());
}

TEST_F(DoNotDisturbFaults, AnInhibitedThatIsNoBooleanCountsAsNone) {
  NotificationsStandIn service(true, Behaviour::NonsenseProperty);
  EXPECT_TRUE(waitForReport(theSetting));
}

TEST_F(DoNotDisturbFaults, ACookieThatIsNoNumberCountsAsFailure) {
  NotificationsStandIn service(true, Behaviour::NonsenseCookie);
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  EXPECT_TRUE(waitUntil([&] { return !services.isAvailable("do not disturb"); }));
  EXPECT_FALSE(doNotDisturb.isOn());
}

TEST_F(DoNotDisturbFaults, NoticesThatMakeNoSenseArePassedOver) {
  NotificationsStandIn service;
  ASSERT_TRUE(waitForReport(theInhibitions));
  const Glib::ustring name = "org.freedesktop.Notifications";
  const auto text = Glib::Variant<Glib::ustring>::create("yes");
  service.sendChange(argumentsOf(name));
  service.sendChange(argumentsOf(name, Properties{{"Inhibited", text}}, std::vector<Glib::ustring>()));
  service.sendChange(argumentsOf(Glib::ustring("org.example.Other"),
                                 Properties{{"Inhibited", Glib::Variant<bool>::create(true)}},
                                 std::vector<Glib::ustring>()));
  exchangeWith(bus);
  EXPECT_FALSE(doNotDisturb.isOn());
  EXPECT_EQ(told, std::vector<bool>());
}

TEST_F(DoNotDisturbFaults, ADeadServiceDuringARequestLeavesNothingBehind) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitForReport(theInhibitions));
  service->setBehaviour(Behaviour::StopsRequests);
  doNotDisturb.set(true);
  ASSERT_TRUE(waitUntil([&] { return service->calls().size() == 1; }));
  service.reset();
  ASSERT_TRUE(waitForReport("-the notification service is away"));
  service.emplace();
  EXPECT_TRUE(waitUntil([&] { return service->isInhibited(); }));
  EXPECT_TRUE(doNotDisturb.isOn());
}

TEST_F(DoNotDisturbFaults, NothingIsCalledBackAfterItsEnd) {
  NotificationsStandIn service(true, Behaviour::StopsRequests);
  Services own;
  int calls = 0;
  std::optional<DoNotDisturb> other(std::in_place, bus, own, std::chrono::milliseconds(1));
  ASSERT_TRUE(waitUntil([&] { return own.isAvailable("do not disturb"); }));
  other->set(true);
  other->setListener([&](bool) { ++calls; });
  ASSERT_TRUE(waitUntil([&] { return !service.calls().empty(); }));
  other.reset();
  service.setOtherInhibition(true);
  showBanners(false);
  ASSERT_TRUE(waitUntil([&] { return doNotDisturb.isOn(); }));
  exchangeWith(bus);
  EXPECT_EQ(calls, 0);
  showBanners(true);
}

}  // namespace
}  // namespace hushmode::devices
