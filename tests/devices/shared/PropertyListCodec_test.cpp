// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListCodec.h"

#include "tests/devices/shared/PropertyListSamples.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace hushmode::devices {
namespace {

using namespace platform;
using samples::xml;

Value parsed(std::string_view bytes) {
  const auto result = parsePropertyList(bytes);
  EXPECT_TRUE(result) << result.error << " in " << bytes;
  return result ? *result.value : Value("unreadable");
}

Value readBack(const Value& value) {
  const auto written = serializeXml(value);
  EXPECT_TRUE(written) << written.error;
  return parsed(written ? *written.value : "");
}

TEST(PropertyListCodec, ReadsWhatItWrote) {
  EXPECT_EQ(readBack(samples::everyKind()), samples::everyKind());
  EXPECT_EQ(readBack(Array()), Value(Array()));
  EXPECT_EQ(readBack(""), Value(""));
  EXPECT_EQ(readBack(" <a> & ]]> \"b\" 'c'\n\t"), Value(" <a> & ]]> \"b\" 'c'\n\t"));
  EXPECT_EQ(readBack(Data(1000, std::byte{0xA5})), Value(Data(1000, std::byte{0xA5})));
  EXPECT_EQ(readBack(Dictionary{{"", 1}, {"<&>", 2}}), Value(Dictionary{{"", 1}, {"<&>", 2}}));
  for (const std::int64_t integer : {INT64_MIN, std::int64_t{-1}, std::int64_t{0}, INT64_MAX}) {
    EXPECT_EQ(readBack(integer), Value(integer));
  }
}

TEST(PropertyListCodec, ReadsTheBinaryFilesOfOthers) {
  EXPECT_EQ(parsed(samples::everyKindBinary()), samples::everyKind());
}

TEST(PropertyListCodec, KeepsTheOrderOfKeys) {
  Dictionary many;
  std::string keys;
  for (int i = 0; i < 1000; ++i) many.set("key" + std::to_string(i * 7919 % 1000), i);
  const Value back = readBack(many);
  const auto* dictionary = back.as<Dictionary>();
  ASSERT_TRUE(dictionary);
  ASSERT_EQ(dictionary->size(), many.size());
  for (std::size_t i = 0; i < many.size(); ++i) EXPECT_EQ(dictionary->begin()[i].key, many.begin()[i].key);
}

TEST(PropertyListCodec, KeepsTheLastOfEqualKeysInTheFirstOnesPlace) {
  EXPECT_EQ(parsed(xml("<dict><key>b</key><true/><key>a</key><false/><key>b</key><integer>2</integer></dict>")),
            Value(Dictionary{{"b", 2}, {"a", false}}));
  const Value twice = parsed(samples::binary({"\xD3\x01\x02\x01\x03\x04\x04",
                                              "\x51"
                                              "b",
                                              "\x51"
                                              "a",
                                              "\x08", "\x10\x02"}));
  EXPECT_EQ(twice, Value(Dictionary{{"b", 2}, {"a", 2}})) << "the key b refers to false first, to 2 last";
}

TEST(PropertyListCodec, KeepsRealsToTheLastBit) {
  for (const double real :
       {0.1, 1.0, 100.0, -1.5, 1.0 / 3, 1e300, -1e-300, 5e-324, std::numeric_limits<double>::max(),
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(), 0.30000001192092896}) {
    const Value back = readBack(real);
    ASSERT_TRUE(back.as<double>()) << real;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(*back.as<double>()), std::bit_cast<std::uint64_t>(real)) << real;
  }
  EXPECT_TRUE(std::isnan(*readBack(std::nan("")).as<double>()));
}

