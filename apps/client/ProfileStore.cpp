// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/client/ProfileStore.h"

#include "apps/client/Daemon.h"
#include "apps/client/UserTime.h"
#include "apps/simulation/JsonReader.h"
#include "apps/words/Words.h"
#include "devices/linux/base/Variants.h"
#include "devices/linux/core/Folders.h"
#include "devices/linux/core/WriterLock.h"
#include "devices/shared/GuardedPropertyListFile.h"
#include "devices/shared/PropertyListFile.h"
#include "devices/words/Text.h"
#include "host/Host.h"
#include "host/ProfileCheck.h"
#include "util/Numbers.h"

#include <algorithm>
#include <iostream>

namespace hushmode::cli {

using platform::Array;
using platform::Dictionary;
using simulation::InputError;

namespace {

constexpr std::string_view enabledKey = "com.quorvel.hushmode.enabled";

class DaemonStore final : public ProfileStore {
 public:
  explicit DaemonStore(Daemon daemon) : daemon_(std::move(daemon)) {}

  std::vector<Dictionary> list() override {
    std::vector<Dictionary> profiles;
    for (const auto& each : daemon_.ask<bus::Dictionaries>("ListProfiles")) profiles.push_back(bus::profileFrom(each));
    return profiles;
  }
  std::int64_t add(const Dictionary& profile) override {
    return daemon_.ask<gint64>("AddProfile", devices::argumentsOf(bus::busForm(profile)));
  }
  void update(std::int64_t identifier, const Dictionary& changes) override {
    daemon_.call("UpdateProfile", devices::argumentsOf(static_cast<gint64>(identifier), bus::busForm(changes)));
  }
  void remove(std::int64_t identifier) override {
    daemon_.call("DeleteProfile", devices::argumentsOf(static_cast<gint64>(identifier)));
  }
  void apply(const std::vector<ProfileEdit>& edits) override {
    for (auto each = edits.begin(); each != edits.end(); ++each) {
      try {
        make(*each);
      } catch (const std::runtime_error& refusal) {
        if (each == edits.begin()) throw;
        throw ServiceError(tr("{0}: {1}; before that were done: {2}; the rest was not", each->title, refusal.what(),
                              titlesOf(edits.begin(), each)));
      }
    }
  }
  bool isEnabled() override { return devices::valueOf<bool>(daemon_.properties(), "Enabled").value_or(false); }
  void setEnabled(bool enabled) override { daemon_.call("SetEnabled", devices::argumentsOf(enabled)); }
  bool isLive() const override { return true; }

 private:
  void make(const ProfileEdit& edit) {
    switch (edit.kind) {
      case ProfileEdit::Kind::Add:
        add(knownSettings(edit.values));
        return;
      case ProfileEdit::Kind::Update:
        update(edit.identifier, knownSettings(edit.values));
        return;
      case ProfileEdit::Kind::Remove:
        remove(edit.identifier);
        return;
    }
  }

  static std::string titlesOf(std::vector<ProfileEdit>::const_iterator from,
                              std::vector<ProfileEdit>::const_iterator to) {
    std::string titles;
    for (; from != to; ++from) titles += (titles.empty() ? "" : ", ") + from->title;
    return titles;
  }

  Daemon daemon_;
};

void makePrivate(const std::filesystem::path& folder) {
  try {
    devices::makePrivateFolder(folder);
  } catch (const std::runtime_error& problem) {
    throw ServiceError(problem.what());
  }
}

/// The lock that the daemon holds while it runs.
std::unique_ptr<devices::WriterLock> lockIn(const std::filesystem::path& folder) {
  try {
    return std::make_unique<devices::WriterLock>(folder);
  } catch (const devices::WriterLock::Held& lock) {
    throw ServiceError(
        tr("another program is changing the profiles (it holds {}); try again in a moment", std::string(lock.what())));
  } catch (const std::runtime_error& problem) {
    throw ServiceError(tr("the profiles cannot be locked: {}", std::string(problem.what())));
  }
}

class FileStore final : public ProfileStore {
 public:
  FileStore() : folders_(devices::Folders::ofUser()) {}

  std::vector<Dictionary> list() override {
    const auto content = devices::PropertyListFile(profilesPath()).read();
    using State = devices::PropertyListFileContent::State;
    if (content.state == State::Missing) return {};
    const Array* array = content.value ? content.value->as<Array>() : nullptr;
    if (!array)
      throw InputError(content.error.empty() ? tr("{}: expected a list of profiles", profilesPath()) : content.error);
    std::vector<Dictionary> profiles;
    for (const auto& each : *array) {
      if (const auto* profile = each.as<Dictionary>()) profiles.push_back(*profile);
    }
    return profiles;
  }

  std::int64_t add(const Dictionary& profile) override {
    std::int64_t identifier = 0;
    change([&](std::vector<Dictionary>& profiles) {
      host::checkProfile(profile);
      identifier = addTo(profiles, profile);
    });
    return identifier;
  }

  void update(std::int64_t identifier, const Dictionary& changes) override {
    change([&](std::vector<Dictionary>& profiles) {
      host::checkProfile(changes);
      updateIn(profiles, identifier, changes);
    });
  }

  void remove(std::int64_t identifier) override {
    change([&](std::vector<Dictionary>& profiles) { profiles.erase(placeOf(profiles, identifier)); });
  }

