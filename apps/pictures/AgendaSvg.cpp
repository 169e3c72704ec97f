// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/AgendaSvg.h"

#include "apps/pictures/AgendaSvgDay.h"
#include "apps/pictures/DayWords.h"
#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <functional>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

std::string headingOf(const DayPlan& day, const TimeZone& zone) {
  return oneLine(simulation::dayHeading(day.span.start, zone));
}

std::string titleOf(const std::vector<DayPlan>& days, const TimeZone& zone) {
  if (days.empty()) return nothingText();
  const std::string first = headingOf(days.front(), zone);
  return days.size() == 1 ? tr("When the phone is quiet: {}", first)
                          : tr("When the phone is quiet: {0} to {1}", first, headingOf(days.back(), zone));
}

/// The same in words, a line a sentence, for those who do not see it.
std::string description(const std::vector<DayPlan>& days, const TimeZone& zone) {
  std::string text;
  const auto add = [&](const std::string& sentence) { text += (text.empty() ? "" : "\n") + oneLine(sentence); };
  for (const DayPlan& day : days) {
    const std::string heading = headingOf(day, zone);
    const bool quiet =
        std::any_of(day.lanes.begin(), day.lanes.end(), [](const Lane& each) { return !each.on.empty(); });
    if (!quiet) add(day.lanes.empty() ? tr("{0}: {1}", heading, nothingText()) : tr("{}: No profile is on.", heading));
    for (const Lane& lane : day.lanes) {
      for (const DaySpan& each : lane.on) {
        add(tr("{0}: {1} is on, {2}.", heading, lane.title, spanText(day, each, zone)));
      }
    }
    for (const Conflict& each : day.conflicts) add(tr("{0}: {1}.", heading, conflictText(day, each, zone)));
    if (day.jump) add(tr("{0}: The clock is changed, {1}.", heading, jumpText(day, zone)));
  }
  return text;
}

/// What the signs mean; those that do not occur are left out.
class Legend {
 public:
  Legend(SvgCanvas& canvas, double top) : canvas_(canvas), y_(top) {}

  void add(const std::string& text, const std::function<void(const SvgBox&)>& sign) {
    const double width = signWidth + 5 + widthOf(text, SvgCanvas::textSize);
    if (x_ > SvgCanvas::left && x_ + width > SvgCanvas::right) {
      x_ = SvgCanvas::left;
      y_ += height;
    }
    sign({x_, y_ + 2, signWidth, 12});
    canvas_.text(x_ + signWidth + 5, y_ + 12, text, "dim");
    x_ += width + 14;
  }
  double bottom() const { return x_ > SvgCanvas::left ? y_ + height : y_; }

 private:
  static constexpr double signWidth = 16, height = 20;
  SvgCanvas& canvas_;
  double x_ = SvgCanvas::left, y_;
};

double drawLegend(SvgCanvas& canvas, const std::vector<DayPlan>& days, double top) {
  const auto occurs = [&](auto test) { return std::any_of(days.begin(), days.end(), test); };
  const auto occursInLane = [&](auto test) {
    return occurs([&](const DayPlan& day) { return std::any_of(day.lanes.begin(), day.lanes.end(), test); });
  };
  const auto hasEvent = [&](bool counting) {
    return occursInLane([&](const Lane& lane) {
      return std::any_of(lane.events.begin(), lane.events.end(),
                         [&](const PlannedEvent& each) { return (each.standing == Standing::Counts) == counting; });
    });
  };
  Legend legend(canvas, top);
  const auto box = [&](const char* looks, double radius = 0) {
    return [&canvas, looks, radius](const SvgBox& at) { canvas.box(at, looks, radius); };
  };
  if (occursInLane([](const Lane& lane) { return !lane.on.empty(); })) {
    legend.add(tr("on"), box("on", 2));
    legend.add(tr("switches on"), [&](const SvgBox& at) {
      drawSwitch(canvas, at.left + 8, {at.left, at.top + 10, at.width, 0}, true);
    });
    legend.add(tr("switches off"), [&](const SvgBox& at) {
      drawSwitch(canvas, at.left + 8, {at.left, at.top + 3, at.width, 0}, false);
    });
  }
  if (occursInLane([](const Lane& lane) { return lane.window.has_value(); })) legend.add(tr("hours"), box("hours"));
  if (hasEvent(true)) legend.add(tr("event"), box("event", 2));
  if (hasEvent(false)) legend.add(tr("event that does not count"), box("off", 2));
  if (occurs([](const DayPlan& day) { return !day.conflicts.empty(); })) legend.add(tr("several are on"), box("both"));
  if (occurs([](const DayPlan& day) { return day.jump.has_value(); })) {
    legend.add(tr("the clock is changed"),
               [&](const SvgBox& at) { drawJump(canvas, at.left + 8, at.top, at.bottom()); });
  }
  return legend.bottom();
}

}  // namespace

std::string agendaSvg(const std::vector<DayPlan>& days, const TimeZone& zone, std::optional<Date> now) {
  SvgCanvas canvas;
  double y = SvgCanvas::margin - 4;
  for (const DayPlan& day : days) y = drawDay(canvas, day, zone, now, y);
  const double height = std::ceil(drawLegend(canvas, days, y) + SvgCanvas::margin - 4);
  return fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}\" height=\"{1}\" viewBox=\"0 0 {0} {1}\" role=\"img\" "
      "aria-labelledby=\"title desc\">\n<title id=\"title\">{2}</title>\n<desc id=\"desc\">{3}</desc>\n{4}"
      "<rect class=\"page\" width=\"{0}\" height=\"{1}\"/>\n{5}</svg>\n",
      SvgCanvas::width, height, xmlEscaped(titleOf(days, zone)), xmlEscaped(description(days, zone)), svgStyle(),
      canvas.elements());
}

}  // namespace hushmode::cli
