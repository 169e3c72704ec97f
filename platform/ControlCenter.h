// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"
#include "platform/UIKit.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The Control Center classes of the home-screen process behind the Do Not Disturb switch, all looked up by name.
/// Instance variables in use: "_viewController", "_allPageContainerViewControllers", "_sectionList", "_modules".
namespace hushmode::platform {

/// Below system 11: the Control Center; its instance variable "_viewController" leads to the controls.
class HUSHMODE_API SBControlCenterController : public Object {
 public:
  static constexpr std::string_view className = "SBControlCenterController";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<SBControlCenterController> sharedInstance() = 0;
  };

  ~SBControlCenterController() override;
};

/// System 10: a page of the Control Center.
class HUSHMODE_API CCUIPageContainerViewController : public Object {
 public:
  ~CCUIPageContainerViewController() override;
  virtual std::shared_ptr<Object> contentViewController() const = 0;
};

/// System 10: the page with the system controls; its "_sectionList" holds the sections.
class HUSHMODE_API CCUISystemControlsPageViewController : public Object {
 public:
  static constexpr std::string_view className = "CCUISystemControlsPageViewController";
  ~CCUISystemControlsPageViewController() override;
};

/// System 10: the section of settings buttons.
class HUSHMODE_API CCUISettingsSectionController : public Object {
 public:
  static constexpr std::string_view className = "CCUISettingsSectionController";
  ~CCUISettingsSectionController() override;
  virtual ObjectList _allButtonModules() const = 0;
};

/// System 9: the same section; its "_modules" holds the buttons.
class HUSHMODE_API SBCCSettingsSectionController : public Object {
 public:
  static constexpr std::string_view className = "SBCCSettingsSectionController";
  ~SBCCSettingsSectionController() override;
};

/// A Do Not Disturb button below system 11. Ask `respondsTo` for `isEnabled` and `_toggleState`.
class HUSHMODE_API DoNotDisturbSetting : public Object {
 public:
  ~DoNotDisturbSetting() override;
  virtual std::string identifier() const = 0;
  virtual bool isEnabled() const = 0;
  virtual void _toggleState() = 0;
  virtual void _setDNDEnabled(bool enabled, bool updateServer, int source) = 0;
};

class HUSHMODE_API SBCCDoNotDisturbSetting : public DoNotDisturbSetting {
 public:
  static constexpr std::string_view className = "SBCCDoNotDisturbSetting";
  ~SBCCDoNotDisturbSetting() override;
};

class HUSHMODE_API CCUIDoNotDisturbSetting : public DoNotDisturbSetting {
 public:
  static constexpr std::string_view className = "CCUIDoNotDisturbSetting";
  ~CCUIDoNotDisturbSetting() override;
};

/// System 12 and later: the button inside a toggle's view.
class HUSHMODE_API CCUIButtonModuleView : public UIView {
 public:
  static constexpr std::string_view className = "CCUIButtonModuleView";
  ~CCUIButtonModuleView() override;
};

/// System 11 and later: a toggle of the Control Center.
class HUSHMODE_API CCUIToggleModule : public Object {
 public:
  ~CCUIToggleModule() override;
  virtual bool isSelected() const = 0;
  virtual void setSelected(bool selected) = 0;
  virtual std::shared_ptr<UIView> view() const = 0;
  /// What a finger on `button` causes; both arguments may be null.
  virtual void buttonTapped(const std::shared_ptr<UIView>& button, const std::shared_ptr<Object>& event) = 0;
};

/// System 11 and later: a module and what it says of itself.
class HUSHMODE_API CCUIModuleInstance : public Object {
 public:
  ~CCUIModuleInstance() override;
  virtual std::string moduleIdentifier() const = 0;  ///< Of its metadata.
  virtual std::shared_ptr<CCUIToggleModule> module() const = 0;
};

/// System 11 and later: the modules of the Control Center.
class HUSHMODE_API CCUIModuleInstanceManager : public Object {
 public:
  static constexpr std::string_view className = "CCUIModuleInstanceManager";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<CCUIModuleInstanceManager> sharedInstance() = 0;
  };

  ~CCUIModuleInstanceManager() override;
  virtual std::vector<std::shared_ptr<CCUIModuleInstance>> moduleInstances() const = 0;
};

}  // namespace hushmode::platform