  void apply(const std::vector<ProfileEdit>& edits) override {
    change([&](std::vector<Dictionary>& profiles) {
      for (const ProfileEdit& each : edits) {
        host::checkProfile(knownSettings(each.values));
        if (each.kind == ProfileEdit::Kind::Add) addTo(profiles, each.values);
        if (each.kind == ProfileEdit::Kind::Update) updateIn(profiles, each.identifier, each.values);
        if (each.kind == ProfileEdit::Kind::Remove) profiles.erase(placeOf(profiles, each.identifier));
      }
    });
  }

  bool isEnabled() override {
    const auto content = devices::PropertyListFile(settingsPath()).read();
    const auto* settings = content.value ? content.value->as<Dictionary>() : nullptr;
    return settings && booleanMeaning(settings->find(enabledKey));
  }

  void setEnabled(bool enabled) override {
    const auto lock = lockIn(folders_.state);
    makePrivate(folders_.config);
    devices::PropertyListFile file(settingsPath());
    const auto content = file.read();
    const auto* present = content.value ? content.value->as<Dictionary>() : nullptr;
    Dictionary settings = present ? *present : Dictionary();
    settings.set(enabledKey, enabled);
    if (const auto problem = file.write(settings)) throw ServiceError(*problem);
  }

  bool isLive() const override { return false; }

 private:
  /// One change of the file. What no profile can hold is wrong input.
  template <class Change>
  void change(Change work) {
    const auto lock = lockIn(folders_.state);
    makePrivate(folders_.config);
    std::vector<Dictionary> profiles = list();
    try {
      work(profiles);
    } catch (const host::EditError& refusal) {
      throw InputError(inWords(refusal.message()));
    }
    Array array;
    for (Dictionary& each : profiles) array.emplace_back(std::move(each));
    devices::GuardedPropertyListFile file(profilesPath(),
                                          [](const std::string& line) { std::cerr << "hushmode: " << line << '\n'; });
    if (const auto problem = file.write(array)) throw ServiceError(*problem);
  }

  static std::int64_t addTo(std::vector<Dictionary>& profiles, const Dictionary& profile) {
    Dictionary added{{"identifier", freeIdentifier(profiles)}};
    for (const auto& [key, value] : profile) added.set(key, value);
    requireFreeTitle(profile, profiles, identifierOf(added));
    profiles.push_back(added);
    return identifierOf(added);
  }

  static void updateIn(std::vector<Dictionary>& profiles, std::int64_t identifier, const Dictionary& changes) {
    Dictionary& profile = *placeOf(profiles, identifier);
    requireFreeTitle(changes, profiles, identifier);
    for (const auto& [key, value] : changes) profile.set(key, value);
  }

  static void requireFreeTitle(const Dictionary& values, const std::vector<Dictionary>& profiles,
                               std::int64_t identifier) {
    const auto title = textMeaning(values.find("title"));
    for (const Dictionary& each : profiles) {
      if (title && identifierOf(each) != identifier && textMeaning(each.find("title")) == title) {
        throw InputError(tr("another profile is called \"{}\"", *title));
      }
    }
  }

  /// Identifiers are the second of the creation, and two may be created in one.
  static std::int64_t freeIdentifier(const std::vector<Dictionary>& profiles) {
    auto identifier = static_cast<std::int64_t>(wallClock().secondsSince1970());
    const auto isTaken = [&](const Dictionary& each) { return identifierOf(each) == identifier; };
    while (std::any_of(profiles.begin(), profiles.end(), isTaken)) ++identifier;
    return identifier;
  }

  static std::vector<Dictionary>::iterator placeOf(std::vector<Dictionary>& profiles, std::int64_t identifier) {
    const auto place = std::find_if(profiles.begin(), profiles.end(),
                                    [&](const Dictionary& each) { return identifierOf(each) == identifier; });
    if (place == profiles.end()) throw InputError(tr("no profile has the identifier {}", identifier));
    return place;
  }

  std::string profilesPath() const { return (folders_.config / "com.quorvel.hushmode.profiles.plist").string(); }
  std::string settingsPath() const { return (folders_.config / "com.quorvel.hushmode.plist").string(); }

  devices::Folders folders_;
};

}  // namespace

std::unique_ptr<ProfileStore> ProfileStore::open() {
  if (auto daemon = Daemon::running()) return std::make_unique<DaemonStore>(*daemon);
  return std::make_unique<FileStore>();
}

void tellUnlessLive(const ProfileStore& store, std::ostream& out) {
  if (store.isLive()) return;
  out << tr("The daemon does not run; start it with: systemctl --user start hushmoded") << '\n';
}

std::string titleOf(const Dictionary& profile) { return textMeaning(profile.find("title")).value_or(tr("(no title)")); }

std::int64_t identifierOf(const Dictionary& profile) { return integerMeaning(profile.find("identifier")); }

Dictionary knownSettings(const Dictionary& profile) {
  Dictionary known;
  for (const host::ProfileKey& each : host::profileKeys()) {
    if (const platform::Value* value = profile.find(each.name)) known.set(each.name, *value);
  }
  return known;
}

Dictionary profileNamed(const std::vector<Dictionary>& profiles, const std::string& name) {
  std::vector<std::string> titles;
  for (const Dictionary& each : profiles) {
    if (textMeaning(each.find("title")) == name) return each;
    titles.push_back(titleOf(each));
  }
  for (const Dictionary& each : profiles) {
    if (std::to_string(identifierOf(each)) == name) return each;
  }
  const std::string near = simulation::nearestOf(name, titles);
  throw InputError(near.empty() ? tr("no profile is called \"{}\"; see hushmode profile list", name)
                                : tr("no profile is called \"{0}\"; did you mean \"{1}\"?", name, near));
}

}  // namespace hushmode::cli
