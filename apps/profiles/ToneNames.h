// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// The tones of this phone, by which a profile names them.
namespace hushmode::cli {

/// All of them, the default one first: "texttone:Calendar Alert".
std::vector<std::string> toneNames();

bool isKnownTone(const std::string& name);

/// Reads what somebody wrote for the option (such as "--tone"). Throws simulation::InputError with all tones and
/// the nearest: "texttone:Chime" for "chime".
std::string parseTone(const std::string& option, const std::string& text);

}  // namespace hushmode::cli
