// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/ExplanationWords.h"

#include "apps/advice/ProfileRemedies.h"
#include "apps/profiles/MomentText.h"
#include "apps/simulation/TimeText.h"
#include "devices/words/Text.h"

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

std::string titleOf(const KnownEvent& event) { return harmless(event.title.value_or(tr("(no title)"))); }

/// "08:00 to 18:00".
std::string windowSpan(const Explanation& explanation, const TimeZone& zone) {
  return tr("{0} to {1}", simulation::minuteTime(explanation.windowStart, zone),
            simulation::minuteTime(explanation.windowEnd, zone));
}

std::string list(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& each : names) text += (text.empty() ? "" : ", ") + harmless(each);
  return text;
}

struct Answer {
  enum class Mark { Yes, No, Neither } mark;
  std::string sentence;
};

Answer windowAnswer(const Explanation& explanation, const TimeZone& zone) {
  const ProfileRules& rules = explanation.rules;
  using enum Answer::Mark;
  switch (explanation.window) {
    case WindowState::AllDay:
      return {Yes, tr("It may be on at any time of the day.")};
    case WindowState::Open:
      return {Yes, tr("Its window is open: {}.", windowSpan(explanation, zone))};
    case WindowState::NotYetOpen:
      return {No, tr("Its window is not open yet: {}.", windowSpan(explanation, zone))};
    case WindowState::Over:
      return {No, tr("Its window is over: {}.", windowSpan(explanation, zone))};
    case WindowState::NeverOpens:
      return {No, tr("Its window never opens, since it ends ({0}) before it starts ({1}). For hours over midnight: {2}",
                     harmless(rules.end.text), harmless(rules.start.text), hoursOverMidnight(rules))};
    case WindowState::Unreadable: {
      const std::string& text = rules.start.minutes ? rules.end.text : rules.start.text;
      return {No, tr("Its window cannot be read: \"{0}\" is no time such as \"8:00 AM\". Set it with: {1}",
                     harmless(text), windowAsMeant(rules))};
    }
  }
  return {Neither, {}};
}

Answer networkAnswer(const Explanation& explanation) {
  const auto& names = explanation.rules.networks;
  const auto missing = explanation.failed == Condition::Network ? Answer::Mark::No : Answer::Mark::Neither;
  switch (explanation.network) {
    case NetworkState::HasNone:
      return {Answer::Mark::Neither, tr("It follows no networks.")};
    case NetworkState::Joined:
      return {Answer::Mark::Yes, tr("The phone is on its network {}.", harmless(*explanation.moment.joinedNetwork))};
    case NetworkState::NotJoined:
      return {missing, tr("The phone is on none of its networks: {}.", list(names))};
    case NetworkState::NotKnown:
      return {missing, tr("Whether the phone is on one of its networks then cannot be known: {}.", list(names))};
  }
  return {Answer::Mark::Neither, {}};
}

Answer eventAnswer(const Explanation& explanation) {
  for (const ExplainedEvent& each : explanation.events) {
    if (each.verdict == Verdict::Counts) return {Answer::Mark::Yes, tr("An event of its calendars goes on.")};
  }
  // Its network is enough.
  const auto mark = explanation.on || explanation.rules.calendars.empty() ? Answer::Mark::Neither : Answer::Mark::No;
  return {mark, explanation.rules.calendars.empty() ? tr("It follows no calendars.")
                                                    : tr("No event of its calendars goes on that counts.")};
}

std::string verdictText(const ExplainedEvent& each, const ProfileRules& rules,
                        const std::vector<KnownCalendar>& calendars) {
  switch (each.verdict) {
    case Verdict::Counts:
      return tr("counts");
    case Verdict::OtherCalendar:
      return tr("does not count: it is in \"{}\", which the profile does not follow",
                harmless(calendarTitle(each.event.calendar, calendars)));
    case Verdict::Cancelled:
      return tr("does not count: it is cancelled");
    case Verdict::AllDayIgnored:
      return tr("does not count: it lasts all day, and the profile ignores such events");
    case Verdict::OtherStatus:
      return rules.wantedStatus == 1 ? tr("does not count: it is not confirmed, and the profile wants confirmed events")
             : rules.wantedStatus == 2
                 ? tr("does not count: it is not tentative, and the profile wants tentative events")
                 : tr("does not count: the profile wants cancelled events, which never count");
    case Verdict::Ended:
      return tr("has ended");
    case Verdict::NotBegun:
      return tr("has not begun");
  }
  return {};
}

std::string spanOf(const KnownEvent& event, Date at, const TimeZone& zone) {
  if (event.allDay) return tr("all day");
  return tr("{0} to {1}", momentText(event.start, at, zone), momentText(event.end, at, zone));
}

