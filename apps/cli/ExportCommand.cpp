// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmode export: profiles as a property list, to keep or to take to another phone.

#include "apps/cli/Commands.h"
#include "apps/client/Daemon.h"
#include "apps/client/ProfileStore.h"
#include "apps/simulation/JsonReader.h"
#include "apps/terminal/Terminal.h"
#include "devices/shared/PropertyListCodec.h"
#include "devices/shared/PropertyListFileBytes.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace hushmode::cli {

using platform::Array;
using platform::Dictionary;
using simulation::InputError;

namespace {

struct Options {
  std::string file = "-", format = "xml";
  std::vector<std::string> names;
};

bool isToStandardOutput(const Options& options) { return options.file == "-"; }

/// A file that can be replaced, and that the user meant.
void requireWritableFile(const Options& options, const std::vector<Dictionary>& profiles) {
  if (isToStandardOutput(options)) {
    if (options.format == "binary" && isTerminal(STDOUT_FILENO)) {
      throw InputError(tr("a terminal shows no binary; name a file: hushmode export FILE --format binary"));
    }
    return;
  }
  const std::filesystem::path path(options.file);
  std::error_code error;
  const bool exists = std::filesystem::exists(path, error);
  if (exists && !std::filesystem::is_regular_file(path, error)) {
    throw InputError(tr("{}: expected a file, or - for standard output", options.file));
  }
  const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
  if (!std::filesystem::is_directory(folder, error)) {
    throw InputError(tr("{0}: there is no folder {1}", options.file, folder.string()));
  }
  const bool isTitle = std::any_of(profiles.begin(), profiles.end(), [&](const Dictionary& each) {
    return textMeaning(each.find("title")) == options.file;
  });
  if (isTitle && !exists) {
    throw InputError(
        tr("\"{0}\" is a profile, and the file comes first: hushmode export FILE \"{0}\", with - for "
           "standard output",
           options.file));
  }
}

/// As they are to be elsewhere: what they do here at this moment is left out.
Array exported(const std::vector<Dictionary>& profiles, const std::vector<std::string>& names) {
  Array list;
  const auto add = [&](Dictionary profile) {
    for (const char* state : {"applied", "updatedDate"}) profile.remove(state);
    list.emplace_back(std::move(profile));
  };
  if (names.empty()) {
    for (const Dictionary& each : profiles) add(each);
  }
  for (const std::string& name : names) add(profileNamed(profiles, name));
  return list;
}

int exportProfiles(const Options& options) {
  const auto profiles = ProfileStore::open()->list();
  requireWritableFile(options, profiles);
  const Array list = exported(profiles, options.names);
  const auto bytes = options.format == "binary" ? devices::serializeBinary(list) : devices::serializeXml(list);
  if (!bytes) throw ServiceError(bytes.error);
  if (isToStandardOutput(options)) {
    std::cout << *bytes.value;
    return Done;
  }
  if (const auto problem = devices::replaceFileBytes(devices::FileCalls::system(), options.file, *bytes.value)) {
    throw ServiceError(options.file + ": " + *problem);
  }
  std::cout << trCount("Wrote {0} profile to {1}.", "Wrote {0} profiles to {1}.", list.size(), harmless(options.file))
            << '\n';
  return Done;
}

}  // namespace

void addExportCommand(CLI::App& program, Command& chosen) {
  const auto options = std::make_shared<Options>();
  CLI::App* command = program.add_subcommand("export", tr("Write profiles to a file"));
  command->add_option("FILE", options->file, tr("Where to; - for standard output"))->type_name("FILE");
  command->add_option("NAME", options->names, tr("Which profiles; all when none is named"))->type_name("PROFILE");
  command->add_option("--format", options->format, tr("xml, or the shorter binary"))
      ->check(CLI::IsMember({"xml", "binary"}))
      ->type_name("xml|binary");
  command->footer(tr("hushmode import reads it again, here or on another phone.\n\nExample:\n  {}",
                     "hushmode export profiles.plist Work Night"));
  command->final_callback([options, &chosen] { chosen = [options] { return exportProfiles(*options); }; });
}

}  // namespace hushmode::cli
