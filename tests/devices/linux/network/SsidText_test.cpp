// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/network/SsidText.h"

#include <gtest/gtest.h>
#include <map>
#include <string>

namespace hushmode::devices {
namespace {

using namespace std::string_literals;

TEST(SsidText, LeavesReadableNamesAsTheyAre) {
  for (const char* name : {"Home Net", "B\xC3\xBCro \xE2\x98\x95", "a\\b", "50% & <more>", "\\X41"}) {
    EXPECT_EQ(ssidText(name), name);
  }
}

TEST(SsidText, WritesWhatIsNoTextAsHexadecimalBytes) {
  EXPECT_EQ(ssidText("Caf\xE9"), "Caf\\xE9");
  EXPECT_EQ(ssidText("\xC3"), "\\xC3");
  EXPECT_EQ(ssidText("a\0b"s), "a\\x00b");
  EXPECT_EQ(ssidText("a\nb\x7F"), "a\\x0Ab\\x7F");
  EXPECT_EQ(ssidText("\xFF B\xC3\xBCro"), "\\xFF B\xC3\xBCro") << "the rest stays readable";
  EXPECT_EQ(ssidText("\xED\xA0\x80"), "\\xED\\xA0\\x80") << "a surrogate is no text";
}

TEST(SsidText, GivesNoTwoNamesTheSameText) {
  EXPECT_EQ(ssidText("Caf\\xE9"), "Caf\\x5CxE9") << "a readable name that looks like a written one";
  EXPECT_EQ(ssidText("\\\xE9"), "\\x5C\\xE9");
  std::map<std::string, std::string> names;
  const std::string alphabet("\\xE9\xE9\x5C\n", 7);
  for (std::size_t number = 0; number < 7 * 7 * 7 * 7 * 7; ++number) {
    std::string name;
    for (std::size_t rest = number, place = 0; place < 5; ++place, rest /= 7) name += alphabet[rest % 7];
    const auto [entry, isNew] = names.emplace(ssidText(name), name);
    ASSERT_EQ(entry->second, name) << entry->first;
  }
}

}  // namespace
}  // namespace hushmode::devices
