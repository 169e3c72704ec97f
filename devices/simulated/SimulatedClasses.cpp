// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedClasses.h"

#include <stdexcept>

namespace hushmode::devices {

namespace {

std::string_view firstKeyword(std::string_view selector) { return selector.substr(0, selector.find(':')); }

}  // namespace

void SimulatedClasses::add(std::string_view name, std::unique_ptr<platform::Class> made,
                           std::function<bool()> available) {
  classes_.insert_or_assign(std::string(name), Entry{std::move(made), std::move(available)});
}

platform::Class* SimulatedClasses::named(std::string_view name) const {
  const auto place = classes_.find(name);
  if (place == classes_.end()) return nullptr;
  const Entry& entry = place->second;
  if (entry.removed || (entry.available && !entry.available())) return nullptr;
  return entry.made.get();
}

SimulatedClasses::Entry& SimulatedClasses::entry(std::string_view name) {
  const auto place = classes_.find(name);
  if (place == classes_.end()) throw std::invalid_argument("the simulated phone knows no class " + std::string(name));
  return place->second;
}

void SimulatedClasses::removeClass(std::string_view name) { entry(name).removed = true; }

void SimulatedClasses::restoreClass(std::string_view name) { entry(name).removed = false; }

void SimulatedClasses::removeSelector(std::string_view className, std::string_view selector) {
  removedSelectors_[std::string(className)].emplace(firstKeyword(selector));
}

void SimulatedClasses::restoreSelector(std::string_view className, std::string_view selector) {
  removedSelectors_[std::string(className)].erase(std::string(firstKeyword(selector)));
}

bool SimulatedClasses::responds(std::string_view className, std::string_view selector) const {
  const auto removed = removedSelectors_.find(className);
  return removed == removedSelectors_.end() || !removed->second.contains(firstKeyword(selector));
}

void SimulatedClasses::require(std::string_view className, std::string_view selector) const {
  if (responds(className, selector)) return;
  throw std::logic_error("unrecognized selector " + std::string(selector) + " sent to " + std::string(className));
}

}  // namespace hushmode::devices
