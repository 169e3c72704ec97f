// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/cli/PlannedChange.h"

#include "devices/words/Text.h"

#include <cmath>

namespace hushmode::cli {

namespace {

long percent(float volume) { return std::lround(volume * 100); }

}  // namespace

std::string plannedChange(const host::Switch& each, const host::PhoneState& found) {
  std::string all;
  const auto add = [&](const std::string& text) { all = all.empty() ? text : tr("{0}, {1}", all, text); };
  const auto changed = [](const auto& was, const auto& is) { return was && is && *was != *is; };
  const host::PhoneState &before = each.before, &after = each.after;
  if (before == after) return tr("nothing changed");
  if (after == found) return tr("everything as before");
  if (changed(before.ringtone, after.ringtone)) {
    add(after.ringtone == found.ringtone ? tr("ringtone as before") : tr("ringtone {}%", percent(*after.ringtone)));
  }
  if (changed(before.media, after.media)) {
    add(after.media == found.media ? tr("media as before") : tr("media {}%", percent(*after.media)));
  }
  if (changed(before.ringVibrate, after.ringVibrate)) {
    add(*after.ringVibrate ? tr("vibrate on ring on") : tr("vibrate on ring off"));
  }
  if (changed(before.silentVibrate, after.silentVibrate)) {
    add(*after.silentVibrate ? tr("vibrate on silent on") : tr("vibrate on silent off"));
  }
  if (changed(before.doNotDisturb, after.doNotDisturb)) {
    add(*after.doNotDisturb ? tr("do not disturb on") : tr("do not disturb off"));
  }
  if (changed(before.icon, after.icon)) add(*after.icon ? tr("icon shown") : tr("icon hidden"));
  return all;
}

}  // namespace hushmode::cli
