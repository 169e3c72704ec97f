// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/Object.h"

#include <algorithm>

namespace hushmode::platform {

Object::~Object() = default;
ObjectArray::~ObjectArray() = default;
Class::~Class() = default;

std::string Object::description() const { return "<object>"; }

bool Object::respondsTo(std::string_view) const { return true; }

std::shared_ptr<Object> Object::instanceVariable(std::string_view) const { return nullptr; }

const std::shared_ptr<void>& Object::association(const void* key) const {
  static const std::shared_ptr<void> none;
  for (const auto& [held, value] : associations_) {
    if (held == key) return value;
  }
  return none;
}

void Object::setAssociation(const void* key, std::shared_ptr<void> value) {
  const auto place =
      std::find_if(associations_.begin(), associations_.end(), [&](const auto& a) { return a.first == key; });
  if (place == associations_.end()) {
    if (value) associations_.emplace_back(key, std::move(value));
  } else if (value) {
    place->second = std::move(value);
  } else {
    associations_.erase(place);
  }
}

std::shared_ptr<Object> instanceVariable(const std::shared_ptr<Object>& object, std::string_view name) {
  return object ? object->instanceVariable(name) : nullptr;
}

}  // namespace hushmode::platform
