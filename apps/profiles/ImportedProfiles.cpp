// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ImportedProfiles.h"

#include "apps/client/ProfileStore.h"
#include "apps/profiles/ToneNames.h"
#include "apps/simulation/JsonReader.h"
#include "apps/simulation/NearFile.h"
#include "apps/terminal/Terminal.h"
#include "apps/words/Words.h"
#include "devices/shared/PropertyListCodec.h"
#include "devices/words/Text.h"
#include "host/Host.h"
#include "host/ProfileCheck.h"
#include "host/ProfileTitle.h"
#include "util/Numbers.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace hushmode::cli {

using platform::Array;
using platform::Dictionary;
using platform::Value;
using simulation::InputError;

namespace {

/// What a profile is and was where it comes from, and is not here.
constexpr const char* ownKeys[] = {"identifier", "applied", "updatedDate"};

/// All bytes of a file, a pipe, or standard input; no more than a property list may have.
std::string bytesOf(const std::string& name) {
  const bool isStandardInput = name == "-";
  const int file = isStandardInput ? STDIN_FILENO : ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  const auto fail = [&] { return simulation::wrongFile(name, std::strerror(errno), tr("a list of profiles")); };
  if (file < 0) throw fail();
  std::string bytes;
  char part[65536];
  ssize_t got = 0;
  const std::size_t most = devices::PropertyListLimits().bytes;
  while (bytes.size() <= most && (got = ::read(file, part, sizeof part)) > 0) {
    bytes.append(part, static_cast<std::size_t>(got));
  }
  const auto failure = got < 0 ? std::optional(fail()) : std::nullopt;
  if (!isStandardInput) ::close(file);
  if (failure) throw *failure;
  return bytes;
}

const host::ProfileKey* keyNamed(std::string_view name) {
  const auto& keys = host::profileKeys();
  const auto place = std::find_if(keys.begin(), keys.end(), [&](const auto& each) { return each.name == name; });
  return place == keys.end() ? nullptr : &*place;
}

std::string unknownKeyNote(const std::string& title, const std::string& key) {
  std::vector<std::string> known;
  for (const host::ProfileKey& each : host::profileKeys()) known.emplace_back(each.name);
  const std::string near = simulation::nearestOf(key, known);
  return near.empty() ? tr("profile \"{0}\": \"{1}\" means nothing to this version", title, key)
                      : tr("profile \"{0}\": \"{1}\" means nothing; did you mean \"{2}\"?", title, key, near);
}

/// A profile as it is to be here. `file` and `place` (from 1 on) are for what is said about it.
Dictionary profileOf(const Value& value, const std::string& file, std::size_t place, std::vector<std::string>& notes) {
  const auto* given = value.as<Dictionary>();
  if (!given) throw InputError(tr("{0}: entry {1}: expected a profile", file, place));
  const auto* title = given->find("title") ? given->find("title")->as<std::string>() : nullptr;
  if (!title) throw InputError(tr("{0}: profile {1}: \"title\": expected a text", file, place));
  Dictionary profile;
  for (const auto& [key, each] : *given) {
    if (std::find(std::begin(ownKeys), std::end(ownKeys), key) != std::end(ownKeys)) continue;
    const host::ProfileKey* known = keyNamed(key);
    if (!known) notes.push_back(unknownKeyNote(*title, key));
    // 0 and 1 are volumes, too.
    const auto* whole = each.as<std::int64_t>();
    const bool isWholeVolume = known && known->kind == host::ProfileKeyKind::Volume && whole;
    profile.set(key, isWholeVolume ? Value(static_cast<double>(*whole)) : each);
  }
  profile.set("title", host::trimmedTitle(*title));
  if (const auto* tone =
          profile.find("alertToneIdentifier") ? profile.find("alertToneIdentifier")->as<std::string>() : nullptr;
      tone && !isKnownTone(*tone)) {
    notes.push_back(tr("profile \"{0}\": this phone has no tone \"{1}\", and sounds the default one", *title, *tone));
  }
  try {
    host::checkProfile(knownSettings(profile));
  } catch (const host::EditError& refusal) {
    throw InputError(tr("{0}: profile \"{1}\": {2}", file, *title, inWords(refusal.message())));
  }
  return profile;
}

}  // namespace

ImportedProfiles readProfiles(const std::string& file) {
  const std::string name = file == "-" ? tr("standard input") : file;
  const auto parsed = devices::parsePropertyList(bytesOf(file));
  if (!parsed) throw InputError(name + ": " + parsed.error);
  const Array* list = parsed.value->as<Array>();
  if (!list) throw InputError(tr("{}: expected a list of profiles", name));
  ImportedProfiles imported;
  for (const Value& each : *list) {
    imported.profiles.push_back(profileOf(each, name, imported.profiles.size() + 1, imported.notes));
    const auto isNamesake = [&](const Dictionary& other) {
      return titleOf(other) == titleOf(imported.profiles.back());
    };
    if (std::count_if(imported.profiles.begin(), imported.profiles.end(), isNamesake) > 1) {
      throw InputError(tr("{0}: two profiles are called \"{1}\"", name, titleOf(imported.profiles.back())));
    }
  }
  return imported;
}

}  // namespace hushmode::cli
