// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ToneNames.h"

#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/WrongValue.h"
#include "apps/words/Nearest.h"
#include "devices/linux/base/ToneTable.h"
#include "devices/words/Text.h"

#include <algorithm>

namespace hushmode::cli {

namespace {

/// The tone of that name, or of that name behind its kind: people hear of a "Chime".
std::string nearestTone(const std::string& text) {
  const auto names = toneNames();
  std::vector<std::string> plain;
  for (const std::string& each : names) plain.push_back(each.substr(each.find(':') + 1));
  const auto place = std::find(plain.begin(), plain.end(), nearestOf(text, plain));
  return place == plain.end() ? nearestOf(text, names) : names[static_cast<std::size_t>(place - plain.begin())];
}

}  // namespace

std::vector<std::string> toneNames() {
  std::vector<std::string> names;
  for (const devices::Tone& each : devices::tones()) names.emplace_back(each.identifier);
  return names;
}

bool isKnownTone(const std::string& name) {
  const auto names = toneNames();
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string parseTone(const std::string& option, const std::string& text) {
  if (isKnownTone(text)) return text;
  throw simulation::wrongValue(option + " " + text, tr("one of {}", joined(toneNames())), nearestTone(text));
}

}  // namespace hushmode::cli
