// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Do Not Disturb from system 11 on: a module of the Control Center, set on 11 and tapped from 12 on.

#include "platform/ControlCenter.h"
#include "tests/effects/EffectsFixture.h"

namespace hushmode {
namespace {

std::string sameState(bool state) {
  const std::string digit = state ? "1" : "0";
  return "log I **** Currently the state of DND module is " + digit + " & and you are asking me to set its state as " +
         digit + ". Since both are same, I'm not doing anything!!";
}

struct DoNotDisturbModule : EffectsTest {
  void useSystem(const char* version) {
    phone.uiKit().setSystemVersion(version);
    clearRecord();
  }
};

TEST_F(DoNotDisturbModule, OnElevenIsSetToTheStateAskedFor) {
  for (const char* version : {"11.0", "11.4.1"}) {
    useSystem(version);
    manager().enableORDisableDnD(true);
    manager().enableORDisableDnD(false);
    EXPECT_EQ(texts(), (Texts{"fx setSelected:true", "fx setSelected:false"})) << version;
  }
}

TEST_F(DoNotDisturbModule, FromTwelveOnIsTappedInTheMiddleOfItsView) {
  for (const char* version : {"12.0", "12.4", "13.1.2"}) {
    useSystem(version);
    const Texts tap{"fx hitTest:(112.000000, 192.000000)", "fx buttonTapped:<CCUIButtonModuleView>"};
    manager().enableORDisableDnD(true);
    EXPECT_EQ(texts(), tap) << version;
    manager().enableORDisableDnD(false);
    EXPECT_EQ(texts(), joined({tap, tap})) << version;
  }
}

TEST_F(DoNotDisturbModule, InTheStateAskedForAlreadyIsLeftAloneWithALogLine) {
  for (const char* version : {"11.4", "12.4", "13.1"}) {
    for (const bool on : {true, false}) {
      SCOPED_TRACE(testing::Message() << version << " " << on);
      useSystem(version);
      phone.controlCenter().setDoNotDisturb(on);
      manager().enableORDisableDnD(on);
      EXPECT_EQ(texts(), Texts{sameState(on)});
      EXPECT_EQ(phone.controlCenter().isDoNotDisturbOn(), on);
    }
  }
}

TEST_F(DoNotDisturbModule, WithoutAButtonViewIsTappedWithNoButtonAndNoPoint) {
  useSystem("12.4");
  phone.controlCenter().parts().buttonView = false;
  manager().enableORDisableDnD(true);
  EXPECT_EQ(texts(), Texts{"fx buttonTapped:none"});
  clearRecord();
  phone.controlCenter().parts().buttonView = true;
  phone.classes().removeClass("CCUIButtonModuleView");
  manager().enableORDisableDnD(false);
  EXPECT_EQ(texts(), Texts{"fx buttonTapped:none"}) << "without the class no view is of it";
}

TEST_F(DoNotDisturbModule, WithoutTheManagersClassIsAnErrorLine) {
  phone.classes().removeClass("CCUIModuleInstanceManager");
  for (const bool enable : {true, false}) {
    clearRecord();
    manager().enableORDisableDnD(enable);
    EXPECT_EQ(texts(), Texts{"log E ******* Unable to find 'CCUIModuleInstanceManager'.."});
  }
}

TEST_F(DoNotDisturbModule, ThatIsNotThereIsGivenUpWithoutALine) {
  phone.controlCenter().parts().doNotDisturbButton = false;
  for (const bool enable : {true, false}) manager().enableORDisableDnD(enable);
  EXPECT_EQ(texts(), Texts());
}

TEST_F(DoNotDisturbModule, IsKnownByItsIdentifierInAnyLetterCase) {
  const struct {
    const char* identifier;
    bool isKnown;
  } cases[] = {
      {"DND", true},
      {"com.vendor.dnd-module", true},
      {"com.vendor.DnDModule", true},
      {"Do Not Disturb", true},
      {"the do not disturb switch", true},
      {"com.vendor.DoNotDisturbModule", true},
      {"com.vendor.DONOTDISTURB", true},
      {"com.vendor.Do-Not-Disturb", false},
      {"com.vendor.DoNot Disturb", false},
      {"com.vendor.quiet", false},
      {"", false},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.identifier);
    useSystem("11.4");
    phone.controlCenter().setDoNotDisturb(false);
    phone.controlCenter().setModuleIdentifier(each.identifier);
    manager().enableORDisableDnD(true);
    EXPECT_EQ(phone.controlCenter().isDoNotDisturbOn(), each.isKnown);
  }
}

TEST_F(DoNotDisturbModule, ThatTheUserHadSwitchedOnIsSwitchedOffByTheRevertAndNothingIsStored) {
  for (const char* version : {"11.4", "13.1"}) {
    useSystem(version);
    phone.controlCenter().setDoNotDisturb(true);
    work->setDnDEnabled(true);
    work->apply();
    EXPECT_TRUE(phone.controlCenter().isDoNotDisturbOn());
    work->revert();
    EXPECT_FALSE(phone.controlCenter().isDoNotDisturbOn());
    for (const auto& [key, value] : phone.defaults().standard()) {
      EXPECT_TRUE(key.ends_with("-vibrate")) << key;
    }
  }
}

TEST_F(DoNotDisturbModule, CanBeAskedForPastTheVersionTest) {
  useSystem("11.4");
  manager().enableORDisableDnDForIOS11(true);
  EXPECT_EQ(texts(), Texts{"fx setSelected:true"});
}

// --- The tap's geometry, with views that note what they are asked ---

class NotingView : public platform::CCUIButtonModuleView {
 public:
  explicit NotingView(Texts& notes, std::string name) : notes_(notes), name_(std::move(name)) {}

