// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/client/KnownEvents.h"
#include "apps/profiles/ProfileRules.h"
#include "host/Expectation.h"

#include <optional>
#include <string>
#include <vector>

/// Why a profile is on or off at a moment, as data: each condition with its value. The decision itself is the host's
/// (host/Expectation.h).
namespace hushmode::cli {

/// What must hold, in this order: the first three, and one of the last two.
enum class Condition { MasterSwitch, Enabled, Window, Network, Event };

enum class WindowState { AllDay, Open, NotYetOpen, Over, NeverOpens, Unreadable };
enum class NetworkState { HasNone, Joined, NotJoined, NotKnown };

/// Whether an event makes the profile go on at the moment, and if not, why.
enum class Verdict { Counts, OtherCalendar, Cancelled, AllDayIgnored, OtherStatus, Ended, NotBegun };

struct ExplainedEvent {
  KnownEvent event;
  Verdict verdict = Verdict::Counts;
};

/// What is known of the phone at the moment that is asked about.
struct Moment {
  platform::Date at{0};
  bool masterSwitch = false;
  bool isNetworkKnown = false;
  std::optional<std::string> joinedNetwork;  ///< Of no meaning while it is not known.
};

/// The answer changes by itself.
struct Change {
  platform::Date at{0};
  bool on = false;
  std::optional<KnownEvent> event;  ///< For which it goes on; none when its window opens on its network.
};

struct Explanation {
  ProfileRules rules;
  Moment moment;
  WindowState window = WindowState::AllDay;
  platform::Date windowStart{0}, windowEnd{0};  ///< Of that day; of no meaning when all-day, never open or unreadable.
  NetworkState network = NetworkState::HasNone;
  /// Those that go on at the moment, whatever calendar they are in, and those of its own calendars that count and have
  /// ended last or begin next on that day. By start.
  std::vector<ExplainedEvent> events;

  bool on = false;
  std::optional<KnownEvent> onFor;  ///< The event that it is on for; none when off, or on for its network.
  std::optional<Condition> failed;  ///< The first that keeps it off; none when it is on.
  std::optional<Change> next;       ///< None when nothing known within `lookAheadDays` changes the answer.
};

/// So many days from that of the moment on are searched for the next change.
inline constexpr int lookAheadDays = 8;

/// `events`: what the phone's calendars hold from the beginning of the moment's local day, for `lookAheadDays`. A
/// profile on its network is taken to stay there.
Explanation explain(const ProfileRules& rules, const Moment& moment, const std::vector<KnownEvent>& events,
                    const devices::TimeZone& zone);

}  // namespace hushmode::cli
