// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/Reason.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace hushmode::host {

using enum Reason::Kind;

namespace {

constexpr std::array<std::pair<Reason::Kind, std::string_view>, 14> codes{{
    {ByHand, "by-hand"},
    {AppliedBefore, "applied-before"},
    {Event, "event"},
    {Network, "network"},
    {EventEnded, "event-ended"},
    {EventGone, "event-gone"},
    {NetworkLeft, "network-left"},
    {NetworkOver, "network-over"},
    {WindowClosed, "window-closed"},
    {Disabled, "disabled"},
    {Deleted, "deleted"},
    {Over, "over"},
    {Stopped, "stopped"},
    {SwitchedOff, "off"},
}};

}  // namespace

Message messageOf(const Reason& reason) {
  const Message title = reason.about ? Message::verbatim(*reason.about) : Message("(no title)");
  const std::string network = reason.about.value_or("");
  switch (reason.kind) {
    case ByHand:
      return Message("by hand");
    case AppliedBefore:
      return Message("applied before");
    case Event:
      return Message("\"{0}\"", title);
    case Network:
      return Message("network {0}", network);
    case EventEnded:
      return Message("\"{0}\" ended", title);
    case EventGone:
      return Message("\"{0}\" gone from the calendar or overtaken", title);
    case NetworkLeft:
      return Message("left network {0}", network);
    case NetworkOver:
      return Message("network {0} over", network);
    case WindowClosed:
      return Message("window closed");
    case Disabled:
      return Message("profile disabled");
    case Deleted:
      return Message("profile deleted");
    case Over:
      return Message("over");
    case Stopped:
      return Message("Hush Mode stopped");
    case SwitchedOff:
      return Message("Hush Mode switched off");
  }
  throw std::logic_error("a reason of no kind");
}

std::string_view codeOf(Reason::Kind kind) {
  const auto place = std::find_if(codes.begin(), codes.end(), [&](const auto& each) { return each.first == kind; });
  return place->second;
}

std::optional<Reason::Kind> reasonKindOf(std::string_view code) {
  const auto place = std::find_if(codes.begin(), codes.end(), [&](const auto& each) { return each.second == code; });
  return place == codes.end() ? std::nullopt : std::optional(place->first);
}

}  // namespace hushmode::host
