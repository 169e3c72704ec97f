#pragma once

#include "platform/Object.h"

#include <cstdint>
#include <memory>

/// Marks kept on the shared volume controller (or any object), by which a change of ours is told from the user's.
namespace hushmode {

/// How many changes of ours have not been heard back yet; absent reads as 0, and it may go below. No decision reads it.
HUSHMODE_API std::int64_t hm_ChangedCounter(const std::shared_ptr<platform::Object>& object);
HUSHMODE_API void setHm_ChangedCounter(const std::shared_ptr<platform::Object>& object, std::int64_t count);

/// Whether the volume is being changed with the hardware buttons; absent reads as false. The host sets it.
HUSHMODE_API bool hm_ChangedViaHWButtons(const std::shared_ptr<platform::Object>& object);
HUSHMODE_API void setHm_ChangedViaHWButtons(const std::shared_ptr<platform::Object>& object, bool changed);

}  // namespace hushmode
