// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode profile: the profiles, in people's words.

#include "apps/cli/Commands.h"
#include "apps/client/Json.h"
#include "apps/client/OwnCalendar.h"
#include "apps/client/Places.h"
#include "apps/client/ProfileStore.h"
#include "apps/profiles/ProfileEditor.h"
#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/JsonReader.h"
#include "apps/terminal/Terminal.h"
#include "devices/words/Text.h"
#include "host/ProfileTitle.h"
#include "util/Numbers.h"

#include <iostream>
#include <map>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using platform::Array;
using platform::Dictionary;
using platform::Value;
using simulation::InputError;

namespace {

/// What may be said about a profile on the command line.
struct Options {
  std::string name, newTitle;
  std::map<std::string, std::string> values;  ///< By the settings' words.
  bool allDay = false, editor = false, json = false;
  std::optional<std::string> window, calendars, networks, title;
};

std::string listed(const std::vector<std::string>& texts) { return texts.empty() ? tr("none") : joined(texts); }

/// Networks need not be known yet, but a near miss is said.
void hintAtNetworks(const std::vector<std::string>& names) {
  const auto known = knownNetworks();
  if (!known) return;
  std::vector<std::string> titles;
  for (const KnownNetwork& each : *known) titles.push_back(each.name);
  for (const std::string& name : names) {
    if (std::find(titles.begin(), titles.end(), name) != titles.end()) continue;
    const std::string near = simulation::nearestOf(name, titles);
    complain(near.empty() ? tr("the phone has never joined a network called \"{}\"; it is kept all the same", name)
                          : tr("the phone has never joined a network called \"{0}\", but one called \"{1}\"; it is "
                               "kept as you wrote it",
                               name, near));
  }
}

Dictionary changesOf(const Options& options) {
  Dictionary changes;
  if (options.title) changes.set("title", host::trimmedTitle(*options.title));
  for (const Setting& setting : profileSettings()) {
    const auto given = options.values.find(std::string(setting.word));
    if (given != options.values.end()) changes.set(setting.key, parseSetting(setting, given->second));
  }
  if (options.allDay && options.window) throw InputError(tr("--all-day and --window exclude each other"));
  if (options.allDay) changes.set("allDay", true);
  if (options.window) {
    const auto [start, end] = parseWindow(*options.window);
    changes.set("allDay", false);
    changes.set("startTime", start);
    changes.set("endTime", end);
  }
  if (options.calendars) {
    changes.set("calendarIdentifiers", arrayOf(calendarsNamed(splitList(*options.calendars), knownCalendars())));
  }
  if (options.networks) {
    const auto names = splitList(*options.networks == "none" ? "" : *options.networks);
    hintAtNetworks(names);
    changes.set("wifiNetworks", arrayOf(names));
  }
  return changes;
}

Json jsonOf(const Dictionary& profile) {
  static const auto utc = devices::TimeZone::utc();
  return cli::jsonOf(Value(profile), *utc);
}

int list(const Options& options) {
  const auto profiles = ProfileStore::open()->list();
  if (options.json) {
    for (const Dictionary& each : profiles) std::cout << lineOf(jsonOf(each)) << '\n';
    return Done;
  }
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  if (profiles.empty()) std::cout << tr("There are no profiles. Make one with: hushmode profile add NAME") << '\n';
  std::size_t columns = 0;
  for (const Dictionary& each : profiles) columns = std::max(columns, columnsOf(harmless(titleOf(each))));
  const std::size_t stateColumns =
      std::max({columnsOf(tr("on now")), columnsOf(tr("waiting")), columnsOf(tr("disabled"))});
  for (const Dictionary& each : profiles) {
    const bool enabled = booleanMeaning(each.find("enabled")), applied = booleanMeaning(each.find("applied"));
    const std::string state = applied ? tr("on now") : enabled ? tr("waiting") : tr("disabled");
    std::cout << terminal.styled(padded(harmless(titleOf(each)), columns), Style::Bold) << "  "
              << terminal.styled(padded(state, stateColumns), applied   ? Style::Green
                                                              : enabled ? Style::Plain
                                                                        : Style::Dim)
              << "  " << windowText(each) << '\n';
  }
  return Done;
}

int show(const Options& options) {
  const auto profile = profileNamed(ProfileStore::open()->list(), options.name);
  if (options.json) {
    std::cout << lineOf(jsonOf(profile)) << '\n';
    return Done;
  }
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  const auto calendars = knownCalendars();
  std::vector<std::string> titles;
  for (const std::string& each : textsOf(profile.find("calendarIdentifiers"))) {
    titles.push_back(calendarTitle(each, calendars));
  }
  const auto line = [](std::string_view word, const std::string& text) {
    std::cout << "  " << padded(std::string(word), 16) << harmless(text) << '\n';
  };
  std::cout << terminal.styled(harmless(titleOf(profile)), Style::Bold)
            << (booleanMeaning(profile.find("applied")) ? "  " + terminal.styled(tr("on now"), Style::Green) : "")
            << '\n';
  line("window", windowText(profile));
  line("calendars", profile.find("calendarIdentifiers") ? listed(titles) : tr("all that can be written to"));
  line("networks", listed(textsOf(profile.find("wifiNetworks"))));
  for (const Setting& setting : profileSettings()) line(setting.word, settingText(setting, profile));
  return Done;
}

void tellSaved(const ProfileStore& store, const std::string& text) {
  std::cout << text << '\n';
  tellUnlessLive(store, std::cout);
}

int add(const Options& options) {
  const auto store = ProfileStore::open();
  const std::string title = host::trimmedTitle(options.name);
  // What most people want of a profile: quiet, seen, and none of their all-day reminders.
  Dictionary profile{
      {"title", title},        {"enabled", true}, {"allDay", true},          {"ringerVolume", 0.0},
      {"playBackVolume", 0.0}, {"vibrate", true}, {"showOnStatusBar", true}, {"allDayEventsIgnored", true}};
  std::vector<std::string> writable;
  for (const KnownCalendar& each : knownCalendars()) {
    // Quiet hours of another profile are none of this one's.
    if (each.writable && !OwnCalendar::isOwn(each.identifier)) writable.push_back(each.identifier);
  }
  profile.set("calendarIdentifiers", arrayOf(writable));
  for (const auto& [key, value] : changesOf(options)) profile.set(key, value);
  store->add(profile);
  tellSaved(*store, tr("Added \"{}\".", harmless(title)));
  return Done;
}

bool hasQuietHours(const Dictionary& profile) {
  const auto events = OwnCalendar::list();
  return std::any_of(events.begin(), events.end(),
                     [&](const OwnEvent& each) { return each.hours && each.owner == identifierOf(profile); });
}

/// Quiet hours and times are set and ended by commands of their own, not by leaving the calendar out of a list.
void keepOwnCalendar(const Dictionary& profile, Dictionary& changes) {
  const std::string own = OwnCalendar(identifierOf(profile), titleOf(profile)).identifier();
  const auto before = textsOf(profile.find("calendarIdentifiers"));
  if (!changes.find("calendarIdentifiers") || std::find(before.begin(), before.end(), own) == before.end()) return;
  auto calendars = textsOf(changes.find("calendarIdentifiers"));
  if (std::find(calendars.begin(), calendars.end(), own) == calendars.end()) calendars.push_back(own);
  changes.set("calendarIdentifiers", arrayOf(calendars));
}

int edit(const Options& options) {
  const auto store = ProfileStore::open();
  const auto profile = profileNamed(store->list(), options.name);
  if (options.editor && !changesOf(options).empty()) {
    throw InputError(tr("--editor and other settings exclude each other"));
  }
  auto changes = options.editor ? editedInEditor(profile, knownCalendars()) : changesOf(options);
  if (changes.empty()) {
    if (!options.editor) throw InputError(tr("nothing to change; see hushmode profile edit --help"));
    std::cout << tr("Nothing was changed.") << '\n';
    return Done;
  }
  keepOwnCalendar(profile, changes);
  store->update(identifierOf(profile), changes);
  if (changes.find("title")) OwnCalendar(identifierOf(profile), titleOf(changes)).retitle();
  tellSaved(*store, tr("Changed \"{}\".", harmless(titleOf(profile))));
  const bool isCut =
      booleanMeaning(profile.find("allDay")) && changes.find("allDay") && !booleanMeaning(changes.find("allDay"));
  if (isCut && hasQuietHours(profile)) {
    complain(tr("its quiet hours hold only within its window now; see hushmode schedule --list"));
  }
  return Done;
}

int remove(const Options& options) {
  const auto store = ProfileStore::open();
  const auto profile = profileNamed(store->list(), options.name);
  store->remove(identifierOf(profile));
  OwnCalendar(identifierOf(profile), titleOf(profile)).remove();
  tellSaved(*store, tr("Removed \"{}\".", harmless(titleOf(profile))));
  return Done;
}

int setEnabled(const Options& options, bool enabled) {
  const auto store = ProfileStore::open();
  const auto profile = profileNamed(store->list(), options.name);
  store->update(identifierOf(profile), {{"enabled", enabled}});
  const std::string title = harmless(titleOf(profile));
  tellSaved(*store, enabled ? tr("Enabled \"{}\".", title) : tr("Disabled \"{}\".", title));
  return Done;
}

int copy(const Options& options) {
  const auto store = ProfileStore::open();
  // Without what means nothing here, which may have come by an import: a profile is not added with it.
  Dictionary profile = knownSettings(profileNamed(store->list(), options.name));
  if (profile.find("calendarIdentifiers")) {
    auto calendars = textsOf(profile.find("calendarIdentifiers"));
    std::erase_if(calendars, OwnCalendar::isOwn);  // Quiet hours are not copied.
    profile.set("calendarIdentifiers", arrayOf(calendars));
  }
  const std::string original = titleOf(profile), title = host::trimmedTitle(options.newTitle);
  profile.set("title", title);
  store->add(profile);
  tellSaved(*store, tr("Copied \"{0}\" to \"{1}\".", harmless(original), harmless(title)));
  return Done;
}

/// What a setting takes, in the words of ValueKinds.h.
std::string valueOf(const Setting& setting) {
  switch (setting.kind) {
    case Setting::Kind::Flag:
      return "on|off";
    case Setting::Kind::Volume:
      return "VOLUME";
    case Setting::Kind::EventStatus:
      return "any|confirmed|tentative";
    case Setting::Kind::Tone:
      return "TONE";
    case Setting::Kind::AllDayEvents:
      return "count|ignore";
  }
  throw std::logic_error("a setting of no kind");
}

void addSettings(CLI::App& command, Options& options) {
  command.add_flag("--all-day", options.allDay, tr("The window is the whole day"));
  command.add_option("--window", options.window, tr("The daily window, such as 08:00-17:00 or 8am-5pm"))
      ->type_name("TIMES");
  command.add_option("--calendars", options.calendars, tr("Calendars whose events switch it on, with commas between"))
      ->type_name("CALENDARS");
  command.add_option("--networks", options.networks, tr("WiFi networks that switch it on, or none"))
      ->type_name("NETWORKS");
  for (const Setting& setting : profileSettings()) {
    const std::string word(setting.word);
    command
        .add_option_function<std::string>(
            "--" + word, [&options, word](const std::string& text) { options.values[word] = text; }, tr(setting.help))
        ->type_name(valueOf(setting));
  }
}

}  // namespace

