// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalReader.h"

#include "devices/shared/ICalProperty.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>

namespace hushmode::devices {

namespace {

using platform::EKEventStatus;

/// The properties that decide what occurs when, apart from the rules.
constexpr std::array<std::string_view, 10> kPropertiesParsed{"UID",   "DTSTART", "DTEND",  "DURATION",      "STATUS",
                                                             "RRULE", "RDATE",   "EXDATE", "RECURRENCE-ID", "SEQUENCE"};

constexpr std::size_t kLongestLine = 8'192;
constexpr std::size_t kMostRules = 100;
/// Room for 100,000 exceptions.
constexpr std::size_t kLargestEvent = 2U << 20;

/// Enough for a COUNT of a year of days; longer ones are counted when they are first asked for.
constexpr std::int64_t kWorkForCounting = 1'000;

/// What all time zones of a file may cost to describe: more than all zones of the world.
constexpr std::int64_t kWorkForZones = 20'000'000;

bool isParsed(std::string_view name) {
  return std::any_of(kPropertiesParsed.begin(), kPropertiesParsed.end(),
                     [&](std::string_view parsed) { return equalsIgnoringCase(parsed, name); });
}

EKEventStatus statusOf(icalcomponent* event) {
  icalproperty* property = icalcomponent_get_first_property(event, ICAL_STATUS_PROPERTY);
  switch (property != nullptr ? icalproperty_get_status(property) : ICAL_STATUS_NONE) {
    case ICAL_STATUS_CONFIRMED:
      return EKEventStatus::Confirmed;
    case ICAL_STATUS_TENTATIVE:
      return EKEventStatus::Tentative;
    case ICAL_STATUS_CANCELLED:
      return EKEventStatus::Canceled;
    default:
      return EKEventStatus::None;
  }
}

/// A floating time is meant in the zone that the start has.
ICalTime inZoneOf(const ICalTime& start, ICalTime time) {
  if (!time.isDate && time.zone == nullptr) time.zone = start.zone;
  return time;
}

/// Reads the events of one VCALENDAR.
class ObjectReader {
 public:
  ObjectReader(const ICalObject& object, std::string_view source, ICalZones& zones, WorkBudget& zoneWork,
               const ICalProblem& problem)
      : source_(source), problem_(problem), zones_(object.timeZones, zones, zoneWork, problem) {
    // What floats in a calendar that names its zone is meant in that zone.
    if (!object.timeZoneName.empty()) floatingZone_ = zones_.resolve(object.timeZoneName);
  }

  /// `anonymous` counts the events without a UID.
  void read(std::string_view event, std::size_t& anonymous, ICalFile& file);
  std::vector<std::shared_ptr<const TimeZone>> takeZones() { return zones_.takeZones(); }

 private:
  std::string titleOf(std::string_view line);
  void appendLine(std::string_view line, std::string_view name);
  std::optional<ICalTime> timeOf(icalproperty* property, const icaltimetype& value);
  std::optional<ICalTime> timeOf(icalcomponent* event, icalproperty_kind kind);
  bool readTimes(icalcomponent* event, ICalEntry& entry);
  void readLength(icalcomponent* event, ICalEntry& entry);
  void readRecurrenceId(icalcomponent* event, ICalEntry& entry);
  void readRepetition(icalcomponent* event, ICalEntry& entry);
  void readRules(const ICalTime& start, ICalRepetition& repetition);
  void readDates(icalcomponent* event, const ICalTime& start, ICalRepetition& repetition);
  void report(const std::string& what) { problem_(place_, what); }

