#pragma once

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>

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

}  // namespace hushmode::properties
