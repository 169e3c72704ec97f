// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/ICalZones.h"

#include "devices/shared/ICalProperty.h"
#include "devices/shared/ICalZone.h"
#include "devices/shared/WindowsZones.h"
#include "devices/words/Text.h"

namespace hushmode::devices {

namespace {

/// Enough for ten rules over 200 years; no real zone comes near.
constexpr std::int64_t kWorkPerZone = 100'000;

}  // namespace

std::shared_ptr<const TimeZone> wellKnownZone(std::string_view identifier) {
  if (auto zone = TimeZone::named(identifier)) return zone;
  for (std::size_t slash = identifier.find('/'); slash != std::string_view::npos;
       slash = identifier.find('/', slash + 1)) {
    if (auto zone = TimeZone::named(identifier.substr(slash + 1))) return zone;
  }
  const std::string_view name = zoneOfWindowsName(identifier);
  return name.empty() ? nullptr : TimeZone::named(name);
}

const ICalZones::Definition& ICalZones::defined(std::string_view component, WorkBudget& budget) {
  static const Definition none;
  if (budget.left() <= 0 && !definitions_.contains(std::string(component))) return none;
  const auto [known, isNew] = definitions_.try_emplace(std::string(component));
  Definition& definition = known->second;
  if (!isNew) return definition;
  const ICalComponentPointer parsed = parsedComponent(known->first);
  if (!parsed || icalcomponent_isa(parsed.get()) != ICAL_VTIMEZONE_COMPONENT) return definition;
  if (icalproperty* identifier = icalcomponent_get_first_property(parsed.get(), ICAL_TZID_PROPERTY)) {
    definition.identifier = icalproperty_get_tzid(identifier);
    WorkBudget ofZone(kWorkPerZone);
    definition.zone = zoneOf(parsed.get(), ofZone, wellKnownZone(definition.identifier));
    budget.take(kWorkPerZone - ofZone.left());
  }
  return definition;
}

void ICalZones::forgetUnused() {
  std::erase_if(definitions_, [](const auto& definition) { return definition.second.zone.use_count() <= 1; });
}

ICalZoneResolver::ICalZoneResolver(const std::vector<std::string_view>& timeZones, ICalZones& zones, WorkBudget& budget,
                                   const ICalProblem& problem) {
  for (const std::string_view component : timeZones) {
    const ICalZones::Definition& definition = zones.defined(component, budget);
    if (definition.zone) {
      zones_.insert_or_assign(definition.identifier, definition.zone);
    } else {
      problem(
          component,
          tr("the time zone \"{}\" is not described completely (or changes too often); another of that name is used",
             definition.identifier));
    }
  }
}

const TimeZone* ICalZoneResolver::resolve(std::string_view identifier) {
  auto known = zones_.find(identifier);
  if (known == zones_.end()) known = zones_.emplace(identifier, wellKnownZone(identifier)).first;
  return known->second.get();
}

std::vector<std::shared_ptr<const TimeZone>> ICalZoneResolver::takeZones() {
  std::vector<std::shared_ptr<const TimeZone>> zones;
  for (auto& [identifier, zone] : zones_) {
    if (zone) zones.push_back(std::move(zone));
  }
  zones_.clear();
  return zones;
}

}  // namespace hushmode::devices
