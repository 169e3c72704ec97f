// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SpringBoard.h"

#include <memory>

namespace hushmode {

/// `start` after a single-precision value was written over its low 32 bits: what a volume reads as where the variable
/// is a double and the reader writes a float. For a start of 0.1 the result stays within 0.0000001 of it.
double overwrittenByFloat(double start, float reading);

/// The general volume, as the effects see it. With the class "AVController": its volume. Otherwise the "Volume"
/// category, read into a double that holds 0.1, of which the reading overwrites the low half: so practically always
/// 0.1, and meant so, on 32-bit machines as well. A failed read leaves exactly 0.1.
double systemVolumeAsRead();

/// The media volume controller; null when its class is absent.
std::shared_ptr<platform::VolumeControl> volumeControl();
/// The media volume; 0 when the class is absent.
float mediaVolume();

}  // namespace hushmode
