// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The ways to the Do Not Disturb switch, walked as a program has to walk them.

#include "platform/ControlCenter.h"

#include "tests/support/PhoneFixture.h"

#include <memory>

namespace hushmode {
namespace {

using namespace platform;
using Texts = std::vector<std::string>;

ObjectList elementsOf(const std::shared_ptr<Object>& array) {
  const auto list = std::dynamic_pointer_cast<ObjectArray>(array);
  return list ? list->elements() : ObjectList();
}

class ControlCenterTest : public PhoneFixture {
 protected:
  std::shared_ptr<Object> viewController() {
    auto* controllers = find<SBControlCenterController>();
    return controllers ? instanceVariable(controllers->sharedInstance(), "_viewController") : nullptr;
  }

  std::shared_ptr<DoNotDisturbSetting> buttonOn9() {
    for (const auto& section : elementsOf(instanceVariable(viewController(), "_sectionList"))) {
      if (!isKindOf<SBCCSettingsSectionController>(section)) continue;
      for (const auto& button : elementsOf(instanceVariable(section, "_modules"))) {
        if (isKindOf<SBCCDoNotDisturbSetting>(button)) return std::dynamic_pointer_cast<DoNotDisturbSetting>(button);
      }
    }
    return nullptr;
  }

  std::shared_ptr<DoNotDisturbSetting> buttonOn10() {
    for (const auto& page : elementsOf(instanceVariable(viewController(), "_allPageContainerViewControllers"))) {
      const auto content = std::dynamic_pointer_cast<CCUIPageContainerViewController>(page)->contentViewController();
      if (!isKindOf<CCUISystemControlsPageViewController>(content)) continue;
      for (const auto& section : elementsOf(instanceVariable(content, "_sectionList"))) {
        if (!isKindOf<CCUISettingsSectionController>(section)) continue;
        for (const auto& button :
             std::dynamic_pointer_cast<CCUISettingsSectionController>(section)->_allButtonModules()) {
          if (isKindOf<CCUIDoNotDisturbSetting>(button)) return std::dynamic_pointer_cast<DoNotDisturbSetting>(button);
        }
      }
    }
    return nullptr;
  }

  std::shared_ptr<CCUIToggleModule> module() {
    for (const auto& instance : find<CCUIModuleInstanceManager>()->sharedInstance()->moduleInstances()) {
      if (instance->moduleIdentifier().find("DoNotDisturb") != std::string::npos) return instance->module();
    }
    return nullptr;
  }

  static std::shared_ptr<UIView> buttonViewOf(const CCUIToggleModule& module) {
    for (const auto& view : module.view()->subviews()) {
      if (isKindOf<CCUIButtonModuleView>(view)) return view;
    }
    return nullptr;
  }

  devices::SimulatedControlCenter& center() { return phone.controlCenter(); }
};

TEST_F(ControlCenterTest, HasAButtonAmongItsSectionsOn9AndInAPageOn10) {
  const struct {
    const char* version;
    const char* buttonClass;
    bool onPages;
  } cases[] = {
      {"9.3.3", "SBCCDoNotDisturbSetting", false},
      {"10.2", "CCUIDoNotDisturbSetting", true},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.version);
    phone.uiKit().setSystemVersion(each.version);
    center().setDoNotDisturb(false);
    clearRecord();
    const auto button = each.onPages ? buttonOn10() : buttonOn9();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->identifier(), "donotdisturb");
    EXPECT_FALSE(button->isEnabled());
    button->_toggleState();
    EXPECT_TRUE(center().isDoNotDisturbOn());
    EXPECT_TRUE(button->isEnabled());
    button->_setDNDEnabled(false, true, 3);
    EXPECT_FALSE(center().isDoNotDisturbOn());
    EXPECT_EQ(texts(), (Texts{"fx _toggleState", "fx _setDNDEnabled:false updateServer:true source:3"}));
    phone.classes().removeSelector(each.buttonClass, "_toggleState");
    EXPECT_FALSE(button->respondsTo("_toggleState"));
  }
}

TEST_F(ControlCenterTest, LacksWhatIsTakenAway) {
  using Parts = devices::SimulatedControlCenter::Parts;
  for (bool Parts::*part : {&Parts::controller, &Parts::viewController, &Parts::sectionList, &Parts::settingsSection,
                            &Parts::doNotDisturbButton}) {
    center().parts().*part = false;
    phone.uiKit().setSystemVersion("9.0");
    EXPECT_EQ(buttonOn9(), nullptr);
    phone.uiKit().setSystemVersion("10.0");
    EXPECT_EQ(buttonOn10(), nullptr);
    center().parts().*part = true;
    EXPECT_NE(buttonOn10(), nullptr);
  }
  phone.uiKit().setSystemVersion("12.0");
  center().parts().doNotDisturbButton = false;
  EXPECT_EQ(module(), nullptr);
}

TEST_F(ControlCenterTest, HasAModuleWithAButtonViewFrom11On) {
  const auto toggle = module();
  ASSERT_NE(toggle, nullptr);
  EXPECT_FALSE(toggle->isSelected());
  toggle->setSelected(true);
  EXPECT_TRUE(center().isDoNotDisturbOn());
  EXPECT_TRUE(toggle->isSelected());

  const auto button = buttonViewOf(*toggle);
  ASSERT_NE(button, nullptr);
  const CGRect frame = toggle->view()->convertRect(toggle->view()->frame(), button->superview());
  const CGPoint centre{frame.origin.x + frame.size.width / 2, frame.origin.y + frame.size.height / 2};
  button->hitTest(centre, nullptr);
  toggle->buttonTapped(button, nullptr);
  EXPECT_FALSE(center().isDoNotDisturbOn()) << "a tap switches over";
  toggle->buttonTapped(nullptr, nullptr);
  EXPECT_TRUE(center().isDoNotDisturbOn()) << "also one without a view";
  EXPECT_EQ(texts(), (Texts{"fx setSelected:true", "fx hitTest:(112.000000, 192.000000)",
                            "fx buttonTapped:<CCUIButtonModuleView>", "fx buttonTapped:none"}));
}

TEST_F(ControlCenterTest, CanLackTheButtonView) {
  center().parts().buttonView = false;
  EXPECT_EQ(buttonViewOf(*module()), nullptr);
}

TEST_F(ControlCenterTest, ConvertsRectanglesBetweenItsViews) {
  const auto toggle = module();
  const auto button = buttonViewOf(*toggle);
  const CGRect inWindow = button->convertRect({{80, 160}, {10, 10}}, nullptr);
  EXPECT_EQ(inWindow.origin.x, 0);
  EXPECT_EQ(inWindow.origin.y, 0);
  EXPECT_EQ(button->hitTest({32, 32}, nullptr), button);
  EXPECT_EQ(button->hitTest({64, 32}, nullptr), nullptr);
  EXPECT_EQ(button->hitTest({32, -1}, nullptr), nullptr);
}

TEST_F(ControlCenterTest, IsTheUsersToo) {
  center().switchDoNotDisturb(true);
  EXPECT_TRUE(module()->isSelected());
  EXPECT_EQ(texts(), Texts{"phone do not disturb true"});
}

}  // namespace
}  // namespace hushmode
