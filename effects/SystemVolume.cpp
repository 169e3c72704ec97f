// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "effects/SystemVolume.h"

#include "platform/Process.h"

#include <bit>
#include <cstdint>

namespace hushmode {

double overwrittenByFloat(double start, float reading) {
  constexpr std::uint64_t highHalf = 0xffffffff00000000U;
  return std::bit_cast<double>((std::bit_cast<std::uint64_t>(start) & highHalf) |
                               std::bit_cast<std::uint32_t>(reading));
}

double systemVolumeAsRead() {
  if (auto* controllerClass = platform::find<platform::AVController>()) {
    const auto controller = controllerClass->avController();
    return controller ? controller->volume() : 0.0F;
  }
  constexpr double start = 0.1;
  float reading = 0;
  const bool read = platform::device().celestial().sharedAVSystemController()->getVolume(reading, "Volume");
  return read ? overwrittenByFloat(start, reading) : start;
}

std::shared_ptr<platform::VolumeControl> volumeControl() {
  auto* controlClass = platform::find<platform::VolumeControl>();
  return controlClass ? controlClass->sharedVolumeControl() : nullptr;
}

float mediaVolume() {
  const auto control = volumeControl();
  return control ? control->getMediaVolume() : 0.0F;
}

}  // namespace hushmode
