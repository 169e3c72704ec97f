// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Meetings of one profile: one after another, in each other, changed late.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

const std::string standup = list({event("09:00", "10:00")});

/// One meeting from 9 to 10 and another, in each way that two can lie to each other: quiet while one of them goes on.
std::vector<Promise> relations() {
  struct Relation {
    const char *name, *start, *end;
    std::vector<std::pair<const char*, bool>> moments;
  };
  const std::vector<Relation> all{
      {"Before", "11:00", "12:00", {{"09:30", true}, {"10:30", false}, {"11:30", true}, {"12:30", false}}},
      {"Meets", "10:00", "11:00", {{"09:30", true}, {"10:00:01", true}, {"10:30", true}, {"11:30", false}}},
      {"Overlaps", "09:30", "11:00", {{"09:15", true}, {"09:45", true}, {"10:30", true}, {"11:30", false}}},
      {"Starts", "09:00", "11:00", {{"09:30", true}, {"10:30", true}, {"11:30", false}}},
      {"IsStartedBy", "09:00", "09:30", {{"09:15", true}, {"09:45", true}, {"10:30", false}}},
      {"Contains", "09:15", "09:45", {{"09:05", true}, {"09:30", true}, {"09:50", true}, {"10:30", false}}},
      {"IsFinishedBy", "09:30", "10:00", {{"09:15", true}, {"09:45", true}, {"10:30", false}}},
      {"Equals", "09:00", "10:00", {{"09:30", true}, {"10:30", false}}},
  };
  std::vector<Promise> promises;
  for (const Relation& each : all) {
    for (const bool tone : {false, true}) {
      Promise promise{each.name + std::string(tone ? "WithTone" : ""),
                      day({.events = list({event("09:00", "10:00"), event(each.start, each.end, "", "2")}),
                           .more = tone ? withTone : ""})};
      for (const auto& [time, isQuiet] : each.moments) {
        // The tone sounds before the volumes change.
        if (tone && std::string(time) == "10:00:01") continue;
        promise = promise.at(time, isQuiet ? quiet : asBefore);
      }
      promises.push_back(promise);
    }
  }
  return promises;
}

INSTANTIATE_TEST_SUITE_P(TwoMeetings, Promises, ::testing::ValuesIn(relations()), nameOfPromise);

INSTANTIATE_TEST_SUITE_P(
    Meetings, Promises,
    ::testing::Values(
        Promise{"AreQuietAndThenAsBefore", day({.events = standup})}
            .at("08:59:59", asBefore)
            .at("09:00:01", quiet)
            .at("09:59:59", quiet)
            .at("10:00:04", asBefore),
        Promise{"WithEveryEffect", day({.events = standup, .more = withAll})}
            .at("09:30", quietWithAll)
            .at("10:30", asBefore),
        Promise{"APhoneThatDidNotVibrateDoesNot",
                day({.events = standup, .phone = R"("ringVibrate": false, "silentVibrate": false)"})}
            .at("09:30", with(quiet, [](PhoneState& s) { s.ringVibrate = s.silentVibrate = true; })),
        Promise{"APhoneThatVibratedDoes", day({.events = standup})}.at("09:30", quiet),
        Promise{"NothingVibratesWhereTheProfileDoesNot", day({.events = standup, .more = R"(, "vibrate": false)"})}
            .at("09:30", with(quiet, [](PhoneState& s) { s.ringVibrate = s.silentVibrate = false; }))
            .at("10:01", asBefore),
        Promise{"AlreadyGoingOnAtTheStart", day({.events = standup, .from = "2024-05-14T09:30", .to = "2024-05-14"})}
            .at("09:31", quiet)
            .at("10:01", asBefore),
        Promise{"StartingBeforeTheWindowOpens", day({.events = list({event("07:00", "09:00")})})}
            .at("07:30", asBefore)
            .at("08:30", quiet)
            .at("09:01", asBefore),
        Promise{"EndingAfterTheWindowCloses", day({.events = list({event("16:00", "18:00")})})}
            .at("16:30", quiet)
            .at("17:01", asBefore),
        Promise{"LongerThanTheWindow", day({.events = list({event("07:00", "20:00")})})}
            .at("07:30", asBefore)
            .at("12:00", quiet)
            .at("17:01", asBefore),
        Promise{"OverMidnight", day({.events = list({event("22:00", "2024-05-15T02:00")}),
                                     .to = "2024-05-15",
                                     .hours = R"("allDay": true, "allDayEventsIgnored": true)"})}
            .at("23:00", quiet)
            .at("2024-05-15T01:59", quiet)
            .at("2024-05-15T02:01", asBefore)),
    nameOfPromise);

