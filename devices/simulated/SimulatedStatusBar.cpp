// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedStatusBar.h"

#include "platform/StatusBar.h"

namespace hushmode::devices {

using platform::LSStatusBarItem;

class SimulatedStatusBar::Item final : public Answering<LSStatusBarItem> {
 public:
  Item(SimulatedStatusBar& bar, Icon icon) : Answering(bar.classes_, className), bar_(bar), icon_(std::move(icon)) {}

  void setImageName(std::string_view name) override {
    require("setImageName");
    bar_.record_.effect("statusBarItem setImageName", {{"image", name}});
    icon_.image = name;
    bar_.icon_ = icon_;
  }
  void setVisible(bool visible) override {
    require("setVisible");
    bar_.record_.effect("statusBarItem setVisible", {{"visible", visible}});
    icon_.visible = visible;
    bar_.icon_ = icon_;
  }

 private:
  SimulatedStatusBar& bar_;
  Icon icon_;
};

class SimulatedStatusBar::ItemClass final : public Answering<LSStatusBarItem::Class> {
 public:
  explicit ItemClass(SimulatedStatusBar& bar) : Answering(bar.classes_, LSStatusBarItem::className), bar_(bar) {}

  std::shared_ptr<LSStatusBarItem> initWithIdentifier(std::string_view identifier, int alignment) override {
    require("initWithIdentifier");
    bar_.record_.effect("statusBarItem init", {{"identifier", identifier}, {"alignment", alignment}});
    bar_.icon_ = Icon{std::string(identifier), alignment, {}, true};
    return std::make_shared<Item>(bar_, *bar_.icon_);
  }

 private:
  SimulatedStatusBar& bar_;
};

SimulatedStatusBar::SimulatedStatusBar(Record& record, SimulatedClasses& classes, SimulatedFoundation& foundation)
    : record_(record), classes_(classes) {
  foundation.setLoads(libraryPath, true);
  classes.add(LSStatusBarItem::className, std::make_unique<ItemClass>(*this),
              [&foundation] { return foundation.isLoaded(libraryPath); });
}

}  // namespace hushmode::devices
