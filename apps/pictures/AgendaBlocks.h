// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/pictures/DayPlan.h"
#include "apps/terminal/Terminal.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::cli {

/// What a terminal can show.
struct BlockCanvas {
  Terminal terminal{false};
  std::size_t columns = 80;  ///< Fewer than 40 count as 40.
  bool blocks = true;        ///< Block characters; else plain ASCII.
};

/// The days as lines of text: per profile a line on the scale of hours, with blocks where it is on. `now` is marked
/// where it lies in one of the days.
std::string agendaBlocks(const std::vector<DayPlan>& days, const devices::TimeZone& zone,
                         std::optional<platform::Date> now, const BlockCanvas& canvas);

}  // namespace hushmode::cli
