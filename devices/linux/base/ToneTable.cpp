// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/ToneTable.h"

#include <algorithm>

namespace hushmode::devices {

namespace {

constexpr Tone table[] = {
    {"texttone:Calendar Alert", "alarm-clock-elapsed", "alarm-clock-elapsed"},
    {"texttone:Chime", "message-new-instant", "message-new-instant"},
    {"texttone:Complete", "timeout-completed", "complete"},
    {"texttone:Ring", "phone-incoming-call", "phone-incoming-call"},
};

}  // namespace

std::span<const Tone> tones() { return table; }

const Tone& toneFor(const std::optional<std::string>& identifier) {
  const auto place = std::find_if(std::begin(table), std::end(table),
                                  [&](const Tone& tone) { return identifier && tone.identifier == *identifier; });
  return place == std::end(table) ? table[0] : *place;
}

}  // namespace hushmode::devices
