#include "apps/cli/ProfileStore.h"

#include "apps/cli/Daemon.h"
#include "apps/cli/Text.h"
#include "apps/simulation/JsonReader.h"
#include "apps/words/Words.h"
#include "devices/linux/base/Variants.h"
#include "devices/linux/core/Folders.h"
#include "devices/shared/GuardedPropertyListFile.h"
#include "devices/shared/PropertyListFile.h"
#include "host/Host.h"
#include "host/ProfileCheck.h"
#include "util/Numbers.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <iostream>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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
  bool isEnabled() override { return devices::valueOf<bool>(daemon_.properties(), "Enabled").value_or(false); }
  void setEnabled(bool enabled) override { daemon_.call("SetEnabled", devices::argumentsOf(enabled)); }
  bool isLive() const override { return true; }

 private:
  Daemon daemon_;
};

void makePrivate(const std::filesystem::path& folder) {
  std::error_code ignored;  // The next call says what is wrong.
  std::filesystem::create_directories(folder.parent_path(), ignored);
  if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
    throw ServiceError(tr("{0} cannot be made: {1}", folder.string(), std::strerror(errno)));
  }
}

/// The lock that the daemon holds while it runs.
class WriterLock {
 public:
  explicit WriterLock(const std::filesystem::path& folder) {
    makePrivate(folder);
    const std::string path = (folder / "lock").string();
    descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor_ < 0) throw ServiceError(tr("{0} cannot be opened: {1}", path, std::strerror(errno)));
    if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
    ::close(descriptor_);
    throw ServiceError(tr("another program is changing the profiles (it holds {}); try again in a moment", path));
  }
  ~WriterLock() { ::close(descriptor_); }
  WriterLock(const WriterLock&) = delete;
  WriterLock& operator=(const WriterLock&) = delete;

 private:
  int descriptor_;
};

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
    return change([&](std::vector<Dictionary>& profiles) {
      Dictionary added{{"identifier", freeIdentifier(profiles)}};
      for (const auto& [key, value] : profile) added.set(key, value);
      checked(profile, profiles, identifierOf(added));
      profiles.push_back(added);
      return identifierOf(added);
    });
  }

  void update(std::int64_t identifier, const Dictionary& changes) override {
    change([&](std::vector<Dictionary>& profiles) {
      Dictionary& profile = *placeOf(profiles, identifier);
      checked(changes, profiles, identifier);
      for (const auto& [key, value] : changes) profile.set(key, value);
      return 0;
    });
  }

  void remove(std::int64_t identifier) override {
    change([&](std::vector<Dictionary>& profiles) {
      profiles.erase(placeOf(profiles, identifier));
      return 0;
    });
  }

  bool isEnabled() override {
    const auto content = devices::PropertyListFile(settingsPath()).read();
    const auto* settings = content.value ? content.value->as<Dictionary>() : nullptr;
    return settings && booleanMeaning(settings->find(enabledKey));
  }

  void setEnabled(bool enabled) override {
    const WriterLock lock(folders_.state);
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
  template <class Change>
  std::int64_t change(Change work) {
    const WriterLock lock(folders_.state);
    makePrivate(folders_.config);
    std::vector<Dictionary> profiles = list();
    const std::int64_t answer = work(profiles);
    Array array;
    for (Dictionary& each : profiles) array.emplace_back(std::move(each));
    devices::GuardedPropertyListFile file(profilesPath(),
                                          [](const std::string& line) { std::cerr << "hushmode: " << line << '\n'; });
    if (const auto problem = file.write(array)) throw ServiceError(*problem);
    return answer;
  }

  /// Throws when the values do not fit or the title is another profile's.
  static void checked(const Dictionary& values, const std::vector<Dictionary>& profiles, std::int64_t identifier) {
    try {
      host::checkProfile(values);
    } catch (const host::EditError& refusal) {
      throw InputError(inWords(refusal.message()));
    }
    const auto title = textMeaning(values.find("title"));
    for (const Dictionary& each : profiles) {
      if (title && identifierOf(each) != identifier && textMeaning(each.find("title")) == title) {
        throw InputError(tr("another profile is called \"{}\"", *title));
      }
    }
  }

  /// Identifiers are the second of the creation, and two may be created in one.
  static std::int64_t freeIdentifier(const std::vector<Dictionary>& profiles) {
    using namespace std::chrono;
    std::int64_t identifier = duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
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

std::string titleOf(const Dictionary& profile) { return textMeaning(profile.find("title")).value_or(tr("(no title)")); }

std::int64_t identifierOf(const Dictionary& profile) { return integerMeaning(profile.find("identifier")); }

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
