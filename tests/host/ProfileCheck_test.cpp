// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/ProfileCheck.h"

#include "host/Host.h"

#include <gtest/gtest.h>

namespace hushmode::host {
namespace {

using platform::Array;
using platform::Dictionary;
using platform::Value;

/// Why it is refused; empty when it is not.
std::string refusal(const Dictionary& profile) {
  try {
    checkProfile(profile);
  } catch (const EditError& error) {
    EXPECT_EQ(error.kind(), EditError::Kind::InvalidArgument);
    return error.what();
  }
  return "";
}

struct Case {
  const char* name;
  const char* key;
  Value value;
  bool allowed;
};
std::ostream& operator<<(std::ostream& out, const Case& each) { return out << each.name; }

class ProfileCheckTest : public ::testing::TestWithParam<Case> {};

TEST_P(ProfileCheckTest, TakesWhatItShouldAndNamesTheKeyOfTheRest) {
  const Case& each = GetParam();
  const std::string said = refusal({{each.key, each.value}});
  if (each.allowed) {
    EXPECT_EQ(said, "");
  } else {
    EXPECT_EQ(said.find("\"" + std::string(each.key) + "\": expected "), 0U) << said;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Values, ProfileCheckTest,
    ::testing::Values(
        Case{"ATitle", "title", "Work", true}, Case{"AnEmptyTitle", "title", "", false},
        Case{"ATooLongTitle", "title", std::string(1000, 'x'), false},
        Case{"ALongTone", "alertToneIdentifier", std::string(longestText, 'x'), true},
        Case{"ATooLongTone", "alertToneIdentifier", std::string(longestText + 1, 'x'), false},
        Case{"ATitleThatIsNoText", "title", 5, false}, Case{"AFlag", "vibrate", true, true},
        Case{"ANumberForAFlag", "vibrate", 1, false}, Case{"SilentVolume", "ringerVolume", 0.0, true},
        Case{"FullVolume", "ringerVolume", 1.0, true}, Case{"LouderThanFull", "playBackVolume", 1.01, false},
        Case{"BelowSilence", "deviceVolume", -0.01, false},
        Case{"NoNumber", "ringerVolume", std::numeric_limits<double>::quiet_NaN(), false},
        Case{"AWholeVolume", "ringerVolume", 1, false}, Case{"AnyStatus", "applyProfileEventStatus", 0, true},
        Case{"TheLastStatus", "applyProfileEventStatus", 3, true},
        Case{"NoStatus", "applyProfileEventStatus", 4, false},
        Case{"ANegativeStatus", "applyProfileEventStatus", -1, false}, Case{"AMorning", "startTime", "8:00 AM", true},
        Case{"AnEvening", "endTime", "11:59 pm", true}, Case{"ALeadingZero", "startTime", "08:05 AM", true},
        Case{"TwentyFourHours", "startTime", "17:30", false}, Case{"ZeroOClock", "startTime", "0:30 AM", false},
        Case{"SixtyMinutes", "startTime", "8:60 AM", false}, Case{"NoMinutes", "endTime", "8 AM", false},
        Case{"Networks", "wifiNetworks", Array{"Home", "Office"}, true},
        Case{"NoNetworks", "wifiNetworks", Array{}, true},
        Case{"ANetworkThatIsNoText", "wifiNetworks", Array{5}, false},
        Case{"NetworksThatAreNoList", "wifiNetworks", "Home", false},
        Case{"ALongCalendar", "calendarIdentifiers", Array{std::string(longestText + 1, 'x')}, false},
        Case{"TooManyCalendars", "calendarIdentifiers", Array(longestList + 1, Value("x")), false}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ProfileCheck, NamesTheKeysThatThereAre) {
  const std::string said = refusal({{"ringVolume", 0.5}});
  EXPECT_EQ(said.find("\"ringVolume\": expected one of title, "), 0U) << said;
  EXPECT_NE(said.find("ringerVolume"), std::string::npos);
}

TEST(ProfileCheck, LeavesIdentifierAndAppliedToTheHost) {
  EXPECT_NE(refusal({{"identifier", 5}}), "");
  EXPECT_NE(refusal({{"applied", true}}), "");
}

}  // namespace
}  // namespace hushmode::host
