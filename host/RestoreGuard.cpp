// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/RestoreGuard.h"

#include "effects/SavedState.h"
#include "util/Numbers.h"

#include <algorithm>

namespace hushmode::host {

using Profile = RestoreGuard::Profile;

namespace {

std::optional<float> savedVolume(std::string_view key) {
  if (!userDefaults().valueForKey(key)) return std::nullopt;
  return userDefaults().floatForKey(key);
}

std::multiset<std::int64_t> identifiersOf(const std::vector<Profile>& profiles) {
  std::multiset<std::int64_t> identifiers;
  for (const Profile& each : profiles) identifiers.insert(each->identifier());
  return identifiers;
}

bool differ(const std::optional<float>& a, const std::optional<float>& b) { return a && b && !sameVolume(*a, *b); }
bool differ(const std::optional<bool>& a, const std::optional<bool>& b) { return a && b && *a != *b; }

bool isAmong(const std::vector<float>& volumes, float volume) {
  return std::any_of(volumes.begin(), volumes.end(), [&](float each) { return sameVolume(each, volume); });
}

void addOnce(std::vector<float>& volumes, float volume) {
  if (std::find(volumes.begin(), volumes.end(), volume) == volumes.end()) volumes.push_back(volume);
}

/// After a death: a volume that no profile has set is the user's.
void adopt(std::optional<float>& found, std::optional<float>& hand, const std::vector<float>& set,
           const std::optional<float>& now) {
  if (differ(found, now) && !isAmong(set, *now)) found = hand = now;
}

}  // namespace

PhoneState RestoreGuard::phone() const {
  PhoneState state = readPhoneState();
  state.icon = device_.isIconVisible();
  return state;
}

Ledger RestoreGuard::leftOpen(const std::vector<Profile>& applied, const PhoneState& now) {
  Ledger ledger = Ledger::load();
  if (ledger.open) {
    // The answer to keep a volume reaches the library's saved state first. Only what the user has set can be kept.
    const auto kept = applied.empty() ? std::nullopt : savedVolume(saved::ringtone);
    const bool isKept = kept && ledger.byHand.ringtone && !differ(kept, ledger.byHand.ringtone);
    adopt(ledger.found.ringtone, ledger.byHand.ringtone, ledger.ringtonesSet, now.ringtone);
    adopt(ledger.found.media, ledger.byHand.media, ledger.mediasSet, now.media);
    if (now.doNotDisturb.value_or(false) && !ledger.doNotDisturbSet) ledger.found.doNotDisturb = true;
    if (isKept) ledger.found.ringtone = kept;
  } else if (!applied.empty()) {
    // Applied without a ledger: by a library without this host. What it saved is what was found.
    ledger.open = true;
    ledger.found = now;
    if (const auto volume = savedVolume(saved::ringtone)) ledger.found.ringtone = volume;
    if (const auto volume = savedVolume(saved::playBackVolume)) ledger.found.media = volume;
    if (userDefaults().valueForKey(saved::ringVibrate)) {
      ledger.found.ringVibrate = userDefaults().boolForKey(saved::ringVibrate);
      ledger.found.silentVibrate = userDefaults().boolForKey(saved::silentVibrate);
    }
  }
  return ledger;
}

void RestoreGuard::takeOver(const std::vector<Profile>& applied) {
  auto& files = platform::device().foundation().files();
  if (files.fileExists(Ledger::path) && !files.arrayWithContentsOfFile(Ledger::path)) {
    say_(Message(
        "the note of the phone's settings before Hush Mode changed them cannot be read. Look whether they are as you "
        "want them."));
  }
  saved_ = Ledger::load();
  seen_ = readPhoneState();
  ledger_ = leftOpen(applied, seen_);
  save();
}

void RestoreGuard::begin(const std::vector<Profile>& applied) {
  begun_ = readPhoneState();
  appliedAtBegin_ = identifiersOf(applied);
  keyAtBegin_ = savedVolume(saved::ringtone);
  device_.volumes().hold();
  if (!ledger_.open) return;
  noteChangesByOthers(begun_, !applied.empty());
  noteLateServices(begun_);
  save();
}

/// What could not be read when the ledger was opened is found when its service comes. The library has taken it for
/// silence, and would lead back to that.
void RestoreGuard::noteLateServices(const PhoneState& now) {
  const auto late = [](auto& found, const auto& is) {
    if (found || !is) return false;
    found = is;
    return true;
  };
  const bool ringtone = late(ledger_.found.ringtone, now.ringtone), media = late(ledger_.found.media, now.media);
  if (late(ledger_.found.ringVibrate, now.ringVibrate)) ledger_.found.silentVibrate = now.silentVibrate;
  late(ledger_.found.doNotDisturb, now.doNotDisturb);
  if (ringtone || media) keepSavedVolumes();
}

void RestoreGuard::noteChangesByOthers(const PhoneState& now, bool anyApplied) {
  const auto note = [](const auto& seen, const auto& is, auto& hand) {
    if (!differ(seen, is)) return false;
    hand = is;
    return true;
  };
  if (note(seen_.ringtone, now.ringtone, ledger_.byHand.ringtone)) {
    if (!anyApplied) ledger_.found.ringtone = now.ringtone;
    asked_ = now.ringtone;
  }
  if (note(seen_.media, now.media, ledger_.byHand.media)) {
    ledger_.found.media = now.media;
    // So that the library's own revert leads there at once, without a detour.
    if (savedVolume(saved::playBackVolume)) userDefaults().setFloat(*now.media, saved::playBackVolume);
  }
  if (note(seen_.ringVibrate, now.ringVibrate, ledger_.byHand.ringVibrate)) ledger_.found.ringVibrate = now.ringVibrate;
  if (note(seen_.silentVibrate, now.silentVibrate, ledger_.byHand.silentVibrate)) {
    ledger_.found.silentVibrate = now.silentVibrate;
  }
  if (note(seen_.doNotDisturb, now.doNotDisturb, ledger_.byHand.doNotDisturb))
    ledger_.found.doNotDisturb = now.doNotDisturb;
}

void RestoreGuard::willSave(const platform::Array& profiles) {
  for (const platform::Value& each : profiles) {
    const auto* profile = each.as<platform::Dictionary>();
    if (!profile || !booleanMeaning(profile->find("applied"))) continue;
    if (!ledger_.open) open(begun_);
    addOnce(ledger_.ringtonesSet, floatMeaning(profile->find("ringerVolume")));
    addOnce(ledger_.mediasSet, floatMeaning(profile->find("playBackVolume")));
    ledger_.doNotDisturbSet = ledger_.doNotDisturbSet || booleanMeaning(profile->find("dnDEnabled"));
  }
  if (ledger_.open) save();
}

void RestoreGuard::open(const PhoneState& found) {
  ledger_ = {};
  ledger_.open = true;
  ledger_.found = found;
  asked_.reset();
  save();
}

void RestoreGuard::save() {
  if (ledger_ == saved_) return;
  if (ledger_.save()) {
    saved_ = ledger_;
    saveFailed_ = false;
  } else if (!saveFailed_) {
    saveFailed_ = true;
    say_(Message(
        "the phone's present settings cannot be noted on disk; they are put back all the same unless this process "
        "dies. Make room in the state folder, or make it writable."));
  }
}

void RestoreGuard::end(const std::vector<Profile>& applied) {
  if (ledger_.open) {
    const bool switched = identifiersOf(applied) != appliedAtBegin_;
    if (switched) ledger_.byHand = {};
    if (!switched) {
      noteKeptVolume();
      if (!applied.empty()) holdTheHand(readPhoneState());
    }
    assertUnion(applied);
    // From now on it is on by the user's hand, should this process not live to see that.
    const auto doNotDisturb = readPhoneState().doNotDisturb;
    if (applied.empty() && doNotDisturb && doNotDisturb == ledger_.found.doNotDisturb) {
      ledger_.doNotDisturbSet = false;
    }
    save();
    dropDetours(applied);
  }
  device_.volumes().release();
  seen_ = readPhoneState();
}

/// The answer to keep a changed ringtone volume shows as another saved volume. What is kept is what the user set: with
/// several profiles applied, the library may have noted it at another than the one that it asks. And an answer without
/// a change is one to a question that has outlived its profile, of which the library knows no volume any more.
void RestoreGuard::noteKeptVolume() {
  if (!differ(keyAtBegin_, savedVolume(saved::ringtone))) return;
  if (asked_) ledger_.found.ringtone = asked_;
  keepSavedVolumes();
}

/// Nothing switched: what the library asserted again is not to go over what the user has set since.
void RestoreGuard::holdTheHand(const PhoneState& now) {
  if (differ(ledger_.byHand.ringtone, now.ringtone)) setRingtone(*ledger_.byHand.ringtone);
  if (differ(ledger_.byHand.media, now.media)) setMedia(*ledger_.byHand.media);
}

/// From one event to the next, the end of the first puts back what the second changes again when its tone is over.
/// Nobody is to hear that.
void RestoreGuard::dropDetours(const std::vector<Profile>& applied) {
  if (appliedAtBegin_.empty() || applied.empty()) return;
  HeldVolumes& volumes = device_.volumes();
  const auto isDetour = [&](const std::optional<float>& held, const std::optional<float>& found,
                            const std::optional<float>& hand, double (HMProfile::*asked)() const) {
    return held && !differ(held, found) && (!hand || differ(held, hand)) &&
           std::none_of(applied.begin(), applied.end(),
                        [&](const Profile& each) { return sameVolume(*held, static_cast<float>(((*each).*asked)())); });
  };
  if (isDetour(volumes.ringtone(), ledger_.found.ringtone, ledger_.byHand.ringtone, &HMProfile::ringerVolume)) {
    volumes.dropRingtone();
  }
  if (isDetour(volumes.media(), ledger_.found.media, ledger_.byHand.media, &HMProfile::playBackVolume))
    volumes.dropMedia();
}

/// Do Not Disturb and the icon belong to all applied profiles together, and Do Not Disturb to the user before them.
void RestoreGuard::assertUnion(const std::vector<Profile>& applied) {
  const auto any = [&](auto asks) { return std::any_of(applied.begin(), applied.end(), asks); };
  const auto manager = HMProfilesManager::sharedManager();
  const bool wanted = ledger_.byHand.doNotDisturb.value_or(
      ledger_.found.doNotDisturb.value_or(false) || any([](const Profile& each) { return each->isDnDEnabled(); }));
  if (readPhoneState().doNotDisturb.value_or(wanted) != wanted) manager->enableORDisableDnD(wanted);
  const bool icon = any([](const Profile& each) { return each->isShowOnStatusBar(); });
  if (device_.isIconVisible().value_or(icon) != icon) manager->showORHideIconsOnSpringBoard(icon);
}

bool RestoreGuard::isAsAskedBy(const HMProfile& profile) const {
  const PhoneState now = readPhoneState();
  const auto isAsAsked = [](const std::optional<float>& is, const std::optional<float>& hand, double asked) {
    return !is || hand || sameVolume(*is, static_cast<float>(asked));
  };
  // The library leaves the switches on when it applies a profile that does not vibrate; its refresh switches them off.
  const bool byHand = ledger_.byHand.ringVibrate.value_or(false) || ledger_.byHand.silentVibrate.value_or(false);
  const bool vibrates = now.ringVibrate.value_or(false) || now.silentVibrate.value_or(false);
  return isAsAsked(now.ringtone, ledger_.byHand.ringtone, profile.ringerVolume()) &&
         isAsAsked(now.media, ledger_.byHand.media, profile.playBackVolume()) &&
         (profile.isVibrate() || byHand || !vibrates);
}

bool RestoreGuard::settle(const std::vector<Profile>& applied) {
  if (!ledger_.open) return true;
  if (!applied.empty()) {
    keepSavedVolumes();
    return true;
  }
  device_.volumes().release();  // Whether the phone takes what it is given is to be seen.
  if (!putBack()) {
    if (!waits_)
      say_(Message("not everything could be put back as it was: a service of the phone is away. It will be."));
    waits_ = true;
    return false;
  }
  waits_ = false;
  forgetSavedState();
  ledger_ = {};
  save();
  return true;
}

/// A revert of one profile among several takes away what the others will want to lead back to.
void RestoreGuard::keepSavedVolumes() const {
  const auto keep = [](std::string_view key, const std::optional<float>& found) {
    if (found && savedVolume(key) != found) userDefaults().setFloat(*found, key);
  };
  keep(saved::ringtone, ledger_.found.ringtone);
  keep(saved::playBackVolume, ledger_.found.media);
  userDefaults().synchronize();
}

bool RestoreGuard::putBack() {
  const PhoneState& found = ledger_.found;
  const PhoneState now = phone();
  const auto isAway = [](const auto& was, const auto& is) { return was && !is; };
  if (differ(found.ringtone, now.ringtone)) setRingtone(*found.ringtone);
  if (differ(found.media, now.media)) setMedia(*found.media);
  if (differ(found.ringVibrate, now.ringVibrate) || differ(found.silentVibrate, now.silentVibrate)) {
    setVibrateSwitches(found.ringVibrate.value_or(*now.ringVibrate), found.silentVibrate.value_or(*now.silentVibrate));
  }
  const auto manager = HMProfilesManager::sharedManager();
  if (differ(found.doNotDisturb, now.doNotDisturb)) manager->enableORDisableDnD(*found.doNotDisturb);
  if (now.icon.value_or(false)) manager->showORHideIconsOnSpringBoard(false);
  device_.uiKit().sharedApplication()->setSystemVolumeHUDEnabled(true);
  const PhoneState after = phone();
  return !isAway(found.ringtone, now.ringtone) && !isAway(found.media, now.media) &&
         !isAway(found.doNotDisturb, now.doNotDisturb) && !differ(found.ringtone, after.ringtone) &&
         !differ(found.media, after.media) && !differ(found.doNotDisturb, after.doNotDisturb);
}

/// The library's own notes, which outlive a revert in part, would lead the next one astray.
void RestoreGuard::forgetSavedState() const {
  bool any = false;
  for (const std::string_view key :
       {saved::ringtone, saved::volume, saved::playBackVolume, saved::ringVibrate, saved::silentVibrate}) {
    if (!userDefaults().valueForKey(key)) continue;
    userDefaults().removeObjectForKey(key);
    any = true;
  }
  if (any) userDefaults().synchronize();
}

}  // namespace hushmode::host
