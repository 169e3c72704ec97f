// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/OwnCalendar.h"

#include "apps/client/Daemon.h"
#include "apps/client/Places.h"
#include "apps/client/UserTime.h"
#include "devices/linux/base/Variants.h"
#include "devices/shared/PropertyListFileBytes.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>
#include <thread>

namespace hushmode::cli {

using platform::Date;

namespace {

/// The account that they make up.
constexpr std::string_view account = "Hush Mode";

std::string utcStamp(Date date) {
  const auto seconds = static_cast<std::time_t>(date.secondsSince1970());
  std::tm parts{};
  ::gmtime_r(&seconds, &parts);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ", &parts)};
}

/// As RFC 5545 section 3.3.11 has texts.
std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\' || c == ';' || c == ',') result += '\\';
    if (c == '\n') {
      result += "\\n";
    } else if (static_cast<unsigned char>(c) >= 0x20) {
      result += c;
    }
  }
  return result;
}

std::string unescaped(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\\' && at + 1 < text.size()) ++at;
    result += text[at];
  }
  return result;
}

/// Lines have at most 75 bytes (RFC 5545 section 3.1).
std::string folded(std::string line) {
  std::string result;
  while (line.size() > 74) {
    std::size_t cut = 74;
    while (cut > 60 && (static_cast<unsigned char>(line[cut]) & 0xC0) == 0x80) --cut;  // Within no character.
    result += line.substr(0, cut) + "\r\n ";
    line.erase(0, cut);
  }
  return result + line + "\r\n";
}

void replaceFile(const std::filesystem::path& path, const std::string& text) {
  if (const auto problem = devices::replaceFileBytes(devices::FileCalls::system(), path.string(), text)) {
    throw ServiceError(tr("{0} cannot be written: {1}", path.string(), *problem));
  }
}

Date dateOfStamp(const std::string& stamp) {
  std::tm parts{};
  ::strptime(stamp.c_str(), "%Y%m%dT%H%M%SZ", &parts);
  return Date(static_cast<double>(::timegm(&parts)));
}

/// False when there is no such file.
bool removeFile(const std::filesystem::path& path) {
  std::error_code problem;
  const bool removed = std::filesystem::remove(path, problem);
  if (problem) throw ServiceError(tr("{0} cannot be removed: {1}", path.string(), problem.message()));
  return removed;
}

/// The daemon notices a file some moments after it was written or removed; until then whatever it is asked is of the
/// time before. True when it knows the event (or, where it is not `wanted`, no longer does), and when none runs.
bool isNoticed(const std::string& uid, bool wanted = true) {
  const auto daemon = Daemon::running();
  if (!daemon) return true;
  constexpr double span = 8 * 86400;  // Quiet hours on one day of the week are in it.
  const auto arguments =
      devices::argumentsOf(wallClock().secondsSince1970() - span, wallClock().secondsSince1970() + span);
  for (int tries = 0; tries < 100; ++tries) {
    const auto events = daemon->ask<bus::Dictionaries>("ListEvents", arguments);
    const bool known = std::any_of(events.begin(), events.end(),
                                   [&](const auto& each) { return devices::textOf(each, "uid") == uid; });
    if (known == wanted) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
  }
  return false;
}

constexpr std::int64_t daySeconds = 86400;

/// Whether quiet hours begin on the local day that begins at `midnight`, in seconds of the local clock since 1970.
bool isAmong(const std::vector<std::string>& days, std::int64_t midnight) {
  static constexpr const char* names[] = {"TH", "FR", "SA", "SU", "MO", "TU", "WE"};  // 1970 began on a Thursday.
  return days.empty() || std::find(days.begin(), days.end(), names[midnight / daySeconds % 7]) != days.end();
}

/// The local day before now on which quiet hours began last, or would have: over midnight they hold tonight already. Of
/// a repeating event the first occurrence must be one of its rule's (RFC 5545 section 3.8.5.3).
std::int64_t firstMidnight(const std::vector<std::string>& days, const devices::TimeZone& zone) {
  const auto now = zone.localFromUtc(static_cast<std::int64_t>(wallClock().secondsSince1970()));
  std::int64_t midnight = now / daySeconds * daySeconds - daySeconds;
  while (!isAmong(days, midnight)) midnight -= daySeconds;
  return midnight;
}

/// "20261124T220000".
std::string localStamp(std::int64_t local) {
  const std::string stamp = utcStamp(Date(static_cast<double>(local)));
  return stamp.substr(0, stamp.size() - 1);
}

/// The beginnings, in local time, of the quiet hours in the next years that last longer or shorter than the clock says:
/// the clock is changed in them.
std::vector<std::int64_t> unusualNights(int startMinute, int minutes, const std::vector<std::string>& days,
                                        const devices::TimeZone& zone) {
  constexpr int years = 20;
  std::vector<std::int64_t> nights;
  const std::int64_t first = firstMidnight(days, zone);
  for (std::int64_t midnight = first; midnight < first + years * 366 * daySeconds; midnight += daySeconds) {
    const std::int64_t start = midnight + startMinute * 60, end = start + minutes * 60;
    if (!isAmong(days, midnight)) continue;
    if (zone.utcFromLocal(end) - zone.utcFromLocal(start) != end - start) nights.push_back(start);
  }
  return nights;
}

std::string clock(int minute) { return fmt::format("{:02}:{:02}", minute / 60, minute % 60); }

