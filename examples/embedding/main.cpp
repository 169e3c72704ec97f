// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A day on a phone of one's own: the library falls silent for a meeting and comes back when it ends.

#include "TinyPhone.h"

#include <cstdio>
#include <platform/Process.h>
#include <store/HMProfilesManager.h>

namespace hp = hushmode::platform;
using hushmode::HMProfilesManager;

int main() {
  const hp::Date midnight(1'795'478'400);  // 24 November 2026, 00:00 UTC
  tiny::Phone phone(midnight.addingSeconds(8 * 3600));
  phone.eventKit().add("Interview", midnight.addingSeconds(14.5 * 3600), midnight.addingSeconds(15.5 * 3600));

  // What people have set: the master switch, and one profile, in the form of their files (docs/profiles-file.md).
  phone.foundation().files().dictionaries[std::string(HMProfilesManager::settingsPath)] =
      hp::Dictionary{{"com.quorvel.hushmode.enabled", true}};
  phone.foundation().files().arrays[std::string(HMProfilesManager::profilesPath)] =
      hp::Array{hp::Dictionary{{"identifier", std::int64_t{1}},
                               {"title", "Meetings"},
                               {"enabled", true},
                               {"allDay", true},
                               {"ringerVolume", 0.05},
                               {"calendarIdentifiers", hp::Array{"work"}}}};

  hp::Process process(phone);                               // From here on the library has a phone.
  const auto manager = HMProfilesManager::sharedManager();  // Loads the profiles.
  manager->schedulePowerEventsForProfiles();                // Plans: arms a wake-up for the meeting.

  phone.loop().runUntil(midnight.addingSeconds(15 * 3600));
  const bool quiet = manager->profiles().front()->isApplied();
  std::printf("15:00:00  \"Meetings\" is %s\n", quiet ? "on" : "off");
  phone.loop().runUntil(midnight.addingSeconds(24 * 3600));
  const bool loudAgain = !manager->profiles().front()->isApplied();
  return quiet && loudAgain ? 0 : 1;
}
