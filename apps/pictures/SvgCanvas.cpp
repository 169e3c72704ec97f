// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/SvgCanvas.h"

#include <cmath>
#include <fmt/format.h>
#include <iterator>

namespace hushmode::cli {

namespace {

/// A tenth of a pixel is as fine as anybody sees. No "-0".
double rounded(double value) { return std::round(value * 10) / 10 + 0.0; }

}  // namespace

void SvgCanvas::box(const SvgBox& box, std::string_view looks, double radius) {
  fmt::format_to(std::back_inserter(elements_), "<rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\"{}/>\n",
                 looks, rounded(box.left), rounded(box.top), rounded(box.width), rounded(box.height),
                 radius > 0 ? fmt::format(" rx=\"{}\"", rounded(radius)) : "");
}

void SvgCanvas::path(const std::string& data, std::string_view looks) {
  fmt::format_to(std::back_inserter(elements_), "<path class=\"{}\" d=\"{}\"/>\n", looks, data);
}

void SvgCanvas::circle(double x, double y, double radius, std::string_view looks) {
  fmt::format_to(std::back_inserter(elements_), "<circle class=\"{}\" cx=\"{}\" cy=\"{}\" r=\"{}\"/>\n", looks,
                 rounded(x), rounded(y), rounded(radius));
}

void SvgCanvas::vertical(double x, double top, double bottom, std::string_view looks) {
  path(fmt::format("M{} {}V{}", rounded(x), rounded(top), rounded(bottom)), looks);
}

void SvgCanvas::text(double x, double y, const std::string& text, std::string_view looks, Anchor anchor) {
  if (text.empty()) return;
  const char* attribute = anchor == Anchor::Start    ? ""
                          : anchor == Anchor::Middle ? " text-anchor=\"middle\""
                                                     : " text-anchor=\"end\"";
  fmt::format_to(std::back_inserter(elements_), "<text class=\"{}\" x=\"{}\" y=\"{}\"{}>{}</text>\n", looks, rounded(x),
                 rounded(y), attribute, xmlEscaped(text));
}

std::string_view svgStyle() {
  return R"svg(<style>
text { font-family: sans-serif; font-size: 11px; fill: #1b1f24; }
.heading { font-size: 15px; font-weight: bold; }
.title { font-size: 13px; font-weight: bold; }
.dim { fill: #545c66; }
.gone { fill: #545c66; text-decoration: line-through; }
.page { fill: #ffffff; }
.lane { fill: #f2f4f6; }
.hours { fill: #d3e5f5; }
.hour { fill: none; stroke: #dde1e6; stroke-width: 0.5; }
.hours4 { fill: none; stroke: #b4bcc6; stroke-width: 0.5; }
.event { fill: #ffffff; stroke: #0b5c94; stroke-width: 1; }
.off { fill: none; stroke: #545c66; stroke-width: 1; stroke-dasharray: 3 2; }
.on { fill: #0072b2; }
.switch-on { fill: #0072b2; }
.switch-off { fill: #ffffff; stroke: #0072b2; stroke-width: 1.5; }
.both { fill: url(#hatch); stroke: #9a3b00; stroke-width: 1; }
.hatch-ground { fill: #ffe3c7; }
.hatch-line { stroke: #9a3b00; stroke-width: 2; }
.both-text { fill: #8a3500; }
.jump { fill: none; stroke: #7a3e8f; stroke-width: 1.5; }
.behind { opacity: 0.45; }
.jump-text { fill: #7a3e8f; font-weight: bold; }
.now { fill: none; stroke: #1b1f24; stroke-width: 1.5; }
.now-ground { fill: #1b1f24; }
.now-text { fill: #ffffff; font-weight: bold; }
@media (prefers-color-scheme: dark) {
text { fill: #e8eaed; }
.dim { fill: #a9b1bb; }
.gone { fill: #a9b1bb; }
.page { fill: #101317; }
.lane { fill: #1a1e24; }
.hours { fill: #1f3850; }
.hour { stroke: #2b3138; }
.hours4 { stroke: #4a525c; }
.event { fill: #101317; stroke: #7cc0f0; }
.off { stroke: #a9b1bb; }
.on { fill: #56b4e9; }
.switch-on { fill: #56b4e9; }
.switch-off { fill: #101317; stroke: #56b4e9; }
.both { stroke: #f0a830; }
.hatch-ground { fill: #3a2600; }
.hatch-line { stroke: #f0a830; }
.both-text { fill: #f5b849; }
.jump { stroke: #d6a6e0; }
.jump-text { fill: #d6a6e0; }
.now { stroke: #ffffff; }
.now-ground { fill: #ffffff; }
.now-text { fill: #101317; }
}
</style>
<defs><pattern id="hatch" width="6" height="6" patternUnits="userSpaceOnUse" patternTransform="rotate(45)">
<rect class="hatch-ground" width="6" height="6"/><path class="hatch-line" d="M1 0V6"/></pattern></defs>
)svg";
}

}  // namespace hushmode::cli
