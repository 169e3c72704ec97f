// What the host promises whoever carries the phone: after the last event everything is as it was, unless they changed
// it. Each promise is also kept when the host dies in the midst of it, at any step, and is started again.

#include "tests/host/Life.h"

#include <ostream>

namespace hushmode::simulation {
namespace {

struct Promise {
  const char* name;
  std::string scenario;
  /// What may be different in the end from what there was in the beginning, made so by the phone's user.
  std::vector<std::function<void(PhoneState&)>> mayEndWith = {[](PhoneState&) {}};
};

std::ostream& operator<<(std::ostream& out, const Promise& promise) { return out << promise.name; }

class Promises : public ::testing::TestWithParam<Promise> {
 protected:
  void expectKept(const Life& life) const {
    std::string said;
    for (const auto& change : GetParam().mayEndWith) {
      PhoneState wanted = life.before;
      change(wanted);
      if (life.end == wanted) return;
      said += "\n  not " + differenceText(wanted, life.end);
    }
    ADD_FAILURE() << "before the last event and after it: " << differenceText(life.before, life.end) << said;
  }
};

TEST_P(Promises, AreKept) { expectKept(live(scenarioOf(GetParam().scenario))); }

TEST_P(Promises, AreKeptWhenTheHostDiesAtAnyStep) {
  const Scenario scenario = scenarioOf(GetParam().scenario);
  const std::size_t entries = live(scenario).entries;
  ASSERT_GT(entries, 10U);
  for (std::size_t n = 1; n <= entries; ++n) {
    SCOPED_TRACE("death at entry " + std::to_string(n) + " of " + std::to_string(entries));
    const Life life = live(scenario, n);
    EXPECT_TRUE(life.died);
    expectKept(life);
    if (HasFailure()) return;
  }
}

constexpr const char* tone = R"(, "playAlert": true)";
constexpr const char* plain = "";
const std::string loud = R"(, "playAlert": true, "dnDEnabled": true, "showOnStatusBar": true, "wakeUpScreen": true)";

std::string replaced(std::string text, const std::string& what, const std::string& with) {
  const auto place = text.find(what);
  if (place == std::string::npos) throw std::logic_error("not there: " + what);
  return text.replace(place, what.size(), with);
}

/// With the phone's first state.
std::string onPhone(const std::string& phone, const std::string& scenario) {
  return replaced(scenario, R"("silentVibrate": true)", phone);
}
/// With a second profile, which follows the calendar "other".
std::string withSecond(const std::string& scenario, const std::string& events, const std::string& more) {
  return replaced(replaced(scenario, "}], \"calendars\": [",
                           R"(}, {"identifier": 6, "title": "Other", "enabled": true,
      "startTime": "8:00 AM", "endTime": "5:00 PM", "ringerVolume": 0.5, "playBackVolume": 0.25,
      "calendarIdentifiers": ["other"], "allDayEventsIgnored": true)" +
                               more + "}], \"calendars\": [{\"identifier\": \"other\", \"events\": " + events + "}, "),
                  "@@", "");
}

const std::string twoMeetings = R"([{"uid": "1", "title": "A", "start": "09:00", "end": "10:00"},
                                   {"uid": "2", "title": "B", "start": "10:00", "end": "11:00"}])";

INSTANTIATE_TEST_SUITE_P(
    Meetings, Promises,
    ::testing::Values(
        Promise{"AfterAMeeting", workday(standup)},
        Promise{"AfterAMeetingWithEveryEffect", workday(standup, "[]", loud)},
        Promise{"AfterMeetingsBackToBack", workday(twoMeetings, "[]", tone)},
        Promise{"APhoneThatDidNotVibrateDoesNot",
                onPhone(R"("ringVibrate": false, "silentVibrate": false)", workday(standup))},
        Promise{"APhoneThatVibratedDoes", workday(standup, "[]", R"(, "vibrate": false)")},
        Promise{"TheUsersOwnDoNotDisturbStays", onPhone(R"("doNotDisturb": true)", workday(standup))},
        Promise{"DoNotDisturbSetByHandInTheMeetingStays",
                workday(standup, R"([{"at": "09:30", "do": "doNotDisturb", "on": true}])"),
                {[](PhoneState& s) { s.doNotDisturb = true; }}},
        Promise{"DoNotDisturbTakenBackByHandIsOff",
                workday(standup, R"([{"at": "09:30", "do": "doNotDisturb", "on": false}])", loud)},
        Promise{"MediaVolumeSetByHandInTheMeetingStays",
                workday(standup, R"([{"at": "09:30", "do": "pressVolume", "category": "media", "volume": 0.7}])", tone),
                {[](PhoneState& s) { s.media = 0.7f; }}},
        Promise{"AKeptRingtoneVolumeStays",
                workday(standup, R"([{"at": "09:30", "do": "pressVolume", "volume": 0.4},
                                     {"at": "09:31", "do": "answer", "button": 0}])"),
                {[](PhoneState& s) { s.ringtone = 0.4f; }, [](PhoneState&) {}}},
        Promise{"ARefusedRingtoneVolumeGoes",
                workday(standup, R"([{"at": "09:30", "do": "pressVolume", "volume": 0.4},
                                     {"at": "09:31", "do": "answer", "button": 1}])"),
                {[](PhoneState&) {}, [](PhoneState& s) { s.ringtone = 0.4f; }}},
        Promise{"ARevertDuringTheToneLeavesNothing",
                workday(standup,
                        R"([{"at": "09:00:01", "do": "editProfile", "profile": "Work", "set": {"enabled": false}}])",
                        tone)},
        Promise{"DeletedInTheMeeting",
                workday(standup, R"([{"at": "09:30", "do": "deleteProfile", "profile": "Work"}])", loud)},
        Promise{"SwitchedOffInTheMeeting",
                workday(standup, R"([{"at": "09:30", "do": "masterSwitch", "on": false}])", loud)},
        Promise{"SwitchedOffAndOnInTheMeeting", workday(standup, R"([{"at": "09:30", "do": "masterSwitch", "on": false},
                                     {"at": "09:40", "do": "masterSwitch", "on": true}])",
                                                        loud)},
        Promise{"DisabledAndEnabledInTheMeeting",
                workday(standup, R"([{"at": "09:20", "do": "editProfile", "profile": "Work", "set": {"enabled": false}},
                                     {"at": "09:40", "do": "editProfile", "profile": "Work", "set": {"enabled": true}}])",
                        loud)},
        Promise{"CancelledInTheMeeting",
                workday(standup, R"([{"at": "09:30", "do": "removeEvent", "uid": "1"}])", loud)}),
    [](const auto& info) { return info.param.name; });

const std::string overlapping = R"([{"uid": "9", "title": "Long", "start": "09:30", "end": "11:00"}])";

INSTANTIATE_TEST_SUITE_P(
    TwoProfiles, Promises,
    ::testing::Values(
        Promise{"OverlappingQuietOnes", withSecond(workday(standup) + "@@", overlapping, plain)},
        Promise{"OverlappingLoudOnes", withSecond(workday(standup, "[]", loud) + "@@", overlapping, loud)},
        Promise{"OneInTheOther",
                withSecond(workday(standup, "[]", tone) + "@@",
                           R"([{"uid": "9", "title": "Short", "start": "09:15", "end": "09:30"}])", loud)},
        Promise{"EndingTogether",
                withSecond(workday(standup, "[]", loud) + "@@",
                           R"([{"uid": "9", "title": "Late", "start": "09:15", "end": "10:00"}])", tone)}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace hushmode::simulation
