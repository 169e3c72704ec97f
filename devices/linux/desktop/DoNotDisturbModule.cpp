// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/DoNotDisturbModule.h"

#include "devices/linux/desktop/DoNotDisturb.h"

namespace hushmode::devices {

using platform::CGPoint;
using platform::CGRect;
using platform::Object;
using platform::UIView;

namespace {

constexpr CGRect place{{0, 0}, {64, 64}};  // Nobody sees these views; they only have to be found.

class ButtonView final : public platform::CCUIButtonModuleView {
 public:
  explicit ButtonView(const std::shared_ptr<UIView>& superview) : superview_(superview) {}
  std::string description() const override { return "<CCUIButtonModuleView>"; }
  CGRect frame() const override { return place; }
  std::shared_ptr<UIView> superview() const override { return superview_.lock(); }
  std::vector<std::shared_ptr<UIView>> subviews() const override { return {}; }
  CGRect convertRect(const CGRect& rect, const std::shared_ptr<UIView>&) const override { return rect; }
  std::shared_ptr<UIView> hitTest(CGPoint, const std::shared_ptr<Object>&) override {
    return std::static_pointer_cast<UIView>(shared_from_this());
  }

 private:
  std::weak_ptr<UIView> superview_;
};

/// A module's view; all coordinates are the same.
class ModuleView final : public UIView {
 public:
  static std::shared_ptr<ModuleView> make() {
    auto made = std::make_shared<ModuleView>();
    made->button_ = std::make_shared<ButtonView>(made);
    return made;
  }
  CGRect frame() const override { return place; }
  std::shared_ptr<UIView> superview() const override { return nullptr; }
  std::vector<std::shared_ptr<UIView>> subviews() const override { return {button_}; }
  CGRect convertRect(const CGRect& rect, const std::shared_ptr<UIView>&) const override { return rect; }
  std::shared_ptr<UIView> hitTest(CGPoint, const std::shared_ptr<Object>&) override { return button_; }

 private:
  std::shared_ptr<UIView> button_;
};

class Toggle final : public platform::CCUIToggleModule {
 public:
  explicit Toggle(DoNotDisturb& doNotDisturb) : doNotDisturb_(doNotDisturb) {}
  bool isSelected() const override { return doNotDisturb_.isOn(); }
  void setSelected(bool selected) override { doNotDisturb_.set(selected); }
  std::shared_ptr<UIView> view() const override { return view_; }
  void buttonTapped(const std::shared_ptr<UIView>&, const std::shared_ptr<Object>&) override {
    doNotDisturb_.set(!doNotDisturb_.isOn());
  }

 private:
  DoNotDisturb& doNotDisturb_;
  std::shared_ptr<ModuleView> view_ = ModuleView::make();
};

class Instance final : public platform::CCUIModuleInstance {
 public:
  explicit Instance(DoNotDisturb& doNotDisturb) : toggle_(std::make_shared<Toggle>(doNotDisturb)) {}
  std::string moduleIdentifier() const override { return "com.quorvel.hushmode.DoNotDisturbModule"; }
  std::shared_ptr<platform::CCUIToggleModule> module() const override { return toggle_; }

 private:
  std::shared_ptr<Toggle> toggle_;
};

class Manager final : public platform::CCUIModuleInstanceManager {
 public:
  explicit Manager(DoNotDisturb& doNotDisturb) : instance_(std::make_shared<Instance>(doNotDisturb)) {}
  std::vector<std::shared_ptr<platform::CCUIModuleInstance>> moduleInstances() const override { return {instance_}; }

 private:
  std::shared_ptr<Instance> instance_;
};

class ManagerClass final : public platform::CCUIModuleInstanceManager::Class {
 public:
  explicit ManagerClass(DoNotDisturb& doNotDisturb) : manager_(std::make_shared<Manager>(doNotDisturb)) {}
  std::shared_ptr<platform::CCUIModuleInstanceManager> sharedInstance() override { return manager_; }

 private:
  std::shared_ptr<Manager> manager_;
};

class ButtonViewClass final : public platform::Class {};

}  // namespace

std::unique_ptr<platform::Class> DoNotDisturbModule::makeManagerClass(DoNotDisturb& doNotDisturb) {
  return std::make_unique<ManagerClass>(doNotDisturb);
}

std::unique_ptr<platform::Class> DoNotDisturbModule::makeButtonViewClass() {
  return std::make_unique<ButtonViewClass>();
}

}  // namespace hushmode::devices
