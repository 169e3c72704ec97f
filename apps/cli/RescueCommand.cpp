// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode rescue: makes the phone as it was when no daemon runs that would.

#include "apps/cli/Commands.h"
#include "apps/client/Daemon.h"
#include "apps/client/DaemonProgram.h"
#include "apps/client/Json.h"
#include "apps/terminal/Terminal.h"
#include "devices/linux/base/Variants.h"
#include "devices/linux/core/Folders.h"
#include "devices/shared/PropertyListFile.h"
#include "devices/words/Text.h"
#include "host/Ledger.h"
#include "store/HMProfilesManager.h"
#include "util/Numbers.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <memory>

namespace hushmode::cli {

using platform::Array;
using platform::Dictionary;

namespace {

struct Options {
  bool dryRun = false, json = false;
};

/// The file of a device path that lies in one of the user's folders.
devices::PropertyListFile fileIn(const std::filesystem::path& folder, std::string_view devicePath) {
  return devices::PropertyListFile((folder / std::filesystem::path(devicePath).filename()).string());
}

/// Whether the ledger is open. Throws ServiceError when that cannot be read.
bool isLedgerOpen(const devices::Folders& folders) {
  const auto file = fileIn(folders.state, host::Ledger::path);
  const auto content = file.read();
  if (content.state == devices::PropertyListFileContent::State::Missing) return false;
  const Array* ledger = content.value ? content.value->as<Array>() : nullptr;
  if (ledger) return !ledger->empty();
  throw ServiceError(
      tr("the note of what is to be put back cannot be read ({}). Remove that file and try again: what is known from "
         "elsewhere is put back then; look after the volumes yourself",
         content.error.empty() ? file.path() : content.error));
}

/// Whether a profile is marked as applied. A file that cannot be read marks none.
bool isAnyApplied(const devices::Folders& folders) {
  const auto content = fileIn(folders.config, HMProfilesManager::profilesPath).read();
  const Array* profiles = content.value ? content.value->as<Array>() : nullptr;
  return profiles && std::any_of(profiles->begin(), profiles->end(), [](const platform::Value& each) {
           const auto* profile = each.as<Dictionary>();
           return profile && booleanMeaning(profile->find("applied"));
         });
}

int nothingToDo(const Options& options) {
  if (!options.json) std::cout << tr("There is nothing to put back.") << '\n';
  return Done;
}

/// While the daemon runs it is the one to put things back, and does so by itself at the end of each profile.
int leaveToDaemon(const Daemon& daemon, const Options& options) {
  const auto applied =
      devices::valueOf<bus::Dictionaries>(daemon.properties(), "Applied").value_or(bus::Dictionaries());
  if (!applied.empty()) {
    const auto title = devices::valueOf<Glib::ustring>(applied.back(), "title").value_or("").raw();
    complain(tr(
        "the daemon runs, and \"{}\" is on; hushmode status tells for what. To have everything back at once: hushmode "
        "off",
        title));
    return No;
  }
  if (!isLedgerOpen(devices::Folders::ofUser())) return nothingToDo(options);
  throw ServiceError(
      tr("the daemon runs and puts back what is missing as soon as it can; hushmode status names what it waits for"));
}

/// How people call what is put back.
std::string nameOf(const std::string& what) {
  if (what == "ringtone") return tr("ringtone");
  if (what == "media") return tr("media");
  if (what == "vibrateOnRing") return tr("vibrate on ring");
  if (what == "vibrateOnSilent") return tr("vibrate on silent");
  return tr("do not disturb");
}

std::string textOf(const Json& value) {
  if (value.is_boolean()) return value.get<bool>() ? tr("on") : tr("off");
  return tr("{0}%", std::lround(value.get<double>() * 100));
}

void print(const Json& value, const Options& options) {
  if (options.json) {
    std::cout << lineOf(value) << '\n';
  } else if (!value["before"].is_null() && (value["done"].get<bool>() || options.dryRun)) {
    std::cout << tr("{0}: {1} to {2}", nameOf(value["what"]), textOf(value["before"]), textOf(value["wanted"])) << '\n';
  }
}

/// What is still not as it was; empty when all is.
std::string missing(const Json& values) {
  std::string names;
  for (const Json& each : values) {
    if (!each["done"].get<bool>()) names += (names.empty() ? "" : ", ") + nameOf(each["what"]);
  }
  return names;
}

int rescue(const Options& options) {
  const auto folders = devices::Folders::ofUser();
  if (const auto daemon = Daemon::running()) return leaveToDaemon(*daemon, options);
  if (!isLedgerOpen(folders) && !isAnyApplied(folders)) return nothingToDo(options);

  std::vector<std::string> arguments = {"--rescue"};
  if (options.dryRun) arguments.emplace_back("--dry-run");
  const Json report = Json::parse(outputOfDaemonProgram(arguments), nullptr, false);
  if (!report.is_object()) throw ServiceError(tr("hushmoded did not say what it has done; see its messages"));
  if (report.contains("error")) throw ServiceError(tr("nothing was put back: {}", report["error"].get<std::string>()));

  const Json& values = report["values"];
  for (const Json& each : values) print(each, options);
  if (options.dryRun) {
    if (!options.json)
      std::cout << (values.empty() ? tr("The phone is as it was.") : tr("Nothing was changed.")) << '\n';
    return Done;
  }
  if (const std::string names = missing(values); !names.empty()) {
    throw ServiceError(tr(
        "not put back, since the phone's service for it is away: {}. It stays noted; try again when the service runs",
        names));
  }
  if (!report["taken"].get<bool>())
    throw ServiceError(tr("the sound server has not taken the volumes; set them yourself"));
  if (!report["saved"].get<bool>()) {
    throw ServiceError(
        tr("the phone is as it was, but that cannot be noted in {0} and {1}; make room there, or make "
           "them writable",
           folders.state.string(), folders.config.string()));
  }
  if (!options.json) std::cout << tr("Everything is as it was.") << '\n';
  return Done;
}

}  // namespace

void addRescueCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command =
      program.add_subcommand("rescue", tr("Put back what is still quiet because the daemon died, without the daemon"));
  command->add_flag("--dry-run", options->dryRun, tr("Only show what would be put back"));
  command->add_flag("--json", options->json, tr("Print one JSON object a line"));
  command->footer(
      tr("While the daemon runs it puts everything back itself; \"hushmode off\" lets it do so at once.\n\nExample:\n"
         "  {}",
         "hushmode rescue --dry-run"));
  command->final_callback([options, &chosen] { chosen = [options] { return rescue(*options); }; });
}

}  // namespace hushmode::cli
