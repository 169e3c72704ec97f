// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/ProfileLint.h"

#include "apps/advice/ProfileRemedies.h"
#include "apps/advice/SettingFights.h"
#include "apps/client/OwnCalendar.h"
#include "apps/profiles/MomentText.h"
#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/JsonReader.h"
#include "apps/terminal/ShellWord.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <set>

namespace hushmode::cli {

using platform::EKEventStatus;
using enum Severity;

namespace {

/// Looks at one enabled profile.
class ProfileLinter {
 public:
  ProfileLinter(const LintSubject& subject, ProfileRules rules, std::vector<Finding>& findings)
      : subject_(subject), rules_(std::move(rules)), findings_(findings) {}

  void lint() {
    // Each says why the profile is never on, if it is; then there is no need to say that it is not.
    const bool isExplained = [this] {
      const bool byWindow = lintWindow(), byCalendars = lintCalendars(), byFilters = lintFilters();
      return byWindow || byCalendars || byFilters;
    }();
    lintNetworks();
    if (!isExplained) lintSwitches();
  }

 private:
  void find(Severity severity, std::string_view name, std::string text, std::string remedy) {
    findings_.push_back({severity, name, std::move(text), std::move(remedy)});
  }

  bool lintWindow() {
    if (rules_.allDay) return false;
    for (const WindowTime* time : {&rules_.start, &rules_.end}) {
      if (!time->minutes) {
        find(Problem, "window-unreadable",
             tr("\"{0}\" rests, since its window cannot be read: \"{1}\" is no time such as \"8:00 AM\".", rules_.title,
                time->text),
             windowAsMeant(rules_));
        return true;
      }
      if (!time->isUsual) {
        find(
            canOpen(rules_) ? Warning : Problem, "window-time-odd",
            tr("The window of \"{0}\" is not what it seems: \"{1}\" reads as {2:02}:{3:02}, since it is not written as "
               "\"8:00 AM\".",
               rules_.title, time->text, *time->minutes / 60, *time->minutes % 60),
            windowAsMeant(rules_));
        return !canOpen(rules_);
      }
    }
    if (canOpen(rules_)) return false;
    find(Problem, "window-never-opens",
         tr("The window of \"{0}\" never opens, since it ends ({1}) before it starts ({2}).", rules_.title,
            rules_.end.text, rules_.start.text),
         hoursOverMidnight(rules_));
    return true;
  }

  bool isKnown(const std::string& identifier) const {
    const auto& calendars = subject_.known.calendars;
    return std::any_of(calendars.begin(), calendars.end(),
                       [&](const KnownCalendar& each) { return each.identifier == identifier; });
  }

  /// Whether the phone could know that calendar now.
  bool isJudged(const std::string& identifier) const {
    return subject_.accountsKnown || identifier.starts_with(folderPrefix);
  }

  bool lintCalendars() {
    if (rules_.calendars.empty() && rules_.networks.empty()) {
      std::vector<std::string> writable;
      for (const KnownCalendar& each : subject_.known.calendars) {
        // Quiet hours of other profiles are none of this one's.
        if (each.writable && !OwnCalendar::isOwn(each.identifier)) writable.push_back(each.identifier);
      }
      find(Warning, "follows-nothing",
           tr("\"{0}\" follows neither calendars nor networks, so it is never on.", rules_.title),
           writable.empty() ? "hushmode calendars"
                            : editCommand(rules_, calendarsOption(writable, subject_.known.calendars)));
      return true;
    }
    std::vector<std::string> remaining;
    std::string gone;
    for (const std::string& each : rules_.calendars) {
      // Our own calendar is made with its first event.
      if (isKnown(each) || !isJudged(each) || OwnCalendar::isOwn(each)) {
        remaining.push_back(each);
      } else {
        gone += (gone.empty() ? "" : ", ") + each;
      }
    }
    if (gone.empty()) return false;
    const bool isLost = remaining.empty() && rules_.networks.empty();
    find(isLost ? Problem : Warning, "calendar-gone",
         isLost ? tr("No calendar that \"{0}\" follows is on the phone, so it is never on: {1}.", rules_.title, gone)
                : tr("\"{0}\" follows calendars that are not on the phone: {1}.", rules_.title, gone),
         remaining.empty() ? "hushmode calendars"
                           : editCommand(rules_, calendarsOption(remaining, subject_.known.calendars)));
    return isLost;
  }

  void lintNetworks() {
    if (!subject_.networks) return;
    std::vector<std::string> known;
    for (const KnownNetwork& each : *subject_.networks) known.push_back(each.name);
    for (const std::string& name : rules_.networks) {
      if (std::find(known.begin(), known.end(), name) != known.end()) continue;
      const std::string near = simulation::nearestOf(name, known);
      find(Warning, "network-unknown",
           near.empty()
               ? tr("\"{0}\" follows the network \"{1}\", which the phone has never joined.", rules_.title, name)
               : tr("\"{0}\" follows the network \"{1}\", which the phone has never joined; it knows \"{2}\".",
                    rules_.title, name, near),
           near.empty() ? "hushmode networks" : editCommand(rules_, networksOption(name, near)));
    }
  }

