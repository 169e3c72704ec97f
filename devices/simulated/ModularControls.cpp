// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/ModularControls.h"

#include "devices/simulated/SimulatedControlCenter.h"

#include <utility>

namespace hushmode::devices {

using platform::CGPoint;
using platform::CGRect;
using platform::Object;
using platform::UIView;

namespace {

/// The first of an object's views up to the root: where its origin lies there.
CGPoint originInRoot(const UIView& view) {
  CGPoint origin = view.frame().origin;
  for (auto above = view.superview(); above; above = above->superview()) {
    origin.x += above->frame().origin.x;
    origin.y += above->frame().origin.y;
  }
  return origin;
}

bool contains(const UIView& view, CGPoint point) {
  const platform::CGSize size = view.frame().size;
  return point.x >= 0 && point.y >= 0 && point.x < size.width && point.y < size.height;
}

/// A view of a given kind, with a plain view's geometry: points are in its own coordinates.
template <class Kind>
class View : public Kind {
 public:
  View(Record& record, CGRect frame) : record_(record), frame_(frame) {}

  CGRect frame() const override { return frame_; }
  std::shared_ptr<UIView> superview() const override { return superview_.lock(); }
  std::vector<std::shared_ptr<UIView>> subviews() const override { return subviews_; }

  CGRect convertRect(const CGRect& rect, const std::shared_ptr<UIView>& fromView) const override {
    const CGPoint from = fromView ? originInRoot(*fromView) : CGPoint();
    const CGPoint here = originInRoot(*this);
    return {{rect.origin.x + from.x - here.x, rect.origin.y + from.y - here.y}, rect.size};
  }

  std::shared_ptr<UIView> hitTest(CGPoint point, const std::shared_ptr<Object>&) override {
    record_.effect("hitTest", {{"x", point.x}, {"y", point.y}});
    if (!contains(*this, point)) return nullptr;
    return std::static_pointer_cast<UIView>(this->shared_from_this());
  }

  template <class Sub>
  void addSubview(const std::shared_ptr<View<Sub>>& view) {
    view->superview_ = std::static_pointer_cast<UIView>(this->shared_from_this());
    subviews_.push_back(view);
  }

 private:
  template <class Other>
  friend class View;

  Record& record_;
  CGRect frame_;
  std::weak_ptr<UIView> superview_;
  std::vector<std::shared_ptr<UIView>> subviews_;
};

class ButtonView final : public View<platform::CCUIButtonModuleView> {
 public:
  using View::View;
  std::string description() const override { return "<CCUIButtonModuleView>"; }
};

class OtherModule final : public platform::CCUIToggleModule {
 public:
  bool isSelected() const override { return false; }
  void setSelected(bool) override {}
  std::shared_ptr<UIView> view() const override { return nullptr; }
  void buttonTapped(const std::shared_ptr<UIView>&, const std::shared_ptr<Object>&) override {}
};

class ModuleInstance final : public platform::CCUIModuleInstance {
 public:
  ModuleInstance(std::string identifier, std::shared_ptr<platform::CCUIToggleModule> module)
      : identifier_(std::move(identifier)), module_(std::move(module)) {}
  std::string moduleIdentifier() const override { return identifier_; }
  std::shared_ptr<platform::CCUIToggleModule> module() const override { return module_; }

 private:
  std::string identifier_;
  std::shared_ptr<platform::CCUIToggleModule> module_;
};

}  // namespace

class ModularControls::DoNotDisturbModule final : public platform::CCUIToggleModule {
 public:
  explicit DoNotDisturbModule(SimulatedControlCenter& center)
      : center_(center), view_(std::make_shared<View<UIView>>(center.record_, CGRect{{80, 160}, {64, 64}})) {
    view_->addSubview(std::make_shared<View<UIView>>(center.record_, CGRect{{0, 0}, {64, 64}}));
    if (center.parts_.buttonView) {
      view_->addSubview<platform::CCUIButtonModuleView>(
          std::make_shared<ButtonView>(center.record_, CGRect{{0, 0}, {64, 64}}));
    }
  }

  bool isSelected() const override { return center_.doNotDisturb_; }
  void setSelected(bool selected) override { center_.operate("setSelected", {{"selected", selected}}, selected); }
  std::shared_ptr<UIView> view() const override { return view_; }
  /// A finger switches over, whatever view it touched.
  void buttonTapped(const std::shared_ptr<UIView>& button, const std::shared_ptr<Object>&) override {
    center_.operate("buttonTapped", {{"button", button ? button->description() : "none"}}, !center_.doNotDisturb_);
  }

 private:
  SimulatedControlCenter& center_;
  std::shared_ptr<View<UIView>> view_;
};

class ModularControls::Manager final : public Answering<platform::CCUIModuleInstanceManager> {
 public:
  explicit Manager(SimulatedControlCenter& center) : Answering(center.classes_, className), center_(center) {}

  std::vector<std::shared_ptr<platform::CCUIModuleInstance>> moduleInstances() const override {
    require("moduleInstances");
    std::vector<std::shared_ptr<platform::CCUIModuleInstance>> instances{
        std::make_shared<ModuleInstance>("com.apple.control-center.FlashlightModule", std::make_shared<OtherModule>())};
    if (center_.parts_.doNotDisturbButton) {
      instances.push_back(
          std::make_shared<ModuleInstance>(center_.moduleIdentifier_, std::make_shared<DoNotDisturbModule>(center_)));
    }
    return instances;
  }

 private:
  SimulatedControlCenter& center_;
};

class ModularControls::ManagerClass final : public Answering<platform::CCUIModuleInstanceManager::Class> {
 public:
  explicit ManagerClass(SimulatedControlCenter& center)
      : Answering(center.classes_, platform::CCUIModuleInstanceManager::className),
        manager_(std::make_shared<Manager>(center)) {}

  std::shared_ptr<platform::CCUIModuleInstanceManager> sharedInstance() override {
    require("sharedInstance");
    return manager_;
  }

 private:
  std::shared_ptr<Manager> manager_;
};

void ModularControls::addClasses(SimulatedControlCenter& center) {
  const auto from11 = [&center] { return center.majorVersion() >= 11; };
  SimulatedClasses& classes = center.classes_;
  classes.add(platform::CCUIModuleInstanceManager::className, std::make_unique<ManagerClass>(center), from11);
  classes.add(platform::CCUIButtonModuleView::className, std::make_unique<NamedClass>(), from11);
}

}  // namespace hushmode::devices
