// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// A tone that profiles can name, and what a Linux phone plays for it.
struct Tone {
  std::string_view identifier;  ///< As profiles have it.
  std::string_view feedback;    ///< feedbackd's event: the Event Naming Specification's, as its theme knows them.
  std::string_view sound;       ///< The sound of that event in the Sound Naming Specification: where feedbackd is not.
};

/// All of them; docs/tones.md shows them to people. The first is the default.
std::span<const Tone> tones();

/// The tone of that identifier: the default one when it is absent or unknown.
const Tone& toneFor(const std::optional<std::string>& identifier);

}  // namespace hushmode::devices
