// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/Scenario.h"

#include "apps/simulation/NearFile.h"
#include "apps/simulation/ScenarioParts.h"
#include "apps/simulation/TimeText.h"
#include "apps/simulation/WrongValue.h"
#include "apps/simulation/ZoneNames.h"
#include "apps/words/NearTime.h"
#include "devices/shared/FolderPrefix.h"
#include "devices/shared/PropertyListFile.h"
#include "devices/words/Text.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace hushmode::simulation {

namespace fs = std::filesystem;
using devices::TimeZone;
using platform::Date;

namespace {

constexpr std::uintmax_t largestScenario = 16U << 20U;

std::string contentsOf(const fs::path& file) {
  std::error_code error;
  const std::string expected = tr("a scenario file (JSON)");
  if (fs::is_directory(file, error)) throw wrongFile(file, tr("is a folder"), expected);
  const auto size = fs::file_size(file, error);
  if (error) throw wrongFile(file, error.message(), expected);
  if (size > largestScenario) throw wrongFile(file, tr("larger than 16 MiB"), expected);
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  if (!stream || !(text << stream.rdbuf())) throw wrongFile(file, tr("cannot be read, or is empty"), expected);
  return text.str();
}

fs::path existingFolder(const fs::path& folder) {
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    throw wrongFile(folder, error ? error.message() : tr("not a folder"), tr("a folder of iCalendar files"));
  }
  return folder;
}

std::string machineZoneName() {
  if (const char* name = std::getenv("TZ"); name && *name) return name[0] == ':' ? name + 1 : name;
  std::error_code error;
  const std::string target = fs::read_symlink("/etc/localtime", error).string();
  constexpr std::string_view folder = "zoneinfo/";
  const auto place = target.find(folder);
  return place == std::string::npos ? "UTC" : target.substr(place + folder.size());
}

/// A millisecond before the next local midnight, so that nothing of the next day happens any more.
Date endOfLocalDay(Date date, const TimeZone& zone) { return beginningOfLocalDay(date, zone, 1).addingSeconds(-0.001); }

/// Runs `read` and gives whatever it complains of the place in the scenario that led to it.
template <class Read>
auto readAt(const JsonReader& json, Read read) {
  try {
    return read();
  } catch (const InputError& error) {
    json.fail(error.what());
  }
}

void readCalendars(const JsonReader& json, const fs::path& base, Scenario& scenario) {
  if (json.json().is_string()) {
    scenario.calendarFolder = readAt(json, [&] { return existingFolder(base / json.text()); });
    return;
  }
  for (const JsonReader& each : json.elements()) {
    each.requireKeys({"identifier", "title", "account", "writable", "events"});
    const std::string identifier = each.require("identifier").text();
    scenario.prepare.emplace_back([identifier, title = each.textOr("title", identifier),
                                   account = each.textOr("account", "Local"),
                                   writable = each.booleanOr("writable", true)](devices::SimulatedPhone& phone) {
      phone.calendars().addCalendar(identifier, title, account, writable);
    });
    const auto events = each.find("events");
    if (!events) continue;
    for (const JsonReader& item : events->elements()) {
      item.requireKeys({"uid", "title", "start", "end", "status", "allDay"});
      scenario.prepare.emplace_back([event = readEvent(item, identifier, scenario)](devices::SimulatedPhone& phone) {
        phone.calendars().add(event);
      });
    }
  }
}

void readProfileList(const JsonReader& json, const fs::path& base, Scenario& scenario) {
  if (json.json().is_string()) {
    scenario.profiles = readAt(json, [&] { return readProfiles(base / json.text()); });
    return;
  }
  for (const JsonReader& each : json.elements()) scenario.profiles.emplace_back(readDictionary(each));
}

/// Profiles of a phone name the calendars of its folder so as to tell them from those of accounts; here the folder is
/// all that there is.
void nameCalendarsAsInFolder(platform::Array& profiles) {
  for (platform::Value& each : profiles) {
    const auto* profile = each.as<platform::Dictionary>();
    const auto* value = profile ? profile->find("calendarIdentifiers") : nullptr;
    if (!value || !value->as<platform::Array>()) continue;
    platform::Array identifiers = *value->as<platform::Array>();
    for (platform::Value& identifier : identifiers) {
      const auto* text = identifier.as<std::string>();
      if (text && text->starts_with(devices::folderPrefix)) {
        identifier = text->substr(std::string_view(devices::folderPrefix).size());
      }
    }
    platform::Dictionary named = *profile;
    named.set("calendarIdentifiers", std::move(identifiers));
    each = std::move(named);
  }
}

}  // namespace

