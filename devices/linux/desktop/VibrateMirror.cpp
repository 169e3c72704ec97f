// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/VibrateMirror.h"

#include "devices/linux/desktop/InstalledSettings.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

namespace hushmode::devices {

using platform::Dictionary;

namespace {

constexpr const char* service = "vibrate switches";
ServiceState following() { return {true, tr("the profile of feedbackd")}; }
constexpr const char* profileKey = "profile";
constexpr std::string_view quiet = "quiet", silent = "silent";

constexpr std::string_view switches = "com.apple.springboard";
constexpr std::string_view ringVibrate = "ring-vibrate", silentVibrate = "silent-vibrate";

constexpr std::string_view memory = "com.quorvel.hushmode.vibrate";
constexpr std::string_view chosenProfile = "chosen-feedback-profile";

bool tellsOfSwitches(std::string_view notification) {
  return notification == "com.apple.springboard.ring-vibrate.changed" ||
         notification == "com.apple.springboard.silent-vibrate.changed";
}

}  // namespace

std::string_view feedbackProfileFor(std::string_view chosen, bool silentVibrate) {
  return chosen == quiet && !silentVibrate ? silent : chosen;
}

VibrateMirror::VibrateMirror(platform::UserDefaults& defaults, DarwinNotifications& notifications, Services& services)
    : defaults_(defaults),
      services_(services),
      settings_(installedSettings("org.sigxcpu.feedbackd", {{profileKey, "s"}})) {
  if (!settings_) {
    services_.report(service, {false, tr("feedbackd is not installed")});
    return;
  }
  services_.report(service, following());
  setMissingSwitches();
  changes_ = settings_->signal_changed(profileKey).connect([this](const Glib::ustring&) { profileChanged(); });
  observation_ = notifications.observe([this](std::string_view name) {
    if (tellsOfSwitches(name)) follow();
  });
  follow();
}

VibrateMirror::~VibrateMirror() { changes_.disconnect(); }

void VibrateMirror::setMissingSwitches() {
  Dictionary domain = defaults_.persistentDomainForName(switches).value_or(Dictionary());
  if (domain.find(ringVibrate) && domain.find(silentVibrate)) return;
  for (const std::string_view key : {ringVibrate, silentVibrate}) {
    if (!domain.find(key)) domain.set(key, true);
  }
  defaults_.setPersistentDomain(domain, switches);
}

void VibrateMirror::follow() {
  const std::string present = settings_->get_string(profileKey);
  // What was overruled counts only as long as what overruled it still stands.
  const std::string overruled = present == silent ? remembered() : "";
  const std::string chosen = overruled.empty() ? present : overruled;
  const Dictionary domain = defaults_.persistentDomainForName(switches).value_or(Dictionary());
  const std::string_view wanted = feedbackProfileFor(chosen, booleanMeaning(domain.find(silentVibrate)));
  // Remembered before it is overruled, forgotten after it is back: whenever the process may end.
  if (wanted != chosen) remember(chosen);
  if (wanted != present) set(wanted);
  if (wanted == chosen) remember("");
}

void VibrateMirror::set(std::string_view profile) {
  const bool accepted = settings_->set_string(profileKey, std::string(profile));
  services_.report(service, accepted ? following() : ServiceState{false, tr("the profile of feedbackd is locked")});
}

/// Whatever else than "silent" is chosen now was not overruled, and is no reason to bring back what was.
void VibrateMirror::profileChanged() {
  if (settings_->get_string(profileKey) != Glib::ustring(silent.data())) remember("");
}

std::string VibrateMirror::remembered() const {
  const auto domain = defaults_.persistentDomainForName(memory);
  const platform::Value* value = domain ? domain->find(chosenProfile) : nullptr;
  const std::string* text = value ? value->as<std::string>() : nullptr;
  return text && *text == quiet ? *text : "";
}

/// Empty for nothing.
void VibrateMirror::remember(std::string_view profile) {
  if (profile == remembered()) return;
  Dictionary domain;
  if (!profile.empty()) domain.set(chosenProfile, profile);
  defaults_.setPersistentDomain(domain, memory);
}

}  // namespace hushmode::devices
