// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/bus/BusTypes.h"
#include "host/Host.h"

/// What the phone knows, in the forms that packaging/com.quorvel.Hushmode1.xml describes. While the host runs.
namespace hushmode::daemon {

bus::Dictionaries listedCalendars();
bus::Dictionaries listedNetworks(const host::Host& host);

/// The events that overlap a span (seconds since 1970). Throws host::EditError (InvalidArgument) for a span that ends
/// before it begins, or is longer than `mostDays`.
bus::Dictionaries listedEvents(double from, double to);
constexpr int mostDays = 400;

}  // namespace hushmode::daemon