  platform::CGRect frame() const override { return {{1, 2}, {3, 4}}; }
  std::shared_ptr<platform::UIView> superview() const override { return above; }
  std::vector<std::shared_ptr<platform::UIView>> subviews() const override { return below; }
  platform::CGRect convertRect(const platform::CGRect& rect,
                               const std::shared_ptr<platform::UIView>& from) const override {
    notes_.push_back(name_ + " converts " + std::to_string(static_cast<int>(rect.size.width)) + " wide from " +
                     (from == above ? "its superview"
                      : from        ? from->description()
                                    : "none"));
    return {{10, 20}, {6, 8}};
  }
  std::shared_ptr<platform::UIView> hitTest(platform::CGPoint point,
                                            const std::shared_ptr<platform::Object>& event) override {
    notes_.push_back(name_ + " is hit at " + std::to_string(static_cast<int>(point.x)) + ", " +
                     std::to_string(static_cast<int>(point.y)) + (event ? " by an event" : ""));
    return nullptr;
  }
  std::string description() const override { return name_; }

  std::shared_ptr<platform::UIView> above;
  std::vector<std::shared_ptr<platform::UIView>> below;

 private:
  Texts& notes_;
  std::string name_;
};

/// A module, its only instance, the manager of that, and the manager's class in one.
struct NotingModule final : platform::CCUIToggleModule {
  explicit NotingModule(Texts& notes) : notes(notes) {}
  bool isSelected() const override { return false; }
  void setSelected(bool) override { notes.push_back("module is set"); }
  std::shared_ptr<platform::UIView> view() const override { return shown; }
  void buttonTapped(const std::shared_ptr<platform::UIView>& button,
                    const std::shared_ptr<platform::Object>& event) override {
    notes.push_back("module is tapped on " + button->description() + (event ? " by an event" : ""));
  }
  Texts& notes;
  std::shared_ptr<NotingView> shown;
};

struct OnlyInstance final : platform::CCUIModuleInstance {
  std::string moduleIdentifier() const override { return "dnd"; }
  std::shared_ptr<platform::CCUIToggleModule> module() const override { return only; }
  std::shared_ptr<platform::CCUIToggleModule> only;
};

struct OnlyManager final : platform::CCUIModuleInstanceManager {
  std::vector<std::shared_ptr<platform::CCUIModuleInstance>> moduleInstances() const override { return {instance}; }
  std::shared_ptr<OnlyInstance> instance = std::make_shared<OnlyInstance>();
};

struct OnlyManagerClass final : platform::CCUIModuleInstanceManager::Class {
  std::shared_ptr<platform::CCUIModuleInstanceManager> sharedInstance() override { return manager; }
  std::shared_ptr<OnlyManager> manager = std::make_shared<OnlyManager>();
};

TEST_F(DoNotDisturbModule, TheTapGoesToTheMiddleOfTheModulesFrameTakenFromTheButtonsSuperview) {
  Texts notes;
  const auto module = std::make_shared<NotingModule>(notes);
  module->shown = std::make_shared<NotingView>(notes, "view");
  const auto button = std::make_shared<NotingView>(notes, "button");
  const auto later = std::make_shared<NotingView>(notes, "later button");
  button->above = std::make_shared<NotingView>(notes, "container");
  module->shown->below = {button, later};
  auto managerClass = std::make_unique<OnlyManagerClass>();
  managerClass->manager->instance->only = module;
  phone.classes().add("CCUIModuleInstanceManager", std::move(managerClass));
  manager().enableORDisableDnD(true);
  EXPECT_EQ(notes,
            (Texts{"view converts 3 wide from container", "button is hit at 13, 24", "module is tapped on button"}));
}

}  // namespace
}  // namespace hushmode
