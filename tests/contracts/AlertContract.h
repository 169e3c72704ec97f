// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "effects/VolumeMarks.h"
#include "platform/Process.h"
#include "platform/UIKit.h"
#include "store/HMProfilesManager.h"
#include "tests/support/PartlyReal.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::contracts {

/// What the user sees of a question.
struct SeenAlert {
  std::string title, message;
  std::vector<std::string> buttons;
  bool operator==(const SeenAlert&) const = default;
};

/// A phone, as far as questions to its user are concerned. All has settled on return.
class AlertWorld {
 public:
  virtual ~AlertWorld() = default;
  virtual platform::UIKit& uiKit() = 0;
  /// On the screen, the oldest first.
  virtual std::vector<SeenAlert> seen() = 0;
  /// The user taps a button of one of them.
  virtual void tap(std::size_t alert, int button) = 0;
  virtual void endProcess() = 0;
};

/// What the questions of every phone do.
template <class World>
class AlertContract : public ::testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  std::shared_ptr<platform::UIAlertView> ask(const std::string& title, std::optional<std::string> cancel = {}) {
    const auto alert = world.uiKit().makeAlertView(
        {title, "Sure?", std::move(cancel), {"Yes", "No"}, [this](const auto& view, int button) {
           answers.push_back(std::to_string(view->tag()) + ": " + std::to_string(button));
         }});
    alert->setTag(7);
    alert->show();
    return alert;
  }

  World world;
  Texts answers;
};
TYPED_TEST_SUITE_P(AlertContract);

TYPED_TEST_P(AlertContract, ShowsAQuestionOnce) {
  EXPECT_TRUE(this->world.seen().empty());
  const auto alert = this->ask("Keep it?");
  alert->show();
  EXPECT_EQ(this->world.seen(), (std::vector<SeenAlert>{{"Keep it?", "Sure?", {"Yes", "No"}}}));
  EXPECT_TRUE(this->answers.empty());
}

TYPED_TEST_P(AlertContract, TellsTheAnswerOnceAndTakesTheQuestionAway) {
  this->ask("Keep it?");
  this->world.tap(0, 1);
  EXPECT_EQ(this->answers, std::vector<std::string>{"7: 1"});
  EXPECT_TRUE(this->world.seen().empty());
}

TYPED_TEST_P(AlertContract, CountsTheCancelButtonFirst) {
  this->ask("Keep it?", "Cancel");
  EXPECT_EQ(this->world.seen().at(0).buttons, (std::vector<std::string>{"Cancel", "Yes", "No"}));
  this->world.tap(0, 0);
  EXPECT_EQ(this->answers, std::vector<std::string>{"7: 0"});
}

TYPED_TEST_P(AlertContract, TellsTheAnswersOfSeveralQuestionsApart) {
  this->ask("First");
  const auto second = this->ask("Second");
  second->setTag(8);
  this->world.tap(1, 0);
  EXPECT_EQ(this->world.seen().at(0).title, "First");
  this->world.tap(0, 1);
  EXPECT_EQ(this->answers, (std::vector<std::string>{"8: 0", "7: 1"}));
}

TYPED_TEST_P(AlertContract, CanShowAnAnsweredQuestionAgain) {
  const auto alert = this->ask("Keep it?");
  this->world.tap(0, 1);
  alert->show();
  this->world.tap(0, 0);
  EXPECT_EQ(this->answers, (std::vector<std::string>{"7: 1", "7: 0"}));
}

TYPED_TEST_P(AlertContract, TakesQuestionsAwayWithTheirProcess) {
  this->ask("Keep it?");
  EXPECT_EQ(this->world.seen().size(), 1U);
  this->world.endProcess();
  EXPECT_TRUE(this->world.seen().empty());
  EXPECT_TRUE(this->answers.empty());
}

TYPED_TEST_P(AlertContract, LetsTheLibraryAskWhetherToKeepAVolume) {
  devices::SimulatedPhone rest{platform::Date(1'715'673'600)};
  PartlyReal device(rest);
  device.ownUIKit = &this->world.uiKit();
  const platform::Process process(device);
  const auto manager = HMProfilesManager::sharedManager();
  const auto profile = HMProfile::init();
  profile->setIdentifier(1);
  profile->setTitle("Work <1 & 2>");
  profile->setEnabled(true);
  manager->addProfile(profile, nullptr, nullptr);
  profile->setApplied(true);
  setHm_ChangedViaHWButtons(rest.celestial().sharedAVSystemController(), true);
  manager->volumeChanged({"",
                          nullptr,
                          {{"AVSystemController_AudioCategoryNotificationParameter", platform::Value("Ringtone")},
                           {"AVSystemController_AudioVolumeNotificationParameter", platform::Value(0.5)}}});
  ASSERT_EQ(this->world.seen().size(), 1U);
  EXPECT_NE(this->world.seen()[0].message.find("while 'Work <1 & 2>' is active"), std::string::npos)
      << this->world.seen()[0].message;
  this->world.tap(0, 0);
  EXPECT_TRUE(profile->shouldPreserveVolumeChange());
}

REGISTER_TYPED_TEST_SUITE_P(AlertContract, ShowsAQuestionOnce, TellsTheAnswerOnceAndTakesTheQuestionAway,
                            CountsTheCancelButtonFirst, TellsTheAnswersOfSeveralQuestionsApart,
                            CanShowAnAnsweredQuestionAgain, TakesQuestionsAwayWithTheirProcess,
                            LetsTheLibraryAskWhetherToKeepAVolume);

}  // namespace hushmode::contracts
