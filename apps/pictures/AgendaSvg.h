// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/pictures/DayPlan.h"

#include <optional>
#include <string>
#include <vector>

namespace hushmode::cli {

/// The days below each other as an SVG document of a phone's width, each on the same scale of hours: per profile its
/// hours, its events, and when it is on. It follows the viewer's preference for light or dark, and tells screen readers
/// all switches in words. `now` is marked where it lies in one of the days. The same days give the same bytes.
std::string agendaSvg(const std::vector<DayPlan>& days, const devices::TimeZone& zone,
                      std::optional<platform::Date> now);

}  // namespace hushmode::cli
