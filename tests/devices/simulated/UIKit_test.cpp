// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using Texts = std::vector<std::string>;

TEST_F(PhoneFixture, AnAlertIsAnsweredFromOutsideAndItsDelegateToldOnTheMainQueue) {
  Texts answers;
  const auto alert =
      phone.uiKit().makeAlertView({"Information",
                                   "Keep it?",
                                   std::nullopt,
                                   {"Yes", "No"},
                                   [&](const std::shared_ptr<platform::UIAlertView>& view, int index) {
                                     answers.push_back(std::to_string(view->tag()) + ": " + std::to_string(index));
                                   }});
  alert->setTag(431213);
  EXPECT_TRUE(phone.uiKit().shownAlerts().empty());
  alert->show();
  alert->show();
  ASSERT_EQ(phone.uiKit().shownAlerts().size(), 1U);
  EXPECT_EQ(phone.uiKit().shownAlerts()[0].tag, 431213);
  EXPECT_THROW(phone.uiKit().answerAlert(2), std::out_of_range);
  EXPECT_THROW(phone.uiKit().answerAlert(-1), std::out_of_range);
  phone.uiKit().answerAlert(1);
  EXPECT_TRUE(phone.uiKit().shownAlerts().empty());
  EXPECT_EQ(answers, Texts());
  runFor(0);
  EXPECT_EQ(answers, Texts{"431213: 1"});
  EXPECT_THROW(phone.uiKit().answerAlert(0), std::out_of_range);
  EXPECT_EQ(texts(), (Texts{R"(alert show "Information" "Keep it?" ["Yes", "No"])", R"(alert answer 1 "No")"}));
}

TEST_F(PhoneFixture, AnAlertStaysOnTheScreenThoughNobodyElseHoldsIt) {
  int answer = -1;
  const auto delegate = [&](const auto&, int index) { answer = index; };
  phone.uiKit().makeAlertView({"First", "", "Cancel", {"OK"}, {}})->show();
  phone.uiKit().makeAlertView({"Second", "", "Cancel", {"OK"}, delegate})->show();
  EXPECT_EQ(phone.uiKit().shownAlerts()[1].buttons, (Texts{"Cancel", "OK"}));
  phone.uiKit().answerAlert(0, 1);
  phone.uiKit().answerAlert(1, 0);
  runFor(0);
  EXPECT_EQ(answer, 0);
}

TEST_F(PhoneFixture, TheVolumeIndicatorIsSwitchedByTheApplication) {
  EXPECT_TRUE(phone.uiKit().isVolumeHUDEnabled());
  phone.uiKit().sharedApplication()->setSystemVolumeHUDEnabled(false);
  EXPECT_FALSE(phone.uiKit().isVolumeHUDEnabled());
  EXPECT_EQ(texts(), Texts{"fx setSystemVolumeHUDEnabled:false"});
}

TEST_F(PhoneFixture, VersionAndAppearanceAreWhatTheyAreSetTo) {
  EXPECT_EQ(phone.uiKit().systemVersion(), "13.1");
  EXPECT_EQ(phone.uiKit().userInterfaceStyle(), std::nullopt);
  phone.uiKit().setSystemVersion("9.3.5");
  phone.uiKit().setUserInterfaceStyle(2);
  EXPECT_EQ(phone.uiKit().systemVersion(), "9.3.5");
  EXPECT_EQ(phone.uiKit().userInterfaceStyle(), 2);
}

}  // namespace
}  // namespace hushmode
