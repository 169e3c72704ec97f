// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "devices/simulated/Record.h"
#include "platform/PropertyList.h"

#include <nlohmann/json.hpp>
#include <string>

namespace hushmode::cli {

using Json = nlohmann::ordered_json;

/// A property-list value as JSON: dates as ISO 8601 texts in the zone, data as base64 texts, floats in the shortest
/// form that reads back as the same number.
Json jsonOf(const platform::Value& value, const devices::TimeZone& zone);

/// An entry of the record: "time", "kind", then its fields. docs/record.md has them all.
Json jsonOf(const devices::RecordEntry& entry, const devices::TimeZone& zone);

/// One line. Bytes that are no UTF-8 become U+FFFD.
std::string lineOf(const Json& json);

}  // namespace hushmode::cli