  std::string_view source_;
  const ICalProblem& problem_;
  ICalZoneResolver zones_;
  const TimeZone* floatingZone_ = nullptr;
  std::set<std::string, std::less<>> unknownZones_;
  std::string_view place_;          ///< The event that is being read.
  std::string text_;                ///< Of the event, what is parsed.
  std::vector<std::string> rules_;  ///< Of the event, the values of its RRULEs.
};

void ObjectReader::read(std::string_view event, std::size_t& anonymous, ICalFile& file) {
  place_ = event;
  text_ = "BEGIN:VEVENT\r\n";
  ICalEntry entry;
  rules_.clear();
  for (ICalLineReader lines(event); lines.next();) {
    if (!entry.title && equalsIgnoringCase(lines.name(), "SUMMARY")) entry.title = KeptText(titleOf(lines.line()));
    if (equalsIgnoringCase(lines.name(), "RRULE")) rules_.emplace_back(lines.line().substr(valueBegin(lines.line())));
    if (!isParsed(lines.name())) continue;
    appendLine(lines.line(), lines.name());
  }
  text_ += "END:VEVENT\r\n";
  if (text_.size() > kLargestEvent || rules_.size() > kMostRules) {
    report(tr("the event is larger than any real one and is left out"));
    return;
  }
  const ICalComponentPointer component = parsedComponent(text_);
  if (!component || icalcomponent_isa(component.get()) != ICAL_VEVENT_COMPONENT) {
    report(tr("the event cannot be understood and is left out"));
    return;
  }

  if (!readTimes(component.get(), entry)) {
    report(tr("the event has no DTSTART that can be understood and is left out"));
    return;
  }
  if (const char* uid = icalcomponent_get_uid(component.get()); uid != nullptr && *uid != '\0') {
    entry.uid = KeptText(uid);
  } else {
    entry.uid = KeptText(std::string(source_) + "#" + std::to_string(++anonymous));
  }
  entry.uidHash = std::hash<std::string_view>()(entry.uid.view());
  entry.status = statusOf(component.get());
  entry.sequence = icalcomponent_get_sequence(component.get());
  readRecurrenceId(component.get(), entry);
  if (!entry.replaced) {
    readRepetition(component.get(), entry);
  }
  file.entries.push_back(std::move(entry));
}

/// What a SUMMARY says, or its beginning where it is too long for any use.
std::string ObjectReader::titleOf(std::string_view line) {
  if (line.size() <= kLongestLine) return textOf(line);
  report(tr("the SUMMARY has {} bytes: only its beginning is kept", line.size()));
  std::size_t end = kLongestLine;
  while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U) --end;  // Not within a character.
  std::size_t slashes = 0;
  while (slashes < end && line[end - slashes - 1] == '\\') ++slashes;
  return textOf(line.substr(0, end - slashes % 2));  // Nor within an escape.
}

/// Adds a line to what is parsed. The parser's time grows with the square of a line's length: long lists are cut into
/// several lines, which mean the same.
void ObjectReader::appendLine(std::string_view line, std::string_view name) {
  if (line.size() <= kLongestLine) {
    text_.append(line).append("\r\n");
    return;
  }
  const std::size_t colon = valueBegin(line) - 1;
  if (!(equalsIgnoringCase(name, "EXDATE") || equalsIgnoringCase(name, "RDATE")) || colon >= kLongestLine) {
    report(tr("the {0} has {1} bytes and is left out", name, line.size()));
    return;
  }
  const std::string_view beforeValue = line.substr(0, colon + 1);
  for (std::string_view values = line.substr(colon + 1); !values.empty();) {
    const std::size_t end = std::min(values.find(',', std::min(kLongestLine / 2, values.size())), values.size());
    text_.append(beforeValue).append(values.substr(0, end)).append("\r\n");
    values.remove_prefix(std::min(end + 1, values.size()));
  }
}

/// The time in the zone that its property names. `value` is what libical made of it.
std::optional<ICalTime> ObjectReader::timeOf(icalproperty* property, const icaltimetype& value) {
  const std::optional<WallTime> wall = wallTimeOf(value);
  if (!wall) return std::nullopt;
  if (value.is_date != 0) return ICalTime{*wall, nullptr, true};
  if (icaltime_is_utc(value) != 0) return ICalTime{*wall, TimeZone::utc().get(), false};
  const std::string_view identifier = timeZoneIdentifierOf(property);
  if (identifier.empty()) return ICalTime{*wall};
  const TimeZone* zone = zones_.resolve(identifier);
  if (zone == nullptr && unknownZones_.emplace(identifier).second) {
    report(tr("no time zone is known as \"{}\": its times are taken for local ones", identifier));
  }
  return ICalTime{*wall, zone};
}

std::optional<ICalTime> ObjectReader::timeOf(icalcomponent* event, icalproperty_kind kind) {
  icalproperty* property = icalcomponent_get_first_property(event, kind);
  if (property == nullptr) return std::nullopt;
  icalvalue* value = icalproperty_get_value(property);
  if (value == nullptr || icalvalue_isa(value) == ICAL_NO_VALUE) return std::nullopt;
  return timeOf(property, icalvalue_get_datetime(value));
}

bool ObjectReader::readTimes(icalcomponent* event, ICalEntry& entry) {
  const std::optional<ICalTime> start = timeOf(event, ICAL_DTSTART_PROPERTY);
  if (!start) return false;
  entry.start = *start;
  if (!start->isDate && start->zone == nullptr) entry.start.zone = floatingZone_;
  readLength(event, entry);
  return true;
}

void ObjectReader::readLength(icalcomponent* event, ICalEntry& entry) {
  ICalTime& start = entry.start;
  entry.allDay = start.isDate;
  if (std::optional<ICalTime> end = timeOf(event, ICAL_DTEND_PROPERTY)) {
    if (start.isDate && end->isDate) {
      entry.length.days = end->day() - start.day();
      // An end on the day itself is a common mistake for the day after.
      if (entry.length.days == 0) entry.length.days = 1;
      return;
    }
    // A date beside a time of day stands for its midnight.
    entry.allDay = start.isDate = false;
    if (end->isDate) *end = {end->wall, start.zone, false};
    entry.length.end = inZoneOf(start, *end);
    if (start.zone == nullptr) start.zone = end->zone;
    return;
  }
  icalproperty* property = icalcomponent_get_first_property(event, ICAL_DURATION_PROPERTY);
  if (property == nullptr) {
    entry.length.days = start.isDate ? 1 : 0;
    return;
  }
  const icaldurationtype duration = icalproperty_get_duration(property);
  const std::int64_t sign = duration.is_neg != 0 ? -1 : 1;
  entry.length.days = sign * (std::int64_t{duration.weeks} * 7 + duration.days);
  entry.length.seconds =
      sign * (std::int64_t{duration.hours} * 3600 + std::int64_t{duration.minutes} * 60 + duration.seconds);
  if (entry.length.seconds != 0) entry.allDay = start.isDate = false;
}

void ObjectReader::readRecurrenceId(icalcomponent* event, ICalEntry& entry) {
  const std::optional<ICalTime> start = timeOf(event, ICAL_RECURRENCEID_PROPERTY);
  if (!start) return;
  icalproperty* property = icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY);
  icalparameter* range = icalproperty_get_first_parameter(property, ICAL_RANGE_PARAMETER);
  const bool thisAndFuture = range != nullptr && icalparameter_get_range(range) == ICAL_RANGE_THISANDFUTURE;
  entry.replaced = std::make_unique<ICalReplaced>(ICalReplaced{inZoneOf(entry.start, *start), thisAndFuture});
}

