// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Whether a network decides about a profile, and what it decides.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

class WiFiTriggers : public SchedulerFixture {
 protected:
  void SetUp() override {
    SchedulerFixture::SetUp();
    work = addProfile();
    work->addToWiFiNetwork("Home");
  }

  /// The story of asking the network, with the callback's place in it: "<go on>" or "<decided>".
  std::string detected() {
    story();
    std::string text = "\n";
    const auto tell = [&] { text += story().substr(1); };
    manager().shceduleWiFiDetected(work, [&](bool goOn) {
      tell();
      text += goOn ? "<go on>\n" : "<decided>\n";
    });
    tell();
    return text;
  }

  Profile work;
};

TEST_F(WiFiTriggers, WithoutNetworksAProfileGoesOnAtOnce) {
  work->setWifiNetworks(std::nullopt);
  EXPECT_EQ(detected(), R"(
<go on>
)");
}

TEST_F(WiFiTriggers, WithoutNetworksAnAppliedProfileHasItsEffectsBroughtInLineFirst) {
  work->setWifiNetworks(std::nullopt);
  work->apply();
  work->setDnDEnabled(true);
  work->setShowOnStatusBar(true);
  clearRecord();
  bool asked = false;
  manager().shceduleWiFiDetected(work, [&](bool) {
    EXPECT_EQ(count("buttonTapped"), 1);
    EXPECT_EQ(count("statusBarItem setVisible:true"), 1);
    asked = true;
  });
  EXPECT_TRUE(asked);
}

TEST_F(WiFiTriggers, WithoutNetworksAnIdleProfileHasNothingBroughtInLine) {
  work->setWifiNetworks(std::nullopt);
  work->setDnDEnabled(true);
  work->setShowOnStatusBar(true);
  clearRecord();
  manager().shceduleWiFiDetected(work, [](bool) {});
  EXPECT_TRUE(phone.record().entries().empty());
}

TEST_F(WiFiTriggers, OnItsNetworkBeforeItsStartAnIdleProfileWaits) {
  clock("07:00");
  phone.wifi().join("Home");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
I Checking currentDate: 07:00:00 is between 08:00:00 and 17:00:00.
I Scheduling power wakeup for 'WiFi' at: 08:00:00 for applying profile Work.
I ******** Scheduling timer for 08:00:00 ***************
timer arm t1 at 08:00:00
<decided>
)");
  EXPECT_FALSE(work->isApplied());
}

TEST_F(WiFiTriggers, OnItsNetworkAtItsStartItIsAppliedUntilItsEnd) {
  clock("08:00");
  phone.wifi().join("Home");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
I Checking currentDate: 08:00:00 is between 08:00:00 and 17:00:00.
I ************* applying profile *************
<apply>
I Scheduling power wakeup for 'WiFi' at: 17:00:00 for applying profile Work.
I ******** Scheduling timer for 17:00:00 ***************
timer arm t1 at 17:00:00
<decided>
)");
}

TEST_F(WiFiTriggers, OnItsNetworkAProfileHasItsEffectsBroughtInLineOnceItIsApplied) {
  clock("08:00");
  phone.wifi().join("Home");
  work->setShowOnStatusBar(true);
  clearRecord();
  bool asked = false;
  manager().shceduleWiFiDetected(work, [&](bool) {
    EXPECT_EQ(count("statusBarItem setVisible:true"), 2) << "by the apply, and after it";
    asked = true;
  });
  EXPECT_TRUE(asked);
}

TEST_F(WiFiTriggers, OnItsNetworkAtItsEndAnIdleProfileIsStillAppliedAndNothingArmed) {
  clock("17:00");
  phone.wifi().join("Home");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
I Checking currentDate: 17:00:00 is between 08:00:00 and 17:00:00.
I ************* applying profile *************
<apply>
W SInce the schedule date 17:00:00 <= 17:00:00  is past unable to schedule power wakeup for 'WiFi' for applying profile (Work).
<decided>
)");
}

