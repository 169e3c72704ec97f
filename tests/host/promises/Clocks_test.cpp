// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Clocks that jump, zones, daylight saving, sleep, and long times.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

const std::string standup = list({event("09:00", "10:00")});

std::string setClock(const std::string& at, const std::string& to) {
  return step(at, "setClock", R"(, "to": ")" + to + '"');
}
std::string setZone(const std::string& at, const std::string& zone) {
  return step(at, "setZone", R"(, "zone": ")" + zone + '"');
}

INSTANTIATE_TEST_SUITE_P(
    ClockJumps, Promises,
    ::testing::Values(
        Promise{"ForwardsOverTheStart", day({.events = standup, .steps = list({setClock("08:30", "09:30")})})}
            .at("09:31", quiet)
            .at("10:01", asBefore),
        Promise{"ForwardsOverTheEnd",
                day({.events = standup, .steps = list({setClock("09:30", "10:30")}), .more = withAll})}
            .at("09:29", quietWithAll)
            .at("10:31", asBefore),
        Promise{"ForwardsOverBoth", day({.events = standup, .steps = list({setClock("08:30", "10:30")})})}.at("10:31",
                                                                                                              asBefore),
        Promise{"ForwardsAsTheToneSounds",
                day({.events = standup, .steps = list({setClock("09:00:01", "10:30")}), .more = withAll})}
            .at("10:31", asBefore),
        Promise{"ForwardsByDays",
                day({.events = standup, .steps = list({setClock("09:30", "2024-05-17T09:30")}), .to = "2024-05-18"})}
            .at("2024-05-17T09:31", asBefore),
        Promise{"BackwardsOverTheStart", day({.events = standup, .steps = list({setClock("09:30", "08:30")})})}
            .atAfter(0, "09:20", quiet)
            .atAfter(1, "08:31", asBefore)
            .atAfter(1, "09:10", quiet)
            .atAfter(1, "10:01", asBefore),
        Promise{"BackwardsOverTheEnd", day({.events = standup, .steps = list({setClock("10:30", "09:30")})})}
            .atAfter(0, "10:20", asBefore)
            .atAfter(1, "09:31", quiet)
            .atAfter(1, "10:01", asBefore),
        Promise{"BackwardsOverBoth", day({.events = standup, .steps = list({setClock("10:30", "08:30")})})}
            .atAfter(0, "10:20", asBefore)
            .atAfter(1, "08:31", asBefore)
            .atAfter(1, "09:10", quiet)
            .atAfter(1, "10:01", asBefore),
        Promise{"BackwardsByADay", day({.events = standup,
                                        .steps = list({setClock("09:30", "2024-05-13T09:30")}),
                                        .from = "2024-05-14T08:00",
                                        .to = "2024-05-14"})}
            .atAfter(1, "2024-05-13T09:31", asBefore)
            .atAfter(1, "2024-05-14T09:30", quiet)
            .atAfter(1, "2024-05-14T10:01", asBefore)),
    nameOfPromise);

INSTANTIATE_TEST_SUITE_P(
    Zones, Promises,
    ::testing::Values(Promise{"TheMeetingGoesOnElsewhere", day({.events = standup,
                                                                .steps = list({setZone("09:30", "Europe/London")}),
                                                                .zone = "Europe/Berlin"})}
                          .at("09:31", quiet)
                          .at("09:59", quiet)
                          .at("10:01", asBefore),
                      Promise{"TheWindowIsClosedElsewhere", day({.events = standup,
                                                                 .steps = list({setZone("09:30", "America/New_York")}),
                                                                 .more = withAll,
                                                                 .zone = "Europe/Berlin"})}
                          .at("09:29", quietWithAll)
                          .at("09:31", asBefore),
                      Promise{"TheWindowIsOpenElsewhere", day({.events = list({event("19:00", "20:00")}),
                                                               .steps = list({setZone("19:30", "America/New_York")}),
                                                               .zone = "Europe/Berlin"})}
                          .at("19:29", asBefore)
                          .at("19:31", quiet)
                          .at("20:01", asBefore),
                      Promise{"TheWindowClosesByTheNewClock", day({.events = list({event("09:00", "17:00")}),
                                                                   .steps = list({setZone("12:00", "Asia/Tokyo")}),
                                                                   .zone = "Asia/Singapore"})}
                          .at("15:59", quiet)
                          .at("16:01", asBefore)),
    nameOfPromise);

const std::string allHours = R"("allDay": true, "allDayEventsIgnored": true)";

