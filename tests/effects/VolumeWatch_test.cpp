// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// A ringtone volume that the user changes while a profile is applied, and the question whether to keep it.

#include "effects/VolumeMarks.h"
#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

constexpr int yesPlease = 0, noThanks = 1;

struct VolumeWatch : EffectsTest {
  VolumeWatch() {
    work->setApplied(true);
    mark(true);
    clearRecord();
  }

  std::shared_ptr<platform::AVSystemController> controller() { return phone.celestial().sharedAVSystemController(); }
  void mark(bool viaButtons) { setHm_ChangedViaHWButtons(controller(), viaButtons); }
  void press(float volume) { phone.sound().pressVolumeButton("Ringtone", volume); }
  void answer(int button) {
    phone.uiKit().answerAlert(button);
    runFor(0);
  }
  bool isAsked() { return !phone.uiKit().shownAlerts().empty(); }
};

TEST_F(VolumeWatch, AsksOnceAfterAChangeByTheUser) {
  press(0.5F);
  const auto alerts = phone.uiKit().shownAlerts();
  ASSERT_EQ(alerts.size(), 1U);
  EXPECT_EQ(alerts[0].title, "Information");
  EXPECT_EQ(alerts[0].message,
            "You changed ringtone volume of your device while 'Work' is active. Do you want to preserve this volume "
            "after the profile inactive?");
  EXPECT_EQ(alerts[0].buttons, (Texts{"Yes, please", "No, thanks"}));
  EXPECT_EQ(alerts[0].tag, 431213);
  EXPECT_TRUE(work->isVolumeAlertShown());
  EXPECT_EQ(work->newRingtoneVolume(), 0.5);
  EXPECT_TRUE(manager().volumePreserveAlertView());
  EXPECT_EQ(logged(), Texts{"log I newVolume: 0.500000"});
  press(0.25F);
  EXPECT_EQ(phone.uiKit().shownAlerts().size(), 1U) << "the question is asked at most once";
}

TEST_F(VolumeWatch, AsksInTheHostsLanguage) {
  phone.foundation().hostBundle().setTable(
      {{"Information", "Hinweis"},
       {"You changed ringtone volume of your device while '%@' is active. Do you want to preserve this volume after "
        "the profile inactive?",
        "Lautstärke während '%@' behalten?"},
       {"Yes, please", "Ja"},
       {"No, thanks", "Nein"}});
  press(0.5F);
  const auto alerts = phone.uiKit().shownAlerts();
  ASSERT_EQ(alerts.size(), 1U);
  EXPECT_EQ(alerts[0].title, "Hinweis");
  EXPECT_EQ(alerts[0].message, "Lautstärke während 'Work' behalten?");
  EXPECT_EQ(alerts[0].buttons, (Texts{"Ja", "Nein"}));
}

TEST_F(VolumeWatch, TellsOwnChangesFromTheUsersByTheMarkWhichMeansTheOppositeBelowEleven) {
  const struct {
    const char* version;
    bool marked, isOwn;
  } cases[] = {
      {"8.4", true, true},   {"8.4", false, false},  {"9.3", true, true},   {"9.3", false, false},
      {"10.3", true, true},  {"10.3", false, false}, {"11.0", true, false}, {"11.0", false, true},
      {"12.4", true, false}, {"12.4", false, true},  {"13.1", true, false}, {"13.1", false, true},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(testing::Message() << each.version << " marked " << each.marked);
    phone.uiKit().setSystemVersion(each.version);
    mark(each.marked);
    setHm_ChangedCounter(controller(), 0);
    work->setNewRingtoneVolume(0);
    press(0.5F);
    EXPECT_EQ(work->newRingtoneVolume(), each.isOwn ? 0 : 0.5);
    EXPECT_EQ(hm_ChangedCounter(controller()), each.isOwn ? -1 : 0);
  }
}

TEST_F(VolumeWatch, TakesAChangeRightAfterTheSoundSettingsForItsOwnAndCountsItBack) {
  work->applySoundSettings(true);
  ASSERT_EQ(hm_ChangedCounter(controller()), 1);
  clearRecord();
  press(0.5F);
  EXPECT_EQ(hm_ChangedCounter(controller()), 0);
  EXPECT_FALSE(isAsked());
  EXPECT_EQ(logged(), Texts());
  EXPECT_EQ(work->newRingtoneVolume(), 0);
}