INSTANTIATE_TEST_SUITE_P(
    LateEdits, Promises,
    ::testing::Values(
        Promise{"AddedAMinuteBeforeItsStart",
                day({.steps = list({step("08:59", "addEvent",
                                         R"(, "calendar": "work", "uid": "1", "start": "09:00", "end": "10:00")")})})}
            .at("09:30", quiet)
            .at("10:01", asBefore),
        Promise{"AddedWhileItGoesOn",
                day({.steps = list({step("09:20", "addEvent",
                                         R"(, "calendar": "work", "uid": "1", "start": "09:00", "end": "10:00")")})})}
            .at("09:30", quiet)
            .at("10:01", asBefore),
        Promise{"AddedASecondBeforeItsStart",
                day({.steps = list({step("08:59:59", "addEvent",
                                         R"(, "calendar": "work", "uid": "1", "start": "09:00", "end": "10:00")")})})}
            .at("09:00:10", quiet)
            .at("10:01", asBefore),
        Promise{
            "DeletedInIt",
            day({.events = standup, .steps = list({step("09:30", "removeEvent", R"(, "uid": "1")")}), .more = withAll})}
            .at("09:20", quietWithAll)
            .at("09:31", asBefore),
        Promise{"DeletedAsItsToneSounds", day({.events = standup,
                                               .steps = list({step("09:00:01", "removeEvent", R"(, "uid": "1")")}),
                                               .more = withTone})}
            .at("09:01", asBefore),
        Promise{"ProlongedInIt",
                day({.events = standup,
                     .steps = list({step("09:59", "moveEvent", R"(, "uid": "1", "start": "09:00", "end": "11:00")")})})}
            .at("10:01", quiet)
            .at("11:01", asBefore),
        Promise{"ShortenedInIt",
                day({.events = standup,
                     .steps = list({step("09:20", "moveEvent", R"(, "uid": "1", "start": "09:00", "end": "09:30")")})})}
            .at("09:29", quiet)
            .at("09:31", asBefore),
        Promise{"MovedAwayInIt",
                day({.events = standup,
                     .steps = list({step("09:20", "moveEvent", R"(, "uid": "1", "start": "13:00", "end": "14:00")")})})}
            .at("09:21", asBefore)
            .at("13:30", quiet)
            .at("14:01", asBefore),
        Promise{"MovedToNow",
                day({.events = list({event("13:00", "14:00")}),
                     .steps = list({step("09:00", "moveEvent", R"(, "uid": "1", "start": "09:00", "end": "09:30")")})})}
            .at("09:10", quiet)
            .at("09:31", asBefore)
            .at("13:30", asBefore),
        Promise{"CancelledInIt",
                day({.events = standup,
                     .steps = list({step("09:20", "setEventStatus", R"(, "uid": "1", "status": "cancelled")")})})}
            .at("09:21", asBefore),
        // The end is known; that the calendar has gone does not change it, nor is it restored once more.
        Promise{"EveryEventGoneAMomentBeforeTheEnd",
                day({.events = standup, .steps = list({step("09:59:59", "removeEvent", R"(, "uid": "1")")})})}
            .at("10:00:10", asBefore)),
    nameOfPromise);

const std::string onlyConfirmed = R"(, "applyProfileEventStatus": 1)";