void ObjectReader::readRepetition(icalcomponent* event, ICalEntry& entry) {
  ICalRepetition repetition;
  readRules(entry.start, repetition);
  readDates(event, entry.start, repetition);
  forEachProperty(event, ICAL_EXDATE_PROPERTY, [&](icalproperty* property) {
    if (const auto time = timeOf(property, icalproperty_get_exdate(property))) {
      repetition.exceptions.push_back(inZoneOf(entry.start, *time));
    }
  });
  if (repetition.rules.empty() && repetition.dates.empty() && repetition.exceptions.empty()) return;
  entry.repetition = std::make_unique<ICalRepetition>(std::move(repetition));
}

void ObjectReader::readRules(const ICalTime& start, ICalRepetition& repetition) {
  for (const std::string& text : rules_) {
    auto rule = text.size() <= kLongestLine ? recurrenceRuleOf(text, start) : std::nullopt;
    if (!rule) {
      report(tr("the RRULE cannot be understood: without it, the event occurs only where DTSTART and RDATE say"));
      continue;
    }
    repetition.rules.emplace_back(std::move(*rule), start.wall);
    // Where the end of a series is known, it is not looked at any more after that.
    WorkBudget budget(kWorkForCounting);
    repetition.rules.back().count(budget);
  }
}

void ObjectReader::readDates(icalcomponent* event, const ICalTime& start, ICalRepetition& repetition) {
  forEachProperty(event, ICAL_RDATE_PROPERTY, [&](icalproperty* property) {
    const icaldatetimeperiodtype value = icalproperty_get_rdate(property);
    if (const auto time = timeOf(property, value.time)) {
      repetition.dates.push_back({inZoneOf(start, *time), std::nullopt});
      return;
    }
    const auto first = timeOf(property, value.period.start);
    if (!first) return;
    ICalLength length;
    if (const auto last = timeOf(property, value.period.end)) {
      length.end = inZoneOf(start, *last);
    } else {
      length.seconds = icaldurationtype_as_int(value.period.duration);
    }
    repetition.dates.push_back({inZoneOf(start, *first), length});
  });
}

}  // namespace

ICalFile readICalFile(std::string_view text, std::string_view source, ICalZones& zones, const ICalProblem& problem) {
  ICalFile file;
  const auto [objects, whole] = splitICalText(text, problem);
  file.whole = whole;
  WorkBudget zoneWork(kWorkForZones);
  std::size_t events = 0, anonymous = 0;
  for (const ICalObject& object : objects) events += object.events.size();
  file.entries.reserve(events);
  for (const ICalObject& object : objects) {
    if (file.calendarName.empty()) file.calendarName = object.name;
    ObjectReader reader(object, source, zones, zoneWork, problem);
    for (const std::string_view event : object.events) reader.read(event, anonymous, file);
    auto used = reader.takeZones();
    file.zones.insert(file.zones.end(), std::make_move_iterator(used.begin()), std::make_move_iterator(used.end()));
  }
  return file;
}

}  // namespace hushmode::devices
