// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode quiet and schedule: quiet from now on for a while, and quiet hours without a calendar account. Both are
// events of Hush Mode's own calendar, so that they begin and end as all others do.

#include "apps/cli/Commands.h"
#include "apps/client/Daemon.h"
#include "apps/client/Json.h"
#include "apps/client/OwnCalendar.h"
#include "apps/client/ProfileStore.h"
#include "apps/client/UserTime.h"
#include "apps/profiles/DayNames.h"
#include "apps/profiles/LengthText.h"
#include "apps/profiles/MomentText.h"
#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/JsonReader.h"
#include "apps/simulation/Scenario.h"
#include "apps/simulation/TimeText.h"
#include "apps/simulation/WrongValue.h"
#include "apps/terminal/Terminal.h"
#include "apps/words/Clock.h"
#include "apps/words/NearTime.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace hushmode::cli {

using platform::Array;
using platform::Date;
using platform::Dictionary;
using simulation::InputError;

namespace {

struct Options {
  std::string length, profile, hours, days;
  bool end = false, list = false, remove = false, json = false;
};

struct Hours {
  int start = 0, end = 0;  ///< Minutes of the day; over midnight when they end before they begin.
};

/// "22:00-06:00" or "10pm - 6am"; none for what are no hours.
std::optional<Hours> hoursOf(const std::string& text) {
  const auto times = timesOf(text);
  if (!times || times->first == times->second) return std::nullopt;
  return Hours{*minuteOfDay(times->first), *minuteOfDay(times->second)};
}

/// "22:00-06:00" on the clock of the user's language.
std::string hoursText(const std::string& text) {
  const auto hours = hoursOf(text);
  return hours ? tr("{0}-{1}", clockWithMinutes(hours->start * 60), clockWithMinutes(hours->end * 60)) : text;
}

/// "22:00 to 06:00", and the days when it is not on all.
std::string spanText(const Hours& hours, const std::string& days) {
  const std::string start = clockWithMinutes(hours.start * 60), end = clockWithMinutes(hours.end * 60);
  return days == "daily" ? tr("{0} to {1}", start, end) : tr("{0} to {1} ({2})", start, end, daysText(days));
}

/// The profile named; without a name, the only enabled one.
Dictionary chosenProfile(ProfileStore& store, const std::string& name) {
  const auto profiles = store.list();
  if (!name.empty()) return profileNamed(profiles, name);
  std::vector<Dictionary> enabled;
  for (const Dictionary& each : profiles) {
    if (booleanMeaning(each.find("enabled"))) enabled.push_back(each);
  }
  if (enabled.empty())
    throw InputError(tr("no profile is enabled; name one with --profile, or make one with: hushmode profile add NAME"));
  if (enabled.size() > 1) {
    throw InputError(tr("several profiles are enabled; say which with --profile, such as --profile \"{}\"",
                        titleOf(enabled.front())));
  }
  return enabled.front();
}

OwnCalendar calendarOf(const Dictionary& profile) { return {identifierOf(profile), titleOf(profile)}; }

/// The profile follows its own calendar from now on, and takes part; says so where it did not.
void follow(ProfileStore& store, const Dictionary& profile) {
  Dictionary changes;
  if (!booleanMeaning(profile.find("enabled"))) changes.set("enabled", true);
  const auto* value = profile.find("calendarIdentifiers");
  const platform::Value own(calendarOf(profile).identifier());
  // Without a list it follows all calendars that can be written to, this one among them.
  if (const Array* list = value ? value->as<Array>() : nullptr;
      list && std::find(list->begin(), list->end(), own) == list->end()) {
    Array identifiers = *list;
    identifiers.push_back(own);
    changes.set("calendarIdentifiers", identifiers);
  }
  if (changes.empty()) return;
  store.update(identifierOf(profile), changes);
  if (changes.find("enabled")) std::cout << tr("Enabled \"{}\".", harmless(titleOf(profile))) << '\n';
}

void requireWholeDay(const Dictionary& profile) {
  if (booleanMeaning(profile.find("allDay"))) return;
  throw InputError(
      tr("\"{0}\" is only on from {1}; let it be on at any time with: hushmode profile edit \"{0}\" --all-day",
         titleOf(profile), windowText(profile)));
}

void warnUnless(bool noticed) {
  if (noticed) return;
  complain(tr("the daemon has not noticed it yet; see hushmode doctor"));
}

/// The title of the profile that the event was made for; that of then when it is no more.
std::string presentTitle(const OwnEvent& event, const std::vector<Dictionary>& profiles) {
  const auto owner = std::find_if(profiles.begin(), profiles.end(),
                                  [&](const auto& each) { return identifierOf(each) == event.owner; });
  return owner == profiles.end() ? event.profile : titleOf(*owner);
}

/// Ends the quiet times that go on: of the profile named, or of all.
int endQuiet(const Options& options) {
  const auto store = ProfileStore::open();
  const auto profiles = store->list();
  auto spans = OwnCalendar::list();
  const std::optional<std::int64_t> wanted =
      options.profile.empty() ? std::nullopt : std::optional(identifierOf(profileNamed(profiles, options.profile)));
  std::erase_if(spans, [&, now = wallClock()](const OwnEvent& each) {
    return !each.until || *each.until <= now || (wanted && each.owner != *wanted);
  });
  if (spans.empty()) throw InputError(tr("no quiet time goes on; see hushmode status"));
  for (const OwnEvent& each : spans) {
    warnUnless(OwnCalendar::removeQuiet(each));
    std::cout << tr("The quiet time of \"{}\" ends in a few seconds.", harmless(presentTitle(each, profiles))) << '\n';
  }
  tellUnlessLive(*store, std::cout);
  return Done;
}

int quiet(const Options& options) {
  if (options.end) return endQuiet(options);
  if (options.length.empty()) throw InputError(tr("quiet: expected how long, such as 90m, 2h or 1h30m; or --end"));
  const int minutes = parseLength(options.length);
  const auto store = ProfileStore::open();
  const auto profile = chosenProfile(*store, options.profile);
  requireWholeDay(profile);
  if (!store->isEnabled()) throw InputError(tr("Hush Mode is off; switch it on with: hushmode on"));
  if (!store->isLive()) Daemon::required();
  const Date now = wallClock();
  const Date end = now.addingSeconds(minutes * 60);
  follow(*store, profile);
  warnUnless(calendarOf(profile).addQuiet(now, end));
  std::cout << tr("\"{0}\" goes on in a few seconds. It ends by itself ({1}), or with: hushmode quiet --end",
                  harmless(titleOf(profile)), momentText(end, now, *userZone()))
            << '\n';
  return Done;
}

/// All quiet hours, or those of the profile named, under the titles that the profiles have now.
std::vector<OwnEvent> quietHours(const Options& options) {
  const auto profiles = ProfileStore::open()->list();
  if (!options.profile.empty()) profileNamed(profiles, options.profile);  // Or says which there are.
  auto events = OwnCalendar::list();
  for (OwnEvent& each : events) each.profile = presentTitle(each, profiles);
  std::erase_if(events, [&](const OwnEvent& each) {
    return !each.hours || (!options.profile.empty() && each.profile != options.profile);
  });
  return events;
}

int listSchedules(const Options& options) {
  const auto events = quietHours(options);
  std::size_t columns = 0;
  for (const OwnEvent& each : events) columns = std::max(columns, columnsOf(harmless(each.profile)));
  for (const OwnEvent& each : events) {
    if (options.json) {
      std::cout << lineOf({{"profile", each.profile}, {"hours", *each.hours}, {"days", each.days}}) << '\n';
    } else {
      std::cout << padded(harmless(each.profile), columns) << "  " << harmless(hoursText(*each.hours)) << "  "
                << harmless(daysText(each.days)) << '\n';
    }
  }
  if (events.empty() && !options.json) std::cout << tr("There are no quiet hours.") << '\n';
  return Done;
}

/// The quiet hours that the profile has already; empty when it has none.
std::string presentHours(const Dictionary& profile) {
  for (const OwnEvent& each : OwnCalendar::list()) {
    if (each.owner != identifierOf(profile) || !each.hours) continue;
    const auto hours = hoursOf(*each.hours);
    return hours ? spanText(*hours, each.days) : harmless(*each.hours);
  }
  return "";
}

int schedule(const Options& options) {
  if (options.list) return listSchedules(options);
  if (options.profile.empty()) throw InputError(tr("schedule: expected the title of a profile, or --list"));
  if (options.remove) {
    if (!calendarOf(profileNamed(ProfileStore::open()->list(), options.profile)).removeHours()) {
      throw InputError(tr("\"{}\" has no quiet hours; see hushmode schedule --list", options.profile));
    }
    std::cout << tr("\"{}\" has no quiet hours any more.", harmless(options.profile)) << '\n';
    return Done;
  }
  if (options.hours.empty()) {
    throw InputError(tr("schedule: expected HOURS behind NAME, such as 22:00-06:00; --list shows what there is"));
  }
  const auto hours = hoursOf(options.hours);
  if (!hours) {
    throw simulation::wrongValue("schedule " + options.hours, tr("two times of day, such as 22:00-06:00 or 10pm-6am"),
                                 nearestHours(options.hours, false).value_or(""));
  }
  const auto days = parseDays(options.days);
  const auto store = ProfileStore::open();
  const auto profile = profileNamed(store->list(), options.profile);
  requireWholeDay(profile);
  const std::string before = presentHours(profile);
  follow(*store, profile);
  warnUnless(calendarOf(profile).addHours(hours->start, hours->end, days));
  const std::string title = harmless(titleOf(profile)), now = spanText(*hours, days.empty() ? "daily" : joined(days));
  std::cout << (before.empty() || before == now ? tr("\"{0}\" is quiet from {1}.", title, now)
                                                : tr("\"{0}\" is quiet from {1}; before: {2}.", title, now, before))
            << '\n';
  return Done;
}

}  // namespace

