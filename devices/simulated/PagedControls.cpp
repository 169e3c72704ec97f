// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/PagedControls.h"

#include "devices/simulated/SimulatedControlCenter.h"

#include <map>

namespace hushmode::devices {

using platform::Object;
using platform::ObjectArray;
using platform::ObjectList;

namespace {

/// An object with instance variables.
template <class Base>
class WithVariables : public Base {
 public:
  using Variables = std::map<std::string, std::shared_ptr<Object>, std::less<>>;

  explicit WithVariables(Variables variables = {}) : variables_(std::move(variables)) {}

  std::shared_ptr<Object> instanceVariable(std::string_view name) const override {
    const auto place = variables_.find(name);
    return place == variables_.end() ? nullptr : place->second;
  }

 private:
  Variables variables_;
};

using PlainObject = WithVariables<Object>;
using Controller = WithVariables<platform::SBControlCenterController>;
using ControlsPage = WithVariables<platform::CCUISystemControlsPageViewController>;
using ModulesSection = WithVariables<platform::SBCCSettingsSectionController>;

class PageContainer final : public platform::CCUIPageContainerViewController {
 public:
  explicit PageContainer(std::shared_ptr<Object> content) : content_(std::move(content)) {}
  std::shared_ptr<Object> contentViewController() const override { return content_; }

 private:
  std::shared_ptr<Object> content_;
};

class ButtonsSection final : public platform::CCUISettingsSectionController {
 public:
  explicit ButtonsSection(ObjectList buttons) : buttons_(std::move(buttons)) {}
  ObjectList _allButtonModules() const override { return buttons_; }

 private:
  ObjectList buttons_;
};

std::shared_ptr<Object> arrayOf(ObjectList elements) { return std::make_shared<ObjectArray>(std::move(elements)); }

}  // namespace

template <class Interface>
class PagedControls::Button final : public Answering<Interface> {
 public:
  explicit Button(SimulatedControlCenter& center)
      : Answering<Interface>(center.classes_, Interface::className), center_(center) {}

  std::string identifier() const override {
    this->require("identifier");
    return center_.buttonIdentifier_;
  }
  bool isEnabled() const override {
    this->require("isEnabled");
    return center_.doNotDisturb_;
  }
  void _toggleState() override {
    this->require("_toggleState");
    center_.operate("_toggleState", {}, !center_.doNotDisturb_);
  }
  void _setDNDEnabled(bool enabled, bool updateServer, int source) override {
    this->require("_setDNDEnabled");
    center_.operate("_setDNDEnabled", {{"enabled", enabled}, {"updateServer", updateServer}, {"source", source}},
                    enabled);
  }

 private:
  SimulatedControlCenter& center_;
};

class PagedControls::ControllerClass final : public Answering<platform::SBControlCenterController::Class> {
 public:
  explicit ControllerClass(SimulatedControlCenter& center)
      : Answering(center.classes_, platform::SBControlCenterController::className), center_(center) {}

  std::shared_ptr<platform::SBControlCenterController> sharedInstance() override {
    require("sharedInstance");
    if (!center_.parts_.controller) return nullptr;
    return std::make_shared<Controller>(
        Controller::Variables{{"_viewController", center_.parts_.viewController ? viewController() : nullptr}});
  }

 private:
  std::shared_ptr<Object> viewController() const {
    if (center_.majorVersion() < 10) {
      return std::make_shared<PlainObject>(
          PlainObject::Variables{{"_sectionList", center_.parts_.sectionList ? sectionList() : nullptr}});
    }
    // The page of the media controls comes first, as on a real phone.
    ObjectList pages{std::make_shared<PageContainer>(std::make_shared<PlainObject>())};
    if (center_.parts_.sectionList) {
      pages.push_back(std::make_shared<PageContainer>(
          std::make_shared<ControlsPage>(ControlsPage::Variables{{"_sectionList", sectionList()}})));
    }
    return std::make_shared<PlainObject>(
        PlainObject::Variables{{"_allPageContainerViewControllers", arrayOf(std::move(pages))}});
  }

  std::shared_ptr<Object> sectionList() const {
    ObjectList sections{std::make_shared<PlainObject>()};
    if (center_.parts_.settingsSection) sections.push_back(settingsSection());
    return arrayOf(std::move(sections));
  }

  std::shared_ptr<Object> settingsSection() const {
    const bool paged = center_.majorVersion() >= 10;
    ObjectList buttons{std::make_shared<PlainObject>(), std::make_shared<PlainObject>()};
    if (center_.parts_.doNotDisturbButton) {
      buttons.push_back(
          paged ? std::shared_ptr<Object>(std::make_shared<Button<platform::CCUIDoNotDisturbSetting>>(center_))
                : std::make_shared<Button<platform::SBCCDoNotDisturbSetting>>(center_));
    }
    if (paged) return std::make_shared<ButtonsSection>(std::move(buttons));
    return std::make_shared<ModulesSection>(ModulesSection::Variables{{"_modules", arrayOf(std::move(buttons))}});
  }

  SimulatedControlCenter& center_;
};

void PagedControls::addClasses(SimulatedControlCenter& center) {
  using namespace platform;
  const auto below11 = [&center] { return center.majorVersion() < 11; };
  const auto below10 = [&center] { return center.majorVersion() < 10; };
  const auto only10 = [&center] { return center.majorVersion() == 10; };
  SimulatedClasses& classes = center.classes_;
  classes.add(SBControlCenterController::className, std::make_unique<ControllerClass>(center), below11);
  classes.add(SBCCSettingsSectionController::className, std::make_unique<NamedClass>(), below10);
  classes.add(SBCCDoNotDisturbSetting::className, std::make_unique<NamedClass>(), below10);
  classes.add(CCUISystemControlsPageViewController::className, std::make_unique<NamedClass>(), only10);
  classes.add(CCUISettingsSectionController::className, std::make_unique<NamedClass>(), only10);
  classes.add(CCUIDoNotDisturbSetting::className, std::make_unique<NamedClass>(), only10);
}

}  // namespace hushmode::devices