/// Why it is off, in a sentence.
std::string whyOff(const Explanation& explanation, const TimeZone& zone) {
  const std::string title = harmless(explanation.rules.title);
  const std::string at = simulation::minuteTime(explanation.moment.at, zone);
  switch (*explanation.failed) {
    case Condition::MasterSwitch:
      return tr("{0} is off at {1}: Hush Mode is off.", title, at);
    case Condition::Enabled:
      return tr("{0} is off at {1}: the profile is disabled.", title, at);
    case Condition::Window:
      return explanation.window == WindowState::NeverOpens ? tr("{0} is off at {1}: its window never opens.", title, at)
             : explanation.window == WindowState::Unreadable
                 ? tr("{0} is off at {1}: its window cannot be read.", title, at)
                 : tr("{0} is off at {1}: its window is not open then.", title, at);
    case Condition::Network:
      return explanation.network == NetworkState::NotKnown
                 ? tr("{0} is off at {1}, unless the phone is on one of its networks then.", title, at)
                 : tr("{0} is off at {1}: the phone is on none of its networks.", title, at);
    case Condition::Event:
      break;
  }
  if (explanation.rules.calendars.empty()) {
    return tr("{0} is off at {1}: it follows neither calendars nor networks.", title, at);
  }
  switch (explanation.network) {
    case NetworkState::NotKnown:
      return tr(
          "{0} is off at {1}, unless the phone is on one of its networks then: no event of its calendars goes on.",
          title, at);
    case NetworkState::NotJoined:
      return tr("{0} is off at {1}: the phone is on none of its networks, and no event of its calendars goes on then.",
                title, at);
    default:
      return tr("{0} is off at {1}: no event of its calendars goes on then.", title, at);
  }
}

std::string nextText(const Explanation& explanation, const TimeZone& zone) {
  const Date at = explanation.moment.at;
  if (!explanation.next) return {};
  const Change& next = *explanation.next;
  const bool today = isSameDay(next.at, at, zone);
  const std::string when = today ? simulation::minuteTime(next.at, zone) : momentText(next.at, at, zone);
  if (!next.on) return today ? tr("It goes off at {}.", when) : tr("It goes off on {}.", when);
  if (!next.event)
    return today ? tr("Next: on at {}, on its network.", when) : tr("Next: on {}, on its network.", when);
  const std::string event = titleOf(*next.event);
  return today ? tr("Next: on at {0} for \"{1}\".", when, event) : tr("Next: on {0} for \"{1}\".", when, event);
}

void printLine(std::ostream& out, const Terminal& terminal, const Answer& answer, bool isFailed) {
  const bool yes = answer.mark == Answer::Mark::Yes, no = answer.mark == Answer::Mark::No;
  const std::string mark = padded(yes ? tr("yes") : no ? tr("no") : "-", 4);
  const Style style = yes ? Style::Green : isFailed ? Style::Red : Style::Dim;
  out << (isFailed ? "> " : "  ") << terminal.styled(mark, style) << ' ' << answer.sentence << '\n';
}

}  // namespace

std::string conclusion(const Explanation& explanation, const TimeZone& zone) {
  const std::string title = harmless(explanation.rules.title);
  const std::string at = simulation::minuteTime(explanation.moment.at, zone);
  const std::string first = !explanation.on ? whyOff(explanation, zone)
                            : explanation.onFor
                                ? tr("{0} is on at {1} for \"{2}\".", title, at, titleOf(*explanation.onFor))
                                : tr("{0} is on at {1}: the phone is on its network {2}.", title, at,
                                     harmless(*explanation.moment.joinedNetwork));
  const std::string next = nextText(explanation, zone);
  return next.empty() ? first : first + ' ' + next;
}

void print(std::ostream& out, const Terminal& terminal, const Explanation& explanation,
           const std::vector<KnownCalendar>& calendars, const TimeZone& zone) {
  const ProfileRules& rules = explanation.rules;
  const Date at = explanation.moment.at;
  using enum Answer::Mark;
  out << terminal.styled(tr("{0}, {1}, {2}", harmless(rules.title), simulation::dayHeading(at, zone),
                            simulation::minuteTime(at, zone)),
                         Style::Bold)
      << "\n\n";
  const auto line = [&](Condition condition, const Answer& answer) {
    printLine(out, terminal, answer, explanation.failed == condition);
  };
  line(Condition::MasterSwitch, explanation.moment.masterSwitch
                                    ? Answer{Yes, tr("Hush Mode is on.")}
                                    : Answer{No, tr("Hush Mode is off. Switch it on with: hushmode on")});
  line(Condition::Enabled,
       rules.enabled ? Answer{Yes, tr("The profile takes part.")}
                     : Answer{No, tr("The profile is disabled. Let it take part with: hushmode profile enable {}",
                                     profileWord(rules))});
  line(Condition::Window, windowAnswer(explanation, zone));
  line(Condition::Network, networkAnswer(explanation));
  line(Condition::Event, eventAnswer(explanation));
  std::size_t spanColumns = 0, titleColumns = 0;
  for (const ExplainedEvent& each : explanation.events) {
    spanColumns = std::max(spanColumns, columnsOf(spanOf(each.event, at, zone)));
    titleColumns = std::max(titleColumns, columnsOf(titleOf(each.event)));
  }
  for (const ExplainedEvent& each : explanation.events) {
    out << "         " << padded(spanOf(each.event, at, zone), spanColumns) << "  "
        << padded(titleOf(each.event), titleColumns) << "  "
        << terminal.styled(verdictText(each, rules, calendars),
                           each.verdict == Verdict::Counts ? Style::Green : Style::Dim)
        << '\n';
  }
  out << '\n' << terminal.styled(conclusion(explanation, zone), Style::Bold) << '\n';
}

}  // namespace hushmode::cli
