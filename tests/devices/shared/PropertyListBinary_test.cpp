// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListCodec.h"
#include "tests/devices/shared/PropertyListSamples.h"

#include <bit>
#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using namespace platform;
using namespace std::string_literals;
using samples::bigEndian;
using samples::binary;

std::string real(double number) { return bigEndian(std::bit_cast<std::uint64_t>(number), 8); }

TEST(BinaryPropertyList, HoldsEveryKindOfValue) {
  const struct {
    const char* what;
    std::vector<std::string> objects;
    Value value;
  } cases[] = {
      {"true", {"\x09"}, true},
      {"an unsigned byte", {"\x10\xFF"}, 255},
      {"two unsigned bytes", {"\x11\xFF\xFE"}, 65'534},
      {"four unsigned bytes", {"\x12\xFF\xFF\xFF\xFF"}, 4'294'967'295},
      {"eight signed bytes", {"\x13"s + bigEndian(static_cast<std::uint64_t>(-5), 8)}, -5},
      {"sixteen bytes of which eight count", {"\x14"s + bigEndian(0, 8) + bigEndian(INT64_MAX, 8)}, INT64_MAX},
      {"sixteen negative bytes", {"\x14"s + std::string(16, '\xFF')}, -1},
      {"a short real", {"\x22"s + bigEndian(std::bit_cast<std::uint32_t>(0.5F), 4)}, 0.5},
      {"a real", {"\x23" + real(0.1)}, 0.1},
      {"a date", {"\x33" + real(5.75)}, Date(978'307'205.75)},
      {"a date before 2001", {"\x33" + real(-5.25)}, Date(978'307'194.75)},
      {"data", {"\x42\x01\x02"}, Data{std::byte{1}, std::byte{2}}},
      {"an empty text", {"\x50"}, ""},
      {"a text whose length follows",
       {"\x5F\x10\x03"
        "abc"},
       "abc"},
      {"UTF-16", {"\x62\x00\xE4\x26\x15"s}, "\u00e4\u2615"},
      {"a surrogate pair", {"\x62\xD8\x3D\xDD\x15"}, "\U0001F515"},
      {"a shared value",
       {"\xA3\x01\x01\x01",
        "\x51"
        "x"},
       Array{"x", "x", "x"}},
      {"an empty dictionary", {"\xD0"}, Dictionary()},
      {"a control character", {"\x51\x01"}, "\x01"},
  };
  for (const auto& c : cases) {
    const auto result = parsePropertyList(binary(c.objects));
    ASSERT_TRUE(result) << c.what << ": " << result.error;
    EXPECT_EQ(*result.value, c.value) << c.what;
  }
}

TEST(BinaryPropertyList, SaysWhichByteIsWrongAndWhatWasExpected) {
  const std::string date = "expected a date from 1932-12-13 to 2069-01-19";
  const std::string end = "expected the object to end before the table of offsets";
  const struct {
    const char* what;
    std::vector<std::string> objects;
    std::string error;
  } cases[] = {
      {"a null", {"\x00"s}, "byte 8: expected a value, found marker 0"},
      {"a unique identifier", {"\x80\x05"}, "byte 8: expected a value, found marker 128"},
      {"a set", {"\xC1\x01", "\x09"}, "byte 8: expected a value, found marker 193"},
      {"an integer beyond the signed ones",
       {"\x14"s + bigEndian(0, 8) + bigEndian(UINT64_MAX, 8)},
       "byte 8: expected a whole number of 64 bits"},
      {"an integer of 128 bits",
       {"\x14"s + bigEndian(1, 8) + bigEndian(0, 8)},
       "byte 8: expected a whole number of 64 bits"},
      {"an integer of 32 bytes", {"\x15" + std::string(32, '\0')}, "byte 8: expected a whole number of 64 bits"},
      {"a real of one byte", {"\x20\x01"}, "byte 8: expected a real of 4 or 8 bytes"},
      {"a date of four bytes", {"\x32" + bigEndian(0, 4)}, "byte 8: expected a date of 8 bytes"},
      {"a date too late", {"\x33" + real(2'147'483'648.0)}, "byte 8: " + date},
      {"a date too early", {"\x33" + real(-2'147'483'649.0)}, "byte 8: " + date},
      {"a date that is no number", {"\x33" + real(__builtin_nan(""))}, "byte 8: " + date},
      {"a text of other bytes than ASCII", {"\x51\xE4"}, "byte 8: expected ASCII text without null characters"},
      {"a null in a text",
       {"\x53"
        "a\0b"s},
       "byte 8: expected ASCII text without null characters"},
      {"a null in UTF-16",
       {"\x62\x00"
        "a\x00\x00"s},
       "byte 11: expected UTF-16 text without null characters"},
      {"no UTF-16", {"\x60"}, "byte 8: expected UTF-16 text, found none"},
      {"half a surrogate pair", {"\x61\xD8\x00"s}, "byte 9: expected UTF-16 text, found half a surrogate pair"},
      {"the other half", {"\x61\xDC\x00"s}, "byte 9: expected UTF-16 text, found half a surrogate pair"},
      {"a key that is no text", {"\xD1\x01\x01", "\x09"}, "byte 11: expected a text for a key"},
      {"a reference to nothing", {"\xA1\x07"}, "byte 9: expected an object of the table, found reference 7"},
      {"an array in itself", {"\xA1\x00"s}, "byte 8: expected a tree, found a container inside itself"},
      {"a longer circle",
       {"\xA1\x01", "\xD1\x02\x00"s,
        "\x51"
        "a"},
       "byte 10: expected a tree, found a container inside itself"},
      {"a text that ends beyond the objects",
       {"\x5A"
        "abc"},
       "byte 8: " + end},
      {"an array that ends beyond the objects", {"\xA9\x00"s}, "byte 8: " + end},
      {"a length of eight bytes", {"\x5F\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"}, "byte 8: " + end},
      {"a dictionary of half the longest length", {"\xDF\x13\x80\x00\x00\x00\x00\x00\x00\x00"s}, "byte 8: " + end},
      {"a length that is no integer", {"\x5F\x09"}, "byte 9: expected a count of 1 to 8 bytes"},
      {"a length that is missing", {"\x5F"}, "byte 9: expected a count of 1 to 8 bytes"},
  };
  for (const auto& c : cases) EXPECT_EQ(parsePropertyList(binary(c.objects)).error, c.error) << c.what;
}

TEST(BinaryPropertyList, ChecksItsTrailer) {
  const std::string good = binary({"\x09"});
  ASSERT_TRUE(parsePropertyList(good));
  const std::size_t trailer = good.size() - 32;
  const struct {
    const char* what;
    std::size_t at;
    std::string bytes;
    const char* error;
  } cases[] = {
      {"another version", 6, "17", "byte 6: expected version 00"},
      {"offsets of no byte", trailer + 6, "\0"s, "byte 19: expected offsets of 1 to 8 bytes"},
      {"offsets of 9 bytes", trailer + 6, "\x09", "byte 19: expected offsets of 1 to 8 bytes"},
      {"references of no byte", trailer + 7, "\0"s, "byte 20: expected references of 1 to 8 bytes"},
      {"no objects", trailer + 8, bigEndian(0, 8), "byte 21: expected an object, found none"},
      {"very many objects", trailer + 8, bigEndian(UINT64_MAX, 8), "byte 21: more than 1000000 objects"},
      {"more objects than the table", trailer + 8, bigEndian(2, 8),
       "byte 37: expected a table of offsets inside the file"},
      {"a top object that is not there", trailer + 16, bigEndian(1, 8),
       "byte 29: expected the top object in the table, found number 1"},
      {"a table outside", trailer + 24, bigEndian(UINT64_MAX, 8),
       "byte 37: expected a table of offsets inside the file"},
      {"a table in the header", trailer + 24, bigEndian(4, 8), "byte 37: expected a table of offsets inside the file"},
      {"an object in the table", 9, bigEndian(9, 4), "byte 9: expected the offset of an object, before the table"},
      {"an object in the header", 9, bigEndian(0, 4), "byte 9: expected the offset of an object, before the table"},
  };
  for (const auto& c : cases) {
    std::string bytes = good;
    bytes.replace(c.at, c.bytes.size(), c.bytes);
    EXPECT_EQ(parsePropertyList(bytes).error, c.error) << c.what;
  }
  EXPECT_EQ(parsePropertyList("bplist00").error, "byte 8: expected 32 bytes of trailer, found the end");
  for (std::size_t size = 0; size < good.size(); ++size) EXPECT_FALSE(parsePropertyList(good.substr(0, size))) << size;
}

TEST(BinaryPropertyList, MayNotNestOrGrowWithoutBound) {
  std::vector<std::string> chain;
  for (std::size_t i = 1; i <= 60'000; ++i) chain.push_back("\xA1" + bigEndian(i, 2));
  chain.push_back("\x09");
  EXPECT_EQ(parsePropertyList(binary(chain, 2)).error, "byte 1544: nested deeper than 512");

  // Each array holds the next one twice.
  std::vector<std::string> doubling;
  for (std::size_t i = 1; i <= 40; ++i) doubling.push_back("\xA2" + bigEndian(i, 1) + bigEndian(i, 1));
  doubling.push_back("\x09");
  EXPECT_NE(parsePropertyList(binary(doubling)).error.find("more than 1000000 values"), std::string::npos);

  // A long text, referred to often.
  const std::string text = "\x5F\x12" + bigEndian(100'000, 4) + std::string(100'000, 'a');
  EXPECT_NE(parsePropertyList(binary({"\xAF\x11" + bigEndian(1000, 2) + std::string(1000, '\x01'), text}))
                .error.find("more than 67108864 bytes of values"),
            std::string::npos);

  // A shared part that is shallow where it is first met and deep where it is met again.
  std::vector<std::string> shared = {"\xA2\x05\x01", "\xA1\x02", "\xA1\x03", "\xA1\x04",
                                     "\xA1\x05",     "\xA1\x06", "\xA0"};
  EXPECT_TRUE(parsePropertyList(binary(shared), {.depth = 7}));
  EXPECT_EQ(parsePropertyList(binary(shared), {.depth = 6}).error, "byte 17: nested deeper than 6");
}

TEST(BinaryPropertyList, MayOverlapItsObjectsWithoutCostingTime) {
  // 60,000 objects, all but the first at the place of one text of 60,000 bytes.
  constexpr std::size_t kMany = 60'000;
  std::string bytes = "bplist00\xAF\x11" + bigEndian(kMany - 1, 2);
  for (std::size_t i = 1; i < kMany; ++i) bytes += bigEndian(i, 2);
  const std::size_t text = bytes.size();
  bytes += "\x5F\x11" + bigEndian(kMany, 2) + std::string(kMany, 'a');
  const std::size_t table = bytes.size();
  bytes += bigEndian(8, 4);
  for (std::size_t i = 1; i < kMany; ++i) bytes += bigEndian(text, 4);
  bytes += std::string(6, '\0') + bigEndian(4, 1) + bigEndian(2, 1) + bigEndian(kMany, 8) + bigEndian(0, 8) +
           bigEndian(table, 8);
  EXPECT_EQ(parsePropertyList(bytes).error, "byte 120010: more than 67108864 bytes of values");
}

}  // namespace
}  // namespace hushmode::devices
