// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarLayout.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// What a folder of calendars was found to hold, in a form that is quick to load.
///
/// It is only for speed: whoever loads it compares each file's signature, and reads anew what is in doubt. The file may
/// be deleted at any time; one that is damaged, of another version, or made for another key counts as missing.
struct CalendarCache {
  /// A text in `texts`.
  struct Text {
    std::uint32_t offset = 0, length = 0;
  };
  struct Calendar {
    Text identifier;
    std::uint32_t firstFile = 0, files = 0;
    std::uint32_t firstOccurrence = 0, occurrences = 0;
    /// Whether all that occurs is here. Where that is too much, nothing is.
    std::uint32_t complete = 0;
  };
  struct File {
    CalendarFileSignature signature;
    Text path, calendarName;
    Text problems;  ///< The lines about what could not be used.
    std::uint32_t firstUid = 0, uids = 0;
    /// Whether the signature tells: a file that was just written may change again without showing it.
    std::uint32_t settled = 0;
    std::uint32_t unused = 0;
  };
  struct Occurrence {
    std::int64_t start = 0, end = 0;  ///< Seconds since 1970, UTC.
    Text title, uid;
    std::uint32_t file = 0;  ///< Of those that have the entry, one. Index into `files`.
    std::uint8_t status = 0, allDay = 0, hasTitle = 0, unused = 0;
  };

  std::int64_t from = 0, to = 0;        ///< The occurrences are those that overlap this span. Seconds since 1970, UTC.
  std::vector<Calendar> calendars;      ///< Ordered by identifier.
  std::vector<File> files;              ///< Those of a calendar together, ordered by path.
  std::vector<Occurrence> occurrences;  ///< Those of a calendar together.
  std::vector<std::uint64_t> uids;      ///< Hashes; those of a file together.
  std::string texts;

  std::string_view view(Text text) const { return std::string_view(texts).substr(text.offset, text.length); }
  Text keep(std::string_view text);

  /// `key` names all that the content depends on besides the files: program, folder, time zones.
  static std::optional<CalendarCache> load(const std::filesystem::path& file, std::string_view key);
  /// Replaces the file. Answers whether that was possible; if not, the next one reads the calendars anew.
  bool save(const std::filesystem::path& file, std::string_view key) const;
};

}  // namespace hushmode::devices
