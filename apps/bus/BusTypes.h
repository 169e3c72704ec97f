// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/Host.h"
#include "platform/PropertyList.h"

#include <glibmm/variant.h>
#include <map>
#include <tuple>
#include <vector>

/// The forms that Hush Mode's values take on the bus.
namespace hushmode::bus {

using Dictionary = std::map<Glib::ustring, Glib::VariantBase>;
using Dictionaries = std::vector<Dictionary>;
/// Of each service of the phone whether it works, and a text for people.
using ServiceStates = std::map<Glib::ustring, std::tuple<bool, Glib::ustring>>;

/// A profile as its file has it. Dates are seconds since 1970; data and nested dictionaries are left out.
Dictionary busForm(const platform::Dictionary& profile);

/// A profile that somebody sends. Throws host::EditError (InvalidArgument) for a value of a type that no profile has;
/// whether it fits its key is not looked at.
platform::Dictionary profileFrom(const Dictionary& given);

Dictionary busForm(const host::Switch& each);
Dictionary busForm(const host::AppliedProfile& each);
Dictionary busForm(const host::PlannedWakeUp& each);

/// Why what a switch or an applied profile tells of is so, in the language of this process where its cause is one of
/// those that we know, else as the daemon words it.
std::string reasonText(const Dictionary& told);

}  // namespace hushmode::bus
