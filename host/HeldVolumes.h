// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Celestial.h"
#include "platform/Device.h"
#include "platform/SpringBoard.h"

#include <memory>
#include <optional>

namespace hushmode::host {

/// The volumes of a phone, held back while a piece of work runs.
///
/// The library goes from one profile to the next by way of the phone's own volumes: it reverts, then applies. Held
/// back, only the last of several writes reaches the phone, and nobody hears the others. What is held can be read at
/// once, as if the phone had taken it; and as the phone's answer is not known yet, a held write always succeeds.
class HeldVolumes final : public platform::Celestial {
 public:
  /// `phone` must outlive the object.
  explicit HeldVolumes(platform::Device& phone);
  ~HeldVolumes() override;

  std::shared_ptr<platform::AVSystemController> sharedAVSystemController() override;
  /// Stands for the phone's class "VolumeControl".
  platform::Class* volumeControlClass();

  /// From now on what is set is held back. Nothing while that is so already.
  void hold() { holding_ = true; }
  /// Passes on what is held, and holds nothing back any more.
  void release();
  /// The process has ended: what is held was never done.
  void forget();

  // What is held; none while nothing is.

  std::optional<float> ringtone() const { return ringtone_; }
  std::optional<float> media() const { return media_; }
  void dropRingtone() { ringtone_.reset(); }
  void dropMedia() { media_.reset(); }

 private:
  class Controller;
  class MediaControl;
  class MediaClass;

  platform::Device& phone_;
  std::shared_ptr<Controller> controller_;
  std::unique_ptr<MediaClass> mediaClass_;
  bool holding_ = false;
  std::optional<float> ringtone_, media_;
};

}  // namespace hushmode::host
