// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListCodec.h"
#include "tests/devices/shared/PropertyListSamples.h"

#include <gtest/gtest.h>
#include <random>

namespace hushmode::devices {
namespace {

/// `bytes` with one to four places changed.
std::string mutated(std::string bytes, std::mt19937& random) {
  const auto below = [&](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
  for (std::size_t changes = 1 + below(4); changes > 0 && !bytes.empty(); --changes) {
    const std::size_t at = below(bytes.size());
    const std::size_t length = 1 + below(std::min<std::size_t>(40, bytes.size() - at));
    switch (below(7)) {
      case 0:
        bytes[at] = static_cast<char>(random());
        break;
      case 1:
        bytes[at] = static_cast<char>(bytes[at] ^ 1 << below(8));
        break;
      case 2:
        bytes.erase(at, length);
        break;
      case 3:
        bytes.insert(at, bytes.substr(below(bytes.size()), length));
        break;
      case 4:
        bytes.replace(at, length, bytes.substr(below(bytes.size()), length));
        break;
      case 5:
        bytes.resize(at);
        break;
      case 6:
        bytes[at] = "\0\xFF<>/&\""[below(7)];
        break;
    }
  }
  return bytes;
}

/// Changes `valid` a number of times. Whatever is read must survive being written and read again; returns how often
/// something was.
int timesReadable(const std::string& valid, int times) {
  EXPECT_TRUE(parsePropertyList(valid));
  std::mt19937 random(20'260'329);  // Always the same.
  int readable = 0;
  for (int i = 0; i < times; ++i) {
    const std::string bytes = mutated(valid, random);
    const auto first = parsePropertyList(bytes, {.bytes = 1 << 20, .depth = 64, .values = 10'000});
    EXPECT_EQ(first.value.has_value(), first.error.empty());
    EXPECT_NE(first.error, "expected a property list, found what libplist cannot read") << bytes;
    if (!first) continue;
    ++readable;
    const auto written = serializeXml(*first.value);
    EXPECT_TRUE(written) << written.error;
    const auto second = parsePropertyList(*written.value);
    EXPECT_TRUE(second) << second.error << " in " << *written.value;
    EXPECT_EQ(serializeXml(*second.value).value, written.value);
  }
  return readable;
}

TEST(PropertyListMutation, NeverCrashesTheReaderOfXml) {
  const int readable = timesReadable(*serializeXml(samples::everyKind()).value, 3000);
  EXPECT_GT(readable, 50) << "many changes are harmless";
  EXPECT_LT(readable, 1000) << "most are not";
}

TEST(PropertyListMutation, NeverCrashesTheReaderOfBinaryFiles) {
  const int readable = timesReadable(samples::everyKindBinary(), 3000);
  EXPECT_GT(readable, 50) << "many changes are harmless";
  EXPECT_LT(readable, 1000) << "most are not";
}

TEST(PropertyListMutation, RefusesWhatLibplistWouldReadInAnotherWay) {
  // The end of a tag may look to be inside quotes; libplist then skips what follows.
  const std::string hidden = "<plist><array><array/></array></plist>";
  for (const std::string& text : {
           "<!DOCTYPE plist \">" + hidden + "<!-- \">" + hidden + " -->",
           "<?xml a=\"?>" + hidden + "<!-- \"?>" + hidden + " -->",
           "<plist a=\"><string>\">" + hidden.substr(7),
       }) {
    EXPECT_NE(parsePropertyList(text).error.find("expected attributes in closed quotes"), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace hushmode::devices
