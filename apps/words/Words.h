// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/Message.h"
#include "host/Reason.h"

#include <string>

namespace hushmode {

/// What the host says, in the language of the process.
std::string inWords(const host::Message& message);
std::string inWords(const host::Reason& reason);

/// What a service of the phone is for, by its name among the services: "volumes", "do not disturb". A name that is not
/// known stands for itself.
std::string serviceText(const std::string& name);

/// Whether a text that another process has said is this form with some values in it, in English or in our language.
bool isSaid(const std::string& text, const char* form);

}  // namespace hushmode
