// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <cstdint>
#include <memory>

/// Marks kept on the shared volume controller (or any object) for the watch over the volume.
namespace hushmode {

/// Counts up with each run of the sound settings and down with each notification taken for our own; absent reads as 0,
/// and it may go below. No decision reads it.
HUSHMODE_API std::int64_t hm_ChangedCounter(const std::shared_ptr<platform::Object>& object);
HUSHMODE_API void setHm_ChangedCounter(const std::shared_ptr<platform::Object>& object, std::int64_t count);

/// Whether the volume is being changed with the hardware buttons; absent reads as false. The host sets it.
HUSHMODE_API bool hm_ChangedViaHWButtons(const std::shared_ptr<platform::Object>& object);
HUSHMODE_API void setHm_ChangedViaHWButtons(const std::shared_ptr<platform::Object>& object, bool changed);

}  // namespace hushmode
