// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/AgendaBlocks.h"

#include "apps/pictures/DayWords.h"
#include "apps/profiles/ClockText.h"
#include "apps/simulation/TimeText.h"
#include "apps/terminal/TextWrap.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <glib.h>
#include <utility>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

constexpr std::size_t leastColumns = 40;
constexpr std::size_t longestDay = 25;  // All days have the same scale.
/// A switch comes moments after its event; less than this of a cell is nothing.
constexpr double least = 1.0 / 16;

/// The characters of the picture.
struct Signs {
  const char *on, *event, *hours, *ground, *both, *jump, *now, *ellipsis;
};
constexpr Signs blockSigns{"█", "▒", "░", "·", "!", "^", "▾", "…"};
constexpr Signs plainSigns{"#", "=", "-", ".", "!", "^", "v", "~"};

/// As much of the text as fits into the columns.
std::string cutToColumns(const std::string& text, std::size_t columns, const char* ellipsis) {
  if (columnsOf(text) <= columns) return text;
  std::string kept;
  for (std::size_t at = 0; at < text.size();) {
    const auto next = static_cast<std::size_t>(g_utf8_next_char(text.data() + at) - text.data());
    if (columnsOf(kept) + columnsOf(text.substr(at, next - at)) + 1 > columns) break;
    kept += text.substr(at, next - at);
    at = next;
  }
  return kept + ellipsis;
}

class BlockDrawing {
 public:
  BlockDrawing(const std::vector<DayPlan>& days, const TimeZone& zone, std::optional<Date> now,
               const BlockCanvas& canvas)
      : days_(days), zone_(zone), now_(now), canvas_(canvas), signs_(canvas.blocks ? blockSigns : plainSigns) {
    const std::size_t columns = std::max(canvas.columns, leastColumns);
    std::size_t longest = 0;
    for (const DayPlan& day : days) {
      for (const Lane& lane : day.lanes) longest = std::max(longest, columnsOf(nameOf(lane)));
    }
    names_ = std::min(longest, columns / 4);
    cellsPerHour_ = static_cast<int>((columns - names_ - 1) / longestDay);
  }

  std::string draw() {
    for (const DayPlan& day : days_) drawDay(day);
    drawLegend();
    return std::move(text_);
  }

 private:
  void line(const std::string& content) {
    const auto end = content.find_last_not_of(' ');
    text_ += content.substr(0, end == std::string::npos ? 0 : end + 1) + "\n";
  }

  std::string nameOf(const Lane& lane) const {
    const std::string name = harmless(lane.title);
    return canvas_.blocks || g_str_is_ascii(name.c_str()) ? name : asciiOf(name);
  }

  static std::string asciiOf(const std::string& text) {
    std::string ascii;
    for (const char* at = text.c_str(); *at; at = g_utf8_next_char(at)) {
      ascii += static_cast<unsigned char>(*at) < 0x80 ? *at : '?';
    }
    return ascii;
  }

  /// A place on the scale of hours, in cells; not rounded.
  double cellOf(const DayPlan& day, Date at) const { return (at - day.span.start) / 3600 * cellsPerHour_; }
  std::size_t cellsOf(const DayPlan& day) const {
    return static_cast<std::size_t>(std::ceil(cellOf(day, day.span.end)));
  }
  std::string indented(const std::string& content) const { return std::string(names_ + 1, ' ') + content; }

  void drawDay(const DayPlan& day) {
    line(canvas_.terminal.styled(simulation::dayHeading(day.span.start, zone_), Style::Bold));
    if (day.lanes.empty()) line(nothingText());
    if (!day.lanes.empty()) {
      line(canvas_.terminal.styled(indented(ruler(day)), Style::Dim));
      const std::string above = marks(day);
      if (!above.empty()) line(indented(above));
    }
    for (const Lane& lane : day.lanes) {
      const std::string name = padded(cutToColumns(nameOf(lane), names_, signs_.ellipsis), names_);
      line(canvas_.terminal.styled(name, Style::Bold) + " " + laneCells(day, lane));
    }
    for (const std::string& each : notes(day)) line(each);
    line("");
  }