/// A property of the first event in a file that this program wrote.
std::string propertyOf(const std::string& text, const std::string& name) {
  const auto place = text.find("\r\n" + name + ":");
  if (place == std::string::npos) return {};
  const auto start = place + name.size() + 3, end = text.find("\r\n", start);
  return unescaped(text.substr(start, end - start));
}

}  // namespace

std::string OwnCalendar::identifier() const { return fmt::format("{}{}/{}", folderPrefix, account, profile_); }

bool OwnCalendar::isOwn(std::string_view identifier) {
  return identifier.starts_with(fmt::format("{}{}/", folderPrefix, account));
}

std::filesystem::path OwnCalendar::folder() const { return calendarFolder() / account / std::to_string(profile_); }

std::string OwnCalendar::write(const std::string& kind, const std::vector<Properties>& entries) const {
  const Date now = wallClock();
  const std::string uid = fmt::format("{}-{}-{:.0f}", kind, profile_, now.secondsSince1970() * 1000);
  replaceFile(folder() / "displayname", title_ + "\n");
  std::string text = "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Hush Mode//hushmode//EN\r\n";
  for (const Properties& entry : entries) {
    text += "BEGIN:VEVENT\r\n" + folded("UID:" + uid) + folded("DTSTAMP:" + utcStamp(now));
    for (const std::string& each : entry) text += folded(each);
    text += "END:VEVENT\r\n";
  }
  replaceFile(folder() / (kind + ".ics"), text + "END:VCALENDAR\r\n");
  return uid;
}

bool OwnCalendar::addQuiet(Date from, Date to) const {
  return isNoticed(write(
      "quiet", {{"DTSTART:" + utcStamp(from), "DTEND:" + utcStamp(to), "SUMMARY:" + escaped(tr("Quiet for a while")),
                 "STATUS:CONFIRMED", "X-HUSHMODE-PROFILE:" + escaped(title_)}}));
}

bool OwnCalendar::addHours(int startMinute, int endMinute, const std::vector<std::string>& days) const {
  const int length = (endMinute - startMinute + 24 * 60) % (24 * 60);
  std::string list;
  for (const std::string& each : days) list += (list.empty() ? "" : ",") + each;
  const auto zone = userZone();
  const std::string summary = "SUMMARY:" + escaped(tr("Quiet hours"));
  std::vector<Properties> entries{
      {"DTSTART:" + localStamp(firstMidnight(days, *zone) + startMinute * 60), fmt::format("DURATION:PT{}M", length),
       list.empty() ? "RRULE:FREQ=DAILY" : "RRULE:FREQ=WEEKLY;BYDAY=" + list, summary, "STATUS:CONFIRMED",
       "X-HUSHMODE-PROFILE:" + escaped(title_), "X-HUSHMODE-HOURS:" + clock(startMinute) + "-" + clock(endMinute),
       "X-HUSHMODE-DAYS:" + escaped(list.empty() ? "daily" : list)}};
  // All occurrences last equally long (RFC 5545 section 3.8.5.3), but these are to end by the clock as well.
  for (const std::int64_t start : unusualNights(startMinute, length, days, *zone)) {
    entries.push_back({"RECURRENCE-ID:" + localStamp(start), "DTSTART:" + localStamp(start),
                       "DTEND:" + localStamp(start + length * 60), summary, "STATUS:CONFIRMED"});
  }
  return isNoticed(write("hours", entries));
}

bool OwnCalendar::removeHours() const { return removeFile(folder() / "hours.ics"); }

bool OwnCalendar::removeQuiet(const OwnEvent& span) {
  removeFile(calendarFolder() / account / std::to_string(span.owner) / "quiet.ics");
  return isNoticed(span.uid, false);
}

void OwnCalendar::retitle() const {
  if (std::filesystem::exists(folder() / "displayname")) replaceFile(folder() / "displayname", title_ + "\n");
}

void OwnCalendar::remove() const {
  std::error_code problem;
  std::filesystem::remove_all(folder(), problem);
  if (problem) throw ServiceError(tr("{0} cannot be removed: {1}", folder().string(), problem.message()));
}

std::vector<OwnEvent> OwnCalendar::list() {
  std::vector<OwnEvent> events;
  std::error_code none;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(calendarFolder() / account, none)) {
    if (entry.path().extension() != ".ics") continue;
    std::ifstream file(entry.path(), std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    for (auto place = text.find("\r\n "); place != std::string::npos; place = text.find("\r\n ")) text.erase(place, 3);
    OwnEvent event{propertyOf(text, "UID"),
                   propertyOf(text, "SUMMARY"),
                   leadingInteger(entry.path().parent_path().filename().string()),
                   propertyOf(text, "X-HUSHMODE-PROFILE"),
                   {},
                   {},
                   propertyOf(text, "X-HUSHMODE-DAYS")};
    const std::string hours = propertyOf(text, "X-HUSHMODE-HOURS"), end = propertyOf(text, "DTEND");
    if (!hours.empty()) {
      event.hours = hours;
    } else if (!end.empty()) {
      event.until = dateOfStamp(end);
    }
    if (!event.uid.empty()) events.push_back(std::move(event));
  }
  std::sort(events.begin(), events.end(), [](const auto& a, const auto& b) { return a.profile < b.profile; });
  return events;
}

}  // namespace hushmode::cli
