// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode import: profiles from a file of hushmode export, or from another phone's profiles file.

#include "apps/cli/Commands.h"
#include "apps/client/ProfileStore.h"
#include "apps/profiles/ImportedProfiles.h"
#include "apps/profiles/ProfileDifference.h"
#include "apps/profiles/ProfileWords.h"
#include "apps/terminal/Terminal.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using platform::Dictionary;
using Kind = ProfileDifference::Kind;

namespace {

struct Options {
  std::string file;
  bool dryRun = false, replace = false, json = false;
};

/// The profiles that are new, or changed in what they follow, may follow calendars that are elsewhere.
std::vector<std::string> notesOnCalendars(const std::vector<ProfileDifference>& list,
                                          const std::vector<KnownCalendar>& known) {
  std::vector<std::string> notes;
  for (const ProfileDifference& each : list) {
    for (const std::string& text : textsOf(each.changes.find("calendarIdentifiers"))) {
      const bool isKnown =
          std::any_of(known.begin(), known.end(), [&](const auto& other) { return other.identifier == text; });
      if (isKnown) continue;
      notes.push_back(
          tr("profile \"{0}\" follows the calendar \"{1}\", which this phone does not have; choose with: "
             "hushmode profile edit \"{0}\" --calendars NAMES",
             titleOf(each.given), text));
    }
  }
  return notes;
}

void print(const ProfileDifference& each, const std::vector<KnownCalendar>& calendars, const Options& options) {
  if (options.json) {
    std::cout << lineOf(jsonOf(each)) << '\n';
    return;
  }
  const Terminal terminal = Terminal::of(STDOUT_FILENO);
  const std::string title = harmless(titleOf(each.kind == Kind::Added ? each.given : each.before));
  switch (each.kind) {
    case Kind::Added:
      std::cout << terminal.styled(tr("Added: {}", title), Style::Green) << '\n';
      break;
    case Kind::Changed:
      std::cout << terminal.styled(tr("Changed: {}", title), Style::Yellow) << '\n';
      break;
    case Kind::Removed:
      std::cout << terminal.styled(tr("Removed: {}", title), Style::Red) << '\n';
      break;
    case Kind::Unchanged:
      std::cout << terminal.styled(tr("Unchanged: {}", title), Style::Dim) << '\n';
      break;
  }
  for (const std::string& line : settingLines(each, calendars)) std::cout << "  " << line << '\n';
}

std::vector<ProfileEdit> editsOf(const std::vector<ProfileDifference>& list) {
  std::vector<ProfileEdit> edits;
  for (const ProfileDifference& each : list) {
    if (each.kind == Kind::Added) edits.push_back({ProfileEdit::Kind::Add, titleOf(each.given), 0, each.given});
    if (each.kind == Kind::Changed) {
      edits.push_back({ProfileEdit::Kind::Update, titleOf(each.before), identifierOf(each.before), each.changes});
    }
    // Last: should something go wrong, nothing is lost.
    if (each.kind == Kind::Removed) {
      edits.push_back({ProfileEdit::Kind::Remove, titleOf(each.before), identifierOf(each.before)});
    }
  }
  return edits;
}

/// From here on until the end of the program it cannot be interrupted: it is quick, and half of it helps nobody.
void refuseInterruption() {
  // Ignored, and not blocked: the bus has a thread of its own, which a blocked signal would go to instead.
  for (const int each : {SIGINT, SIGTERM, SIGHUP}) std::signal(each, SIG_IGN);
}

int import(const Options& options) {
  auto imported = readProfiles(options.file);
  const auto store = ProfileStore::open();
  // What the daemon does not take is no difference either.
  if (store->isLive()) {
    for (Dictionary& each : imported.profiles) each = knownSettings(each);
  }
  const auto list = differences(store->list(), imported.profiles, options.replace);
  const auto edits = editsOf(list);
  const auto calendars = knownCalendars();
  auto notes = imported.notes;
  if (store->isLive()) {
    // Only the daemon knows all calendars.
    const auto more = notesOnCalendars(list, calendars);
    notes.insert(notes.end(), more.begin(), more.end());
  }
  if (!options.dryRun && !edits.empty()) {
    refuseInterruption();
    store->apply(edits);
  }
  for (const std::string& each : notes) complain(each);
  for (const ProfileDifference& each : list) print(each, calendars, options);
  if (options.json) return Done;
  if (edits.empty()) std::cout << tr("There is nothing to change.") << '\n';
  if (options.dryRun && !edits.empty()) {
    std::cout << tr("Nothing was changed; without --dry-run it will be.") << '\n';
  }
  if (!options.dryRun && !edits.empty()) {
    tellUnlessLive(*store, std::cout);
  }
  return Done;
}

}  // namespace

void addImportCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("import", tr("Take over profiles from a file"));
  command->add_option("FILE", options->file, tr("A list of profiles (XML or binary), or - for standard input"))
      ->required()
      ->type_name("FILE");
  command->add_flag("--dry-run", options->dryRun, tr("Only show what would change"));
  command->add_flag("--replace", options->replace, tr("Remove the profiles that the file does not have"));
  command->add_flag("--json", options->json, tr("Print one JSON object a line"));
  command->footer(
      tr("A profile of the same title is changed in the settings that the file names; others are added. If one "
         "value is wrong, nothing is imported.\n\nExample:\n  {}",
         "hushmode import profiles.plist --dry-run"));
  command->final_callback([options, &chosen] { chosen = [options] { return import(*options); }; });
}

}  // namespace hushmode::cli
