// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalText.h"

#include "devices/shared/ICalProperty.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <optional>

namespace hushmode::devices {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool startsIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && equalsIgnoringCase(text.substr(0, prefix.size()), prefix);
}

/// Takes the next line off `rest`, without its end.
std::string_view takeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// The component that a BEGIN or END line (`keyword` with its colon) names; absent for other lines.
std::optional<std::string_view> componentNamed(std::string_view line, std::string_view keyword) {
  if (!startsIgnoringCase(line, keyword)) return std::nullopt;
  std::string_view name = line.substr(keyword.size());
  while (name.ends_with(' ') || name.ends_with('\t')) name.remove_suffix(1);
  return name;
}

/// Follows the structure of a text line by line.
class Splitter {
 public:
  explicit Splitter(const ICalProblem& problem) : problem_(problem) {}

  ICalObjects split(std::string_view text) {
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    std::string_view rest = text;
    while (!rest.empty()) {
      const std::string_view before = rest;
      const std::string_view line = takeLine(rest);
      // Most lines are properties of events, which are not looked at here.
      const char first = line.empty() ? ' ' : lowered(line.front());
      if (first == 'b') {
        if (const auto name = componentNamed(line, "BEGIN:")) begin(*name, line);
      } else if (first == 'e') {
        if (const auto name = componentNamed(line, "END:")) end(*name, rest);
      } else if (first == 'x' && open_ == nullptr) {
        property(before);
      }
    }
    const bool whole = !objects_.empty() && !calendarOpen_ && (open_ == nullptr || calendarEnded_);
    reportIfOpen();
    return {std::move(objects_), whole};
  }

 private:
  void begin(std::string_view name, std::string_view line) {
    const bool event = equalsIgnoringCase(name, "VEVENT"), zone = equalsIgnoringCase(name, "VTIMEZONE");
    const bool calendar = equalsIgnoringCase(name, "VCALENDAR");
    if (!event && !zone && !calendar) return;
    // None of these lies in an event or a zone: the one before was not finished.
    reportIfOpen();
    calendarEnded_ = false;
    calendarOpen_ = calendarOpen_ || calendar;
    if (calendar || objects_.empty()) objects_.emplace_back();
    if (calendar) return;
    open_ = event ? &ICalObject::events : &ICalObject::timeZones;
    begun_ = line;
  }

  void end(std::string_view name, std::string_view rest) {
    if (equalsIgnoringCase(name, "VCALENDAR")) {
      calendarOpen_ = false;
      calendarEnded_ = true;
    }
    if (open_ == nullptr) return;
    if (!equalsIgnoringCase(name, open_ == &ICalObject::events ? "VEVENT" : "VTIMEZONE")) return;
    const auto length = static_cast<std::size_t>(rest.data() - begun_.data());
    (objects_.back().*open_).emplace_back(begun_.data(), length);
    open_ = nullptr;
  }

  void property(std::string_view fromHere) {
    if (objects_.empty()) return;
    ICalLineReader reader(fromHere);
    if (!reader.next()) return;
    if (equalsIgnoringCase(reader.name(), "X-WR-CALNAME")) objects_.back().name = textOf(reader.line());
    if (equalsIgnoringCase(reader.name(), "X-WR-TIMEZONE")) objects_.back().timeZoneName = textOf(reader.line());
  }

  void reportIfOpen() {
    if (open_ != nullptr) {
      problem_(begun_, open_ == &ICalObject::events ? tr("the event is not finished (no END:VEVENT) and is left out")
                                                    : tr("the time zone is not finished (no END:VTIMEZONE)"));
    }
    open_ = nullptr;
  }

  const ICalProblem& problem_;
  std::vector<ICalObject> objects_;
  bool calendarOpen_ = false;
  bool calendarEnded_ = false;                                 ///< No component began since.
  std::vector<std::string_view> ICalObject::*open_ = nullptr;  ///< The list that the open component belongs to.
  std::string_view begun_;                                     ///< Its BEGIN line.
};

}  // namespace

bool equalsIgnoringCase(std::string_view text, std::string_view other) {
  return text.size() == other.size() &&
         std::equal(text.begin(), text.end(), other.begin(), [](char a, char b) { return lowered(a) == lowered(b); });
}

std::size_t valueBegin(std::string_view line) {
  bool quoted = false;
  for (std::size_t index = 0; index < line.size(); ++index) {
    if (line[index] == '"') quoted = !quoted;
    if (line[index] == ':' && !quoted) return index + 1;
  }
  return line.size();
}

ICalObjects splitICalText(std::string_view text, const ICalProblem& problem) { return Splitter(problem).split(text); }

std::string_view ICalLineReader::name() const { return line_.substr(0, line_.find_first_of(":;")); }

bool ICalLineReader::next() {
  while (nextUnfolded()) {
    if (const auto name = componentNamed(line_, "BEGIN:")) {
      ++depth_;
    } else if (componentNamed(line_, "END:")) {
      --depth_;
    } else if (depth_ <= 1) {
      return true;
    }
  }
  return false;
}

bool ICalLineReader::nextUnfolded() {
  if (rest_.empty()) return false;
  line_ = takeLine(rest_);
  if (!rest_.starts_with(' ') && !rest_.starts_with('\t')) return true;
  unfolded_ = line_;
  while (rest_.starts_with(' ') || rest_.starts_with('\t')) unfolded_ += takeLine(rest_).substr(1);
  line_ = unfolded_;
  return true;
}

}  // namespace hushmode::devices
