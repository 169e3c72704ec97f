// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionTexts.h"

#include "devices/shared/ICalZones.h"

#include <memory>

namespace hushmode::devices {

std::string textOfComponent(ICalComponent* component) {
  const std::unique_ptr<char, decltype(&g_free)> text(i_cal_component_as_ical_string(component), g_free);
  return text ? text.get() : "";
}

void EvolutionTexts::add(ICalComponent* component) {
  const char* uid = component != nullptr ? i_cal_component_get_uid(component) : nullptr;
  if (uid == nullptr) return;
  Entry& entry = entries_[uid];
  entry.components += textOfComponent(component);
  i_cal_component_foreach_tzid(
      component,
      [](ICalParameter* parameter, void* zones) {
        const char* identifier = i_cal_parameter_get_tzid(parameter);
        if (identifier == nullptr || wellKnownZone(identifier)) return;
        static_cast<std::set<std::string>*>(zones)->insert(identifier);
      },
      &entry.zones);
}

std::set<std::string> EvolutionTexts::missingZones(const Zones& known) const {
  std::set<std::string> missing;
  for (const auto& [uid, entry] : entries_) missing.insert(entry.zones.begin(), entry.zones.end());
  std::erase_if(missing, [&](const std::string& identifier) { return known.contains(identifier); });
  return missing;
}

std::map<std::string, std::string> EvolutionTexts::finished(const Zones& zones) const {
  std::map<std::string, std::string> texts;
  for (const auto& [uid, entry] : entries_) {
    std::string& text = texts[uid] = "BEGIN:VCALENDAR\r\n";
    for (const std::string& identifier : entry.zones) {
      const auto zone = zones.find(identifier);
      if (zone != zones.end()) text += zone->second;
    }
    text += entry.components + "END:VCALENDAR\r\n";
  }
  return texts;
}

}  // namespace hushmode::devices