TEST_F(WiFiTriggers, OnItsNetworkAfterItsEndAnIdleProfileStaysIdle) {
  clock("18:00");
  phone.wifi().join("Home");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
I Checking currentDate: 18:00:00 is between 08:00:00 and 17:00:00.
W SInce the schedule date 17:00:00 <= 18:00:00  is past unable to schedule power wakeup for 'WiFi' for applying profile (Work).
<decided>
)");
}

TEST_F(WiFiTriggers, OnItsNetworkInItsWindowAnAppliedProfileStays) {
  clock("12:00");
  phone.wifi().join("Home");
  work->apply();
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
I Checking currentDate: 12:00:00 is between 08:00:00 and 17:00:00.
<decided>
)");
}

TEST_F(WiFiTriggers, OnItsNetworkAfterItsEndAnAppliedProfileIsRevertedAndNothingArmed) {
  clock("17:00:00.500");
  phone.wifi().join("Home");
  work->apply();
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
I Checking currentDate: 17:00:00 is between 08:00:00 and 17:00:00.
I Reverting profile since the current date (17:00:00) is not with in the Profile's start (08:00:00) & end date (17:00:00).
<revert>
W SInce the schedule date 17:00:00 <= 17:00:00  is past unable to schedule power wakeup for 'WiFi' for applying profile (Work).
<decided>
)");
  EXPECT_FALSE(work->isApplied());
  EXPECT_EQ(armed(), "");
}

TEST_F(WiFiTriggers, OnItsNetworkBeforeItsStartAnAppliedProfileIsRevertedAndWaits) {
  clock("07:00");
  phone.wifi().join("Home");
  work->apply();
  const std::string text = detected();
  EXPECT_NE(text.find("<revert>"), std::string::npos) << text;
  EXPECT_EQ(armed(), "t1 at 08:00:00");
}

TEST_F(WiFiTriggers, OnItsNetworkAnAllDayProfileIsAppliedOnceAndNeverArmed) {
  work->setAllDay(true);
  phone.wifi().join("Home");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
<apply>
<decided>
)");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
<decided>
)");
}

TEST_F(WiFiTriggers, OnItsNetworkTheEffectsAreBroughtInLineBeforeTheVerdict) {
  work->setAllDay(true);
  phone.wifi().join("Home");
  work->apply();
  work->setShowOnStatusBar(true);
  clearRecord();
  int shown = 0;
  manager().shceduleWiFiDetected(work, [&](bool) { shown = count("statusBarItem setVisible:true"); });
  EXPECT_EQ(shown, 1);
}

TEST_F(WiFiTriggers, OnItsNetworkTheDeedsAreDoneEvenIfNobodyAsksForTheVerdict) {
  clock("12:00");
  phone.wifi().join("Home");
  manager().shceduleWiFiDetected(work, nullptr);
  EXPECT_TRUE(work->isApplied());
  EXPECT_EQ(armed(), "t1 at 17:00:00");
}

TEST_F(WiFiTriggers, OffItsNetworksInItsWindowTheCalendarDecides) {
  clock("12:00");
  phone.wifi().join("Cafe");
  work->apply();
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** 'Cafe' *** is in enabled list or not.
<go on>
)");
  EXPECT_EQ(count("statusBarItem"), 0) << "nothing is brought in line here";
}

TEST_F(WiFiTriggers, OffItsNetworksBothBoundsOfTheWindowAreInside) {
  for (const char* bound : {"08:00", "17:00"}) {
    clock(bound);
    EXPECT_NE(detected().find("<go on>"), std::string::npos) << bound;
  }
}

TEST_F(WiFiTriggers, OffItsNetworksAnAllDayProfileIsLeftToTheCalendar) {
  work->setAllDay(true);
  for (const char* now : {"12:00", "23:59:59.500"}) {
    clock(now);
    EXPECT_EQ(detected(), R"(
I Checking whether the network *** '(null)' *** is in enabled list or not.
<go on>
)") << now;
  }
}

