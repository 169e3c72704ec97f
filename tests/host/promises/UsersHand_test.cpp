// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What the phone's user changes by hand, before, in and after a meeting, is theirs.

#include "tests/host/promises/Promises.h"

namespace hushmode::simulation {
namespace {

const std::string standup = list({event("09:00", "10:00")});

std::string press(const std::string& at, double volume, const std::string& category = "ringtone") {
  return step(at, "pressVolume", R"(, "category": ")" + category + R"(", "volume": )" + std::to_string(volume));
}
std::string doNotDisturb(const std::string& at, bool on) {
  return step(at, "doNotDisturb", on ? R"(, "on": true)" : R"(, "on": false)");
}
std::string answer(const std::string& at, int button) {
  return step(at, "answer", R"(, "button": )" + std::to_string(button));
}
Change ringtone(float volume) {
  return [=](PhoneState& state) { state.ringtone = volume; };
}
Change media(float volume) {
  return [=](PhoneState& state) { state.media = volume; };
}
const Change disturbing = [](PhoneState& state) { state.doNotDisturb = false; };
const Change undisturbed = [](PhoneState& state) { state.doNotDisturb = true; };

INSTANTIATE_TEST_SUITE_P(
    Volumes, Promises,
    ::testing::Values(
        Promise{"MediaSetInTheMeetingStays",
                day({.events = standup, .steps = list({press("09:30", 0.7, "media")}), .more = withTone})}
            .at("09:31", with(quiet, media(0.7F)))
            .endingWith(media(0.7F)),
        Promise{"MediaSetAsTheToneSoundsIsWhatTheEndLeadsTo",
                day({.events = standup, .steps = list({press("09:00:01", 0.7, "media")}), .more = withTone})}
            .endingWith(media(0.7F)),
        Promise{"MediaSetAsTheLastToneSoundsStays",
                day({.events = standup, .steps = list({press("10:00:01", 0.7, "media")}), .more = withTone})}
            .endingWith(media(0.7F)),
        Promise{"RingtoneSetAfterTheMeetingStays",
                day({.events = standup, .steps = list({press("10:00:01", 0.3)}), .more = withTone})}
            .endingWith(ringtone(0.3F)),
        Promise{"RingtoneSetBeforeTheMeetingStays", day({.events = standup, .steps = list({press("08:30", 0.6)})})}
            .at("09:30", quiet)
            .endingWith(ringtone(0.6F)),
        Promise{"AKeptRingtoneStays",
                day({.events = standup, .steps = list({press("09:30", 0.4), answer("09:31", 0)})})}
            .at("09:32", with(quiet, ringtone(0.4F)))
            .endingWith(ringtone(0.4F))
            .endingWith(asBefore),
        Promise{"ARefusedRingtoneGoes",
                day({.events = standup, .steps = list({press("09:30", 0.4), answer("09:31", 1)})})}
            .at("09:32", with(quiet, ringtone(0.4F)))
            .endingWith(asBefore)
            .endingWith(ringtone(0.4F)),
        Promise{"AQuestionWithoutAnAnswerKeepsNothing", day({.events = standup, .steps = list({press("09:30", 0.4)})})}
            .endingWith(asBefore)
            .endingWith(ringtone(0.4F)),
        Promise{"AKeptRingtoneThatIsSetOnceMoreStays",
                day({.events = standup, .steps = list({press("09:30", 0.4), answer("09:31", 0), press("09:40", 0.6)})})}
            .at("09:41", with(quiet, ringtone(0.6F)))
            .endingWith(ringtone(0.6F))
            .endingWith(ringtone(0.4F))
            .endingWith(asBefore),
        // The library has forgotten the volume that it asked about, and would keep silence.
        Promise{"AnAnswerToTheQuestionOfAnEarlierMeetingKeepsNothing",
                day({.events = list({event("09:00", "09:30"), event("10:00", "11:00", "", "2")}),
                     .steps = list({press("09:10", 0.4), answer("10:10", 0)})})}
            .at("10:20", quiet)
            .endingWith(asBefore)
            .endingWith(ringtone(0.4F)),
        Promise{"APlanGoesNotOverTheHand",
                day({.events = standup,
                     .steps = list({press("09:30", 0.7, "media"), step("09:35", "plan"), step("09:36", "reload")})})}
            .at("09:40", with(quiet, media(0.7F)))
            .endingWith(media(0.7F))),
    nameOfPromise);

/// On each system with a Control Center of its own kind, with a profile that asks for Do Not Disturb and one that does
/// not.
std::vector<Promise> doNotDisturbs() {
  std::vector<Promise> all;
  for (const std::string version : {"9.3.5", "10.3", "11.4.1", "13.1"}) {
    for (const bool asks : {false, true}) {
      const std::string name = (asks ? "AskedFor" : "NotAskedFor") + version.substr(0, version.find('.'));
      const std::string system = R"("systemVersion": ")" + version + '"', on = system + R"(, "doNotDisturb": true)";
      const std::string more = asks ? R"(, "dnDEnabled": true)" : "";
      const Change inMeeting = asks ? with(quiet, undisturbed) : quiet;
      all.push_back(Promise{"SetBefore" + name, day({.events = standup, .more = more, .phone = on})}
                        .at("09:30", with(quiet, undisturbed))
                        .at("10:10", undisturbed));
      all.push_back(
          Promise{"SetInTheMeeting" + name,
                  day({.events = standup, .steps = list({doNotDisturb("09:30", true)}), .more = more, .phone = system})}
              .at("09:20", inMeeting)
              .at("09:40", with(quiet, undisturbed))
              // Where the profile had it on already, there was nothing to set.
              .endingWith(asks ? asBefore : undisturbed));
      all.push_back(Promise{"SetBeforeAndTakenBack" + name,
                            day({.events = standup,
                                 .steps = list({doNotDisturb("09:30", false), step("09:35", "plan")}),
                                 .more = more,
                                 .phone = on})}
                        .at("09:40", with(quiet, disturbing))
                        .endingWith(disturbing));
      all.push_back(Promise{"TakenBackAndSet" + name,
                            day({.events = standup,
                                 .steps = list({doNotDisturb("09:30", false), doNotDisturb("09:40", true)}),
                                 .more = more,
                                 .phone = on})}
                        .at("09:50", with(quiet, undisturbed)));
      all.push_back(Promise{
          "SetAfter" + name,
          day({.events = standup, .steps = list({doNotDisturb("10:00:01", true)}), .more = more, .phone = system})}
                        .endingWith(undisturbed)
                        // When it was still on for the profile as the host died, nobody can tell.
                        .endingWith(asks ? asBefore : undisturbed));
    }
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(DoNotDisturb, Promises, ::testing::ValuesIn(doNotDisturbs()), nameOfPromise);

/// The phone tells of every change of volume, our own included. An own one raises no question, and is not taken for the
/// user's.
class Echoes : public ::testing::TestWithParam<std::tuple<const char*, const char*, bool>> {};

TEST_P(Echoes, AreNotTakenForTheUsersHand) {
  const auto& [version, notices, tone] = GetParam();
  const Life life = live(scenarioOf(day({.events = list({event("09:00", "10:00"), event("10:00", "11:00", "", "2")}),
                                         .more = tone ? withTone : "",
                                         .phone = std::string(R"("systemVersion": ")") + version +
                                                  R"(", "volumeNotices": ")" + notices + '"'})),
                         {{"09:30", quiet}, {"10:30", quiet}});
  EXPECT_EQ(life.questions, 0U);
  PhoneState wanted = life.before;
  quiet(wanted);
  for (const PhoneState& each : life.moments) EXPECT_EQ(each, wanted) << differenceText(wanted, each);
  EXPECT_EQ(life.end, life.before) << differenceText(life.before, life.end);
}

TEST_P(Echoes, LeaveTheUsersHandToBeSeen) {
  const auto& [version, notices, tone] = GetParam();
  const Life life = live(scenarioOf(
      day({.events = standup,
           .steps = list({press("09:30", 0.4), answer("09:31", 0)}),
           .more = tone ? withTone : "",
           .phone = std::string(R"("systemVersion": ")") + version + R"(", "volumeNotices": ")" + notices + '"'})));
  EXPECT_EQ(life.questions, 1U);
  EXPECT_FLOAT_EQ(*life.end.ringtone, 0.4);
}

INSTANTIATE_TEST_SUITE_P(On, Echoes,
                         ::testing::Combine(::testing::Values("9.3.5", "10.3", "11.4.1", "13.1"),
                                            ::testing::Values("none", "inside", "run loop"), ::testing::Bool()));

}  // namespace
}  // namespace hushmode::simulation
