// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/DoNotDisturb.h"

#include "devices/linux/base/Variants.h"
#include "tests/devices/linux/desktop/DesktopTest.h"
#include "tests/devices/linux/desktop/NotificationsStandIn.h"

#include <optional>

namespace hushmode::devices {

namespace {

using Behaviour = NotificationsStandIn::Behaviour;
using Texts = std::vector<std::string>;

constexpr const char* theInhibitions = "+inhibitions of the notification service";
constexpr const char* theSetting = "+the setting org.gnome.desktop.notifications show-banners";

void showBanners(bool shown) {
  runCommand(std::string("gsettings set org.gnome.desktop.notifications show-banners ") + (shown ? "true" : "false"));
}

bool areBannersShown() { return runCommand("gsettings get org.gnome.desktop.notifications show-banners") == "true\n"; }

/// A desktop as it is at first.
class DesktopWithBanners : public DesktopTest {
 protected:
  DesktopWithBanners() {
    showBanners(true);
    const BannerSetting setting([] {});
    EXPECT_TRUE(waitUntil([&] { return !setting.isQuiet(); }));
  }
};

class DoNotDisturbTest : public DesktopWithBanners {
 protected:
  DoNotDisturbTest() {
    doNotDisturb.setListener([this](bool on) { told.push_back(on); });
  }

  std::string reportedNow() const { return reported("do not disturb"); }
  bool waitForReport(const std::string& report) {
    return waitUntil([&] { return reportedNow() == report; });
  }

  // Short, for those tests in which it is waited for; a good service answers in less than a millisecond.
  DoNotDisturb doNotDisturb{bus, services, std::chrono::milliseconds(300)};
  std::vector<bool> told;
};

}  // namespace

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

TEST_F(DoNotDisturbTest, ARefusalIsReportedAndShows) {
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

TEST_F(DoNotDisturbTest, WhatWasRefusedIsNotAskedOfTheNextService) {
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

TEST_F(DoNotDisturbTest, ARequestThatIsNeverAnsweredEndsAfterTheTimeLimit) {
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

TEST_F(DoNotDisturbTest, AServiceThatNeverAnswersLeavesTheSettingUntilItDoes) {
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

TEST_F(DoNotDisturbTest, AnInhibitedThatIsNoBooleanCountsAsNone) {
  NotificationsStandIn service(true, Behaviour::NonsenseProperty);
  EXPECT_TRUE(waitForReport(theSetting));
}

TEST_F(DoNotDisturbTest, ACookieThatIsNoNumberCountsAsFailure) {
  NotificationsStandIn service(true, Behaviour::NonsenseCookie);
  ASSERT_TRUE(waitForReport(theInhibitions));
  doNotDisturb.set(true);
  EXPECT_TRUE(waitUntil([&] { return !services.isAvailable("do not disturb"); }));
  EXPECT_FALSE(doNotDisturb.isOn());
}

TEST_F(DoNotDisturbTest, NoticesThatMakeNoSenseArePassedOver) {
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

TEST_F(DoNotDisturbTest, ADeadServiceDuringARequestLeavesNothingBehind) {
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

TEST_F(DoNotDisturbTest, NothingIsCalledBackAfterItsEnd) {
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

/// Where what may be asked of the class beside what DoNotDisturb asks shows.
class NotificationInhibitionTest : public DesktopTest {
 protected:
  NotificationInhibition inhibition{bus, std::chrono::milliseconds(300), [] {}};
};

TEST_F(NotificationInhibitionTest, IsNotHeldInReserveForAServiceToCome) {
  ASSERT_TRUE(waitUntil([&] { return inhibition.isKnown(); }));
  inhibition.setInhibited(true);
  EXPECT_FALSE(inhibition.isInhibited());
  NotificationsStandIn service;
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent(); }));
  exchangeWith(bus);
  service.receiveAll();
  EXPECT_EQ(service.calls(), Texts());
}

TEST_F(NotificationInhibitionTest, IsForgottenWithAServiceThatHasNone) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent(); }));
  inhibition.setInhibited(true);
  service.emplace(false);
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent() && !inhibition.isOffered(); }));
  EXPECT_FALSE(inhibition.isInhibited());
  service.emplace();
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent() && inhibition.isOffered(); }));
  exchangeWith(bus);
  service->receiveAll();
  EXPECT_EQ(service->calls(), Texts());
}

}  // namespace hushmode::devices
