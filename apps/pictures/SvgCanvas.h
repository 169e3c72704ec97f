// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/pictures/PictureText.h"

#include <string>
#include <string_view>

namespace hushmode::cli {

/// Lengths are in the picture's unit: a pixel on a phone that is 360 of them wide.
struct SvgBox {
  double left = 0, top = 0, width = 0, height = 0;
  double right() const { return left + width; }
  double bottom() const { return top + height; }
};

enum class Anchor { Start, Middle, End };

/// Elements of an SVG picture, in the order in which they are drawn. Looks are classes of the picture's style sheet.
class SvgCanvas {
 public:
  static constexpr double width = 360, margin = 12;
  static constexpr double left = margin, right = width - margin;
  /// No text is smaller: it would not be read on a phone.
  static constexpr double textSize = 11, titleSize = 13, headingSize = 15;

  void box(const SvgBox& box, std::string_view looks, double radius = 0);
  void path(const std::string& data, std::string_view looks);
  void circle(double x, double y, double radius, std::string_view looks);
  void vertical(double x, double top, double bottom, std::string_view looks);
  /// `y` is the line on which the letters stand. `text` must be one line (`oneLine`); an empty one is left out.
  void text(double x, double y, const std::string& text, std::string_view looks, Anchor anchor = Anchor::Start);

  const std::string& elements() const { return elements_; }

 private:
  std::string elements_;
};

/// Colours of light and dark, and the hatching. Those who see no colours tell all by shape, stroke and label.
std::string_view svgStyle();

}  // namespace hushmode::cli