INSTANTIATE_TEST_SUITE_P(
    Statuses, Promises,
    ::testing::Values(
        Promise{"ATentativeOneInFrontHidesNothing",
                day({.events = list({event("09:00", "10:00", R"(, "status": "tentative")"),
                                     event("09:00", "11:00", R"(, "status": "confirmed")", "2")}),
                     .more = onlyConfirmed})}
            .at("09:30", quiet)
            .at("10:30", quiet)
            .at("11:01", asBefore),
        Promise{"ATentativeOneInsideEndsNothing",
                day({.events = list({event("09:00", "11:00", R"(, "status": "confirmed")"),
                                     event("09:30", "10:00", R"(, "status": "tentative")", "2")}),
                     .more = onlyConfirmed})}
            .at("09:45", quiet)
            .at("10:30", quiet)
            .at("11:01", asBefore),
        Promise{"ConfirmedInIt",
                day({.events = list({event("09:00", "10:00", R"(, "status": "tentative")")}),
                     .steps = list({step("09:20", "setEventStatus", R"(, "uid": "1", "status": "confirmed")")}),
                     .more = onlyConfirmed})}
            .at("09:10", asBefore)
            .at("09:30", quiet)
            .at("10:01", asBefore),
        Promise{"NoLongerConfirmedInIt",
                day({.events = list({event("09:00", "10:00", R"(, "status": "confirmed")")}),
                     .steps = list({step("09:20", "setEventStatus", R"(, "uid": "1", "status": "tentative")")}),
                     .more = onlyConfirmed})}
            .at("09:10", quiet)
            .at("09:30", asBefore)),
    nameOfPromise);

const std::string wholeDay = R"("allDay": true, "allDayEventsIgnored": false)";
const std::string allDayMark = R"(, "allDay": true)";

INSTANTIATE_TEST_SUITE_P(
    AllDayEvents, Promises,
    ::testing::Values(
        Promise{"FarEast", day({.events = list({event("2024-05-14", "2024-05-15", allDayMark)}),
                                .zone = "Pacific/Auckland",
                                .from = "2024-05-13",
                                .to = "2024-05-15",
                                .hours = wholeDay})}
            .at("2024-05-13T23:59", asBefore)
            .at("2024-05-14T00:01", quiet)
            .at("2024-05-14T23:59", quiet)
            .at("2024-05-15T00:01", asBefore),
        Promise{"FarWest", day({.events = list({event("2024-05-14", "2024-05-15", allDayMark)}),
                                .zone = "Etc/GMT+12",
                                .from = "2024-05-13",
                                .to = "2024-05-15",
                                .hours = wholeDay})}
            .at("2024-05-13T23:59", asBefore)
            .at("2024-05-14T00:01", quiet)
            .at("2024-05-14T23:59", quiet)
            .at("2024-05-15T00:01", asBefore),
        Promise{"InTheWindowOnly",
                day({.events = list({event("2024-05-14", "2024-05-15", allDayMark)}),
                     .hours = R"("startTime": "8:00 AM", "endTime": "5:00 PM", "allDayEventsIgnored": false)"})}
            .at("07:59", asBefore)
            .at("12:00", quiet)
            .at("17:01", asBefore),
        Promise{"IgnoredOnesMaskNoTimedOne", day({.events = list({event("2024-05-14", "2024-05-15", allDayMark),
                                                                  event("09:00", "10:00", "", "2")})})}
            .at("08:30", asBefore)
            .at("09:30", quiet)
            .at("10:01", asBefore),
        Promise{"CountedOnesMaskNoTimedOne",
                day({.events = list({event("2024-05-14", "2024-05-15", allDayMark), event("09:00", "10:00", "", "2")}),
                     .to = "2024-05-15",
                     .hours = wholeDay})}
            .at("08:30", quiet)
            .at("09:30", quiet)
            .at("10:30", quiet)
            .at("2024-05-15T00:01", asBefore)),
    nameOfPromise);

}  // namespace
}  // namespace hushmode::simulation
