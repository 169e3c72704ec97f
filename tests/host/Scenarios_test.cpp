// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The scenarios that show what the library does by itself, played with the host: whatever the library leaves behind,
// the phone is as before once the day is over.

#include "tests/host/Life.h"

#include <map>

namespace hushmode::simulation {
namespace {

std::vector<std::filesystem::path> scenarios() {
  std::vector<std::filesystem::path> found;
  for (const auto& entry : std::filesystem::directory_iterator(HUSHMODE_SOURCE_FOLDER "/tests/scenarios")) {
    if (entry.path().extension() == ".json") found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

/// What the user does in a scenario, and finds in the end.
const std::map<std::string, std::function<void(PhoneState&)>> doneByTheUser = {
    {"a-refresh-undoes-the-volume-that-the-user-chose-to-keep", [](PhoneState& s) { s.ringtone = 0.75f; }},
    {"an-answer-goes-to-the-profile-that-is-first-when-it-comes", [](PhoneState& s) { s.ringtone = 0.75f; }},
    {"below-system-10-the-users-own-do-not-disturb-ends-with-the-profile",
     [](PhoneState& s) { s.doNotDisturb = true; }},
    {"below-system-11-the-profiles-own-change-raises-the-question", [](PhoneState& s) { s.ringtone = 0.5f; }},
    {"on-system-10-the-users-own-do-not-disturb-ends-with-the-profile", [](PhoneState& s) { s.doNotDisturb = true; }},
    // Joins the profile's network and stays there.
    {"joining-a-network-applies-and-refreshes-in-one-plan",
     [](PhoneState& s) { s.ringtone = 0.25f, s.media = 0.125f; }},
};

class Scenarios : public ::testing::TestWithParam<std::filesystem::path> {};

TEST_P(Scenarios, LeaveThePhoneAsItWas) {
  Scenario scenario = readScenario(GetParam(), {});
  // Until everything is over: their own end may lie in the middle of a meeting.
  const platform::Date last = scenario.to;
  scenario.to = last.addingSeconds(2 * 86400.0);
  const Life life = live(scenario);
  PhoneState wanted = life.before;
  const auto done = doneByTheUser.find(GetParam().stem());
  if (done != doneByTheUser.end()) done->second(wanted);
  EXPECT_EQ(life.end, wanted) << differenceText(wanted, life.end);
}

INSTANTIATE_TEST_SUITE_P(All, Scenarios, ::testing::ValuesIn(scenarios()), [](const auto& info) {
  std::string name = info.param.stem().string();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
  return name;
});

}  // namespace
}  // namespace hushmode::simulation