/// On the days on which the clocks change. Moments are written in UTC, of which each comes once.
INSTANTIATE_TEST_SUITE_P(
    DaylightSaving, Promises,
    ::testing::Values(
        Promise{"BerlinsGapIsShort", day({.events = list({event("01:30", "03:30")}),
                                          .zone = "Europe/Berlin",
                                          .from = "2024-03-31",
                                          .hours = allHours})}
            .at("2024-03-31T00:29Z", asBefore)
            .at("2024-03-31T01:29Z", quiet)
            .at("2024-03-31T01:31Z", asBefore),
        Promise{"BerlinsRepeatedHourIsLong", day({.events = list({event("01:30", "03:30")}),
                                                  .zone = "Europe/Berlin",
                                                  .from = "2024-10-27",
                                                  .hours = allHours})}
            .at("2024-10-26T23:31Z", quiet)
            .at("2024-10-27T01:30Z", quiet)
            .at("2024-10-27T02:29Z", quiet)
            .at("2024-10-27T02:31Z", asBefore),
        Promise{"TwiceTheSameClockTime",
                day({.events = list({event("2024-10-27T00:15Z", "2024-10-27T00:45Z"),
                                     event("2024-10-27T01:15Z", "2024-10-27T01:45Z", "", "2")}),
                     .zone = "Europe/Berlin",
                     .from = "2024-10-27",
                     .hours = allHours})}
            .at("2024-10-27T00:30Z", quiet)
            .at("2024-10-27T01:00Z", asBefore)
            .at("2024-10-27T01:30Z", quiet)
            .at("2024-10-27T02:00Z", asBefore),
        // The window's bound falls into the gap: it opens when the gap is over at the latest.
        Promise{"BerlinsWindowOpensInTheGap",
                day({.events = list({event("00:00", "08:00")}),
                     .zone = "Europe/Berlin",
                     .from = "2024-03-31",
                     .hours = R"("startTime": "2:30 AM", "endTime": "5:00 AM", "allDayEventsIgnored": true)"})}
            .at("2024-03-31T00:29Z", asBefore)
            .at("2024-03-31T01:31Z", quiet)
            .at("2024-03-31T02:59Z", quiet)
            .at("2024-03-31T03:01Z", asBefore),
        Promise{"SydneysGap", day({.events = list({event("01:30", "03:30")}),
                                   .zone = "Australia/Sydney",
                                   .from = "2024-10-06",
                                   .hours = allHours})}
            .at("2024-10-05T15:29Z", asBefore)
            .at("2024-10-05T16:29Z", quiet)
            .at("2024-10-05T16:31Z", asBefore),
        Promise{"SydneysRepeatedHour", day({.events = list({event("01:30", "03:30")}),
                                            .zone = "Australia/Sydney",
                                            .from = "2024-04-07",
                                            .hours = allHours})}
            .at("2024-04-06T14:31Z", quiet)
            .at("2024-04-06T17:29Z", quiet)
            .at("2024-04-06T17:31Z", asBefore),
        Promise{"SantiagosMidnightIsSkipped", day({.events = list({event("2024-09-07T23:30", "2024-09-08T01:30")}),
                                                   .zone = "America/Santiago",
                                                   .from = "2024-09-07",
                                                   .to = "2024-09-08",
                                                   .hours = allHours})}
            .at("2024-09-08T03:29Z", asBefore)
            .at("2024-09-08T03:31Z", quiet)
            .at("2024-09-08T04:29Z", quiet)
            .at("2024-09-08T04:31Z", asBefore),
        Promise{"SantiagosLastHourComesTwice", day({.events = list({event("2024-04-07T02:45Z", "2024-04-07T04:30Z")}),
                                                    .zone = "America/Santiago",
                                                    .from = "2024-04-06",
                                                    .to = "2024-04-07",
                                                    .hours = allHours})}
            .at("2024-04-07T02:46Z", quiet)
            .at("2024-04-07T03:30Z", quiet)
            .at("2024-04-07T04:29Z", quiet)
            .at("2024-04-07T04:31Z", asBefore),
        Promise{"LordHowesHalfHourGap", day({.events = list({event("01:45", "03:00")}),
                                             .zone = "Australia/Lord_Howe",
                                             .from = "2024-10-06",
                                             .hours = allHours})}
            .at("2024-10-05T15:14Z", asBefore)
            .at("2024-10-05T15:59Z", quiet)
            .at("2024-10-05T16:01Z", asBefore),
        Promise{"LordHowesHalfHourTwice", day({.events = list({event("2024-04-06T14:45Z", "2024-04-06T15:45Z")}),
                                               .zone = "Australia/Lord_Howe",
                                               .from = "2024-04-07",
                                               .hours = allHours})}
            .at("2024-04-06T14:46Z", quiet)
            .at("2024-04-06T15:15Z", quiet)
            .at("2024-04-06T15:46Z", asBefore)),
    nameOfPromise);