TEST(PropertyListCodec, CutsDatesToWholeSecondsOfItsRange) {
  const struct {
    double date;
    double back;
  } cases[] = {
      {1'715'677'200, 1'715'677'200},
      {1'715'677'200.9, 1'715'677'200},
      {-0.5, -1},
      {978'307'199, 978'307'199},
      {3'125'790'847, 3'125'790'847},
      {3'125'790'848, 3'125'790'847},
      {1e300, 3'125'790'847},
      {-1'169'176'448, -1'169'176'448},
      {-1e300, -1'169'176'448},
      {std::nan(""), 0},
  };
  for (const auto& c : cases) EXPECT_EQ(readBack(Date(c.date)), Value(Date(c.back))) << c.date;
}

TEST(PropertyListCodec, ReplacesWhatXmlCannotHold) {
  const std::string replacement = "\xEF\xBF\xBD";
  const struct {
    std::string text;
    std::string back;
  } cases[] = {
      {std::string("a\0b", 3), "a" + replacement + "b"},
      {"a\x01\x1F\x7F", "a" + replacement + replacement + "\x7F"},
      {"\xFF\xC3", replacement + replacement},
      {"\xC0\x80", replacement + replacement},                    // a null in disguise
      {"\xED\xA0\x80", replacement + replacement + replacement},  // half a surrogate pair
      {"\xEF\xBF\xBE\xF4\x90\x80\x80", replacement + replacement + replacement + replacement + replacement +
                                           replacement + replacement},     // U+FFFE, and beyond U+10FFFF
      {"\xF0\x9F\x94\x95\xEF\xBF\xBD", "\xF0\x9F\x94\x95" + replacement},  // both are fine
  };
  for (const auto& c : cases) {
    EXPECT_EQ(readBack(c.text), Value(c.back)) << c.text;
    EXPECT_EQ(readBack(Dictionary{{c.text, 1}}), Value(Dictionary{{c.back, 1}})) << c.text;
  }
}

TEST(PropertyListCodec, ReadsTheFormsOfXml) {
  const struct {
    const char* text;
    Value value;
  } cases[] = {
      {"<integer> -7\n</integer>", -7},
      {"<integer>+3</integer>", 3},
      {"<integer>0x1F</integer>", 31},
      {"<integer>0</integer>", 0},
      {"<real>.5</real>", 0.5},
      {"<real>+1.5E+3</real>", 1500.0},
      {"<date>2024-02-29T23:59:59Z</date>", Date(1'709'251'199)},
      {"<date>1999-12-31T00:00:00Z</date>", Date(946'598'400)},
      {"<data>\n\tAAEC\n\tAwQ=\n</data>", Data{std::byte{0}, std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4}}},
      {"<data/>", Data()},
      {"<string/>", ""},
      {"<string> a&amp;b&lt;&#65;&#x42;&quot;&apos;&gt; </string>", " a&b<AB\"'> "},
      {"<string>a<!-- <array> -->b<![CDATA[</string>&]]>c</string>", "ab</string>&c"},
      {"<true></true>", true},
      {"<false />", false},
      {"<!-- a --><array><!-- b --><true/></array><!-- c -->", Array{true}},
      {"<dict />", Dictionary()},
  };
  for (const auto& c : cases) EXPECT_EQ(parsed(xml(c.text)), c.value) << c.text;
  EXPECT_EQ(parsed("\xEF\xBB\xBF<plist><true/></plist>"), Value(true)) << "a byte-order mark";
  EXPECT_EQ(parsed("<?xml version='1.0' encoding='UTF-8'?><plist version='1.0'><true/></plist>"), Value(true));
  EXPECT_EQ(parsed("<!DOCTYPE plist SYSTEM \"x.dtd\">\n<!-- a --><plist><true/></plist><!-- b -->"), Value(true));
}

TEST(PropertyListCodec, SaysWhereXmlIsWrongAndWhatWasExpected) {
  const struct {
    std::string text;
    const char* error;
  } cases[] = {
      {"", "line 1: expected <plist>, found the end of the file"},
      {" \n\n", "line 3: expected <plist>, found the end of the file"},
      {"profiles", "line 1: expected a tag, found \"profiles\""},
      {"<true/>", "line 1: expected <plist>, found <true/>"},
      {"<plist", "line 1: expected > after <plist"},
      {"<!-- ", "line 1: expected -->, found the end of the file"},
      {"<!DOCTYPE plist [<!ENTITY a \"b\">]><plist><true/></plist>",
       "line 1: expected > at the end of <!DOCTYPE, found ["},
      {"<?xml version=\"1.0?><plist><true/></plist>", "line 1: expected attributes in closed quotes"},
      {"<!DOCTYPE plist \"><plist><true/></plist>", "line 1: expected attributes in closed quotes"},
      {"<plist version=\"><true/></plist>", "line 1: expected attributes in closed quotes"},
      {"<plist/>", "line 1: expected <plist>, found <plist/>"},
      {"<plist>\n<array>\n<true/>\n", "line 4: expected </array>, found the end of the file"},
      {"<plist>\n<true/>\n", "line 3: expected </plist>, found the end of the file"},
      {"<plist><true/></plist> x", "line 1: expected the end of the file after </plist>"},
      {xml(""), "line 4: expected a value, found </plist>"},
      {xml("<true/><false/>"), "line 3: expected </plist>, found <false/>"},
      {xml("<array>\n</dict>"), "line 4: expected </array>, found </dict>"},
      {xml("<array>text</array>"), "line 3: expected a tag, found \"text\""},
      {xml("<array><foo/></array>"), "line 3: expected a value, found <foo/>"},
      {xml("<array a=\"b\"/>"), "line 3: expected > after <array"},
      {xml("<key>a</key>"), "line 3: expected a value, found <key>"},
      {xml("<dict><true/></dict>"), "line 3: expected <key> or </dict>, found <true/>"},
      {xml("<dict><key>a</key></dict>"), "line 3: expected a value, found </dict>"},
      {xml("<dict><key/><true/></dict>"), "line 3: expected <key> and </key>, found <key/>"},
      {xml("<string>a</array>"), "line 3: expected </string>, found </array>"},
      {xml("<string>a & b</string>"), "line 3: expected an entity like &amp;, found \"& b</strin\""},
      {xml("<string>&#0;</string>"), "line 3: expected an entity like &amp;, found \"&#0;</stri\""},
      {xml("<string>&#xD800;</string>"), "line 3: expected an entity like &amp;, found \"&#xD800;</\""},
      {xml("<string>\n\xFF</string>"), "line 4: expected UTF-8 text without control characters"},
      {xml("<string>\x01</string>"), "line 3: expected UTF-8 text without control characters"},
      {xml("<true>x</true>"), "line 3: expected a tag, found \"x\""},
  };
  for (const auto& c : cases) EXPECT_EQ(parsePropertyList(c.text).error, c.error) << c.text;
}

TEST(PropertyListCodec, RefusesMalformedNumbersDatesAndData) {
  const struct {
    const char* element;
    const char* expectation;
    std::vector<const char*> texts;
  } cases[] = {
      {"integer",
       "a whole number of 64 bits without leading zeros",
       {"", "abc", "12x", "1.5", "0x", "+-1", "010", "99999999999999999999", "9223372036854775808",
        "-9223372036854775809"}},
      {"real", "a decimal number", {"", ".", "x", "1,5", "0x1p3", "1e", "1e+", "--1", "1.5.2"}},
      {"date",
       "a date like 2024-05-14T09:00:00Z, from 1932-12-13 to 2069-01-19",
       {"", "today", "2024-05-14", "2024-05-14T09:00:00", " 2024-05-14T09:00:00Z", "2023-02-29T00:00:00Z",
        "2024-13-01T00:00:00Z", "2024-05-14T24:00:00Z", "2024-05-14T09:60:00Z", "2024-05-14T09:00:60Z",
        "9999-01-01T00:00:00Z", "1900-01-01T00:00:00Z", "2069-01-19T03:14:08Z", "1932-12-13T20:45:51Z",
        "+024-05-14T09:00:00Z"}},
      {"data", "base64", {"A", "AAA", "AA==AA", "A===", "!!!!", "AAAA====", "AA\xC3\xA4"}},
  };
  for (const auto& c : cases) {
    for (const char* text : c.texts) {
      const std::string element = c.element;
      EXPECT_EQ(parsePropertyList(xml("<array>\n<" + element + ">" + text + "</" + element + ">\n</array>")).error,
                "line 4: expected " + std::string(c.expectation) + ", found \"" + text + "\"");
    }
  }
}

TEST(PropertyListCodec, BoundsSizeDepthAndNumber) {
  const PropertyListLimits limits{.bytes = 400, .depth = 3, .values = 5};
  EXPECT_TRUE(parsePropertyList(xml("<array><array><array/></array></array>"), limits));
  EXPECT_EQ(
      parsePropertyList(xml("<array><array><array><array>\n<true/></array></array></array></array>"), limits).error,
      "line 3: nested deeper than 3");
  EXPECT_EQ(parsePropertyList(xml("<array><true/><true/><true/><true/><true/></array>"), limits).error,
            "line 3: more than 5 values");
  EXPECT_EQ(parsePropertyList(xml("<string>" + std::string(400, 'a') + "</string>"), limits).error,
            "expected at most 400 bytes, found 488");
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<array>";
  EXPECT_EQ(parsePropertyList("<plist>" + deep).error, "line 1: nested deeper than 512");
}

TEST(PropertyListCodec, WritesNothingThatItCouldNotReadBack) {
  Value deepest = Array();
  for (int i = 1; i < 512; ++i) deepest = Array{std::move(deepest)};
  EXPECT_EQ(readBack(deepest), deepest);
  deepest = Array{std::move(deepest)};
  const auto written = serializeXml(deepest);
  EXPECT_FALSE(written);
  EXPECT_EQ(written.error, "larger than a property list may be: 67108864 bytes, 1000000 values, 512 levels");
}

}  // namespace
}  // namespace hushmode::devices
