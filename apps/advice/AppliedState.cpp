// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/AppliedState.h"

#include "apps/advice/ServiceRemedies.h"
#include "apps/client/ProfileStore.h"
#include "apps/profiles/MomentText.h"
#include "apps/terminal/Terminal.h"
#include "apps/words/Words.h"
#include "devices/linux/base/Variants.h"
#include "devices/words/Text.h"

namespace hushmode::cli {

using devices::textOf;
using devices::valueOf;
using platform::Date;

namespace {

std::optional<Date> dateOf(const bus::Dictionary& each, const char* key) {
  const auto seconds = valueOf<double>(each, key);
  return seconds ? std::optional(Date(*seconds)) : std::nullopt;
}

}  // namespace

AppliedState appliedState(const Daemon& daemon, const platform::Dictionary& profile) {
  const std::int64_t identifier = identifierOf(profile);
  const ServiceNeeds needs = needsOf({profile});
  using Names = std::vector<Glib::ustring>;
  AppliedState state;
  const auto properties = daemon.properties();
  for (const auto& each : valueOf<bus::Dictionaries>(properties, "Applied").value_or(bus::Dictionaries())) {
    if (valueOf<gint64>(each, "identifier") == identifier) {
      state.applied = true;
      state.reason = bus::reasonText(each);
      state.since = dateOf(each, "since");
    } else if (state.applied) {
      state.appliedLater.push_back(textOf(each, "title").value_or(""));
    }
  }
  for (const auto& each : valueOf<Names>(properties, "Degraded").value_or(Names())) {
    const bool isMissed = serviceFinding({each.raw(), false, {}}, needs).severity != Severity::Note;
    if (isMissed) state.resting.push_back(each.raw());
  }
  for (const auto& each : daemon.ask<bus::Dictionaries>("RecentSwitches", devices::argumentsOf(guint32(0)))) {
    const auto at = dateOf(each, "date");
    if (!at || valueOf<gint64>(each, "identifier") != identifier) continue;
    state.last = {*at, valueOf<bool>(each, "on").value_or(false), bus::reasonText(each)};
  }
  return state;
}

std::vector<std::string> sentences(const AppliedState& state, const Explanation& explanation,
                                   const devices::TimeZone& zone) {
  const Date now = explanation.moment.at;
  std::vector<std::string> told;
  if (state.applied && state.since) {
    told.push_back(
        tr("The daemon has it on since {0}, for {1}.", momentText(*state.since, now, zone), harmless(state.reason)));
  } else if (state.last && !state.last->on) {
    told.push_back(tr("The daemon switched it off at {0}: {1}.", momentText(state.last->at, now, zone),
                      harmless(state.last->reason)));
  }
  if (state.applied != explanation.on) {
    told.push_back(explanation.on ? tr("The daemon does not have it on.") : tr("The daemon still has it on."));
    told.push_back(
        tr("A change of a calendar takes effect after a few seconds, a network counts as left after ten, and what ends "
           "within two seconds is not begun: ask again in a moment. If it stays so, see: hushmode doctor"));
  }
  if (!state.applied) return told;
  for (const std::string& later : state.appliedLater) {
    told.push_back(tr("{} went on later: its volumes and its vibration hold.", harmless(later)));
  }
  for (const std::string& service : state.resting) {
    told.push_back(
        tr("{} rests, so that the phone may not be as the profile asks; see: hushmode doctor", serviceText(service)));
  }
  told.push_back(tr("What you have set by hand since its last switch stays until the next."));
  return told;
}

}  // namespace hushmode::cli
