// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Which of the known networks was joined last.

#include "wifi/HMWiFiManager.h"

#include <gtest/gtest.h>

namespace hushmode {
namespace {

using platform::Date;
using platform::Dictionary;
using MaybeDate = std::optional<Date>;

Dictionary network(const char* name, MaybeDate automatic, MaybeDate byUser) {
  Dictionary record;
  if (automatic) record.append("lastAutoJoined", *automatic);
  if (byUser) record.append("lastJoined", *byUser);
  return {{"SSID", name}, {"record", record}};
}

constexpr MaybeDate none = std::nullopt;
constexpr MaybeDate at(double seconds) { return Date(seconds); }

TEST(LastJoined, IsTheNetworkWithTheLatestDateOfEitherKind) {
  const struct {
    const char* description;
    std::vector<Dictionary> known;
    std::optional<std::size_t> last;
  } cases[] = {
      {"no network", {}, std::nullopt},
      {"one without a date", {network("A", none, none)}, 0},
      {"by the user's joins", {network("A", none, at(1)), network("B", none, at(3)), network("C", none, at(2))}, 1},
      {"by automatic joins", {network("A", at(1), none), network("B", at(3), none), network("C", at(2), none)}, 1},
      {"ranked by the later of the two", {network("A", at(5), at(1)), network("B", at(2), at(4))}, 0},
      {"whichever of them that is", {network("A", at(1), at(5)), network("B", at(4), at(2))}, 0},
      {"the first of equals", {network("A", none, at(3)), network("B", at(3), none), network("C", at(3), at(3))}, 0},
      {"a dated one after undated ones", {network("A", none, none), network("B", none, at(1))}, 1},
      {"a dated one before undated ones", {network("A", none, at(1)), network("B", none, none)}, 0},
      {"the last of undated ones", {network("A", none, none), network("B", none, none), network("C", none, none)}, 2},
      {"a fraction later", {network("A", none, at(1)), network("B", none, at(1.25))}, 1},
      {"dates before 1970", {network("A", none, at(-5)), network("B", none, at(-9))}, 0},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.description);
    EXPECT_EQ(lastJoinedIndex(each.known), each.last);
  }
}

TEST(LastJoined, PassesOverEntriesWithoutARecordAndValuesThatAreNoDates) {
  const Dictionary bare{{"SSID", "A"}}, odd{{"SSID", "B"}, {"record", Dictionary{{"lastJoined", "yesterday"}}}},
      none_{{"SSID", "C"}, {"record", "text"}};
  EXPECT_EQ(lastJoinedIndex({bare, odd, network("D", none, at(1)), none_}), 2U);
}

TEST(NetworkName, IsNoneOfAnEmptyEntry) {
  EXPECT_EQ(networkName(network("Home", none, none)), "Home");
  EXPECT_EQ(networkName({{"SSID", ""}}), "");
  EXPECT_EQ(networkName({}), std::nullopt);
  EXPECT_EQ(networkName({{"SSID", 7}}), std::nullopt);
}

}  // namespace
}  // namespace hushmode