std::shared_ptr<const TimeZone> zoneNamed(const std::optional<std::string>& name) {
  const std::string wanted = name.value_or(machineZoneName());
  if (auto zone = TimeZone::named(wanted)) return zone;
  const std::string near = nearestZone(wanted);
  if (name && !near.empty()) {
    throw InputError(tr("the system knows no time zone \"{0}\"; did you mean \"{1}\"?", wanted, near));
  }
  throw InputError(
      name ? tr("the system knows no time zone \"{}\"; expected a name such as Europe/Berlin or UTC", wanted)
           : tr("the system knows no time zone \"{}\"; expected a name such as Europe/Berlin or UTC (from TZ or "
                "/etc/localtime; --zone chooses another)",
                wanted));
}

platform::Array readProfiles(const fs::path& file) {
  using State = devices::PropertyListFileContent::State;
  const auto content = devices::PropertyListFile(file.string()).read();
  if (content.state == State::Missing) {
    throw wrongFile(file, tr("no such file"), tr("a property list of profiles"));
  }
  if (content.state == State::Unreadable) throw InputError(content.error);
  if (const auto* array = content.value->as<platform::Array>()) return *array;
  throw InputError(tr("{}: top level: expected an array of profiles", file.string()));
}

void setSpan(Scenario& scenario, const std::optional<std::string>& from, const std::optional<std::string>& to,
             Date today) {
  const auto parse = [&](const std::string& text, const char* what) {
    const auto time = parseTime(text, *scenario.zone, today);
    if (!time) throw wrongValue(std::string(what) + " " + text, timeFormats(), nearestDay(text).value_or(""));
    return *time;
  };
  scenario.from = from ? parse(*from, "from") : beginningOfLocalDay(today, *scenario.zone);
  if (to) scenario.to = parse(*to, "to");
  if (!to || isDateOnly(*to)) scenario.to = endOfLocalDay(to ? scenario.to : scenario.from, *scenario.zone);
  if (scenario.to < scenario.from) {
    throw InputError(from ? tr("to: {0} is before from ({1})", *to, *from) : tr("to: {0} is before from", *to));
  }
  constexpr double mostSeconds = 50 * 366 * 86400.0;
  if (scenario.to - scenario.from > mostSeconds) throw InputError(tr("to: more than 50 years after from"));
}

Scenario scenarioFrom(const ScenarioOptions& options, Date today) {
  Scenario scenario;
  scenario.zone = zoneNamed(options.zone);
  setSpan(scenario, options.from, options.to, today);
  scenario.profiles = readProfiles(*options.profiles);
  scenario.calendarFolder = existingFolder(*options.calendars);
  nameCalendarsAsInFolder(scenario.profiles);
  return scenario;
}

Scenario readScenario(const fs::path& file, const ScenarioOptions& options) {
  const auto [json, top] = JsonReader::parse(contentsOf(file), file.string());
  top.requireKeys({"zone", "from", "to", "phone", "hostPlans", "profiles", "calendars", "steps", "comment"});
  const fs::path base = file.parent_path();
  Scenario scenario;
  if (options.zone) {
    scenario.zone = zoneNamed(options.zone);
  } else {
    const JsonReader zone = top.require("zone");
    scenario.zone = TimeZone::named(zone.text());
    if (!scenario.zone)
      zone.fail(tr("the system knows no time zone \"{}\"; expected one such as Europe/Berlin", zone.text()));
  }
  const auto textAt = [&](const char* key, const std::optional<std::string>& option) -> std::optional<std::string> {
    if (option) return option;
    const auto value = top.find(key);
    return value ? std::optional(value->text()) : std::nullopt;
  };
  const auto from = textAt("from", options.from);
  if (!from) top.require("from");
  try {
    setSpan(scenario, from, textAt("to", options.to), Date(0));
  } catch (const InputError& error) {
    throw InputError(file.string() + ": " + error.what());
  }
  scenario.hostPlans = top.booleanOr("hostPlans", true);
  if (const auto phone = top.find("phone")) readPhone(*phone, scenario);
  if (options.profiles) {
    scenario.profiles = readProfiles(*options.profiles);
  } else if (const auto profiles = top.find("profiles")) {
    readProfileList(*profiles, base, scenario);
  }
  if (options.calendars) {
    scenario.calendarFolder = existingFolder(*options.calendars);
  } else if (const auto calendars = top.find("calendars")) {
    readCalendars(*calendars, base, scenario);
  }
  if (scenario.calendarFolder) nameCalendarsAsInFolder(scenario.profiles);
  if (const auto steps = top.find("steps")) {
    for (const JsonReader& each : steps->elements()) scenario.steps.push_back(readStep(each, scenario));
  }
  return scenario;
}

}  // namespace hushmode::simulation
