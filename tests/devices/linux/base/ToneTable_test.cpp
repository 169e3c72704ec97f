// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/ToneTable.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace hushmode::devices {
namespace {

TEST(ToneTable, IsTheOneThatTheDocumentShows) {
  std::ifstream document(HUSHMODE_SOURCE_FOLDER "/docs/tones.md");
  std::vector<std::string> shown, known;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("| `")) shown.push_back(line);
  }
  for (const Tone& tone : tones()) {
    known.push_back("| `" + std::string(tone.identifier) + "` | `" + std::string(tone.feedback) + "` | `" +
                    std::string(tone.sound) + "` |");
  }
  EXPECT_EQ(shown, known);
}

TEST(ToneTable, HasEachToneOnce) {
  std::set<std::string_view> identifiers;
  for (const Tone& tone : tones()) EXPECT_TRUE(identifiers.insert(tone.identifier).second) << tone.identifier;
}

TEST(ToneTable, HasADefaultForAbsentAndUnknownTones) {
  EXPECT_EQ(toneFor("texttone:Chime").sound, "message-new-instant");
  EXPECT_EQ(toneFor(std::nullopt).sound, "alarm-clock-elapsed");
  for (const char* unknown : {"", "texttone:No such tone", "Chime"}) {
    EXPECT_EQ(&toneFor(unknown), &tones().front()) << unknown;
  }
}

TEST(ToneTable, NamesSoundsThatTheThemeHas) {
  for (const Tone& tone : tones()) {
    EXPECT_TRUE(std::filesystem::exists("/usr/share/sounds/freedesktop/stereo/" + std::string(tone.sound) + ".oga"))
        << tone.sound;
  }
}

}  // namespace
}  // namespace hushmode::devices
