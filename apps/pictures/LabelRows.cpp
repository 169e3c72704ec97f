// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/LabelRows.h"

#include <algorithm>

namespace hushmode::cli {

namespace {

constexpr double apart = 6;     // Between two things in a row.
constexpr double beside = 4;    // Between a box and its label.
constexpr double leastBox = 4;  // Narrower ones are not seen.

}  // namespace

std::size_t LabelRows::place(double left, double right) {
  const auto isFree = [&](const std::vector<Taken>& row) {
    return std::none_of(row.begin(), row.end(),
                        [&](const Taken& each) { return left < each.right + apart && each.left < right + apart; });
  };
  auto row = std::find_if(taken_.begin(), taken_.end(), isFree);
  if (row == taken_.end()) row = taken_.insert(row, std::vector<Taken>());
  row->push_back({left, right});
  return static_cast<std::size_t>(row - taken_.begin());
}

LabelledBox labelledBox(double left, double right, const std::function<std::string(double)>& label, LabelRows& rows) {
  LabelledBox made;
  made.width = std::max(right - left, leastBox);
  made.left = std::min(left, SvgCanvas::right - made.width);
  const double within = made.width - 2 * beside;
  const double after = SvgCanvas::right - made.left - made.width - beside;
  const double before = made.left - beside - SvgCanvas::left;
  const auto widthIn = [&](double room) { return room > 0 ? widthOf(label(room), SvgCanvas::textSize) : 0; };
  const double wanted = widthOf(label(SvgCanvas::width), SvgCanvas::textSize);
  double room = std::max({within, after, before});
  if (wanted <= room) room = wanted <= within ? within : wanted <= after ? after : before;
  made.label = label(room);
  double first = made.left, last = made.left + made.width;
  if (room == within) {
    made.labelX = made.left + beside;
  } else if (room == after) {
    made.labelX = last + beside;
    last = made.labelX + widthIn(room);
  } else {
    made.anchor = Anchor::End;
    made.labelX = first - beside;
    first = made.labelX - widthIn(room);
  }
  made.row = rows.place(first, last);
  return made;
}

}  // namespace hushmode::cli
