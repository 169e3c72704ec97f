// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "store/HMProfilesManager.h"
#include "tests/support/PhoneFixture.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

using Texts = std::vector<std::string>;

inline const std::string asterisks = "log I ************************************************";

/// A phone with one stored profile, "Work", whose volumes are exact in single precision and whose flags are all off.
class EffectsTest : public PhoneFixture {
 protected:
  EffectsTest() : work(addProfile(1700000000, "Work")) { clearRecord(); }

  /// A profile in the store, without calendars and networks; its making is in the record.
  std::shared_ptr<HMProfile> addProfile(std::int64_t identifier, const char* title) {
    const auto profile = HMProfile::init();
    profile->setIdentifier(identifier);
    profile->setTitle(title);
    profile->setEnabled(true);
    profile->setAllDay(true);
    profile->setCalendarIdentifiers(Texts());
    profile->setRingerVolume(0.25);
    profile->setPlayBackVolume(0.125);
    profile->setDeviceVolume(0.75);
    profile->setAlertToneIdentifier("texttone:Chime");
    manager().addProfile(profile, nullptr, nullptr);
    return profile;
  }

  static HMProfilesManager& manager() { return *HMProfilesManager::sharedManager(); }

  Texts effects() const { return texts({devices::kind::effect, devices::kind::perform}); }
  Texts logged() const { return texts({devices::kind::log}); }
  Texts darwin() const { return texts({devices::kind::darwin}); }
  std::ptrdiff_t count(const std::string& line) const {
    const Texts lines = texts();
    return std::count(lines.begin(), lines.end(), line);
  }

  std::optional<platform::Value> saved(std::string_view key) const {
    return phone.defaults().valueForKey("com.quorvel.hushmode-" + std::string(key));
  }
  void save(std::string_view key, platform::Value value) {
    phone.defaults().standard().set("com.quorvel.hushmode-" + std::string(key), std::move(value));
  }
  platform::Dictionary& homeScreenDomain() { return phone.defaults().domains()["com.apple.springboard"]; }

  const std::shared_ptr<HMProfile> work;
};

/// Lists of lines, one after the other.
inline Texts joined(std::initializer_list<Texts> parts) {
  Texts lines;
  for (const Texts& part : parts) lines.insert(lines.end(), part.begin(), part.end());
  return lines;
}

}  // namespace hushmode
