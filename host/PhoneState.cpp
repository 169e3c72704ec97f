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

std::string percent(float volume) { return std::to_string(std::lround(volume * 100)) + "%"; }

std::string onOff(bool on) { return on ? "on" : "off"; }

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

std::string differenceText(const PhoneState& before, const PhoneState& after) {
  std::string text;
  const auto add = [&](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
  const auto volume = [&](const char* name, const std::optional<float>& was, const std::optional<float>& is) {
    if (was && is && *was != *is) add(std::string(name) + " " + percent(*was) + " to " + percent(*is));
  };
  const auto flag = [&](const char* name, const std::optional<bool>& was, const std::optional<bool>& is) {
    if (was && is && *was != *is) add(std::string(name) + " " + onOff(*is));
  };
  volume("ringtone", before.ringtone, after.ringtone);
  volume("media", before.media, after.media);
  flag("vibrate on ring", before.ringVibrate, after.ringVibrate);
  flag("vibrate on silent", before.silentVibrate, after.silentVibrate);
  flag("do not disturb", before.doNotDisturb, after.doNotDisturb);
  if (before.icon && after.icon && *before.icon != *after.icon) add(*after.icon ? "icon shown" : "icon hidden");
  return text.empty() ? "nothing changed" : text;
}

}  // namespace hushmode::host
