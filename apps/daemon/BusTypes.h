#pragma once

#include "host/Host.h"
#include "platform/PropertyList.h"

#include <glibmm/variant.h>
#include <map>
#include <vector>

/// The forms that Hush Mode's values take on the bus.
namespace hushmode::daemon {

using BusDictionary = std::map<Glib::ustring, Glib::VariantBase>;
using BusDictionaries = std::vector<BusDictionary>;

/// A profile as its file has it. Dates are seconds since 1970; data and nested dictionaries are left out.
BusDictionary busForm(const platform::Dictionary& profile);

/// A profile that somebody sends. Throws host::EditError (InvalidArgument) for a value of a type that no profile has;
/// whether it fits its key is not looked at.
platform::Dictionary profileFrom(const BusDictionary& given);

BusDictionary busForm(const host::Switch& each);
BusDictionary busForm(const host::AppliedProfile& each);
BusDictionary busForm(const host::PlannedWakeUp& each);

}  // namespace hushmode::daemon
