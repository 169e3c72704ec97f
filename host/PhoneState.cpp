// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/PhoneState.h"

#include "effects/DoNotDisturb.h"
#include "platform/Celestial.h"
#include "platform/Process.h"
#include "platform/SpringBoard.h"
#include "util/Numbers.h"

#include <cmath>

namespace hushmode::host {

namespace {

constexpr std::string_view homeScreenDomain = "com.apple.springboard";

std::shared_ptr<platform::VolumeControl> volumeControl() {
  auto* controlClass = platform::find<platform::VolumeControl>();
  return controlClass ? controlClass->sharedVolumeControl() : nullptr;
}

platform::UserDefaults& defaults() { return platform::device().foundation().standardUserDefaults(); }

Message percent(float volume) { return Message("{0}%", std::lround(volume * 100)); }

}  // namespace

bool sameVolume(float a, float b) { return std::abs(a - b) < 0.005f; }

PhoneState readPhoneState() {
  PhoneState state;
  float ringtone = 0;
  if (platform::device().celestial().sharedAVSystemController()->getVolume(ringtone, "Ringtone")) {
    state.ringtone = ringtone;
  }
  const auto control = volumeControl();
  if (control && control->respondsTo("getMediaVolume")) state.media = control->getMediaVolume();
  if (const auto domain = defaults().persistentDomainForName(homeScreenDomain)) {
    state.ringVibrate = booleanMeaning(domain->find("ring-vibrate"));
    state.silentVibrate = booleanMeaning(domain->find("silent-vibrate"));
  }
  state.doNotDisturb = isDoNotDisturbOn();
  return state;
}

void setRingtone(float volume) {
  platform::device().celestial().sharedAVSystemController()->setVolumeTo(volume, "Ringtone");
}

void setMedia(float volume) {
  if (const auto control = volumeControl()) control->setMediaVolume(volume);
}

void setVibrateSwitches(bool ring, bool silent) {
  auto domain = defaults().persistentDomainForName(homeScreenDomain).value_or(platform::Dictionary());
  domain.set("ring-vibrate", ring);
  domain.set("silent-vibrate", silent);
  defaults().setPersistentDomain(domain, homeScreenDomain);
  auto& coreFoundation = platform::device().coreFoundation();
  coreFoundation.postDarwinNotification("com.apple.springboard.ring-vibrate.changed");
  coreFoundation.postDarwinNotification("com.apple.springboard.silent-vibrate.changed");
}

Message difference(const PhoneState& before, const PhoneState& after) {
  std::optional<Message> all;
  const auto add = [&](const Message& each) { all = all ? Message("{0}, {1}", *all, each) : each; };
  const auto changed = [](const auto& was, const auto& is) { return was && is && *was != *is; };
  if (changed(before.ringtone, after.ringtone)) {
    add(Message("ringtone {0} to {1}", percent(*before.ringtone), percent(*after.ringtone)));
  }
  if (changed(before.media, after.media)) {
    add(Message("media {0} to {1}", percent(*before.media), percent(*after.media)));
  }
  if (changed(before.ringVibrate, after.ringVibrate)) {
    add(*after.ringVibrate ? Message("vibrate on ring on") : Message("vibrate on ring off"));
  }
  if (changed(before.silentVibrate, after.silentVibrate)) {
    add(*after.silentVibrate ? Message("vibrate on silent on") : Message("vibrate on silent off"));
  }
  if (changed(before.doNotDisturb, after.doNotDisturb)) {
    add(*after.doNotDisturb ? Message("do not disturb on") : Message("do not disturb off"));
  }
  if (changed(before.icon, after.icon)) add(*after.icon ? Message("icon shown") : Message("icon hidden"));
  return all.value_or(Message("nothing changed"));
}

std::string differenceText(const PhoneState& before, const PhoneState& after) {
  return difference(before, after).english();
}

}  // namespace hushmode::host
