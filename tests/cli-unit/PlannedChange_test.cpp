// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/cli/PlannedChange.h"

#include <functional>
#include <gtest/gtest.h>

namespace hushmode::cli {
namespace {

using host::PhoneState;

const PhoneState found{
    .ringtone = 0.75f, .media = 0.5f, .ringVibrate = true, .silentVibrate = true, .doNotDisturb = false, .icon = false};

PhoneState but(PhoneState state, const std::function<void(PhoneState&)>& change) {
  change(state);
  return state;
}

struct Case {
  const char* name;
  PhoneState before, after;
  const char* told;
};

class PlannedChangeTest : public testing::TestWithParam<Case> {};

TEST_P(PlannedChangeTest, IsToldInWords) {
  host::Switch each;
  each.before = GetParam().before;
  each.after = GetParam().after;
  EXPECT_EQ(plannedChange(each, found), GetParam().told);
}

const PhoneState silent = but(found, [](PhoneState& s) { s.ringtone = s.media = 0.0f; });
const PhoneState low = but(found, [](PhoneState& s) { s.ringtone = s.media = 0.25f; });

INSTANTIATE_TEST_SUITE_P(
    Switches, PlannedChangeTest,
    testing::Values(
        Case{"OfNothing", found, found, "nothing changed"}, Case{"OfVolumes", found, silent, "ringtone 0%, media 0%"},
        Case{"OfEverything", found,
             PhoneState{.ringtone = 0.055f,
                        .media = 1.0f,
                        .ringVibrate = false,
                        .silentVibrate = false,
                        .doNotDisturb = true,
                        .icon = true},
             "ringtone 6%, media 100%, vibrate on ring off, vibrate on silent off, do not disturb on, icon shown"},
        Case{"Back", silent, found, "everything as before"},
        Case{"BackToAnotherProfile", silent, low, "ringtone 25%, media 25%"},
        Case{"BackInPart", silent, but(low, [](PhoneState& s) { s.ringtone = found.ringtone; }),
             "ringtone as before, media 25%"},
        Case{"BackInTheOtherPart", silent, but(low, [](PhoneState& s) { s.media = found.media; }),
             "ringtone 25%, media as before"},
        Case{"OfSwitchesBack",
             but(silent,
                 [](PhoneState& s) {
                   s.ringVibrate = s.silentVibrate = false;
                   s.doNotDisturb = s.icon = true;
                 }),
             silent, "vibrate on ring on, vibrate on silent on, do not disturb off, icon hidden"},
        Case{"OfWhatCannotBeRead", but(found, [](PhoneState& s) { s.ringtone.reset(); }), silent, "media 0%"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace hushmode::cli
