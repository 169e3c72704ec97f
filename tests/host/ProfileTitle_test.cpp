// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/ProfileTitle.h"

#include <gtest/gtest.h>

namespace hushmode::host {
namespace {

std::string repeated(const std::string& text, std::size_t times) {
  std::string result;
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

/// What is expected instead; empty when the title is fine.
std::string faultOf(std::string_view title) {
  const auto fault = titleFault(title);
  return fault ? fault->english() : "";
}

TEST(ProfileTitle, MayBeAnyLineOfText) {
  for (const std::string& title : {std::string("Work"), std::string("\u4f1a\u8b70 \U0001F515"), std::string("a\u00a0b"),
                                   repeated("\U0001F515", longestTitle), std::string("\"Work\", at home")}) {
    EXPECT_EQ(faultOf(title), "") << title;
  }
}

TEST(ProfileTitle, IsRefusedWithWhatIsExpected) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "not empty"},
      {"  ", "not empty"},
      {"\t\n", "not empty"},
      {"\u3000\u200b\ufeff", "not empty"},
      {" Work", "no blanks"},
      {"Work\u00a0", "no blanks"},
      {"Work\nHome", "one line"},
      {"Wo\x1b[2Jrk", "control characters"},
      {"Wo\x7frk", "control characters"},
      {"Wo\u0085rk", "control characters"},
      {"Work\u2028Home", "one line"},
      {std::string("Wo\0rk", 5), "control characters"},
      {repeated("\u00e4", longestTitle + 1), "at most 200 characters"},
      {"Wo\xffrk", "UTF-8"},
      {"Work\xc3", "UTF-8"},
      {"\xc0\x80", "UTF-8"},
      {"\xed\xa0\x80", "UTF-8"},
  };
  for (const auto& [title, expected] : cases) {
    EXPECT_NE(faultOf(title).find(expected), std::string::npos) << title << ": " << faultOf(title);
    EXPECT_EQ(faultOf(title).find("\"title\": expected "), 0U) << faultOf(title);
  }
}

TEST(ProfileTitle, IsTrimmedOfWhatNobodySees) {
  EXPECT_EQ(trimmedTitle(" \tWork at home\r\n"), "Work at home");
  EXPECT_EQ(trimmedTitle("\u3000\u4f1a\u8b70\u00a0"), "\u4f1a\u8b70");
  EXPECT_EQ(trimmedTitle(" \xff "), "\xff");
  EXPECT_EQ(trimmedTitle(" \n "), "");
}

}  // namespace
}  // namespace hushmode::host