  std::string networksOption(const std::string& wrong, const std::string& right) const {
    std::string names;
    for (const std::string& each : rules_.networks)
      names += (names.empty() ? "" : ", ") + (each == wrong ? right : each);
    return "--networks " + shellWord(names);
  }

  /// Whether all of its calendars can be looked at.
  bool areEventsKnown() const {
    return std::all_of(rules_.calendars.begin(), rules_.calendars.end(),
                       [this](const std::string& each) { return isJudged(each); });
  }

  bool lintFilters() {
    if (rules_.calendars.empty()) return false;
    if (rules_.wantedStatus == static_cast<int>(EKEventStatus::Canceled)) {
      find(Problem, "wants-cancelled-events",
           tr("\"{0}\" wants cancelled events, and those never count.", rules_.title),
           editCommand(rules_, "--events any"));
      return rules_.networks.empty();
    }
    if (!areEventsKnown()) return false;
    std::size_t events = 0, ofStatus = 0, inDay = 0;
    for (const KnownEvent& each : subject_.known.events) {
      if (!follows(rules_, each) || each.status == EKEventStatus::Canceled) continue;
      ++events;
      if (rules_.wantedStatus > 0 && static_cast<std::int64_t>(each.status) != rules_.wantedStatus) continue;
      ++ofStatus;
      if (!each.allDay) ++inDay;
    }
    if (events > 0 && ofStatus == 0) {
      find(
          Warning, "status-never-matches",
          rules_.wantedStatus == static_cast<int>(EKEventStatus::Confirmed)
              ? tr("\"{0}\" wants confirmed events, but no event of its calendars in the next month is.", rules_.title)
              : tr("\"{0}\" wants tentative events, but no event of its calendars in the next month is.", rules_.title),
          editCommand(rules_, "--events any"));
      return true;
    }
    if (ofStatus > 0 && inDay == 0 && rules_.allDayEventsIgnored) {
      find(Warning, "all-events-ignored",
           tr("\"{0}\" ignores events that last all day, and in the next month its calendars have no others.",
              rules_.title),
           editCommand(rules_, "--all-day-events count"));
      return true;
    }
    return false;
  }

  /// Networks that will be joined cannot be forecast.
  void lintSwitches() {
    if (!rules_.networks.empty() || !areEventsKnown()) return;
    const auto& switches = subject_.switches;
    if (std::any_of(switches.begin(), switches.end(),
                    [this](const host::Switch& each) { return each.on && each.identifier == rules_.identifier; })) {
      return;
    }
    const auto& events = subject_.known.events;
    const bool hasEvents = std::any_of(events.begin(), events.end(), [this](const KnownEvent& each) {
      return follows(rules_, each) && each.status != EKEventStatus::Canceled;
    });
    const bool isShutOut = hasEvents && !rules_.allDay;
    find(Warning, "never-on",
         isShutOut
             ? tr("\"{0}\" is never on in the next 31 days: no event goes on while its window is open.", rules_.title)
             : tr("\"{0}\" is never on in the next 31 days: no event of its calendars counts then.", rules_.title),
         isShutOut ? editCommand(rules_, "--all-day") : "hushmode explain " + profileWord(rules_));
  }

  const LintSubject& subject_;
  const ProfileRules rules_;
  std::vector<Finding>& findings_;
};

std::vector<ProfileRules> rulesOfAll(const LintSubject& subject) {
  std::vector<ProfileRules> all;
  std::set<std::string> seen;
  for (const auto& profile : subject.profiles) {
    all.push_back(rulesOf(profile, subject.known.calendars));
    all.back().isNamedByTitle = seen.insert(all.back().title).second;
  }
  return all;
}

void lintTitles(const std::vector<ProfileRules>& all, std::vector<Finding>& findings) {
  std::set<std::string> taken;
  for (const ProfileRules& each : all) taken.insert(each.title);
  for (const ProfileRules& each : all) {
    if (each.isNamedByTitle) continue;
    int number = 2;
    while (taken.contains(each.title + " " + std::to_string(number))) ++number;
    const std::string title = each.title + " " + std::to_string(number);
    taken.insert(title);
    findings.push_back({Warning, "title-twice", tr("Two profiles are called \"{0}\".", each.title),
                        fmt::format("hushmode profile edit {} --title {}", each.identifier, shellWord(title))});
  }
}

}  // namespace

std::vector<Finding> lint(const LintSubject& subject, const devices::TimeZone& zone) {
  std::vector<Finding> findings;
  const std::vector<ProfileRules> all = rulesOfAll(subject);
  if (all.empty()) {
    findings.push_back({Warning, "no-profiles", tr("There are no profiles, so that nothing is ever quiet."),
                        "hushmode profile add Meetings"});
  }
  for (const ProfileRules& each : all) {
    if (each.enabled) {
      ProfileLinter(subject, each, findings).lint();
    } else {
      findings.push_back(
          {Note, "disabled", tr("\"{0}\" is disabled.", each.title), "hushmode profile enable " + profileWord(each)});
    }
  }
  lintTitles(all, findings);
  lintFights(subject, all, zone, findings);
  return findings;
}

}  // namespace hushmode::cli
