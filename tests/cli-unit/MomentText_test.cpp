// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/MomentText.h"

#include "apps/simulation/JsonReader.h"
#include "apps/simulation/TimeText.h"

#include <gtest/gtest.h>

namespace hushmode::cli {
namespace {

using platform::Date;

std::shared_ptr<const devices::TimeZone> berlin() { return devices::TimeZone::named("Europe/Berlin"); }

/// 2026-11-24, 12:00 in Berlin.
const Date noon(1795518000);

std::string read(const std::string& text) { return simulation::isoTime(parseMoment(text, *berlin(), noon), *berlin()); }

TEST(MomentText, TimesOfBothClocksAreReadOnTheDayOfNow) {
  for (const char* text : {"14:20", "2:20pm", "2:20 PM", "2.20pm", "14:20:00"}) {
    EXPECT_EQ(read(text), "2026-11-24T14:20:00+01:00") << text;
  }
  EXPECT_EQ(read("9:05"), "2026-11-24T09:05:00+01:00");
  EXPECT_EQ(read("12am"), "2026-11-24T00:00:00+01:00");
}

TEST(MomentText, DaysMayStandBefore) {
  for (const char* text : {"2026-12-01 14:20", "2026-12-01T14:20", "2026-12-01 2:20pm", "2026-12-01T13:20:00Z",
                           "2026-12-01T14:20:00+01:00", "2026-12-01T08:20:00-05:00"}) {
    EXPECT_EQ(read(text), "2026-12-01T14:20:00+01:00") << text;
  }
}

TEST(MomentText, AnythingElseIsToldWithWhatIsExpected) {
  for (const char* text : {"", "noon", "25:00", "14:60", "14:2", "2pmm", "13:00pm", "2026-12-01", "2026-13-01 10:00",
                           "2026-02-30 10:00", "2026-12-01 25:00", "2026-12-01T14:20+99:00", "2026-12-01  14:20"}) {
    try {
      ADD_FAILURE() << text << " was read as " << read(text);
    } catch (const simulation::InputError& error) {
      EXPECT_NE(std::string(error.what()).find("expected a time such as 14:20"), std::string::npos);
    }
  }
}

TEST(MomentText, AnotherDayIsNamed) {
  EXPECT_EQ(momentText(noon.addingSeconds(3600), noon, *berlin()), "13:00");
  EXPECT_EQ(momentText(noon.addingSeconds(86400), noon, *berlin()), "Wednesday, 25 November 2026, 12:00");
}

}  // namespace
}  // namespace hushmode::cli
