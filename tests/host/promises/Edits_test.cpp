// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Profiles that are edited, disabled or deleted while they are applied, and the master switch.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

const std::string standup = list({event("09:00", "10:00")});

std::string edit(const std::string& at, const std::string& set) {
  return step(at, "editProfile", R"(, "profile": "Work", "set": {)" + set + "}");
}
std::string master(const std::string& at, bool on) {
  return step(at, "masterSwitch", on ? R"(, "on": true)" : R"(, "on": false)");
}

INSTANTIATE_TEST_SUITE_P(
    Edits, Promises,
    ::testing::Values(
        Promise{"DisabledInTheMeeting",
                day({.events = standup, .steps = list({edit("09:30", R"("enabled": false)")}), .more = withAll})}
            .at("09:29", quietWithAll)
            .at("09:30:01", asBefore)
            .at("09:31", asBefore),
        Promise{"DisabledAndEnabledInTheMeeting",
                day({.events = standup,
                     .steps = list({edit("09:20", R"("enabled": false)"), edit("09:40", R"("enabled": true)")}),
                     .more = withAll})}
            .at("09:30", asBefore)
            .at("09:41", quietWithAll)
            .at("10:01", asBefore),
        Promise{"DisabledAsItsToneSounds",
                day({.events = standup, .steps = list({edit("09:00:01", R"("enabled": false)")}), .more = withAll})}
            .at("09:01", asBefore),
        Promise{"DisabledBeforeTheMeeting",
                day({.events = standup, .steps = list({edit("08:59", R"("enabled": false)")})})}
            .at("09:30", asBefore),
        Promise{"OtherVolumes", day({.events = standup,
                                     .steps = list({edit("09:30", R"("ringerVolume": 0.1, "playBackVolume": 0.0)")}),
                                     .more = withTone})}
            .at("09:30:01", [](PhoneState& s) { s.ringtone = 0.1F, s.media = 0.0F; })
            .at("09:59", [](PhoneState& s) { s.ringtone = 0.1F, s.media = 0.0F; })
            .at("10:01", asBefore),
        Promise{"OtherVolumesThanTheUserSetMeanwhile",
                day({.events = standup,
                     .steps = list({step("09:20", "pressVolume", R"(, "category": "media", "volume": 0.7)"),
                                    edit("09:30", R"("playBackVolume": 0.0)")})})}
            .at("09:29", with(quiet, [](PhoneState& s) { s.media = 0.7F; }))
            .at("09:31", with(quiet, [](PhoneState& s) { s.media = 0.0F; }))
            .endingWith([](PhoneState& s) { s.media = 0.7F; }),
        Promise{"OtherVolumesAsItsToneSounds",
                day({.events = standup,
                     .steps = list({edit("09:00:01", R"("ringerVolume": 0.1, "playBackVolume": 0.0)")}),
                     .more = withTone})}
            .at("09:01", [](PhoneState& s) { s.ringtone = 0.1F, s.media = 0.0F; })
            .at("10:01", asBefore),
        Promise{
            "DoNotDisturbAndIconWanted",
            day({.events = standup, .steps = list({edit("09:30", R"("dnDEnabled": true, "showOnStatusBar": true)")})})}
            .at("09:29", quiet)
            .at("09:31", quietWithAll)
            .at("10:01", asBefore),
        Promise{"DoNotDisturbAndIconNoLongerWanted",
                day({.events = standup,
                     .steps = list({edit("09:30", R"("dnDEnabled": false, "showOnStatusBar": false)")}),
                     .more = withAll})}
            .at("09:29", quietWithAll)
            .at("09:31", quiet)
            .at("10:01", asBefore),
        Promise{"TheWindowCloses",
                day({.events = standup, .steps = list({edit("09:30", R"("endTime": "9:15 AM")")}), .more = withAll})}
            .at("09:31", asBefore),
        Promise{"TheWindowClosesEarlier",
                day({.events = standup, .steps = list({edit("09:30", R"("endTime": "9:45 AM")")}), .more = withAll})}
            .at("09:44", quietWithAll)
            .at("09:46", asBefore),
        Promise{"TheWindowOpens", day({.events = list({event("19:00", "20:00")}),
                                       .steps = list({edit("19:30", R"("endTime": "10:00 PM")")}),
                                       .more = withAll})}
            .at("19:29", asBefore)
            .at("19:31", quietWithAll)
            .at("20:01", asBefore),
        Promise{"AnotherCalendar", day({.events = standup,
                                        .steps = list({edit("09:30", R"("calendarIdentifiers": ["none"])")}),
                                        .more = withAll})}
            .at("09:31", asBefore),
        Promise{"AnotherCalendarWithAMeetingOfItsOwn",
                day({.events = standup,
                     .steps = list({edit("09:30", R"("calendarIdentifiers": ["other"])")}),
                     .otherEvents = list({event("09:15", "11:00", "", "2")}),
                     .otherMore = R"(, "enabled": false)"})}
            .at("09:31", quiet)
            .at("10:30", quiet)
            .at("11:01", asBefore),
        Promise{"AnotherTitle",
                day({.events = standup, .steps = list({edit("09:30", R"("title": "Office")")}), .more = withAll})}
            .at("09:31", quietWithAll)
            .at("10:01", asBefore),
        Promise{"AnotherStatusWanted",
                day({.events = standup, .steps = list({edit("09:30", R"("applyProfileEventStatus": 2)")})})}
            .at("09:31", asBefore),
        Promise{"DeletedInTheMeeting", day({.events = standup,
                                            .steps = list({step("09:30", "deleteProfile", R"(, "profile": "Work")")}),
                                            .more = withAll})}
            .at("09:30:01", asBefore)
            .at("09:31", asBefore),
        Promise{"DeletedAsItsToneSounds",
                day({.events = standup,
                     .steps = list({step("09:00:01", "deleteProfile", R"(, "profile": "Work")")}),
                     .more = withAll})}
            .at("09:01", asBefore),
        Promise{"DeletedAsItsLastToneSounds",
                day({.events = standup,
                     .steps = list({step("10:00:01", "deleteProfile", R"(, "profile": "Work")")}),
                     .more = withAll})}
            .at("10:01", asBefore),
        Promise{"OneOfTwoDeleted", day({.events = standup,
                                        .steps = list({step("09:30", "deleteProfile", R"(, "profile": "Other")")}),
                                        .more = withAll,
                                        .otherEvents = list({event("09:15", "09:45", "", "2")}),
                                        .otherMore = withTone})}
            .at("09:20", with(quietWithAll, otherQuiet))
            .at("09:31", quietWithAll)
            .at("10:01", asBefore),
        Promise{"AddedInItsMeeting",
                day({.events = standup,
                     .steps = list({step("09:30", "addProfile", R"(, "profile": {"title": "New", "enabled": true,
                         "allDay": true, "vibrate": true, "ringerVolume": 0.0, "playBackVolume": 0.0,
                         "calendarIdentifiers": ["work"]})")})})}
            .at("09:31", [](PhoneState& s) { s.ringtone = s.media = 0.0F; })
            .at("10:01", asBefore)),
    nameOfPromise);

INSTANTIATE_TEST_SUITE_P(
    MasterSwitch, Promises,
    ::testing::Values(
        Promise{"OffInTheMeeting", day({.events = standup, .steps = list({master("09:30", false)}), .more = withAll})}
            .at("09:31", asBefore)
            .at("09:59", asBefore),
        Promise{
            "OffAndOnInTheMeeting",
            day({.events = standup, .steps = list({master("09:20", false), master("09:40", true)}), .more = withAll})}
            .at("09:30", asBefore)
            .at("09:41", quietWithAll)
            .at("10:01", asBefore),
        Promise{"OffAsTheToneSounds",
                day({.events = standup, .steps = list({master("09:00:01", false)}), .more = withAll})}
            .at("09:01", asBefore),
        Promise{"OffBeforeTheMeeting",
                day({.events = standup, .steps = list({master("08:30", false)}), .more = withAll})}
            .at("09:30", asBefore),
        Promise{
            "OffBeforeAndOnAfterTheMeeting",
            day({.events = standup, .steps = list({master("08:30", false), master("10:30", true)}), .more = withAll})}
            .at("09:30", asBefore)
            .at("10:31", asBefore),
        Promise{"OffForTheStartOnly", day({.events = standup,
                                           .steps = list({master("08:59:59", false), master("09:00:02", true)}),
                                           .more = withAll})}
            .at("09:01", quietWithAll)
            .at("10:01", asBefore),
        Promise{"OffWithEditsMeanwhile",
                day({.events = standup,
                     .steps = list({master("08:30", false), edit("09:10", R"("ringerVolume": 0.1)"),
                                    step("09:15", "plan"), step("09:20", "reload"),
                                    step("09:25", "addEvent",
                                         R"(, "calendar": "work", "uid": "2", "start": "09:30", "end": "09:50")"),
                                    step("09:26", "join", R"(, "network": "Home")")}),
                     .more = withAll + R"(, "wifiNetworks": ["Home"])"})}
            .at("09:12", asBefore)
            .at("09:40", asBefore)),
    nameOfPromise);

}  // namespace
}  // namespace hushmode::simulation
