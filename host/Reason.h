// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "host/Message.h"

#include <optional>
#include <string>
#include <string_view>

namespace hushmode::host {

/// Why a profile is on, or why it went off.
struct Reason {
  enum class Kind {
    ByHand,
    AppliedBefore,  ///< By an earlier process.
    Event,
    Network,
    EventEnded,
    EventGone,  ///< From the calendar; or another event overtook it.
    NetworkLeft,
    NetworkOver,  ///< The profile does without the network, which is still joined.
    WindowClosed,
    Disabled,
    Deleted,
    Over,  ///< Whatever it was on for, with neither event nor network.
    Stopped,
    SwitchedOff,
  };
  Kind kind = Kind::ByHand;
  std::optional<std::string> about{};  ///< The event's title, absent where it has none; or the network's name.
  bool operator==(const Reason&) const = default;
};

/// "Standup"; "Standup" ended; network Office; ...
Message messageOf(const Reason& reason);

/// A kind's name for programs: "event-ended".
std::string_view codeOf(Reason::Kind kind);
/// None for a name that no kind has.
std::optional<Reason::Kind> reasonKindOf(std::string_view code);

}  // namespace hushmode::host