INSTANTIATE_TEST_SUITE_P(
    Sleep, Promises,
    ::testing::Values(
        Promise{"AcrossTheStart",
                day({.events = standup, .steps = list({step("08:30", "suspend"), step("09:30", "resume")})})}
            .at("09:31", quiet)
            .at("10:01", asBefore),
        Promise{"AcrossTheEnd", day({.events = standup,
                                     .steps = list({step("09:30", "suspend"), step("10:30", "resume")}),
                                     .more = withAll})}
            .at("10:31", asBefore),
        Promise{"AcrossBoth",
                day({.events = standup, .steps = list({step("08:30", "suspend"), step("10:30", "resume")})})}
            .at("10:31", asBefore),
        Promise{"AsTheToneSounds", day({.events = standup,
                                        .steps = list({step("09:00:01", "suspend"), step("09:30", "resume")}),
                                        .more = withAll})}
            .at("09:31", quietWithAll)
            .at("10:01", asBefore),
        Promise{"AsTheToneSoundsUntilAfterTheEnd",
                day({.events = standup,
                     .steps = list({step("09:00:01", "suspend"), step("10:30", "resume")}),
                     .more = withAll})}
            .at("10:31", asBefore),
        Promise{"WithoutWakeTimersAcrossTheStart",
                day({.events = standup,
                     .steps = list({step("08:30", "suspend"), step("09:30", "resume"), step("10:01", "plan")}),
                     .phone = R"("faults": [{"class": "PCSimpleTimer", "present": false}])"})}
            .at("09:31", quiet)
            .at("10:02", asBefore),
        Promise{"WithoutWakeTimersAcrossTheEnd",
                day({.events = standup,
                     .steps = list({step("09:10", "plan"), step("09:30", "suspend"), step("10:30", "resume")}),
                     .phone = R"("faults": [{"class": "PCSimpleTimer", "present": false}])"})}
            .at("09:20", quiet)
            .at("10:31", asBefore)),
    nameOfPromise);

// Wake-ups that come at the very instant find a window that is open and closed at once.
INSTANTIATE_TEST_SUITE_P(
    WakeUpsToTheInstant, Promises,
    ::testing::Values(
        Promise{"AtTheWindowsEnd",
                day({.events = list({event("16:00", "18:00")}), .more = withAll, .phone = R"("deliveryLatency": 0)"})}
            .at("16:30", quietWithAll)
            .at("17:00:10", asBefore),
        Promise{"AtTheMeetingsEnd", day({.events = standup, .more = withAll, .phone = R"("deliveryLatency": 0)"})}
            .at("09:30", quietWithAll)
            .at("10:00:10", asBefore),
        Promise{"AtTheWindowsEndOnTheNetwork", day({.steps = list({step("17:30", "leave")}),
                                                    .more = withAll + R"(, "wifiNetworks": ["Home"])",
                                                    .phone = R"("deliveryLatency": 0, "joined": "Home")"})}
            .at("16:30", quietWithAll)
            .at("17:00:10", asBefore)),
    nameOfPromise);

/// A meeting at nine on each weekday of two months, in which the clocks change; a second profile that follows it
/// every day.
Promise twoMonths() {
  const auto zone = devices::TimeZone::named("Europe/Berlin");
  std::vector<std::string> events, others;
  Promise promise{"AWeekdayRuleForTwoMonths", ""};
  const platform::Date first = *parseTime("2024-03-01T12:00", *zone);
  for (int i = 0; i < 60; ++i) {
    // Noon plus days of 24 hours stays on the day that is meant, whatever the clocks do.
    const std::string date = isoTime(first.addingSeconds(i * 86400.0), *zone).substr(0, 10);
    const bool isWeekday = (i + 4) % 7 < 5;  // The first is a Friday.
    if (isWeekday) events.push_back(event(date + "T09:00", date + "T10:00", "", "w" + date));
    others.push_back(event(date + "T14:00", date + "T15:00", "", "o" + date));
    promise = promise.at(date + "T08:30", asBefore)
                  .at(date + "T09:30", isWeekday ? quiet : asBefore)
                  .at(date + "T10:30", asBefore)
                  .at(date + "T14:30", otherQuiet)
                  .at(date + "T15:30", asBefore);
  }
  promise.scenario = day({.events = list(events),
                          .otherEvents = list(others),
                          .zone = "Europe/Berlin",
                          .from = "2024-03-01",
                          .to = "2024-05-01"});
  return promise;
}

INSTANTIATE_TEST_SUITE_P(LongTimes, LongPromises, ::testing::Values(twoMonths()), nameOfPromise);

}  // namespace
}  // namespace hushmode::simulation
