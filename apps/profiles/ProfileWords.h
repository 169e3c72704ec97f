// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The settings of a profile in people's words: "5%", "08:00-17:00", "on".
namespace hushmode::cli {

/// A setting that a word names on the command line ("ringtone") and a key in the file ("ringerVolume").
struct Setting {
  enum class Kind { Flag, Volume, EventStatus, Tone, AllDayEvents };
  std::string_view word, key;
  Kind kind;
  const char* help;  ///< To be translated.
};

/// The settings that take one value each, in the order in which they are shown.
const std::vector<Setting>& profileSettings();

/// Reads what somebody wrote for a setting. Throws simulation::InputError with what was expected.
platform::Value parseSetting(const Setting& setting, const std::string& text);

/// What the file has, for people.
std::string settingText(const Setting& setting, const platform::Dictionary& profile);

/// The same as the command line reads it, in all languages.
std::string writtenSetting(const Setting& setting, const platform::Dictionary& profile);

/// A time of day in the file's form ("5:30 PM") from "17:30", "5:30 PM", "5:30pm" or "5pm"; none for anything else.
std::optional<std::string> fileTimeOf(const std::string& text);

/// The minute of the day of a time in the file's form; none when it has no meaning there.
std::optional<int> minuteOfDay(const std::string& fileTime);

/// "22:00-06:00" or "10pm - 6am" as the two times of the file; none for what are no two times.
std::optional<std::pair<std::string, std::string>> timesOf(const std::string& text);

/// Such times as a window. Throws simulation::InputError for what is no window, and
/// for one that ends before it starts, which a daily window cannot: it says what can.
std::pair<std::string, std::string> parseWindow(const std::string& text);

/// "08:00 to 17:00" in the clock of the user's language, or "all day".
std::string windowText(const platform::Dictionary& profile);

/// A list as people write it, with commas: "Work, Home". Blanks around are dropped, empty entries too.
std::vector<std::string> splitList(const std::string& text);

/// The texts of a list in a profile; none when the value is no list. What is no text there is an empty one.
std::vector<std::string> textsOf(const platform::Value* value);
platform::Array arrayOf(const std::vector<std::string>& texts);
/// With commas between.
std::string joined(const std::vector<std::string>& texts);

}  // namespace hushmode::cli
