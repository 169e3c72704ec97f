// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode events: the occurrences in a folder of calendars, as planning sees them.

#include "apps/cli/Commands.h"
#include "apps/client/Json.h"
#include "apps/simulation/NearFile.h"
#include "apps/simulation/Scenario.h"
#include "apps/simulation/TimeText.h"
#include "apps/terminal/Terminal.h"
#include "devices/shared/CalendarFolder.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <optional>
#include <unistd.h>

namespace hushmode::cli {

namespace {

using devices::CalendarOccurrence;

struct Options {
  std::string calendars, from, to;
  std::optional<std::string> zone;
  bool json = false;
};

std::string_view statusName(platform::EKEventStatus status) {
  static constexpr std::array<std::string_view, 4> names{"none", "confirmed", "tentative", "cancelled"};
  return names[static_cast<std::size_t>(status)];
}

void printJson(const devices::CalendarInfo& calendar, const CalendarOccurrence& each, const devices::TimeZone& zone) {
  Json line = Json::object();
  line["calendar"] = calendar.identifier;
  line["uid"] = each.details->uniqueId;
  line["title"] = each.details->title ? Json(*each.details->title) : Json(nullptr);
  line["status"] = statusName(each.details->status);
  line["start"] = simulation::isoTime(each.start, zone);
  line["end"] = simulation::isoTime(each.end, zone);
  line["allDay"] = each.details->allDay;
  std::cout << lineOf(line) << '\n';
}

std::string spanText(const CalendarOccurrence& each, const devices::TimeZone& zone) {
  if (each.details->allDay) return tr("all day");
  return tr("{0} to {1}", simulation::minuteTime(each.start, zone), simulation::minuteTime(each.end, zone));
}

/// The days that an occurrence of several takes, else nothing.
std::string daysText(const CalendarOccurrence& each, const devices::TimeZone& zone) {
  const double lastInstant = std::max(each.end.secondsSince1970() - 1, each.start.secondsSince1970());
  const std::string first = simulation::isoTime(each.start, zone).substr(0, 10);
  const std::string last = simulation::isoTime(platform::Date(lastInstant), zone).substr(0, 10);
  return first == last ? "" : tr(" ({0} to {1})", first, last);
}

void printForPeople(const std::vector<devices::CalendarInfo>& calendars, const std::vector<CalendarOccurrence>& found,
                    platform::Date from, const devices::TimeZone& zone) {
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  std::size_t spanColumns = std::string_view("00:00 to 00:00").size(), calendarColumns = 0;
  for (const CalendarOccurrence& each : found) {
    spanColumns = std::max(spanColumns, columnsOf(spanText(each, zone)));
    calendarColumns = std::max(calendarColumns, columnsOf(harmless(calendars[each.calendar].title)));
  }
  std::string day;
  for (const CalendarOccurrence& each : found) {
    const std::string heading = simulation::dayHeading(std::max(each.start, from), zone);
    if (heading != day) std::cout << (day.empty() ? "" : "\n") << terminal.styled(heading, Style::Bold) << '\n';
    day = heading;
    const auto status = each.details->status;
    std::cout << "  " << padded(spanText(each, zone), spanColumns) << "  "
              << terminal.styled(padded(harmless(calendars[each.calendar].title), calendarColumns), Style::Dim) << "  "
              << harmless(each.details->title.value_or(tr("(no title)"))) << daysText(each, zone);
    if (status == platform::EKEventStatus::Tentative) std::cout << terminal.styled(tr(" (tentative)"), Style::Yellow);
    if (status == platform::EKEventStatus::Canceled) std::cout << terminal.styled(tr(" (cancelled)"), Style::Yellow);
    std::cout << '\n';
  }
  if (found.empty()) std::cout << tr("No events.") << '\n';
}

int listEvents(const Options& options) {
  simulation::Scenario span;
  span.zone = simulation::zoneNamed(options.zone);
  simulation::setSpan(span, options.from, options.to, platform::Date(0));
  std::error_code error;
  if (!std::filesystem::is_directory(options.calendars, error)) {
    throw simulation::wrongFile(options.calendars, error ? error.message() : tr("not a folder"),
                                tr("a folder of iCalendar files"));
  }
  devices::CalendarFolder folder(options.calendars, complain);
  folder.rescan();
  const auto found = folder.occurrences(span.from, span.to, *span.zone);
  if (!options.json) {
    printForPeople(folder.calendars(), found, span.from, *span.zone);
    return Done;
  }
  for (const CalendarOccurrence& each : found) printJson(folder.calendars()[each.calendar], each, *span.zone);
  return Done;
}

}  // namespace

void addEventsCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("events", tr("List the events in a folder of calendars, repeats included"));
  command->add_option("--calendars", options->calendars, tr("A folder of iCalendar files"))
      ->required()
      ->type_name("FOLDER");
  command->add_option("--from", options->from, tr("When to begin"))->required()->type_name("TIME");
  command->add_option("--to", options->to, tr("When to end; a day means its end"))->required()->type_name("TIME");
  command->add_option("--zone", options->zone, tr("The local time zone, such as Europe/Berlin"))->type_name("ZONE");
  command->add_flag("--json", options->json, tr("Print one JSON object a line"));
  command->footer(
      tr("Example:\n"
         "  hushmode events --calendars ~/.calendars --from 2026-11-24 --to 2026-11-24"));
  command->final_callback([options, &chosen] { chosen = [options] { return listEvents(*options); }; });
}

}  // namespace hushmode::cli