TEST_F(VolumeWatch, CountsOwnChangesOfEveryCategoryAlsoWhileNoProfileIsApplied) {
  work->setApplied(false);
  mark(false);
  phone.sound().pressVolumeButton("Volume", 0.5F);
  manager().volumeChanged({});
  EXPECT_EQ(hm_ChangedCounter(controller()), -2);
}

TEST_F(VolumeWatch, PassesOverOtherCategoriesAndNoticesWithoutOne) {
  using platform::Notification;
  using platform::Value;
  const std::string category = "AVSystemController_AudioCategoryNotificationParameter";
  const std::string volume = "AVSystemController_AudioVolumeNotificationParameter";
  const Notification cases[] = {
      {"", nullptr, {}},
      {"", nullptr, {{volume, Value(0.5F)}}},
      {"", nullptr, {{category, Value("Audio/Video")}, {volume, Value(0.5F)}}},
      {"", nullptr, {{category, Value("ringtone")}, {volume, Value(0.5F)}}},
      {"", nullptr, {{category, Value("Ringtone ")}, {volume, Value(0.5F)}}},
      {"", nullptr, {{category, Value(1)}, {volume, Value(0.5F)}}},
      {"", nullptr, {{category, work}, {volume, Value(0.5F)}}},
  };
  for (const Notification& each : cases) manager().volumeChanged(each);
  EXPECT_EQ(texts(), Texts());
  EXPECT_EQ(work->newRingtoneVolume(), 0);
  EXPECT_EQ(hm_ChangedCounter(controller()), 0);
}

TEST_F(VolumeWatch, ReadsAMissingVolumeAsZero) {
  work->setNewRingtoneVolume(1);
  manager().volumeChanged(
      {"", nullptr, {{"AVSystemController_AudioCategoryNotificationParameter", platform::Value("Ringtone")}}});
  EXPECT_EQ(work->newRingtoneVolume(), 0);
  EXPECT_EQ(logged(), Texts{"log I newVolume: 0.000000"});
}

TEST_F(VolumeWatch, OnlyLogsAChangeWhileNoProfileIsApplied) {
  work->setApplied(false);
  clearRecord();
  press(0.5F);
  EXPECT_EQ(logged(), Texts{"log I newVolume: 0.500000"});
  EXPECT_FALSE(isAsked());
}

TEST_F(VolumeWatch, ConcernsTheFirstAppliedProfileOnly) {
  const auto gym = addProfile(1700000001, "Gym");
  gym->setApplied(true);
  const auto home = addProfile(1700000002, "Home");
  home->setApplied(true);
  work->setApplied(false);
  press(0.5F);
  EXPECT_EQ(gym->newRingtoneVolume(), 0.5);
  EXPECT_TRUE(gym->isVolumeAlertShown());
  EXPECT_EQ(home->newRingtoneVolume(), 0);
  EXPECT_FALSE(home->isVolumeAlertShown());
  EXPECT_EQ(work->newRingtoneVolume(), 0) << "enabled, but not applied";
}

TEST_F(VolumeWatch, ConcernsAnAppliedProfileAlsoWhenItIsDisabled) {
  work->setEnabled(false);
  press(0.5F);
  EXPECT_TRUE(isAsked());
}

TEST_F(VolumeWatch, YesStoresTheVolumeThatRaisedTheQuestionAndLaterOnesAsTheyHappen) {
  save("ringtone", 0.75F);
  press(0.3F);
  EXPECT_EQ(saved("ringtone"), platform::Value(0.75F));
  answer(yesPlease);
  EXPECT_TRUE(work->shouldPreserveVolumeChange());
  EXPECT_EQ(saved("ringtone"), platform::Value(0.3F));
  EXPECT_FALSE(manager().volumePreserveAlertView());
  clearRecord();
  press(0.5F);
  EXPECT_EQ(texts(), (Texts{"phone volume button Ringtone 0.500000", "log I newVolume: 0.500000",
                            "log I User updated volume hence storing new volume : 0.500000 in user defaults.",
                            "def set \"com.quorvel.hushmode-ringtone\" = 0.5", "def synchronize"}));
}

