// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/AgendaSvgDay.h"

#include "apps/pictures/DayWords.h"
#include "apps/pictures/LabelRows.h"
#include "apps/profiles/ClockText.h"
#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <cmath>
#include <fmt/format.h>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

constexpr double headingHeight = 26, axisHeight = 17, noteHeight = 16, titleHeight = 19;
constexpr double barHeight = 12, markHeight = 7, labelHeight = 14, eventHeight = 16, eventPitch = 20, padding = 5;
constexpr double laneGap = 5, dayGap = 18;
constexpr int labelledHours = 4;

class DayDrawing {
 public:
  DayDrawing(SvgCanvas& canvas, const DayPlan& day, const TimeZone& zone, std::optional<Date> now, double top)
      : canvas_(canvas), day_(day), zone_(zone), now_(now), y_(top) {
    if (now_ && (*now_ < day.span.start || *now_ >= day.span.end)) now_.reset();
  }

  double draw() {
    const std::string heading = oneLine(simulation::dayHeading(day_.span.start, zone_));
    canvas_.text(SvgCanvas::left, y_ + 17, heading, "heading");
    y_ += headingHeight;
    if (day_.lanes.empty()) {
      canvas_.text(SvgCanvas::left, y_ + 10, nothingText(), "dim");
      y_ += noteHeight;
    }
    if (day_.jump || !day_.lanes.empty()) drawAxis();
    if (day_.jump) drawJumpLane();
    for (const Lane& lane : day_.lanes) drawLane(lane);
    if (!day_.conflicts.empty()) drawConflicts();
    return y_ - laneGap + dayGap;
  }

 private:
  double x(Date at) const {
    const double part = (at - day_.span.start) / (day_.span.end - day_.span.start);
    return SvgCanvas::left + std::clamp(part, 0.0, 1.0) * (SvgCanvas::right - SvgCanvas::left);
  }

  /// Each whole hour of the clock in the day, with the hour; both times where it is repeated.
  template <class Visit>
  void eachHour(Visit visit) const {
    constexpr int step = 1800;  // Clocks are changed by half an hour, too.
    for (Date at = day_.span.start; at < day_.span.end; at = at.addingSeconds(step)) {
      const auto local = zone_.localFromUtc(static_cast<std::int64_t>(at.secondsSince1970()));
      if (local % 3600 == 0) visit(at, static_cast<int>((local % 86400 + 86400) % 86400 / 3600));
    }
  }

  void drawAxis() {
    double free = SvgCanvas::left, end = SvgCanvas::right;
    const double baseline = y_ + 11;
    if (now_) {
      const std::string label = tr("now {}", clockOn(day_, *now_, zone_));
      const double width = widthOf(label, SvgCanvas::textSize, Weight::Bold) + 8;
      const double left = std::clamp(x(*now_) - width / 2, SvgCanvas::left, SvgCanvas::right - width);
      canvas_.box({left, y_, width, 14}, "now-ground", 3);
      canvas_.text(left + width / 2, baseline, label, "now-text", Anchor::Middle);
      nowLabel_ = {left, y_, width, 14};
    }
    const auto label = [&](double at, const std::string& text, Anchor anchor) {
      const double width = widthOf(text, SvgCanvas::textSize);
      const double left = anchor == Anchor::Start ? at : anchor == Anchor::End ? at - width : at - width / 2;
      const bool hidden = now_ && left < nowLabel_.right() + 2 && nowLabel_.left < left + width + 2;
      if (left < free || left + width > end || hidden) return;
      canvas_.text(at, baseline, text, "dim", anchor);
      if (anchor == Anchor::End) end = left - 2;
      free = anchor == Anchor::End ? free : left + width + 2;
    };
    label(SvgCanvas::right, hourText(24), Anchor::End);
    eachHour([&](Date at, int hour) {
      if (hour % labelledHours != 0) return;
      label(x(at), hourText(hour), at == day_.span.start ? Anchor::Start : Anchor::Middle);
    });
    y_ += axisHeight;
  }

  void drawJumpLane() {
    const double at = x(day_.jump->at);
    const std::string text = jumpText(day_, zone_);
    canvas_.box({SvgCanvas::left, y_, SvgCanvas::right - SvgCanvas::left, noteHeight}, "lane");
    drawJump(canvas_, at, y_, y_ + noteHeight);
    const double width = widthOf(text, SvgCanvas::textSize, Weight::Bold);
    const bool after = at + 8 + width <= SvgCanvas::right;
    canvas_.text(after ? at + 8 : at - 8, y_ + 12, text, "jump-text", after ? Anchor::Start : Anchor::End);
    y_ += noteHeight + laneGap;
  }

  /// The ground of a lane of that height: its hours, the grid, and the lines that go through the whole day.
  void drawGround(double height, const Lane& lane) {
    const SvgBox ground{SvgCanvas::left, y_, SvgCanvas::right - SvgCanvas::left, height};
    canvas_.box(ground, "lane");
    if (lane.window) {
      const double from = x(lane.window->start);
      canvas_.box({from, y_, x(lane.window->end) - from, height}, "hours");
    }
    eachHour([&](Date at, int hour) {
      canvas_.vertical(x(at), y_, ground.bottom(), hour % labelledHours == 0 ? "hours4" : "hour");
    });
    if (day_.jump) drawJump(canvas_, x(day_.jump->at), y_, ground.bottom(), "jump behind");
    if (now_) canvas_.vertical(x(*now_), y_, ground.bottom(), "now behind");
  }

