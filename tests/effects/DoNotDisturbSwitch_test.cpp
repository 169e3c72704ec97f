// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Do Not Disturb below system 11: a button of the Control Center, and what is remembered of it.

#include "tests/effects/EffectsFixture.h"

#include <cstring>

namespace hushmode {
namespace {

const std::string key = "com.quorvel.hushmode-donotdisturb";
const Texts savedAndToggled{"def set \"" + key + "\" = false", "def synchronize", "fx _toggleState"};
const Texts toggled{"fx _toggleState"};

/// On systems 8 to 10, whose buttons are reached by two different ways.
class DoNotDisturbSwitch : public EffectsTest, public testing::WithParamInterface<const char*> {
 protected:
  DoNotDisturbSwitch() { phone.uiKit().setSystemVersion(GetParam()); }

  const char* buttonClass() const {
    return GetParam() == std::string("10.3.3") ? "CCUIDoNotDisturbSetting" : "SBCCDoNotDisturbSetting";
  }
};

INSTANTIATE_TEST_SUITE_P(Systems, DoNotDisturbSwitch, testing::Values("8.4", "9.3.5", "10.3.3"), [](const auto& each) {
  return "System" + std::string(each.param, std::strcspn(each.param, "."));
});

TEST_P(DoNotDisturbSwitch, TogglesOnlyWhatIsNotSoYetAndEverOnlyStoresThatItWasOff) {
  const struct {
    const char* name;
    bool enable, isOn, storedOn;
    Texts expected;
  } cases[] = {
      {"on, is off", true, false, false, savedAndToggled},
      {"on, is on", true, true, false, {}},
      {"off, is on", false, true, false, toggled},
      {"off, is off", false, false, false, {}},
      {"on, is off, was stored as on", true, false, true, savedAndToggled},
      {"off, is on, was stored as on", false, true, true, {}},
      {"off, is off, was stored as on", false, false, true, {}},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    phone.defaults().standard().remove(key);
    if (each.storedOn) phone.defaults().standard().set(key, true);
    phone.controlCenter().setDoNotDisturb(each.isOn);
    clearRecord();
    manager().enableORDisableDnD(each.enable);
    EXPECT_EQ(texts(), each.expected);
  }
}

TEST_P(DoNotDisturbSwitch, ThatTheUserHadSwitchedOnIsLeftByTheApplyAndSwitchedOffByTheRevert) {
  phone.controlCenter().setDoNotDisturb(true);
  work->setDnDEnabled(true);
  work->apply();
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn());
  EXPECT_FALSE(saved("donotdisturb"));
  work->revert();
  EXPECT_FALSE(phone.controlCenter().isDoNotDisturbOn());
}

TEST_P(DoNotDisturbSwitch, KeepsItsStoredStateThroughReverts) {
  work->setDnDEnabled(true);
  work->apply();
  work->revert();
  EXPECT_EQ(saved("donotdisturb"), platform::Value(false));
}

TEST_P(DoNotDisturbSwitch, IsStoredUnderTheButtonsIdentifier) {
  phone.controlCenter().setButtonIdentifier("quiet %@");
  manager().enableORDisableDnD(true);
  EXPECT_EQ(saved("quiet %@"), platform::Value(false));
}

TEST_P(DoNotDisturbSwitch, ThatDoesNotAnswerIsSetWithoutALookAtItsState) {
  for (const char* absent : {"_toggleState", "isEnabled"}) {
    phone.classes().removeSelector(buttonClass(), absent);
    for (const bool enable : {true, false}) {
      SCOPED_TRACE(testing::Message() << absent << " " << enable);
      clearRecord();
      manager().enableORDisableDnD(enable);
      EXPECT_EQ(texts(),
                Texts{std::string("fx _setDNDEnabled:") + (enable ? "true" : "false") + " updateServer:true source:3"});
    }
    phone.classes().restoreSelector(buttonClass(), absent);
  }
}

TEST_P(DoNotDisturbSwitch, IsGivenUpSilentlyWhereAnyLinkOfTheWayIsMissing) {
  using Parts = devices::SimulatedControlCenter::Parts;
  for (bool Parts::*part : {&Parts::controller, &Parts::viewController, &Parts::sectionList, &Parts::settingsSection,
                            &Parts::doNotDisturbButton}) {
    phone.controlCenter().parts() = Parts();
    phone.controlCenter().parts().*part = false;
    clearRecord();
    manager().enableORDisableDnD(true);
    EXPECT_EQ(texts(), Texts());
    EXPECT_FALSE(phone.controlCenter().isDoNotDisturbOn());
  }
  phone.controlCenter().parts() = Parts();
  manager().enableORDisableDnD(true);
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn()) << "nothing was missing any more";
}

TEST_P(DoNotDisturbSwitch, IsGivenUpSilentlyWhereAnyClassOfTheWayIsMissing) {
  const bool isTen = GetParam() == std::string("10.3.3");
  const std::vector<const char*> classes =
      isTen ? std::vector<const char*>{"SBControlCenterController", "CCUISystemControlsPageViewController",
                                       "CCUISettingsSectionController", "CCUIDoNotDisturbSetting"}
            : std::vector<const char*>{"SBControlCenterController", "SBCCSettingsSectionController",
                                       "SBCCDoNotDisturbSetting"};
  for (const char* absent : classes) {
    SCOPED_TRACE(absent);
    phone.classes().removeClass(absent);
    clearRecord();
    manager().enableORDisableDnD(true);
    EXPECT_EQ(texts(), Texts());
    phone.classes().restoreClass(absent);
  }
  manager().enableORDisableDnD(true);
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn()) << "nothing was missing any more";
}

TEST_P(DoNotDisturbSwitch, FollowsTheProfileAfterAnEditOnlyWhileThatIsApplied) {
  work->setDnDEnabled(true);
  work->updateDNDStatus();
  EXPECT_EQ(texts(), Texts());
  work->setApplied(true);
  work->updateDNDStatus();
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn());
  work->setDnDEnabled(false);
  work->updateDNDStatus();
  EXPECT_FALSE(phone.controlCenter().isDoNotDisturbOn());
}

TEST_P(DoNotDisturbSwitch, ByAProfileIsTheManagers) {
  work->enableORDisableDnD(true);
  EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn());
  work->enableORDisableDnD(false);
  EXPECT_FALSE(phone.controlCenter().isDoNotDisturbOn());
}

}  // namespace
}  // namespace hushmode