  /// The hours of the clock, as many as have room.
  std::string ruler(const DayPlan& day) const {
    const int step = cellsPerHour_ >= 6 ? 1 : cellsPerHour_ >= 3 ? 2 : cellsPerHour_ == 2 ? 3 : 6;
    std::string content;
    for (Date at = day.span.start; at < day.span.end; at = at.addingSeconds(1800)) {
      const auto local = zone_.localFromUtc(static_cast<std::int64_t>(at.secondsSince1970()));
      const auto hour = static_cast<int>((local % 86400 + 86400) % 86400 / 3600);
      if (local % 3600 != 0 || hour % step != 0) continue;
      const auto cell = static_cast<std::size_t>(std::floor(cellOf(day, at)));
      const std::string label = hourText(hour);
      const std::size_t taken = columnsOf(content);
      if ((taken > 0 && taken >= cell) || cell + columnsOf(label) > cellsOf(day)) continue;
      content += std::string(cell - taken, ' ') + label;
    }
    return content;
  }

  /// What stands above the lanes: now, the jump of the clock, and conflicts.
  std::string marks(const DayPlan& day) const {
    std::vector<std::string> cells(cellsOf(day), " ");
    const auto set = [&](double cell, const std::string& sign) {
      cells[std::min(static_cast<std::size_t>(std::max(cell, 0.0)), cells.size() - 1)] = sign;
    };
    for (const Conflict& each : day.conflicts) {
      const double end = cellOf(day, each.span.end);
      for (double cell = std::floor(cellOf(day, each.span.start)); cell < end - least; ++cell) {
        set(cell, canvas_.terminal.styled(signs_.both, Style::Red));
      }
    }
    if (day.jump) set(cellOf(day, day.jump->at), canvas_.terminal.styled(signs_.jump, Style::Yellow));
    if (isNowIn(day)) set(cellOf(day, *now_), canvas_.terminal.styled(signs_.now, Style::Bold));
    if (std::all_of(cells.begin(), cells.end(), [](const auto& each) { return each == " "; })) return {};
    std::string content;
    for (const std::string& each : cells) content += each;
    return content;
  }

  bool isNowIn(const DayPlan& day) const { return now_ && day.span.start <= *now_ && *now_ < day.span.end; }

  std::vector<std::string> notes(const DayPlan& day) const {
    std::vector<std::string> lines;
    const std::size_t columns = std::max(canvas_.columns, leastColumns);
    const auto add = [&](const char* sign, const std::string& text, Style style) {
      const std::string shown = canvas_.blocks ? harmless(text) : asciiOf(plainDashes(harmless(text)));
      std::string start = std::string(sign) + " ";
      for (const std::string& each : wrapped(shown, columns - 2)) {
        lines.push_back(canvas_.terminal.styled(start + cutToColumns(each, columns - 2, signs_.ellipsis), style));
        start = "  ";
      }
    };
    for (const Conflict& each : day.conflicts) add(signs_.both, conflictText(day, each, zone_), Style::Red);
    if (day.jump) add(signs_.jump, jumpText(day, zone_), Style::Yellow);
    if (isNowIn(day) && !day.lanes.empty()) add(signs_.now, tr("now {}", clockOn(day, *now_, zone_)), Style::Bold);
    return lines;
  }

  static std::string plainDashes(std::string text) {
    static constexpr std::string_view dash = "–";
    for (auto at = text.find(dash); at != std::string::npos; at = text.find(dash)) text.replace(at, dash.size(), "-");
    return text;
  }

  std::string laneCells(const DayPlan& day, const Lane& lane) const {
    std::string content;
    const std::size_t count = cellsOf(day);
    for (std::size_t cell = 0; cell < count; ++cell) content += cellText(day, lane, static_cast<double>(cell));
    return content;
  }

