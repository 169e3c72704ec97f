// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/AgendaBlocks.h"
#include "apps/pictures/AgendaSvg.h"
#include "apps/pictures/PictureText.h"
#include "apps/simulation/TimeText.h"

#include <gtest/gtest.h>

namespace hushmode::cli {
namespace {

using platform::Date;

const auto zone = devices::TimeZone::utc();

Date at(const char* text) { return *simulation::parseTime(text, *zone); }

/// A day on which "Work" is on from 9:00 to 10:30.
std::vector<DayPlan> someDay() {
  DayPlan day;
  day.span = {at("2026-11-24"), at("2026-11-25")};
  Lane lane;
  lane.title = "Work";
  lane.window = DaySpan{at("2026-11-24 08:00"), at("2026-11-24 17:00")};
  lane.on = {{at("2026-11-24 09:00"), at("2026-11-24 10:30")}};
  day.lanes.push_back(lane);
  return {day};
}

TEST(AgendaSvgTest, NowIsMarkedOnItsDayOnly) {
  EXPECT_NE(agendaSvg(someDay(), *zone, at("2026-11-24 12:15")).find(">now 12:15<"), std::string::npos);
  EXPECT_EQ(agendaSvg(someDay(), *zone, at("2026-11-25")).find(">now"), std::string::npos);
  EXPECT_EQ(agendaSvg(someDay(), *zone, {}).find(">now"), std::string::npos);
}

TEST(AgendaSvgTest, ProfilesMayBeCalledAnything) {
  auto days = someDay();
  days[0].lanes[0].title = "<b>\x01 & \xff\n\u202E\"";
  const std::string svg = agendaSvg(days, *zone, {});
  EXPECT_NE(svg.find("&lt;b&gt; &amp; \uFFFD &quot;"), std::string::npos);
  EXPECT_EQ(svg.find('\x01'), std::string::npos);
}

TEST(AgendaBlocksTest, HalvesAndEighthsShowWhatTheHourAloneDoesNot) {
  const std::string text = agendaBlocks(someDay(), *zone, at("2026-11-24 12:15"), {Terminal(false), 40, true});
  EXPECT_NE(text.find("Work ········░█▌░░░░░░·······\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\n                 ▾\n"), std::string::npos) << text;
  EXPECT_NE(text.find("▾ now 12:15"), std::string::npos) << text;
}

TEST(AgendaBlocksTest, PlainTextNeedsNoUtf8) {
  auto days = someDay();
  days[0].lanes[0].title = "Bürø";
  const std::string text = agendaBlocks(days, *zone, {}, {Terminal(false), 40, false});
  EXPECT_NE(text.find("B?r? ........-##------.......\n"), std::string::npos) << text;
  for (const char c : text) EXPECT_TRUE(c == '\n' || (c >= ' ' && c <= '~')) << static_cast<int>(c);
}

TEST(AgendaBlocksTest, ColoursAddNothingButColour) {
  std::string coloured = agendaBlocks(someDay(), *zone, {}, {Terminal(true), 80, true});
  EXPECT_NE(coloured.find("\x1b["), std::string::npos);
  for (auto begin = coloured.find('\x1b'); begin != std::string::npos; begin = coloured.find('\x1b')) {
    coloured.erase(begin, coloured.find('m', begin) - begin + 1);
  }
  EXPECT_EQ(coloured, agendaBlocks(someDay(), *zone, {}, {Terminal(false), 80, true}));
}

TEST(PictureTextTest, ATextIsCutToItsWidthBetweenLetters) {
  EXPECT_EQ(cutToWidth("Standup", 11, 100), "Standup");
  EXPECT_EQ(cutToWidth("Stand up", 11, 0), "");
  for (double width = 0; width < 60; width += 0.5) {
    const std::string cut = cutToWidth("e\u0301e\u0301e\u0301e\u0301会議é", 11, width);
    EXPECT_LE(widthOf(cut, 11), width);
    EXPECT_FALSE(cut.ends_with("e…")) << "an accent is lost: " << cut;
  }
}

TEST(PictureTextTest, WhatHasNoPlaceInALineIsTakenOut) {
  EXPECT_EQ(oneLine("a\tb\nc\x1b[2J\u202Ed\u2066e\xC3"), "a b c[2Jde\uFFFD");
  EXPECT_EQ(oneLine("שלום"), "שלום");
}

}  // namespace
}  // namespace hushmode::cli