TEST_F(VolumeWatch, YesIsWhatARevertRestores) {
  work->apply();
  mark(true);
  press(0.5F);
  answer(yesPlease);
  work->revert();
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.5F);
}

TEST_F(VolumeWatch, NoLeavesTheSavedVolumeAndLaterChangesAreOnlyRemembered) {
  save("ringtone", 0.75F);
  work->setPreserveVolumeChange(true);
  press(0.5F);
  answer(noThanks);
  EXPECT_FALSE(work->shouldPreserveVolumeChange());
  EXPECT_FALSE(manager().volumePreserveAlertView());
  press(0.25F);
  EXPECT_EQ(work->newRingtoneVolume(), 0.25);
  EXPECT_EQ(saved("ringtone"), platform::Value(0.75F));
  work->revert();
  EXPECT_EQ(phone.sound().volume("Ringtone"), 0.75F);
}

TEST_F(VolumeWatch, AChangeBeforeTheAnswerIsWhatTheAnswerStores) {
  press(0.5F);
  press(0.25F);
  EXPECT_FALSE(saved("ringtone"));
  answer(yesPlease);
  EXPECT_EQ(saved("ringtone"), platform::Value(0.25F));
}

TEST_F(VolumeWatch, AnAnswerGoesToTheProfileThatIsAppliedByThen) {
  press(0.5F);
  const auto gym = addProfile(1700000001, "Gym");
  gym->setApplied(true);
  work->setApplied(false);
  answer(yesPlease);
  EXPECT_FALSE(work->shouldPreserveVolumeChange());
  EXPECT_TRUE(gym->shouldPreserveVolumeChange());
  EXPECT_EQ(saved("ringtone"), platform::Value(0.0F)) << "its own last change: none";
}

TEST_F(VolumeWatch, AnAnswerAfterTheRevertStoresNothingAndTakesTheQuestionAway) {
  press(0.5F);
  work->revert();
  answer(yesPlease);
  EXPECT_FALSE(saved("ringtone"));
  EXPECT_FALSE(work->shouldPreserveVolumeChange());
  EXPECT_FALSE(manager().volumePreserveAlertView());
}

TEST_F(VolumeWatch, AnswersToOtherQuestionsAreNotItsBusiness) {
  press(0.5F);
  const auto other = phone.uiKit().makeAlertView({});
  other->setTag(431212);
  manager().alertView(other, yesPlease);
  manager().alertView(nullptr, yesPlease);
  EXPECT_FALSE(work->shouldPreserveVolumeChange());
  EXPECT_FALSE(saved("ringtone"));
  EXPECT_TRUE(manager().volumePreserveAlertView());
}

TEST_F(VolumeWatch, AnyOtherIndexThanTheFirstIsANo) {
  work->setPreserveVolumeChange(true);
  press(0.5F);
  const auto question = manager().volumePreserveAlertView();
  manager().alertView(question, -1);
  EXPECT_FALSE(work->shouldPreserveVolumeChange());
}

TEST_F(VolumeWatch, AsksAgainInTheNextApplication) {
  press(0.5F);
  answer(yesPlease);
  work->revert();
  work->apply();
  mark(true);
  press(0.25F);
  EXPECT_TRUE(isAsked());
  EXPECT_EQ(saved("ringtone"), platform::Value(0.5F)) << "what the revert had restored, until the answer";
}

TEST_F(VolumeWatch, StoresTheVolumeInSinglePrecision) {
  manager().updateVolumeInUserDefaults(0.3);
  EXPECT_EQ(texts(), (Texts{"log I User updated volume hence storing new volume : 0.300000 in user defaults.",
                            "def set \"com.quorvel.hushmode-ringtone\" = 0.300000012", "def synchronize"}));
}

TEST_F(VolumeWatch, OwnChangesThatAreNoticedInsideTheCallRaiseTheQuestionBelowElevenOnly) {
  phone.sound().setNotices(devices::SimulatedSound::Notices::InsideTheCall);
  for (const char* version : {"13.1", "11.4"}) {
    phone.uiKit().setSystemVersion(version);
    work->applySoundSettings(true);
    EXPECT_FALSE(isAsked()) << version;
  }
  phone.uiKit().setSystemVersion("10.3");
  work->applySoundSettings(true);
  EXPECT_TRUE(isAsked());
}

}  // namespace
}  // namespace hushmode
