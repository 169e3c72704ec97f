// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The formatter behind every log line, and the texts that it writes for values and objects.

#include "util/Format.h"

#include <clocale>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <locale>

namespace hushmode {
namespace {

using platform::Array;
using platform::Data;
using platform::Date;
using platform::Dictionary;
using platform::Value;

class Named : public platform::Object {
 public:
  explicit Named(std::string name) : name_(std::move(name)) {}
  std::string description() const override { return "<" + name_ + ">"; }

 private:
  std::string name_;
};

TEST(Formatted, FillsThePlaceholdersInOrder) {
  EXPECT_EQ(formatted("%@ - %d", "Profile", 2), "Profile - 2");
  EXPECT_EQ(formatted("%s|%d|%ld|%f|%@", "a", 1, 2L, 0.5, "b"), "a|1|2|0.500000|b");
  EXPECT_EQ(formatted("%@%@", "x", "y"), "xy");
}

TEST(Formatted, LeavesATextWithoutPlaceholdersAsItIs) {
  EXPECT_EQ(formatted(""), "");
  EXPECT_EQ(formatted("no placeholders..."), "no placeholders...");
  EXPECT_EQ(formatted("unused", 1, "two"), "unused");
}

TEST(Formatted, LeavesAPlaceholderWithoutAnArgumentAndAnyOtherPercentSign) {
  EXPECT_EQ(formatted("%@ %@", "one"), "one %@");
  EXPECT_EQ(formatted("%d", std::string("%d")), "%d");
  EXPECT_EQ(formatted("100% of %x %%@ %", "all"), "100% of %x %all %");
}

TEST(Formatted, DoesNotReadPlaceholdersInAnArgument) { EXPECT_EQ(formatted("%@, %@", "%@", "b"), "%@, b"); }

TEST(Formatted, FillsAPlaceholderWithAnyKindOfArgument) {
  EXPECT_EQ(formatted("%d", "text"), "text");
  EXPECT_EQ(formatted("%f", 3), "3.000000");
  EXPECT_EQ(formatted("%@", 3), "3");
  EXPECT_EQ(formatted("%@ %d", true, false), "1 0");
}

TEST(Formatted, WritesIntegersOfAnySize) {
  EXPECT_EQ(formatted("%ld", std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(formatted("%ld", std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
}

TEST(Formatted, WritesNumbersWithSixDecimalsRounded) {
  const struct {
    double number;
    const char* text;
  } cases[] = {
      {0, "0.000000"},
      {0.0625, "0.062500"},
      {0.30000001192092896, "0.300000"},
      {1.0000004, "1.000000"},
      {2.9999996, "3.000000"},
      {-0.5, "-0.500000"},
      {1e15, "1000000000000000.000000"},
      {std::numeric_limits<double>::infinity(), "inf"},
      {std::nan(""), "nan"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    EXPECT_EQ(formatted("%f", each.number), each.text);
  }
  EXPECT_EQ(formatted("%f", 0.1F), "0.100000");
  EXPECT_EQ(formatted("%f", std::numeric_limits<double>::max()).size(), 309U + 7U);
}

TEST(Formatted, WritesWhatIsAbsentAsNull) {
  EXPECT_EQ(formatted("%@", std::optional<std::string>()), "(null)");
  EXPECT_EQ(formatted("%@", std::optional<Date>()), "(null)");
  EXPECT_EQ(formatted("%@", std::shared_ptr<Named>()), "(null)");
  EXPECT_EQ(formatted("'%@'", std::optional<std::string>("")), "''");
}

TEST(Formatted, WritesObjectsByTheirDescription) {
  const auto a = std::make_shared<Named>("a"), b = std::make_shared<Named>("b");
  EXPECT_EQ(formatted("%@", a), "<a>");
  EXPECT_EQ(formatted("%@", std::vector{a, b, std::shared_ptr<Named>()}), "(<a>, <b>, (null))");
  EXPECT_EQ(formatted("%@", std::vector<std::string>{"Home", "Office"}), "(Home, Office)");
  EXPECT_EQ(formatted("%@", std::vector<std::string>{}), "()");
}

/// Numbers with a comma and grouped digits, as some languages write them.
class CommaNumbers : public std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(Formatted, DoesNotFollowTheLocale) {
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaNumbers));
  const std::string formerC = std::setlocale(LC_ALL, nullptr);
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "ru_RU.UTF-8"}) {
    if (std::setlocale(LC_NUMERIC, name)) break;
  }
  EXPECT_EQ(formatted("%f %d", 1234.5, 1234567), "1234.500000 1234567");
  EXPECT_EQ(describe(Value(0.5)), "0.5");
  std::setlocale(LC_ALL, formerC.c_str());
  std::locale::global(before);
}

TEST(Description, OfADateIsItsUtcTime) {
  const struct {
    double seconds;
    const char* text;
  } cases[] = {
      {0, "1970-01-01 00:00:00 +0000"},
      {1715677200, "2024-05-14 09:00:00 +0000"},
      {1715677200.999, "2024-05-14 09:00:00 +0000"},
      {-0.5, "1969-12-31 23:59:59 +0000"},
      {951782399, "2000-02-28 23:59:59 +0000"},
      {1e15, "1000000000000000.000000"},
      {std::nan(""), "nan"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.text);
    EXPECT_EQ(describe(Date(each.seconds)), each.text);
  }
}

TEST(Description, OfValuesFollowsTheirTypeAndKeepsTheOrderOfKeys) {
  EXPECT_EQ(describe(Value(true)), "1");
  EXPECT_EQ(describe(Value(-7)), "-7");
  EXPECT_EQ(describe(Value(0.3)), "0.3");
  EXPECT_EQ(describe(Value(Data(3))), "<3 bytes>");
  EXPECT_EQ(describe(Value(Array{})), "()");
  EXPECT_EQ(describe(Dictionary()), "{}");
  const Dictionary nested{{"z", 1}, {"a", Array{"x", Dictionary{{"k", Date(0)}}}}};
  EXPECT_EQ(describe(nested), "{z = 1, a = (x, {k = 1970-01-01 00:00:00 +0000})}");
  EXPECT_EQ(describe(Value(nested)), describe(nested));
}

}  // namespace
}  // namespace hushmode
