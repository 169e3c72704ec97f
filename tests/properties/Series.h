// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

/// How a series of random days is chosen, and what happened on them told.
namespace hushmode::properties {

/// A number from an environment variable; a test fails where there is another text in it.
inline std::uint64_t fromEnvironment(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  if (!text) return otherwise;
  const std::string_view digits = text;
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  EXPECT_TRUE(error == std::errc() && end == digits.data() + digits.size()) << name << " is no number: " << text;
  return number;
}

/// Lines of text, each indented below the last.
inline std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += "\n  " + line;
  return text;
}

}  // namespace hushmode::properties