TEST_F(WiFiTriggers, OffItsNetworksBeforeItsWindowTheVerdictComesBeforeTheWakeUp) {
  clock("07:00");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** '(null)' *** is in enabled list or not.
<decided>
I Scheduling power wakeup for 'WiFi' at: 08:00:00 for applying profile Work.
I ******** Scheduling timer for 08:00:00 ***************
timer arm t1 at 08:00:00
)");
}

TEST_F(WiFiTriggers, OffItsNetworksAfterItsWindowThereIsOnlyAWarning) {
  clock("18:00");
  EXPECT_EQ(detected(), R"(
I Checking whether the network *** '(null)' *** is in enabled list or not.
<decided>
W SInce the schedule date 17:00:00 <= 18:00:00  is past unable to schedule power wakeup for 'WiFi' for applying profile (Work).
)");
}

TEST_F(WiFiTriggers, OffItsNetworksNothingHappensIfNobodyAsksForTheVerdict) {
  clock("07:00");
  story();
  manager().shceduleWiFiDetected(work, nullptr);
  EXPECT_EQ(story(), R"(
I Checking whether the network *** '(null)' *** is in enabled list or not.
)");
}

TEST_F(WiFiTriggers, AnyOfItsNetworksWillDoAndNamesAreExact) {
  clock("12:00");
  work->addToWiFiNetwork("Office");
  phone.wifi().join("Office");
  EXPECT_NE(detected().find("<decided>"), std::string::npos);
  phone.wifi().join("office");
  EXPECT_NE(detected().find("<go on>"), std::string::npos);
}

TEST_F(WiFiTriggers, NoProfileIsTiedToNoNetwork) {
  std::optional<bool> verdict;
  manager().shceduleWiFiDetected(nullptr, [&](bool goOn) { verdict = goOn; });
  EXPECT_EQ(verdict, true);
}

TEST_F(WiFiTriggers, APlanAppliesTheProfileOnItsNetworkAndRefreshesItInTheSameBreath) {
  clock("12:00");
  phone.wifi().join("Home");
  addEvent("Now", at("11:00"), at("13:00"));
  story();
  plan(work);
  EXPECT_EQ(story(), R"(
I **** Trying to schedule events for profile 'Work'
I Checking whether the network *** 'Home' *** is in enabled list or not.
I *** Profile 'Work' has Wifi Home network enabled.
I Checking currentDate: 12:00:00 is between 08:00:00 and 17:00:00.
I ************* applying profile *************
<apply>
I Scheduling power wakeup for 'WiFi' at: 17:00:00 for applying profile Work.
I ******** Scheduling timer for 17:00:00 ***************
timer arm t1 at 17:00:00
<refresh>
)");
  EXPECT_EQ(followed(work), nullptr) << "the calendar was not asked";
}

TEST_F(WiFiTriggers, ADayOnItsNetworkAppliesAtTheStartAndRevertsAtTheEnd) {
  clock("07:00");
  phone.wifi().join("Home");
  plan(work);
  runTo("07:59:59");
  EXPECT_FALSE(work->isApplied());
  runTo("08:00:01");
  EXPECT_TRUE(work->isApplied());
  runTo("17:00:01");
  EXPECT_FALSE(work->isApplied());
}

TEST_F(WiFiTriggers, JoiningTheNetworkAfterTheCalendarAppliedGainsNoWakeUpAtTheWindowsEnd) {
  clock("12:00");
  addEvent("Now", at("11:00"), at("13:00"));
  plan(work);
  EXPECT_EQ(armed(), "t1 at 13:00:00");
  phone.wifi().join("Home");
  plan(work, true);
  EXPECT_EQ(armed(), "t1 at 13:00:00") << "an applied profile inside its window is given no wake-up of the network's";
  runTo("18:00");
  EXPECT_TRUE(work->isApplied()) << "and so nothing reverts it at the window's end";
}

}  // namespace
}  // namespace hushmode
