// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The switches that the host tells of.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

class Switches : public ::testing::TestWithParam<std::string> {};

TEST_P(Switches, AreToldWithThePhoneBeforeThemAndOnceTheirDelaysAreOver) {
  Scenario scenario = scenarioOf(day({.events = list({event("09:00", "10:00")}), .more = GetParam()}));
  std::vector<host::Switch> told;
  scenario.steps.push_back({*parseTime("10:30", *scenario.zone, scenario.from), [&](Simulation& s) {
                              const auto& recent = hostOf(s).recentSwitches();
                              told.assign(recent.begin(), recent.end());
                            }});
  const Life life = live(scenario);
  PhoneState inTheMeeting = life.before;
  quiet(inTheMeeting);
  ASSERT_EQ(told.size(), 2U);
  EXPECT_TRUE(told[0].on);
  EXPECT_EQ(told[0].before, life.before) << differenceText(life.before, told[0].before);
  EXPECT_EQ(told[0].after, inTheMeeting) << differenceText(inTheMeeting, told[0].after);
  EXPECT_FALSE(told[1].on);
  EXPECT_EQ(told[1].before, inTheMeeting) << differenceText(inTheMeeting, told[1].before);
  EXPECT_EQ(told[1].after, life.before) << differenceText(life.before, told[1].after);
}

INSTANTIATE_TEST_SUITE_P(With, Switches, ::testing::Values("", withTone),
                         [](const auto& info) { return info.param.empty() ? "NoTone" : "Tone"; });

}  // namespace
}  // namespace hushmode::simulation
