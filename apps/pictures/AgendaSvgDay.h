// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/pictures/DayPlan.h"
#include "apps/pictures/SvgCanvas.h"

#include <optional>
#include <string_view>

namespace hushmode::cli {

/// Draws one day below `top`; answers where it ends.
double drawDay(SvgCanvas& canvas, const DayPlan& day, const devices::TimeZone& zone, std::optional<platform::Date> now,
               double top);

// The signs of the picture, for the days and for the legend.
void drawSwitch(SvgCanvas& canvas, double x, const SvgBox& bar, bool on);
void drawJump(SvgCanvas& canvas, double x, double top, double bottom, std::string_view looks = "jump");

}  // namespace hushmode::cli
