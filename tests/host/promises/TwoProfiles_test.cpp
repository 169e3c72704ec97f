// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Two profiles with a meeting each, in every way that two meetings can lie to each other. The one that came last
// holds, and what any of them asks for of Do Not Disturb and the icon.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

struct Relation {
  const char* name;
  double start, end;  ///< Of the other's, in hours; the first's is from 9 to 11.
};
constexpr Relation relations[] = {{"Precedes", 12, 13},       {"Meets", 11, 12},      {"Overlaps", 10, 12},
                                  {"Starts", 9, 12},          {"Contains", 9.5, 10},  {"IsFinishedBy", 10, 11},
                                  {"Equals", 9, 11},          {"IsStartedBy", 9, 10}, {"IsDuring", 8.5, 12},
                                  {"Finishes", 8.5, 11},      {"IsMetBy", 8, 9},      {"IsPrecededBy", 8, 8.5},
                                  {"IsOverlappedBy", 8.5, 10}};

std::string clockText(double hours) {
  const int minutes = static_cast<int>(hours * 60 + 0.5);
  const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  return two(minutes / 60) + ":" + two(minutes % 60);
}

std::vector<Promise> promises() {
  std::vector<Promise> all;
  struct Manner {
    const char* name;
    std::string first, other;
  };
  for (const Manner& manner : {Manner{"", "", ""}, Manner{"FirstWithAll", withAll, ""},
                               Manner{"OtherWithAll", "", withAll}, Manner{"BothWithAll", withAll, withAll}}) {
    for (const Relation& each : relations) {
      Promise promise{each.name + std::string(manner.name),
                      day({.events = list({event("09:00", "11:00")}),
                           .more = manner.first,
                           .otherEvents = list({event(clockText(each.start), clockText(each.end), "", "2")}),
                           .otherMore = manner.other})};
      for (double hour = 8.25; hour < 14; hour += 0.5) {
        const bool first = 9 < hour && hour < 11, other = each.start < hour && hour < each.end;
        const bool otherHolds = other && (!first || each.start >= 9);
        promise = promise.at(clockText(hour), [=](PhoneState& state) {
          if (first) quiet(state);
          if (otherHolds) otherQuiet(state);
          state.doNotDisturb = state.icon = (first && !manner.first.empty()) || (other && !manner.other.empty());
        });
      }
      all.push_back(promise);
    }
  }
  return all;
}

// A death decides anew which of two came last, so that only who is applied can be promised then; the ends are.
INSTANTIATE_TEST_SUITE_P(TwoProfiles, LongPromises, ::testing::ValuesIn(promises()), nameOfPromise);

/// The first meets from 9 to 11, the other meanwhile.
std::string meeting(const std::string& otherStart, const std::string& otherEnd) {
  return day({.events = list({event("09:00", "11:00")}), .otherEvents = list({event(otherStart, otherEnd, "", "2")})});
}

// Not only once the delays of the switch are over.
INSTANTIATE_TEST_SUITE_P(
    AtOnce, LongPromises,
    ::testing::Values(Promise{"TheFirstHoldsWhenTheOtherEnds", meeting("09:30", "10:00")}.at("10:00:01", quiet),
                      Promise{"TheOtherHoldsWhenTheFirstEnds", meeting("10:00", "12:00")}.at("11:00:01", otherQuiet)),
    nameOfPromise);

std::vector<Promise> endings() {
  auto all = promises();
  std::erase_if(all, [](const Promise& each) { return each.name.find("BothWithAll") == std::string::npos; });
  for (Promise& each : all) each.moments.clear();
  return all;
}
INSTANTIATE_TEST_SUITE_P(TwoProfiles, Promises, ::testing::ValuesIn(endings()), nameOfPromise);

}  // namespace
}  // namespace hushmode::simulation