void addProfileCommand(CLI::App& program, Command& chosen) {
  CLI::App* profile = program.add_subcommand("profile", tr("List, show, add, change and remove profiles"));
  profile->require_subcommand(1);
  profile->footer(tr("Example:\n  hushmode profile list"));
  const auto action = [&](const char* name, const std::string& help, const char* example, auto work) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = profile->add_subcommand(name, help);
    command->footer(tr("Example:\n  {}", example));
    command->final_callback([options, work, &chosen] { chosen = [options, work] { return work(*options); }; });
    return std::pair(command, options);
  };
  const auto named = [&](const auto& made) {
    made.first->add_option("NAME", made.second->name, tr("The profile's title"))->required()->type_name("PROFILE");
    return made;
  };
  const auto listing = action("list", tr("List the profiles"), "hushmode profile list", list);
  listing.first->add_flag("--json", listing.second->json, tr("Print one JSON object a line"));
  const auto showing = named(action("show", tr("Show all settings of a profile"), "hushmode profile show Work", show));
  showing.first->add_flag("--json", showing.second->json, tr("Print a JSON object"));
  const auto adding =
      action("add", tr("Add a profile"), "hushmode profile add Work --window 08:00-17:00 --ringtone 5%", add);
  adding.first->add_option("NAME", adding.second->name, tr("Its title"))->required()->type_name("TITLE");
  addSettings(*adding.first, *adding.second);
  const auto editing = named(
      action("edit", tr("Change settings of a profile"), "hushmode profile edit Work --media 20% --icon on", edit));
  addSettings(*editing.first, *editing.second);
  editing.first->add_option("--title", editing.second->title, tr("Its new title"))->type_name("TITLE");
  editing.first->add_flag("--editor", editing.second->editor, tr("Open it as text in $EDITOR"));
  named(action("remove", tr("Remove a profile"), "hushmode profile remove Work", remove));
  named(action("enable", tr("Let a profile take part again"), "hushmode profile enable Work",
               [](const Options& options) { return setEnabled(options, true); }));
  named(action("disable", tr("Let a profile rest"), "hushmode profile disable Work",
               [](const Options& options) { return setEnabled(options, false); }));
  const auto copying = named(
      action("copy", tr("Copy a profile under another title"), "hushmode profile copy Work \"Work at home\"", copy));
  copying.first->add_option("NEW", copying.second->newTitle, tr("The title of the copy"))
      ->required()
      ->type_name("TITLE");
}

}  // namespace hushmode::cli
