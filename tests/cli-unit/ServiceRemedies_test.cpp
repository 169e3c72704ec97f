// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/ServiceRemedies.h"

#include <gtest/gtest.h>
#include <tuple>

namespace hushmode::cli {
namespace {

using platform::Array;
using platform::Dictionary;
using enum Severity;

TEST(ServiceRemedies, WhatRestsMattersAsMuchAsTheProfilesNeedIt) {
  ServiceNeeds all;
  all.tones = all.light = all.doNotDisturb = all.networks = all.accounts = true;
  for (const auto& [name, unneeded, needed] :
       std::vector<std::tuple<const char*, Severity, Severity>>{{"volumes", Problem, Problem},
                                                                {"wake-ups", Warning, Warning},
                                                                {"sleep and lock", Warning, Warning},
                                                                {"networks", Note, Warning},
                                                                {"do not disturb", Note, Warning},
                                                                {"calendar service", Note, Warning},
                                                                {"tones", Note, Warning},
                                                                {"screen", Note, Warning},
                                                                {"status icon", Note, Note},
                                                                {"calendar folder", Note, Note},
                                                                {"questions", Note, Note},
                                                                {"alarms", Note, Note},
                                                                {"appearance", Note, Note},
                                                                {"vibration", Note, Note},
                                                                {"vibrate switches", Note, Note},
                                                                {"something new", Warning, Warning}}) {
    EXPECT_EQ(serviceFinding({name, false, "it is away"}, {}).severity, unneeded) << name;
    const Finding finding = serviceFinding({name, false, "it is away"}, all);
    EXPECT_EQ(finding.severity, needed) << name;
    EXPECT_EQ(finding.name, "service-rests");
    EXPECT_EQ(finding.text, "it is away");
    EXPECT_FALSE(finding.remedy.empty()) << name;
    EXPECT_EQ(finding.remedy.find('{'), std::string::npos) << finding.remedy;
    EXPECT_TRUE(serviceFinding({name, true, "PulseAudio"}, all).remedy.empty()) << name;
  }
}

TEST(ServiceRemedies, VolumesThatAreThereInPartAreTold) {
  const Finding ringtone =
      serviceFinding({"volumes", true, "P, no ringtone volume (module-stream-restore is not loaded)"}, {});
  EXPECT_EQ(ringtone.severity, Warning);
  EXPECT_EQ(ringtone.remedy, "pactl load-module module-stream-restore");
  EXPECT_EQ(serviceFinding({"volumes", true, "P, no output"}, {}).severity, Warning);
}

TEST(ServiceRemedies, NeedsAreThoseOfTheEnabledProfiles) {
  const Dictionary asking{{"enabled", true},
                          {"playAlert", true},
                          {"wakeUpScreen", true},
                          {"dnDEnabled", true},
                          {"wifiNetworks", Array{"Office"}},
                          {"calendarIdentifiers", Array{"folder:Work", "eds:home"}}};
  const ServiceNeeds needs = needsOf({asking});
  EXPECT_TRUE(needs.tones && needs.light && needs.doNotDisturb && needs.networks && needs.accounts);
  Dictionary resting = asking;
  resting.set("enabled", false);
  const Dictionary modest{{"enabled", true}, {"calendarIdentifiers", Array{"folder:Work"}}};
  const ServiceNeeds none = needsOf({resting, modest});
  EXPECT_FALSE(none.tones || none.light || none.doNotDisturb || none.networks || none.accounts);
}

}  // namespace
}  // namespace hushmode::cli
