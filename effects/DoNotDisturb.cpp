// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Do Not Disturb: the system's own switch is found in the Control Center of the running home-screen process and
// operated, in the way of each system version. Whatever is missing on the way ends the attempt silently, but for
// the module manager, whose absence is told.

#include "effects/DoNotDisturb.h"

#include "effects/SavedState.h"
#include "platform/ControlCenter.h"
#include "store/HMProfilesManager.h"
#include "util/Format.h"
#include "util/HMUtils.h"
#include "util/Log.h"

#include <algorithm>
#include <array>

namespace hushmode {

using platform::find;
using platform::isKindOf;
using platform::Object;
using platform::ObjectList;

namespace {

using ObjectPointer = std::shared_ptr<Object>;

ObjectList elementsOf(const ObjectPointer& array) {
  const auto list = std::dynamic_pointer_cast<platform::ObjectArray>(array);
  return list ? list->elements() : ObjectList();
}

/// The sections of the Control Center. On system 10 they hang below the page with the system controls, before that
/// below the view controller itself.
ObjectList controlCenterSections(const ObjectPointer& viewController) {
  if (!HMUtils::isIOS10()) return elementsOf(instanceVariable(viewController, "_sectionList"));
  for (const ObjectPointer& element :
       elementsOf(instanceVariable(viewController, "_allPageContainerViewControllers"))) {
    const auto page = std::dynamic_pointer_cast<platform::CCUIPageContainerViewController>(element);
    const ObjectPointer content = page ? page->contentViewController() : nullptr;
    if (isKindOf<platform::CCUISystemControlsPageViewController>(content)) {
      return elementsOf(instanceVariable(content, "_sectionList"));
    }
  }
  return {};
}

bool isSettingsSection(const ObjectPointer& section) {
  return isKindOf<platform::CCUISettingsSectionController>(section) ||
         isKindOf<platform::SBCCSettingsSectionController>(section);
}

ObjectList buttonsOf(const ObjectPointer& section) {
  if (isKindOf<platform::CCUISettingsSectionController>(section)) {
    return std::dynamic_pointer_cast<platform::CCUISettingsSectionController>(section)->_allButtonModules();
  }
  return elementsOf(instanceVariable(section, "_modules"));
}

bool isDoNotDisturb(const ObjectPointer& button) {
  return isKindOf<platform::SBCCDoNotDisturbSetting>(button) || isKindOf<platform::CCUIDoNotDisturbSetting>(button);
}

template <class Predicate>
ObjectPointer firstOf(const ObjectList& list, Predicate predicate) {
  const auto place = std::find_if(list.begin(), list.end(), predicate);
  return place == list.end() ? nullptr : *place;
}

/// The switch below system 11; null when any link of the chain is missing.
std::shared_ptr<platform::DoNotDisturbSetting> doNotDisturbSetting() {
  auto* controllerClass = find<platform::SBControlCenterController>();
  const auto controller = controllerClass ? controllerClass->sharedInstance() : nullptr;
  const ObjectPointer viewController = instanceVariable(controller, "_viewController");
  if (!viewController) return nullptr;
  const ObjectPointer section = firstOf(controlCenterSections(viewController), isSettingsSection);
  if (!section) return nullptr;
  return std::dynamic_pointer_cast<platform::DoNotDisturbSetting>(firstOf(buttonsOf(section), isDoNotDisturb));
}

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool containsIgnoringCase(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [](char a, char b) { return lowered(a) == lowered(b); }) != text.end();
}

bool namesDoNotDisturb(const std::string& moduleIdentifier) {
  constexpr std::array<std::string_view, 3> names{"DND", "Do Not Disturb", "DoNotDisturb"};
  return std::any_of(names.begin(), names.end(),
                     [&](std::string_view name) { return containsIgnoringCase(moduleIdentifier, name); });
}

/// The switch from system 11 on; null when there is none.
std::shared_ptr<platform::CCUIToggleModule> doNotDisturbModule(
    platform::CCUIModuleInstanceManager::Class& managerClass) {
  const auto manager = managerClass.sharedInstance();
  if (!manager) return nullptr;
  const auto instances = manager->moduleInstances();
  const auto place = std::find_if(instances.begin(), instances.end(),
                                  [](const auto& each) { return namesDoNotDisturb(each->moduleIdentifier()); });
  return place == instances.end() ? nullptr : (*place)->module();
}

/// From system 12 the switch only follows a finger, so one is played: on the button inside the module's view. The tap
/// is sent even when there is no such button.
void tap(platform::CCUIToggleModule& module) {
  const std::shared_ptr<platform::UIView> view = module.view();
  std::shared_ptr<platform::UIView> button;
  if (view) {
    const auto subviews = view->subviews();
    const auto place = std::find_if(subviews.begin(), subviews.end(), isKindOf<platform::CCUIButtonModuleView>);
    if (place != subviews.end()) button = *place;
  }
  if (view && button) {
    const platform::CGRect frame = view->convertRect(view->frame(), button->superview());
    const platform::CGPoint centre{frame.origin.x + frame.size.width / 2, frame.origin.y + frame.size.height / 2};
    button->hitTest(centre, nullptr);  // As a finger would be looked up; what it hits does not matter.
  }
  module.buttonTapped(button, nullptr);
}

}  // namespace