void addQuietCommands(CLI::App& program, Command& chosen) {
  const auto quietOptions = std::make_shared<Options>(), scheduleOptions = std::make_shared<Options>();
  CLI::App* quietly = program.add_subcommand("quiet", tr("Quiet from now on, for a while"));
  CLI::Option* length =
      quietly->add_option("LENGTH", quietOptions->length, tr("How long, such as 90m, 2h or 1h30m; or --end"))
          ->type_name("LENGTH");
  quietly->add_option("--profile", quietOptions->profile, tr("By which profile"))->type_name("PROFILE");
  quietly->add_flag("--end", quietOptions->end, tr("End such a time now, of all profiles or of the one named"))
      ->excludes(length);
  quietly->footer(tr("Examples:\n  {}", "hushmode quiet 90m\n  hushmode quiet --end"));
  quietly->final_callback([quietOptions, &chosen] { chosen = [quietOptions] { return quiet(*quietOptions); }; });

  CLI::App* hours = program.add_subcommand("schedule", tr("Quiet hours without a calendar, over midnight too"));
  hours->add_option("NAME", scheduleOptions->profile, tr("The profile's title"))->type_name("PROFILE");
  CLI::Option* span = hours->add_option("HOURS", scheduleOptions->hours, tr("From when to when, such as 22:00-06:00"))
                          ->type_name("TIMES");
  hours
      ->add_option("--days", scheduleOptions->days, tr("On which days they begin, such as mon,tue; without: every day"))
      ->type_name("DAYS");
  hours->add_flag("--list", scheduleOptions->list, tr("List the quiet hours"));
  hours->add_flag("--remove", scheduleOptions->remove, tr("Remove those of the profile"))->excludes(span);
  hours->add_flag("--json", scheduleOptions->json, tr("List as JSON objects"));
  hours->footer(tr("Example:\n  {}", "hushmode schedule Night 22:00-06:00 --days sun,mon,tue,wed,thu"));
  hours->final_callback(
      [scheduleOptions, &chosen] { chosen = [scheduleOptions] { return schedule(*scheduleOptions); }; });
}

}  // namespace hushmode::cli