  void drawLane(const Lane& lane) {
    const std::string hours = hoursText(day_, lane, zone_);
    const std::string hoursLabel = tr("hours: {}", hours);
    canvas_.text(SvgCanvas::right, y_ + 13, hoursLabel, "dim", Anchor::End);
    const double room = SvgCanvas::right - SvgCanvas::left - widthOf(hoursLabel, SvgCanvas::textSize) - 8;
    canvas_.text(SvgCanvas::left, y_ + 13, cutToWidth(oneLine(lane.title), SvgCanvas::titleSize, room, Weight::Bold),
                 "title");
    y_ += titleHeight;

    LabelRows timeRows, eventRows;
    const auto times = timesOf(lane, timeRows);
    std::vector<LabelledBox> boxes;
    for (const PlannedEvent& each : lane.events) boxes.push_back(boxOf(each, eventRows));

    const double barTop = lane.on.empty() ? padding : markHeight + 2;
    const double timesTop = lane.on.empty() ? barTop : barTop + barHeight + markHeight;
    const double eventsTop = timesTop + static_cast<double>(timeRows.count()) * labelHeight + (lane.on.empty() ? 0 : 4);
    const double height = eventsTop + static_cast<double>(eventRows.count()) * eventPitch + padding - 2;
    drawGround(height, lane);
    drawBars(lane, y_ + barTop);
    for (const LabelledBox& each : times) {
      canvas_.text(each.labelX, y_ + timesTop + static_cast<double>(each.row) * labelHeight + 10, each.label, "");
    }
    for (std::size_t i = 0; i < boxes.size(); ++i) drawEvent(lane.events[i], boxes[i], y_ + eventsTop);
    y_ += height + laneGap;
  }

  std::vector<LabelledBox> timesOf(const Lane& lane, LabelRows& rows) const {
    std::vector<LabelledBox> labels;
    for (const DaySpan& each : lane.on) {
      LabelledBox made;
      made.label = spanText(day_, each, zone_);
      const double width = widthOf(made.label, SvgCanvas::textSize);
      made.labelX = std::min(x(each.start), SvgCanvas::right - width);
      made.row = rows.place(made.labelX, made.labelX + width);
      labels.push_back(std::move(made));
    }
    return labels;
  }

  LabelledBox boxOf(const PlannedEvent& event, LabelRows& rows) const {
    const double around = widthOf(oneLine(eventText(day_, event, {}, zone_)), SvgCanvas::textSize);
    const std::string title = oneLine(titleOf(event));
    return labelledBox(
        x(event.span.start), x(event.span.end),
        [&](double width) {
          const std::string shown = cutToWidth(title, SvgCanvas::textSize, width - around);
          return oneLine(eventText(day_, event, shown, zone_));
        },
        rows);
  }

  SvgBox barOf(const DaySpan& span, double top) const {
    const double left = x(span.start);
    return {left, top, std::max(x(span.end) - left, 2.0), barHeight};
  }

  void drawBars(const Lane& lane, double top) {
    for (const DaySpan& each : lane.on) canvas_.box(barOf(each, top), "on", 2);
    const auto place = static_cast<std::size_t>(&lane - day_.lanes.data());
    for (const Conflict& each : day_.conflicts) {
      const bool isIn = std::find(each.lanes.begin(), each.lanes.end(), place) != each.lanes.end();
      if (isIn) canvas_.box(barOf(each.span, top), "both");
    }
    for (const PlannedSwitch& each : lane.switches) drawSwitch(canvas_, x(each.at), {0, top, 0, barHeight}, each.on);
  }

  void drawEvent(const PlannedEvent& event, const LabelledBox& box, double top) {
    const double y = top + static_cast<double>(box.row) * eventPitch;
    const bool counts = event.standing == Standing::Counts;
    canvas_.box({box.left, y, box.width, eventHeight}, counts ? "event" : "off", 2);
    const char* looks = counts ? "" : event.standing == Standing::Cancelled ? "gone" : "dim";
    canvas_.text(box.labelX, y + 12, box.label, looks, box.anchor);
  }

  /// In words, since the hatched parts of the bars do not say who is on.
  void drawConflicts() {
    for (const Conflict& each : day_.conflicts) {
      canvas_.box({SvgCanvas::left + 0.5, y_ + 2, 15, 11}, "both");
      const double left = SvgCanvas::left + 21;
      const std::string text = oneLine(conflictText(day_, each, zone_));
      canvas_.text(left, y_ + 12, cutToWidth(text, SvgCanvas::textSize, SvgCanvas::right - left), "both-text");
      y_ += noteHeight;
    }
    y_ += laneGap;
  }

  SvgCanvas& canvas_;
  const DayPlan& day_;
  const TimeZone& zone_;
  std::optional<Date> now_;
  double y_;
  SvgBox nowLabel_;
};

}  // namespace

double drawDay(SvgCanvas& canvas, const DayPlan& day, const TimeZone& zone, std::optional<Date> now, double top) {
  return DayDrawing(canvas, day, zone, now, top).draw();
}

void drawSwitch(SvgCanvas& canvas, double x, const SvgBox& bar, bool on) {
  if (on) {
    canvas.path(fmt::format("M{:.1f} {:.1f}l-4 -7h8z", x, bar.top), "switch-on");
  } else {
    canvas.circle(x, bar.bottom() + 3, 3, "switch-off");
  }
}

void drawJump(SvgCanvas& canvas, double x, double top, double bottom, std::string_view looks) {
  std::string data = fmt::format("M{:.1f} {:.1f}", x, top);
  constexpr double step = 4;
  bool right = true;
  for (double y = top + step; y <= bottom; y += step, right = !right) {
    data += fmt::format("L{:.1f} {:.1f}", right ? x + 2.5 : x - 2.5, y);
  }
  canvas.path(data, looks);
}

}  // namespace hushmode::cli
