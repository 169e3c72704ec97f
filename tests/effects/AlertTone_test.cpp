// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The profile's tone: how it is played on each system, and when its completion runs.

#include "platform/ToneLibrary.h"
#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

struct AlertTone : EffectsTest {
  /// Plays the tone and notes each call of the completion.
  void play() {
    work->playAlertToneFromIdentifier([this](bool finished) { completions.push_back(finished); });
  }

  std::vector<bool> completions;
};

TEST_F(AlertTone, PlaysForASecondAndCompletesAtOnceOnALockedPhone) {
  phone.screen().setLocked(true);
  play();
  EXPECT_EQ(effects(), Texts{"fx tone start type 1 \"texttone:Chime\""});
  runFor(0.99);
  EXPECT_TRUE(phone.tone().playing());
  EXPECT_EQ(completions.size(), 0U);
  runFor(0.01);
  EXPECT_EQ(effects(), (Texts{"fx tone start type 1 \"texttone:Chime\"", "fx tone stop"}));
  EXPECT_EQ(completions, std::vector<bool>{true});
}

TEST_F(AlertTone, CompletesEightTenthsOfASecondLaterOnAnUnlockedPhone) {
  play();
  runFor(1.79);
  EXPECT_FALSE(phone.tone().playing());
  EXPECT_EQ(completions.size(), 0U);
  runFor(0.02);
  EXPECT_EQ(completions, std::vector<bool>{true});
}

TEST_F(AlertTone, LooksAtTheLockWhenTheToneEndsAndNotWhenItStarts) {
  play();
  runFor(0.5);
  phone.screen().setLocked(true);
  runFor(0.5);
  EXPECT_EQ(completions.size(), 1U);
}

TEST_F(AlertTone, OfAPhoneWithoutTheHomeScreensClassWaitsAsWhenUnlocked) {
  phone.screen().setLocked(true);
  phone.classes().removeClass("SpringBoard");
  play();
  runFor(1.75);
  EXPECT_EQ(completions.size(), 0U);
  runFor(0.1);
  EXPECT_EQ(completions.size(), 1U);
}

TEST_F(AlertTone, OnALockedPhoneItsCompletionIsStillNoPartOfTheStop) {
  phone.screen().setLocked(true);
  Texts order;
  work->playAlertToneFromIdentifier([&](bool) { order.push_back("completed"); });
  // Queued for the same moment, but before the completion is.
  phone.runLoop().dispatchAfter(1.0, [&] { order.push_back("queued before"); });
  runFor(1.0);
  EXPECT_EQ(order, (Texts{"queued before", "completed"}));
}

TEST_F(AlertTone, WithoutACompletionIsStoppedAllTheSame) {
  work->playAlertToneFromIdentifier(nullptr);
  runFor(60);
  EXPECT_EQ(effects(), (Texts{"fx tone start type 1 \"texttone:Chime\"", "fx tone stop"}));
}

TEST_F(AlertTone, IsOfTheTypeThatTheSystemVersionAsksFor) {
  const struct {
    const char *version, *start;
  } cases[] = {
      {"8.4", "fx tone start type 0 \"texttone:Chime\""},  {"9.3.5", "fx tone start type 0 \"texttone:Chime\""},
      {"10.0", "fx tone start type 1 \"texttone:Chime\""}, {"11.4", "fx tone start type 1 \"texttone:Chime\""},
      {"12.4", "fx tone start type 1 \"texttone:Chime\""}, {"13.1.2", "fx tone start type 1 \"texttone:Chime\""},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.version);
    phone.uiKit().setSystemVersion(each.version);
    clearRecord();
    play();
    EXPECT_EQ(effects(), Texts{each.start});
    runFor(60);
  }
}

TEST_F(AlertTone, OfAProfileWithoutOneIsTheSystemsOwn) {
  work->setAlertToneIdentifier(std::nullopt);
  play();
  EXPECT_EQ(effects(), Texts{"fx tone start type 1 none"});
}

