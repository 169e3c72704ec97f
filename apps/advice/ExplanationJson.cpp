// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/ExplanationWords.h"
#include "apps/simulation/TimeText.h"

#include <array>
#include <string_view>

namespace hushmode::cli {

using devices::TimeZone;
using platform::Date;

namespace {

// In the order of the enumerations.
constexpr std::array<std::string_view, 5> conditionNames{"master-switch", "enabled", "window", "network", "event"};
constexpr std::array<std::string_view, 6> windowNames{"all-day", "open",        "not-yet-open",
                                                      "over",    "never-opens", "unreadable"};
constexpr std::array<std::string_view, 4> networkNames{"none", "joined", "not-joined", "not-known"};
constexpr std::array<std::string_view, 7> verdictNames{"counts",       "other-calendar", "cancelled", "all-day-ignored",
                                                       "other-status", "ended",          "not-begun"};
constexpr std::array<std::string_view, 4> statusNames{"none", "confirmed", "tentative", "cancelled"};

template <class Enumeration, std::size_t count>
std::string_view name(const std::array<std::string_view, count>& names, Enumeration value) {
  return names.at(static_cast<std::size_t>(value));
}

Json eventJson(const KnownEvent& event, const TimeZone& zone) {
  return {{"title", event.title ? Json(*event.title) : Json(nullptr)},
          {"start", simulation::isoTime(event.start, zone)},
          {"end", simulation::isoTime(event.end, zone)},
          {"calendar", event.calendar},
          {"status", name(statusNames, event.status)},
          {"allDay", event.allDay}};
}

Json conditionsJson(const Explanation& explanation, const TimeZone& zone) {
  const bool isOpen = explanation.window == WindowState::Open || explanation.window == WindowState::AllDay;
  bool counts = false;
  for (const ExplainedEvent& each : explanation.events) counts = counts || each.verdict == Verdict::Counts;
  Json window{{"condition", name(conditionNames, Condition::Window)},
              {"holds", isOpen},
              {"state", name(windowNames, explanation.window)}};
  if (explanation.window == WindowState::Open || explanation.window == WindowState::NotYetOpen ||
      explanation.window == WindowState::Over) {
    window["start"] = simulation::isoTime(explanation.windowStart, zone);
    window["end"] = simulation::isoTime(explanation.windowEnd, zone);
  }
  const bool isKnown = explanation.network != NetworkState::NotKnown;
  return Json::array(
      {{{"condition", name(conditionNames, Condition::MasterSwitch)}, {"holds", explanation.moment.masterSwitch}},
       {{"condition", name(conditionNames, Condition::Enabled)}, {"holds", explanation.rules.enabled}},
       window,
       {{"condition", name(conditionNames, Condition::Network)},
        {"holds", isKnown ? Json(explanation.network == NetworkState::Joined) : Json(nullptr)},
        {"state", name(networkNames, explanation.network)},
        {"networks", explanation.rules.networks}},
       {{"condition", name(conditionNames, Condition::Event)}, {"holds", counts}}});
}

}  // namespace

Json jsonOf(const Explanation& explanation, const std::optional<AppliedState>& state, const TimeZone& zone) {
  Json json = Json::object();
  json["profile"] = explanation.rules.title;
  json["identifier"] = explanation.rules.identifier;
  json["time"] = simulation::isoTime(explanation.moment.at, zone);
  json["on"] = explanation.on;
  json["failed"] = explanation.failed ? Json(name(conditionNames, *explanation.failed)) : Json(nullptr);
  json["conditions"] = conditionsJson(explanation, zone);
  json["events"] = Json::array();
  for (const ExplainedEvent& each : explanation.events) {
    Json event = eventJson(each.event, zone);
    event["verdict"] = name(verdictNames, each.verdict);
    json["events"].push_back(std::move(event));
  }
  json["next"] = nullptr;
  if (const auto& next = explanation.next) {
    json["next"] = {{"time", simulation::isoTime(next->at, zone)},
                    {"on", next->on},
                    {"event", next->event ? eventJson(*next->event, zone) : Json(nullptr)}};
  }
  if (state) {
    json["daemon"] = {{"on", state->applied},
                      {"since", state->since ? Json(simulation::isoTime(*state->since, zone)) : Json(nullptr)},
                      {"reason", state->applied ? Json(state->reason) : Json(nullptr)},
                      {"appliedLater", state->appliedLater}};
  }
  json["conclusion"] = conclusion(explanation, zone);
  return json;
}

}  // namespace hushmode::cli
