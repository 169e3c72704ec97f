// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace hushmode::devices {

/// A change of one volume.
struct VolumeChange {
  float volume;  ///< What it is now, 0.0 to 1.0.
  bool byUser;   ///< Somebody else's doing: a key of the phone, a slider, another program.
  bool operator==(const VolumeChange&) const = default;
};

/// What is known of a volume that lives in a sound server and that others change as well, and whose doing a change is.
/// The server says that something changed and never who did it.
///
/// It relies on the server's taking requests and answering them in order: what is read while a request of ours is
/// unanswered was true before that request, which overwrites it.
class TrackedVolume {
 public:
  /// A level as the server counts: 0 is silence, `full` is 1.0, more is amplified. Levels that nobody can tell apart
  /// count as the same: some servers round.
  using Level = std::uint32_t;
  explicit TrackedVolume(Level full) : full_(full), top_(full) {}

  /// The volume asked last; else the one seen last, also while the server is away. None while nothing is known. An
  /// amplified one reads 1.0.
  std::optional<float> value() const;

  /// The level that stands for `volume`, which is cut to 0.0 to 1.0. 1.0 is where the user had the volume if that was
  /// amplified, so that it comes back as it was found.
  Level levelFor(float volume) const;
  /// A request of ours for `volume` was sent.
  void asked(float volume);
  /// The oldest request was answered. Whoever is told of a refusal reads anew: the next level seen is no user's change.
  std::optional<VolumeChange> answered(bool accepted);
  /// The server says that this is the level.
  std::optional<VolumeChange> seen(Level level);

  /// The next level seen may be another without anybody's having changed it: another speaker, another server.
  void takeNewBaseline() { baselineIsDue_ = true; }
  /// The server went away: what was asked of it is forgotten, and what it says next is a new baseline.
  void lost();
  /// There is no such volume at present; the next one seen is a new baseline.
  void unknown();

  /// Whether this is the level asked last.
  bool isAsked(Level level) const { return pending() && isSame(asked_.back(), level); }
  /// Whether a request is still unanswered.
  bool pending() const { return !asked_.empty(); }

 private:
  float share(Level level) const;
  bool isSame(Level one, Level other) const;

  Level full_;
  Level top_;                     ///< What 1.0 stands for.
  std::optional<Level> settled_;  ///< What the server has, or had when it was last known.
  bool isKnown_ = false;
  std::deque<Level> asked_;
  float lastAsked_ = -1;
  bool baselineIsDue_ = true;
};

}  // namespace hushmode::devices
