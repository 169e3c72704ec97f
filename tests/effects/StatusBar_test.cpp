// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The icon in the status bar, and the library that it comes from.

#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

const std::string library = "/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib";
const std::string loads = "fx dlopen " + library + " mode 2";

/// Nothing has asked for the manager yet.
struct StatusBarLibrary : PhoneFixture {
  static HMProfilesManager& manager() { return *HMProfilesManager::sharedManager(); }
};

TEST_F(StatusBarLibrary, IsLoadedOnceAndTheIconMadeHiddenWhenTheManagerIsMade) {
  manager();
  EXPECT_EQ(texts(), (Texts{loads, "log I ******* 2. 'libstatusbar.dylib' loaded succesfully ********",
                            "fx statusBarItem initWithIdentifier:com.quorvel.hushmode alignment:2",
                            "fx statusBarItem setImageName:Profile", "fx statusBarItem setVisible:false"}));
  clearRecord();
  manager().loadLibStatusbar();
  EXPECT_EQ(texts(), Texts()) << "loaded again although its class exists";
}

TEST_F(StatusBarLibrary, ThatCannotBeLoadedIsAnErrorLineAndLeavesNoIcon) {
  phone.foundation().setLoads(library, false);
  manager();
  EXPECT_EQ(texts(), (Texts{loads + " (failed)", "log E ******* 2. Error while loading 'libstatusbar.dylib'********"}));
  clearRecord();
  manager().showORHideIconsOnSpringBoard(true);
  manager().showORHideIconsOnSpringBoard(false);
  EXPECT_EQ(texts(), Texts());
}

TEST_F(StatusBarLibrary, WithoutItsClassLeavesNoIconAlthoughItWasLoaded) {
  phone.classes().removeClass("LSStatusBarItem");
  manager();
  EXPECT_EQ(texts(), (Texts{loads, "log I ******* 2. 'libstatusbar.dylib' loaded succesfully ********"}));
  EXPECT_FALSE(manager().statusBarItem());
  manager().showORHideIconsOnSpringBoard(true);
  EXPECT_FALSE(phone.statusBar().icon());
}

TEST_F(StatusBarLibrary, IsTriedAgainOnEveryRequestWhileItsClassIsMissing) {
  phone.foundation().setLoads(library, false);
  manager();
  clearRecord();
  phone.foundation().setLoads(library, true);
  manager().loadLibStatusbar();
  EXPECT_EQ(texts(), (Texts{loads, "log I ******* 2. 'libstatusbar.dylib' loaded succesfully ********"}));
}

struct StatusBarIcon : EffectsTest {};

TEST_F(StatusBarIcon, ShowsAndHidesByTheManagerAndByTheProfile) {
  for (const bool show : {true, false}) {
    manager().showORHideIconsOnSpringBoard(show);
    EXPECT_EQ(phone.statusBar().isIconVisible(), show);
    work->showORHideIconsOnSpringBoard(!show);
    EXPECT_EQ(phone.statusBar().isIconVisible(), !show);
  }
}

TEST_F(StatusBarIcon, FollowsTheProfileAfterAnEditOnlyWhileThatIsApplied) {
  const struct {
    bool applied, wantsIcon, visibleBefore, visibleAfter;
  } cases[] = {
      {true, true, false, true},
      {true, false, true, false},
      {false, true, false, false},
      {false, false, true, true},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(testing::Message() << each.applied << each.wantsIcon << each.visibleBefore);
    work->setApplied(each.applied);
    work->setShowOnStatusBar(each.wantsIcon);
    manager().showORHideIconsOnSpringBoard(each.visibleBefore);
    clearRecord();
    work->updateShowStatuBarState();
    EXPECT_EQ(phone.statusBar().isIconVisible(), each.visibleAfter);
    EXPECT_EQ(texts().size(), each.applied ? 1U : 0U);
  }
}

TEST_F(StatusBarIcon, IsOneForAllProfilesAndHiddenByAnyRevert) {
  const auto gym = addProfile(1700000001, "Gym");
  gym->setShowOnStatusBar(true);
  gym->apply();
  ASSERT_TRUE(phone.statusBar().isIconVisible());
  work->revert();
  EXPECT_FALSE(phone.statusBar().isIconVisible());
}

TEST_F(StatusBarIcon, WifiIsEnabledOnlyByANonEmptyListOfNetworks) {
  EXPECT_FALSE(work->isWifiEnabled()) << "no list";
  work->setWifiNetworks(Texts());
  EXPECT_FALSE(work->isWifiEnabled()) << "an empty list";
  work->setWifiNetworks(Texts{"home"});
  EXPECT_TRUE(work->isWifiEnabled());
  work->setWifiNetworks(std::nullopt);
  EXPECT_FALSE(work->isWifiEnabled());
}

}  // namespace
}  // namespace hushmode
