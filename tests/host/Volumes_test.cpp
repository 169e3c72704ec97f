// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What the phone is told to do with its volumes from one event to the next: nobody hears a detour.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

/// The loudest ringtone and media volumes that were written in a span, both ends included; 0 for none.
struct Loudest {
  double ringtone = 0, media = 0;
};
Loudest loudest(const Life& life, const std::string& from, const std::string& to) {
  const auto zone = devices::TimeZone::named("UTC");
  const auto day = parseTime("2024-05-14", *zone);
  const auto first = *parseTime(from, *zone, day), last = *parseTime(to, *zone, day);
  Loudest found;
  for (const VolumeWrite& each : life.writes) {
    if (each.at < first || last < each.at) continue;
    double& most = each.media ? found.media : found.ringtone;
    most = std::max(most, each.volume);
  }
  return found;
}

struct Transition {
  const char* name;
  DayParts parts;
  double ringtone = 0.25, media = 0.125;  ///< No louder than this between 9:00 and 11:59.
};
std::ostream& operator<<(std::ostream& out, const Transition& each) { return out << each.name; }

class Transitions : public ::testing::TestWithParam<Transition> {};

TEST_P(Transitions, AreNotHeard) {
  const Life life = live(scenarioOf(day(GetParam().parts)));
  EXPECT_FALSE(life.writes.empty());
  const Loudest found = loudest(life, "09:00", "11:59");
  EXPECT_LE(found.ringtone, GetParam().ringtone);
  EXPECT_LE(found.media, GetParam().media);
  const Loudest after = loudest(life, "12:00", "12:01");
  EXPECT_FLOAT_EQ(after.ringtone, 0.8);
  EXPECT_FLOAT_EQ(after.media, 0.5);
  EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
}

const std::string backToBack = list({event("09:00", "10:00"), event("10:00", "12:00", "", "2")});
const std::string overlapping = list({event("09:00", "10:30"), event("10:00", "12:00", "", "2")});
const std::string morning = list({event("09:00", "12:00")});

INSTANTIATE_TEST_SUITE_P(
    From, Transitions,
    ::testing::Values(
        Transition{"OneMeetingToTheNext", {.events = backToBack}},
        Transition{"OneMeetingToTheNextWithTone", {.events = backToBack, .more = withAll}},
        Transition{"OneMeetingToAnOverlappingOne", {.events = overlapping}},
        Transition{"OneMeetingToAnOverlappingOneWithTone", {.events = overlapping, .more = withAll}},
        Transition{"OneMeetingToAMovedOne",
                   {.events = morning,
                    .steps = list({step("10:00", "moveEvent", R"(, "uid": "1", "start": "09:30", "end": "12:00")")}),
                    .more = withTone}},
        Transition{"OneProfileToTheNext",
                   {.events = list({event("09:00", "10:00")}), .otherEvents = list({event("10:00", "12:00")})},
                   0.5,
                   0.25},
        Transition{"OneProfileToTheNextWithTone",
                   {.events = list({event("09:00", "10:00")}),
                    .more = withTone,
                    .otherEvents = list({event("10:00", "12:00")}),
                    .otherMore = withTone},
                   0.5,
                   0.25},
        Transition{"OneProfileToAnotherAndBack",
                   {.events = morning,
                    .more = withTone,
                    .otherEvents = list({event("10:00", "11:00")}),
                    .otherMore = withTone},
                   0.5,
                   0.25},
        Transition{
            "AnEdit",
            {.events = morning,
             .steps = list({step("10:00", "editProfile", R"(, "profile": "Work", "set": {"ringerVolume": 0.1})"),
                            step("11:00", "editProfile",
                                 R"(, "profile": "Work", "set": {"playBackVolume": 0.0, "endTime": "6:00 PM"})")}),
             .more = withTone}},
        Transition{"OneNetworkToTheNext",
                   {.steps = list({step("09:00", "join", R"(, "network": "Home")"),
                                   step("10:00", "join", R"(, "network": "Office")"),
                                   step("12:00", "join", R"(, "network": "Cafe")")}),
                    .more = withTone + R"(, "wifiNetworks": ["Home", "Office"])"}},
        Transition{"AMeetingToANetwork",
                   {.events = list({event("09:00", "11:00")}),
                    .steps = list({step("10:00", "join", R"(, "network": "Home")"),
                                   step("12:00", "join", R"(, "network": "Cafe")")}),
                    .more = withTone + R"(, "wifiNetworks": ["Home"])"}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(HeldVolumes, AFailingWriteIsNotTakenForDone) {
  Scenario scenario =
      scenarioOf(day({.events = list({event("09:00", "10:00")}),
                      .steps = list({step("09:30", "fault", R"(, "writes": "volume", "category": "Ringtone")"),
                                     step("11:00", "fault",
                                          R"(, "writes": "volume", "category": "Ringtone",
                                                               "fail": false)")})}));
  const Life life = live(scenario, {{"10:30", asBefore}, {"11:02", asBefore}});
  EXPECT_FLOAT_EQ(*life.moments[0].ringtone, 0.25) << "the phone takes nothing";
  EXPECT_EQ(life.complaints.size(), 1U);
  EXPECT_EQ(life.moments[1], life.before) << "it is tried again";
}

}  // namespace
}  // namespace hushmode::simulation