std::optional<bool> isDoNotDisturbOn() {
  if (HMUtils::isIOS11()) {
    auto* managerClass = find<platform::CCUIModuleInstanceManager>();
    const auto module = managerClass ? doNotDisturbModule(*managerClass) : nullptr;
    return module ? std::optional(module->isSelected()) : std::nullopt;
  }
  const auto setting = doNotDisturbSetting();
  return setting && setting->respondsTo("isEnabled") ? std::optional(setting->isEnabled()) : std::nullopt;
}

void HMProfilesManager::enableORDisableDnD(bool enable) {
  if (HMUtils::isIOS11()) return enableORDisableDnDForIOS11(enable);
  const auto setting = doNotDisturbSetting();
  if (!setting) return;
  if (!setting->respondsTo("_toggleState") || !setting->respondsTo("isEnabled")) {
    constexpr int source = 3;
    setting->_setDNDEnabled(enable, true, source);
    return;
  }
  const std::string key = formatted("com.quorvel.hushmode-%@", setting->identifier());
  const bool wasOn = userDefaults().boolForKey(key);
  if (enable) {
    if (setting->isEnabled()) return;
    // Only ever "off" is stored, so that a revert switches off what the user had switched on. Meant.
    userDefaults().setBool(setting->isEnabled(), key);
    userDefaults().synchronize();
    setting->_toggleState();
  } else if (setting->isEnabled() && !wasOn) {
    setting->_toggleState();
  }
}

void HMProfilesManager::enableORDisableDnDForIOS11(bool enable) {
  static constexpr const char* method = "enableORDisableDnDForIOS11:";
  auto* managerClass = find<platform::CCUIModuleInstanceManager>();
  if (!managerClass) {
    logError(method, "******* Unable to find 'CCUIModuleInstanceManager'..");
    return;
  }
  const auto module = doNotDisturbModule(*managerClass);
  if (!module) return;
  if (module->isSelected() == enable) {
    logInformation(method,
                   "**** Currently the state of DND module is %d & and you are asking me to set its state as %d. Since "
                   "both are same, I'm not doing anything!!",
                   module->isSelected(), enable);
    return;
  }
  if (HMUtils::isIOS12()) {
    tap(*module);
  } else {
    module->setSelected(enable);
  }
}

void HMProfile::enableORDisableDnD(bool enable) { HMProfilesManager::sharedManager()->enableORDisableDnD(enable); }

void HMProfile::updateDNDStatus() {
  if (isApplied()) enableORDisableDnD(isDnDEnabled());
}

}  // namespace hushmode
