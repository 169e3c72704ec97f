// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Planning anew after the phone joined or left a network.

#include "tests/scheduler/SchedulerFixture.h"
#include "wifi/HMWiFiManager.h"

namespace hushmode {
namespace {

class NetworkChange : public SchedulerFixture {
 protected:
  void SetUp() override {
    SchedulerFixture::SetUp();
    clock("12:00");
  }
  /// Lets the network manager see what is joined now, as any earlier question does.
  static void look() { HMWiFiManager::sharedManager()->currentNetWork(); }
  void change() {
    story();
    manager().scheduleProfilesOnWiFiChange();
  }
};

constexpr const char* same = "Last connected & new WiFi are same, hence returning...";
constexpr const char* changed = "WiFi change detected (last connected (";

TEST_F(NetworkChange, WithTheMasterSwitchOffNothingHappens) {
  addProfile();
  phone.wifi().join("Home");
  setMasterSwitch(false);
  clearRecord();
  manager().scheduleProfilesOnWiFiChange();
  EXPECT_TRUE(phone.record().entries().empty());
}

TEST_F(NetworkChange, TheSameNetworkAgainIsNoChange) {
  addProfile();
  phone.wifi().join("Home");
  look();
  change();
  EXPECT_EQ(story(), R"(
I Last connected & new WiFi are same, hence returning...
)");
}

TEST_F(NetworkChange, JoiningANetworkPlansEveryActiveProfile) {
  addProfile("One");
  addProfile("Off")->setEnabled(false);
  addProfile("Two");
  look();
  phone.wifi().join("Home");
  change();
  EXPECT_EQ(count(changed), 1);
  EXPECT_EQ(count("Trying to schedule events for profile 'One'"), 1);
  EXPECT_EQ(count("'Off'"), 0);
  EXPECT_EQ(count("Trying to schedule events for profile 'Two'"), 1);
}

TEST_F(NetworkChange, BothNetworksAreLoggedWhole) {
  phone.wifi().join("Home");
  look();
  clock("13:00");
  phone.wifi().leave();
  change();
  const auto lines = texts({devices::kind::log});
  ASSERT_EQ(lines.size(), 1u);
  const std::size_t last = lines[0].find("SSID"), current = lines[0].find("and now connected to");
  EXPECT_NE(lines[0].find("lastJoined"), std::string::npos);
  EXPECT_LT(last, current) << "the last network stands first: " << lines[0];
  EXPECT_EQ(lines[0].find("SSID", current), std::string::npos) << lines[0];
}

TEST_F(NetworkChange, LeavingANetworkIsAChange) {
  addProfile();
  phone.wifi().join("Home");
  look();
  phone.wifi().leave();
  change();
  EXPECT_EQ(count(same), 0);
  EXPECT_EQ(count("Trying to schedule events"), 1);
}

TEST_F(NetworkChange, TwoDisconnectedStatesInARowAreAChange) {
  addProfile();
  look();
  change();
  EXPECT_EQ(count(changed), 1);
  change();
  EXPECT_EQ(count(changed), 1);
}

TEST_F(NetworkChange, RejoiningAfterADisconnectionThatWasSeenIsAChange) {
  addProfile();
  phone.wifi().join("Home");
  look();
  phone.wifi().leave();
  look();
  phone.wifi().join("Home");
  change();
  EXPECT_EQ(count(changed), 1);
}

TEST_F(NetworkChange, ADirectSwitchWhoseJoinIsAlreadyStampedCountsAsTheSame) {
  addProfile();
  phone.wifi().join("Home");
  look();
  clock("12:30");
  phone.wifi().join("Office");  // Which makes it the network joined last.
  change();
  EXPECT_EQ(count(same), 1);
  EXPECT_EQ(count("Trying to schedule events"), 0);
}

TEST_F(NetworkChange, ASwitchToANetworkThatIsNotTheLastJoinedIsAChange) {
  addProfile();
  phone.wifi().join("Home");
  look();
  phone.wifi().remember({"Office", std::nullopt, at("14:00")});
  change();
  EXPECT_EQ(count(changed), 1);
}

TEST_F(NetworkChange, OnlyProfilesWithNetworksProceedInAnyCase) {
  const auto calendarOnly = addProfile("Calendar"), tied = addProfile("Tied");
  tied->addToWiFiNetwork("Elsewhere");
  addEvent("Now", at("11:00"), at("13:00"));
  plan(calendarOnly);
  plan(tied);
  ASSERT_TRUE(calendarOnly->isApplied() && tied->isApplied());
  phone.wifi().join("Home");
  change();
  EXPECT_EQ(count("There is no change in the current scheduled event"), 1);
  EXPECT_EQ(count("No changes detected between"), 1);
  EXPECT_EQ(count("<refresh>"), 1);
}

TEST_F(NetworkChange, LeavingTheNetworkOutsideTheWindowKeepsTheProfileAndArmsItsStart) {
  const auto work = addProfile();
  work->addToWiFiNetwork("Home");
  clock("07:00");
  phone.wifi().join("Home");
  look();
  work->apply();
  phone.wifi().leave();
  change();
  EXPECT_TRUE(work->isApplied());
  EXPECT_EQ(armed(), "t1 at 08:00:00");
}

}  // namespace
}  // namespace hushmode
