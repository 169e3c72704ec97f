// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/pictures/SvgCanvas.h"

#include <functional>
#include <string>
#include <vector>

namespace hushmode::cli {

/// Puts things that stand side by side into as few rows as keep them apart.
class LabelRows {
 public:
  /// The first row with room from `left` to `right`.
  std::size_t place(double left, double right);
  std::size_t count() const { return taken_.size(); }

 private:
  struct Taken {
    double left, right;
  };
  std::vector<std::vector<Taken>> taken_;
};

/// A box on the scale of hours, and its label: in it where there is room, else beside it.
struct LabelledBox {
  double left = 0, width = 0;
  double labelX = 0;
  Anchor anchor = Anchor::Start;
  std::string label;
  std::size_t row = 0;
};

/// `label` answers the label in at most that width.
LabelledBox labelledBox(double left, double right, const std::function<std::string(double width)>& label,
                        LabelRows& rows);

}  // namespace hushmode::cli