TEST_F(AlertTone, IsPlayedInTheFirstWayThatTheSystemKnows) {
  const struct {
    const char* name;
    std::vector<const char*> absent;
    Texts expected;
  } cases[] = {
      {"all known", {}, {"fx tone start type 1 \"texttone:Chime\"", "fx tone stop"}},
      {"no repeating",
       {"startPlayingRepeatedly"},
       {"fx tone start type 1 \"texttone:Chime\" by playToneAndVibrationForType", "fx tone stop"}},
      {"neither repeating nor the public class method",
       {"startPlayingRepeatedly", "playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:"},
       {"fx tone start type 1 \"texttone:Chime\" by _playToneAndVibrationForType", "fx tone stop"}},
      {"no way at all",
       {"startPlayingRepeatedly", "playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:",
        "_playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:shouldOverrideMasterSwitches:"},
       {"fx tone stop"}},
      {"no stop", {"stop"}, {"fx tone start type 1 \"texttone:Chime\""}},
      {"no initialiser",
       {"initWithType:toneIdentifier:vibrationIdentifier:"},
       {"fx tone start type 1 \"texttone:Chime\" by playToneAndVibrationForType"}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    for (const char* selector : each.absent) phone.classes().removeSelector("TLAlert", selector);
    clearRecord();
    completions.clear();
    play();
    runFor(60);
    EXPECT_EQ(effects(), each.expected);
    EXPECT_EQ(completions, std::vector<bool>{true});
    for (const char* selector : each.absent) phone.classes().restoreSelector("TLAlert", selector);
  }
}

TEST_F(AlertTone, OfAPhoneWithoutTheToneClassIsNotHeardAndCompletesAllTheSame) {
  phone.classes().removeClass("TLAlert");
  play();
  runFor(1.75);
  EXPECT_EQ(completions.size(), 0U);
  runFor(0.1);
  EXPECT_EQ(texts(), Texts());
  EXPECT_EQ(completions, std::vector<bool>{true});
}

TEST_F(AlertTone, NeverVibratesByItself) {
  play();
  EXPECT_FALSE(phone.tone().playing()->vibration);
}

/// A class of tones without instances that notes what it is asked to play.
struct NotingToneClass final : platform::TLAlert::Class {
  using Identifier = platform::TLAlert::Identifier;

  explicit NotingToneClass(Texts& notes, bool hasPublicMethod) : notes(notes), hasPublicMethod(hasPublicMethod) {}
  bool respondsTo(std::string_view selector) const override {
    return hasPublicMethod || selector != "playToneAndVibrationForType:toneIdentifier:vibrationIdentifier:";
  }
  std::shared_ptr<platform::TLAlert> initWithType(int, const Identifier&, const Identifier&) override {
    return nullptr;
  }
  void playToneAndVibrationForType(int type, const Identifier& tone, const Identifier& vibration) override {
    note("play", type, tone, vibration);
  }
  void _playToneAndVibrationForType(int type, const Identifier& tone, const Identifier& vibration,
                                    bool shouldOverrideMasterSwitches) override {
    note(shouldOverrideMasterSwitches ? "_play over the switches" : "_play", type, tone, vibration);
  }
  void note(const std::string& way, int type, const Identifier& tone, const Identifier& vibration) {
    notes.push_back(way + " " + std::to_string(type) + " " + tone.value_or("none") + " " + vibration.value_or("none"));
  }

  Texts& notes;
  bool hasPublicMethod;
};

TEST_F(AlertTone, PlayedByTheClassIsTheSameToneWithoutVibrationAndHeedsTheMasterSwitches) {
  for (const bool hasPublicMethod : {true, false}) {
    Texts notes;
    phone.classes().add("TLAlert", std::make_unique<NotingToneClass>(notes, hasPublicMethod));
    play();
    EXPECT_EQ(notes, Texts{std::string(hasPublicMethod ? "play" : "_play") + " 1 texttone:Chime none"});
  }
}

}  // namespace
}  // namespace hushmode
