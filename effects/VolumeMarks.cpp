// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "effects/VolumeMarks.h"

namespace hushmode {

namespace {

constexpr char counterKey = 0, buttonsKey = 0;

template <class T>
T read(const std::shared_ptr<platform::Object>& object, const void* key) {
  const auto value = object ? std::static_pointer_cast<T>(object->association(key)) : nullptr;
  return value ? *value : T();
}

template <class T>
void keep(const std::shared_ptr<platform::Object>& object, const void* key, T value) {
  if (object) object->setAssociation(key, std::make_shared<T>(value));
}

}  // namespace

std::int64_t hm_ChangedCounter(const std::shared_ptr<platform::Object>& object) {
  return read<std::int64_t>(object, &counterKey);
}
void setHm_ChangedCounter(const std::shared_ptr<platform::Object>& object, std::int64_t count) {
  keep(object, &counterKey, count);
}
bool hm_ChangedViaHWButtons(const std::shared_ptr<platform::Object>& object) { return read<bool>(object, &buttonsKey); }
void setHm_ChangedViaHWButtons(const std::shared_ptr<platform::Object>& object, bool changed) {
  keep(object, &buttonsKey, changed);
}

}  // namespace hushmode
