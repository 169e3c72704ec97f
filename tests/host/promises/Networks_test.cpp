// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Networks that are joined and left, that flap, and that a meeting overlaps.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

const std::string standup = list({event("09:00", "10:00")});
const std::string atHome = R"(, "wifiNetworks": ["Home", "Hall"])";

std::string join(const std::string& at, const std::string& network) {
  return step(at, "join", R"(, "network": ")" + network + '"');
}
std::string leave(const std::string& at) { return step(at, "leave"); }

INSTANTIATE_TEST_SUITE_P(
    Networks, Promises,
    ::testing::Values(
        Promise{"JoinedAndLeft",
                day({.steps = list({join("09:00", "Home"), leave("12:00")}), .more = atHome + withAll})}
            .at("08:59", asBefore)
            .at("09:01", quietWithAll)
            .at("11:59", quietWithAll)
            .at("12:00:20", asBefore),
        Promise{"AnotherIsNone", day({.steps = list({join("09:00", "Cafe"), leave("12:00")}), .more = atHome})}.at(
            "09:01", asBefore),
        Promise{"ThatFlap", day({.steps = list({join("09:00", "Home"), leave("10:00"), join("10:00:05", "Home"),
                                                leave("10:00:09"), join("10:00:15", "Home"), leave("12:00")}),
                                 .more = atHome + withAll})}
            .at("10:00:08", quietWithAll)
            .at("10:00:12", quietWithAll)
            .at("10:01", quietWithAll)
            .at("12:00:20", asBefore),
        Promise{"LeftForLonger",
                day({.steps = list({join("09:00", "Home"), leave("10:00"), join("10:01", "Home"), leave("12:00")}),
                     .more = atHome + withAll})}
            .at("10:00:30", asBefore)
            .at("10:02", quietWithAll)
            .at("12:00:20", asBefore),
        Promise{"DirectlyToAnother", day({.steps = list({join("09:00", "Home"), join("10:00", "Cafe"), leave("12:00")}),
                                          .more = atHome + withAll})}
            .at("09:59", quietWithAll)
            .at("10:01", asBefore),
        Promise{"DirectlyFromAnother",
                day({.steps = list({join("09:00", "Cafe"), join("10:00", "Home"), leave("12:00")}),
                     .more = atHome + withAll})}
            .at("09:59", asBefore)
            .at("10:01", quietWithAll)
            .at("12:00:20", asBefore),
        Promise{"DirectlyToOneOfTheSameProfile",
                day({.steps = list({join("09:00", "Home"), join("10:00", "Hall"), leave("12:00")}),
                     .more = atHome + withAll})}
            .at("10:00:01", quietWithAll)
            .at("10:01", quietWithAll)
            .at("12:00:20", asBefore),
        Promise{"ForgottenWhileJoined",
                day({.steps = list({join("09:00", "Home"), step("10:00", "forget", R"(, "network": "Home")"),
                                    leave("12:00")}),
                     .more = atHome + withAll})}
            .at("12:00:20", asBefore),
        Promise{"TheWindowClosesAndOpens", day({.steps = list({join("16:00", "Home"), leave("2024-05-15T12:00")}),
                                                .more = atHome,
                                                .to = "2024-05-15"})}
            .at("16:30", quiet)
            .at("17:01", asBefore)
            .at("2024-05-15T07:59", asBefore)
            .at("2024-05-15T08:01", quiet)
            .at("2024-05-15T12:01", asBefore),
        Promise{"JoinedBeforeTheStart",
                day({.steps = list({leave("12:00")}), .more = atHome, .phone = R"("joined": "Home")"})}
            .at("07:59", asBefore)
            .at("08:01", quiet)
            .at("12:00:20", asBefore),
        Promise{"StartedAnewWhileJoined", day({.steps = list({join("09:00", "Home"), step("10:00", "kill"),
                                                              step("10:05", "start"), leave("12:00")}),
                                               .more = atHome + withAll})}
            .at("10:06", quietWithAll)
            .at("12:00:20", asBefore),
        Promise{"LeftWhileTheHostWasDead", day({.steps = list({join("09:00", "Home"), step("10:00", "kill"),
                                                               leave("10:02"), step("10:05", "start")}),
                                                .more = atHome + withAll})}
            .at("10:06", asBefore),
        Promise{"LeftInSleep", day({.steps = list({join("09:00", "Home"), step("10:00", "suspend"), leave("10:10"),
                                                   step("10:30", "resume")}),
                                    .more = atHome + withAll})}
            .at("10:31", asBefore),
        Promise{"AwayForTheSleepOnly",
                day({.steps = list({join("09:00", "Home"), step("10:00", "suspend"), leave("10:00:01"),
                                    step("10:30", "resume"), join("10:30:04", "Home"), leave("12:00")}),
                     .more = atHome + withAll})}
            .at("10:30:03", quietWithAll)
            .at("10:31", quietWithAll)
            .at("12:00:20", asBefore)),
    nameOfPromise);

INSTANTIATE_TEST_SUITE_P(
    NetworksAndMeetings, Promises,
    ::testing::Values(
        Promise{
            "JoinedInTheMeetingAndLeftAfter",
            day({.events = standup, .steps = list({join("09:30", "Home"), leave("10:30")}), .more = atHome + withAll})}
            .at("09:31", quietWithAll)
            .at("10:01", quietWithAll)
            .at("10:31", asBefore),
        Promise{
            "JoinedAndLeftInTheMeeting",
            day({.events = standup, .steps = list({join("09:15", "Home"), leave("09:30")}), .more = atHome + withAll})}
            .at("09:20", quietWithAll)
            .at("09:31", quietWithAll)
            .at("10:01", asBefore),
        Promise{
            "JoinedBeforeAndLeftInTheMeeting",
            day({.events = standup, .steps = list({join("08:30", "Home"), leave("09:30")}), .more = atHome + withAll})}
            .at("08:45", quietWithAll)
            .at("09:29", quietWithAll)
            .at("09:31", quietWithAll)
            .at("10:01", asBefore),
        Promise{
            "LeftAsTheMeetingEnds",
            day({.events = standup, .steps = list({join("09:30", "Home"), leave("10:00")}), .more = atHome + withAll})}
            .at("10:00:20", asBefore),
        Promise{"AnotherInTheMeeting",
                day({.events = standup,
                     .steps = list({join("09:15", "Cafe"), join("09:30", "Home"), join("09:45", "Cafe")}),
                     .more = atHome + withAll})}
            .at("09:20", quietWithAll)
            .at("09:40", quietWithAll)
            .at("09:50", quietWithAll)
            .at("10:01", asBefore),
        Promise{"TheMeetingIsDeletedWhileJoined",
                day({.events = standup,
                     .steps = list({join("09:15", "Home"), step("09:30", "removeEvent", R"(, "uid": "1")"),
                                    leave("10:30")}),
                     .more = atHome + withAll})}
            .at("09:40", quietWithAll)
            .at("10:20", quietWithAll)
            .at("10:31", asBefore)),
    nameOfPromise);

TEST(FlappingNetworks, AreNeitherHeardNorSeen) {
  const Played played = play(day({.steps = list({join("09:00", "Home"), leave("10:00"), join("10:00:05", "Home"),
                                                 leave("10:00:12"), join("10:00:20", "Hall"), leave("12:00")}),
                                  .more = atHome + withAll}),
                             Hosting::Full);
  EXPECT_EQ(played.switches.size(), 2U) << ::testing::PrintToString(played.switches);
}

}  // namespace
}  // namespace hushmode::simulation
