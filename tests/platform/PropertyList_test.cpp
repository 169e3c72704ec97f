// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Property-list values and dictionaries.

#include "platform/PropertyList.h"

#include <gtest/gtest.h>

namespace hushmode::platform {
namespace {

std::vector<std::string> keysOf(const Dictionary& dictionary) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : dictionary) keys.push_back(key);
  return keys;
}

TEST(Value, KeepsItsTypeAndAnswersNoOther) {
  const Value boolean(true), integer(1), real(1.0), text("1"), date(Date(1));
  EXPECT_TRUE(boolean.as<bool>());
  EXPECT_FALSE(boolean.as<std::int64_t>());
  EXPECT_TRUE(integer.as<std::int64_t>());
  EXPECT_FALSE(integer.as<bool>());
  EXPECT_TRUE(real.as<double>());
  EXPECT_TRUE(text.as<std::string>());
  EXPECT_TRUE(date.as<Date>());
  EXPECT_FALSE(date.as<double>());
}

TEST(Value, TakesEveryIntegerTypeAsSixtyFourBits) {
  EXPECT_EQ(*Value(std::int8_t{-1}).as<std::int64_t>(), -1);
  EXPECT_EQ(*Value(std::uint32_t{4294967295U}).as<std::int64_t>(), 4294967295);
  EXPECT_EQ(*Value(0.5F).as<double>(), 0.5);
}

TEST(Value, EqualsOnlyAValueOfTheSameTypeAndContent) {
  EXPECT_EQ(Value(1), Value(std::int64_t{1}));
  EXPECT_NE(Value(1), Value(1.0));
  EXPECT_NE(Value(1), Value(true));
  EXPECT_NE(Value("1"), Value(1));
  EXPECT_NE(Value(1.0), Value(Date(1)));
  EXPECT_EQ(Value(Array{"a", 1}), Value(Array{"a", 1}));
  EXPECT_NE(Value(Array{"a", 1}), Value(Array{1, "a"}));
}

TEST(Dictionary, KeepsTheOrderInWhichKeysWereFirstSet) {
  Dictionary dictionary{{"b", 1}, {"a", 2}};
  dictionary.set("c", 3);
  dictionary.set("b", 4);
  EXPECT_EQ(keysOf(dictionary), (std::vector<std::string>{"b", "a", "c"}));
  EXPECT_EQ(*dictionary.find("b"), Value(4));
  EXPECT_EQ(dictionary.size(), 3U);
}

TEST(Dictionary, TakesTheLastOfRepeatedKeysInAList) {
  const Dictionary dictionary{{"a", 1}, {"a", 2}};
  EXPECT_EQ(dictionary.size(), 1U);
  EXPECT_EQ(*dictionary.find("a"), Value(2));
}

TEST(Dictionary, TellsKeysApartByCase) {
  const Dictionary dictionary{{"dnDEnabled", true}};
  EXPECT_TRUE(dictionary.find("dnDEnabled"));
  EXPECT_FALSE(dictionary.find("dndEnabled"));
  EXPECT_FALSE(dictionary.find(""));
}

TEST(Dictionary, ForgetsARemovedKeyAndPassesOverAnUnknownOne) {
  Dictionary dictionary{{"a", 1}, {"b", 2}};
  dictionary.remove("x");
  dictionary.remove("a");
  EXPECT_EQ(keysOf(dictionary), std::vector<std::string>{"b"});
  dictionary.remove("b");
  EXPECT_TRUE(dictionary.empty());
}

TEST(Dictionary, EqualsAnotherWhateverTheOrderOfKeys) {
  EXPECT_EQ((Dictionary{{"a", 1}, {"b", 2}}), (Dictionary{{"b", 2}, {"a", 1}}));
  EXPECT_NE((Dictionary{{"a", 1}}), (Dictionary{{"a", 1}, {"b", 2}}));
  EXPECT_NE((Dictionary{{"a", 1}, {"b", 2}}), (Dictionary{{"a", 1}}));
  EXPECT_NE((Dictionary{{"a", 1}}), (Dictionary{{"a", 2}}));
  EXPECT_EQ(Dictionary(), Dictionary());
}

TEST(Dictionary, IsCopiedWhole) {
  Dictionary dictionary{{"a", Dictionary{{"deep", 1}}}};
  const Dictionary copy = dictionary;
  dictionary.set("a", 2);
  EXPECT_EQ(*copy.find("a"), Value(Dictionary{{"deep", 1}}));
}

}  // namespace
}  // namespace hushmode::platform
