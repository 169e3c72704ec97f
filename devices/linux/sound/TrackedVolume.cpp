// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/TrackedVolume.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace hushmode::devices {

namespace {

float cut(float volume) { return volume > 0 ? std::min(volume, 1.0f) : 0.0f; }  // Not a number is silence, too.

}  // namespace

std::optional<float> TrackedVolume::value() const {
  if (!asked_.empty()) return share(asked_.back());
  return isKnown_ ? std::optional(share(*settled_)) : std::nullopt;
}

TrackedVolume::Level TrackedVolume::levelFor(float volume) const {
  const float share = cut(volume);
  return share == 1.0f ? top_ : static_cast<Level>(std::lround(share * static_cast<double>(full_)));
}

void TrackedVolume::asked(float volume) {
  lastAsked_ = cut(volume);
  asked_.push_back(levelFor(volume));
}

std::optional<VolumeChange> TrackedVolume::answered(bool accepted) {
  if (asked_.empty()) return std::nullopt;
  const Level level = asked_.front();
  asked_.pop_front();
  if (!accepted) {
    takeNewBaseline();
    return std::nullopt;
  }
  if (settled_ && isSame(*settled_, level)) return std::nullopt;
  settled_ = level;
  isKnown_ = true;
  return VolumeChange{share(level), false};
}

std::optional<VolumeChange> TrackedVolume::seen(Level level) {
  if (pending()) return std::nullopt;
  isKnown_ = true;
  const bool isBaseline = std::exchange(baselineIsDue_, false);
  if (settled_ && isSame(*settled_, level)) return std::nullopt;
  const bool isFirst = !settled_;
  settled_ = level;
  top_ = std::max(full_, level);
  if (isFirst) return std::nullopt;
  return VolumeChange{share(level), !isBaseline};
}

void TrackedVolume::unknown() {
  isKnown_ = false;
  takeNewBaseline();
}

void TrackedVolume::lost() {
  asked_.clear();
  takeNewBaseline();
}

float TrackedVolume::share(Level level) const {
  // What was asked reads back exactly, whatever the server's steps are.
  if (lastAsked_ >= 0 && isSame(level, levelFor(lastAsked_))) return lastAsked_;
  return static_cast<float>(std::min(1.0, static_cast<double>(level) / full_));
}

bool TrackedVolume::isSame(Level one, Level other) const {
  constexpr Level steps = 256;  // A slider has 100.
  return std::max(one, other) - std::min(one, other) <= full_ / steps;
}

}  // namespace hushmode::devices
