// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "store/HMProfilesManager.h"
#include "tests/support/CoreTest.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace hushmode {

/// A test of the profiles manager.
class StoreTest : public CoreTest {
 protected:
  using Profile = std::shared_ptr<HMProfile>;

  static HMProfilesManager& manager() { return *HMProfilesManager::sharedManager(); }

  /// A profile that is in no list yet. Its calendar list is empty, so that saving it reads no calendar.
  static Profile profile(std::int64_t identifier, std::optional<std::string> title = std::nullopt) {
    const Profile made = HMProfile::init();
    made->setIdentifier(identifier);
    made->setTitle(std::move(title));
    made->setCalendarIdentifiers(Texts());
    return made;
  }

  /// The dictionary of a profile as the file holds it.
  static platform::Dictionary stored(std::int64_t identifier, const char* title) {
    return {{"identifier", identifier}, {"title", title}, {"calendarIdentifiers", platform::Array{}}};
  }

  /// Identifiers of the profiles in the list, or in the file.
  static std::vector<std::int64_t> identifiersOf(const std::vector<Profile>& profiles) {
    std::vector<std::int64_t> identifiers;
    for (const Profile& each : profiles) identifiers.push_back(each->identifier());
    return identifiers;
  }
  std::vector<std::int64_t> listed() const { return identifiersOf(manager().profiles()); }
  std::vector<std::int64_t> inFile() const {
    std::vector<std::int64_t> identifiers;
    for (const platform::Value& element : fileContent()) {
      identifiers.push_back(*element.as<platform::Dictionary>()->find("identifier")->as<std::int64_t>());
    }
    return identifiers;
  }
  platform::Array fileContent() const {
    return phone.files().memory().arrayWithContentsOfFile(profilesPath).value_or(platform::Array());
  }
};

/// Identifiers as `listed` and the queries give them.
using Identifiers = std::vector<std::int64_t>;

/// Callbacks of an operation that note what came of it, and in which order with the record: a line is put there.
class Outcome {
 public:
  explicit Outcome(devices::Record& record) : record_(record) {}

  HMProfilesManager::Success success() {
    return [this] {
      ++successes;
      record_.step("success");
    };
  }
  HMProfilesManager::Failure failure() {
    return [this](const StoreError& failure) {
      ++failures;
      error = failure;
      record_.step("failure");
    };
  }

  int successes = 0, failures = 0;
  std::optional<StoreError> error;

 private:
  devices::Record& record_;
};

}  // namespace hushmode
