// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/Services.h"

#include <optional>
#include <utility>

namespace hushmode::devices {

void Services::report(const std::string& name, ServiceState state) {
  const auto place = states_.find(name);
  if (place != states_.end() && place->second == state) return;
  std::optional<ServiceState> before;
  if (place != states_.end()) before = place->second;
  states_[name] = state;
  if (listener_) listener_(name, state, before ? &*before : nullptr);
}

bool Services::isAvailable(std::string_view name) const {
  const auto place = states_.find(name);
  return place != states_.end() && place->second.available;
}

}  // namespace hushmode::devices
