// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Numbers that stand in texts and in property lists, read leniently and never by the locale.

#include "util/Numbers.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace hushmode {
namespace {

using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::Value;

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(LeadingInteger, SkipsWhiteSpaceAndTakesTheLeadingDigits) {
  const struct {
    std::string text;
    std::int64_t number;
  } cases[] = {
      {"8", 8},      {"08", 8},  {"0", 0},   {" \t\n\v\f\r30", 30},
      {"12abc", 12}, {"1 2", 1}, {"7.9", 7}, {"9223372036854775807", largest},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    EXPECT_EQ(leadingInteger(each.text), each.number);
  }
}

TEST(LeadingInteger, IsZeroWithoutLeadingDigitsASignIncluded) {
  for (const char* text : {"", "   ", "abc", "a1", "-5", "+5", "- 5", ".5",
                           "\xC2\xA0"
                           "5"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(leadingInteger(text), 0);
  }
}

TEST(LeadingInteger, SaturatesAtTheLargestInteger) {
  EXPECT_EQ(leadingInteger("9223372036854775808"), largest);
  EXPECT_EQ(leadingInteger(std::string(200, '9') + " AM"), largest);
}

TEST(LeadingFloat, TakesTheLeadingDecimalNumberUpToASecondPoint) {
  const struct {
    const char* text;
    float number;
  } cases[] = {
      {"13.1.2", 13.1F}, {"10.0", 10.0F},   {"9.3.5", 9.3F},  {"12", 12.0F},         {"12.", 12.0F},
      {".5", 0.5F},      {"  7.25", 7.25F}, {"-1.5x", -1.5F}, {"+1.5", 1.5F},        {"1e3", 1.0F},
      {"1,5", 1.0F},     {"0x10", 0.0F},    {"007", 7.0F},    {"12.9999", 12.9999F}, {"13.1 beta", 13.1F},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    EXPECT_EQ(leadingFloat(each.text), each.number);
  }
}

TEST(LeadingFloat, RoundsToTheNearestSinglePrecisionNumber) {
  EXPECT_EQ(leadingFloat("12.9999999"), 13.0F);
  EXPECT_EQ(leadingFloat("0.3"), 0.3F);
  EXPECT_NE(static_cast<double>(leadingFloat("0.3")), 0.3);
}

TEST(LeadingFloat, IsZeroWhereThereIsNoNumber) {
  for (const char* text :
       {"", " ", "beta", ".", "-", "--5", "+-5", "-+5", "inf", "-infinity", "nan", "NaN(1)", "v13"}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(leadingFloat(text), 0.0F);
  }
}

TEST(LeadingFloat, IsInfiniteBeyondItsRangeAndZeroBelowIt) {
  const std::string huge(60, '9'), tiny = "0." + std::string(60, '0') + "1";
  EXPECT_EQ(leadingFloat(huge), infinity);
  EXPECT_EQ(leadingFloat("-000" + huge), -infinity);
  EXPECT_EQ(leadingFloat(tiny), 0.0F);
  EXPECT_EQ(leadingFloat("000" + tiny), 0.0F);
}

TEST(Meaning, OfAnAbsentValueIsFalseZeroOrNoText) {
  EXPECT_FALSE(booleanMeaning(nullptr));
  EXPECT_EQ(integerMeaning(nullptr), 0);
  EXPECT_EQ(floatMeaning(nullptr), 0.0F);
  EXPECT_EQ(textMeaning(nullptr), std::nullopt);
}

TEST(Meaning, OfDatesDataArraysAndDictionariesIsFalseZeroOrNoText) {
  for (const Value& value : {Value(Date(5)), Value(Data(3)), Value(Array{1, 2}), Value(Dictionary{{"a", 1}})}) {
    SCOPED_TRACE(value.variant().index());
    EXPECT_FALSE(booleanMeaning(&value));
    EXPECT_EQ(integerMeaning(&value), 0);
    EXPECT_EQ(floatMeaning(&value), 0.0F);
    EXPECT_EQ(textMeaning(&value), std::nullopt);
  }
}

TEST(BooleanMeaning, FollowsTheValuesOwnType) {
  const struct {
    Value value;
    bool meaning;
  } cases[] = {
      {true, true}, {false, false}, {1, true}, {-1, true}, {0, false}, {0.5, true}, {0.0, false}, {2, true},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.value.variant().index());
    EXPECT_EQ(booleanMeaning(&each.value), each.meaning);
  }
}

TEST(BooleanMeaning, OfATextIsTrueWhenItBeginsWithYesTrueOrANumberOtherThanZero) {
  const struct {
    const char* text;
    bool meaning;
  } cases[] = {
      {"YES", true}, {"yes", true}, {"true", true}, {"T", true},   {"1", true},      {"007", true},  {" 9", true},
      {"-3", true},  {"+y", true},  {"NO", false},  {"no", false}, {"false", false}, {"0", false},   {"000", false},
      {"", false},   {"on", false}, {"0.5", false}, {" ", false},  {"-", false},     {"0yes", true},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    const Value value(each.text);
    EXPECT_EQ(booleanMeaning(&value), each.meaning);
  }
}

TEST(IntegerMeaning, FollowsTheValuesOwnType) {
  const struct {
    Value value;
    std::int64_t meaning;
  } cases[] = {
      {42, 42},          {smallest, smallest}, {true, 1},     {false, 0},  {2.9, 2},  {-2.9, -2}, {1e30, largest},
      {-1e30, smallest}, {std::nan(""), 0},    {"12 pm", 12}, {" -7", -7}, {"+7", 7}, {"x", 0},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.meaning);
    EXPECT_EQ(integerMeaning(&each.value), each.meaning);
  }
}

TEST(FloatMeaning, NarrowsToSinglePrecision) {
  const struct {
    Value value;
    float meaning;
  } cases[] = {
      {0.3, 0.3F},   {0.0625, 0.0625F}, {1, 1.0F},         {true, 1.0F},        {false, 0.0F},
      {"0.5", 0.5F}, {"loud", 0.0F},    {1e300, infinity}, {-1e300, -infinity},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.meaning);
    EXPECT_EQ(floatMeaning(&each.value), each.meaning);
  }
  const Value third(0.3);
  EXPECT_EQ(static_cast<double>(floatMeaning(&third)), 0.30000001192092896);
}

TEST(TextMeaning, IsTheTextItselfOrANumberWritten) {
  const Value text(" Work "), empty(""), integer(12), real(0.5), boolean(true);
  EXPECT_EQ(textMeaning(&text), " Work ");
  EXPECT_EQ(textMeaning(&empty), "");
  EXPECT_EQ(textMeaning(&integer), "12");
  EXPECT_EQ(textMeaning(&real), "0.5");
  EXPECT_EQ(textMeaning(&boolean), "1");
}

}  // namespace
}  // namespace hushmode