  struct Part {
    double first = 1, last = 0;  ///< From 0, the cell's left edge, to 1.
    double length() const { return std::max(last - first, 0.0); }
  };
  /// The longest part of the cell that one of the spans takes.
  Part partOf(const DayPlan& day, double cell, const std::vector<DaySpan>& spans) const {
    Part best;
    for (const DaySpan& span : spans) {
      const Part part{std::clamp(cellOf(day, span.start) - cell, 0.0, 1.0),
                      std::clamp(cellOf(day, span.end) - cell, 0.0, 1.0)};
      if (part.length() > best.length()) best = part;
    }
    return best;
  }

  std::string cellText(const DayPlan& day, const Lane& lane, double cell) const {
    const Part on = partOf(day, cell, lane.on);
    if (on.length() > least) return canvas_.terminal.styled(canvas_.blocks ? blockOf(on) : signs_.on, Style::Green);
    const auto isShown = [](const PlannedEvent& each) {
      // One that is cancelled does not take place; one that lasts all day would hide everything else.
      return each.standing != Standing::Cancelled && each.standing != Standing::AllDayIgnored;
    };
    std::vector<DaySpan> events;
    for (const PlannedEvent& each : lane.events) {
      if (isShown(each)) events.push_back(each.span);
    }
    if (partOf(day, cell, events).length() > 0) {
      return signs_.event;
    }
    std::vector<DaySpan> open;
    if (lane.window) open.push_back(*lane.window);
    const Part hours = partOf(day, cell, open);
    return canvas_.terminal.styled(hours.length() >= 0.5 ? signs_.hours : signs_.ground, Style::Dim);
  }

  /// Blocks that begin at the left come in eighths, those that end at the right in halves.
  static std::string blockOf(const Part& part) {
    static constexpr std::array eighths{"▏", "▎", "▍", "▌", "▋", "▊", "▉", "█"};
    const bool reachesRight = part.last > 0.95, beginsLeft = part.first < 0.25;
    if (reachesRight && !beginsLeft) return "▐";
    if (!beginsLeft && part.first >= 0.5) return "▐";
    const auto eighth = static_cast<std::size_t>(std::clamp(std::lround(part.last * 8), 1L, 8L));
    return eighths[eighth - 1];
  }

  void drawLegend() {
    const auto occurs = [&](auto test) { return std::any_of(days_.begin(), days_.end(), test); };
    if (!occurs([](const DayPlan& day) { return !day.lanes.empty(); })) {
      while (text_.ends_with("\n\n")) text_.pop_back();
      return;
    }
    std::vector<std::string> entries{tr("{} on", signs_.on), tr("{} other event", signs_.event),
                                     tr("{} hours", signs_.hours)};
    if (occurs([](const DayPlan& day) { return !day.conflicts.empty(); })) {
      entries.push_back(tr("{} several are on", signs_.both));
    }
    std::string content;
    for (const std::string& each : entries) {
      if (!content.empty() && columnsOf(content) + 3 + columnsOf(each) > std::max(canvas_.columns, leastColumns)) {
        line(canvas_.terminal.styled(content, Style::Dim));
        content.clear();
      }
      content += (content.empty() ? "" : "   ") + each;
    }
    line(canvas_.terminal.styled(content, Style::Dim));
  }

  const std::vector<DayPlan>& days_;
  const TimeZone& zone_;
  std::optional<Date> now_;
  const BlockCanvas& canvas_;
  const Signs& signs_;
  std::size_t names_ = 0;
  int cellsPerHour_ = 1;
  std::string text_;
};

}  // namespace

std::string agendaBlocks(const std::vector<DayPlan>& days, const TimeZone& zone, std::optional<Date> now,
                         const BlockCanvas& canvas) {
  return BlockDrawing(days, zone, now, canvas).draw();
}

}  // namespace hushmode::cli
