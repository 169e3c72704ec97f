// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedUIKit.h"

#include "devices/shared/CairoImages.h"

#include <algorithm>
#include <stdexcept>

namespace hushmode::devices {

class SimulatedUIKit::Application final : public platform::UIApplication {
 public:
  explicit Application(SimulatedUIKit& uiKit) : uiKit_(uiKit) {}

  void setSystemVolumeHUDEnabled(bool enabled) override {
    uiKit_.record_.effect("setSystemVolumeHUDEnabled", {{"enabled", enabled}});
    uiKit_.volumeHUDEnabled_ = enabled;
  }

 private:
  SimulatedUIKit& uiKit_;
};

class SimulatedUIKit::AlertView final : public platform::UIAlertView {
 public:
  AlertView(SimulatedUIKit& uiKit, platform::UIAlertDescription description)
      : uiKit_(uiKit), description_(std::move(description)) {}

  std::string description() const override { return "<UIAlertView \"" + description_.title + "\">"; }
  void setTag(int tag) override { tag_ = tag; }
  int tag() const override { return tag_; }

  void show() override {
    const auto self = std::static_pointer_cast<AlertView>(shared_from_this());
    if (std::find(uiKit_.shown_.begin(), uiKit_.shown_.end(), self) != uiKit_.shown_.end()) return;
    uiKit_.shown_.push_back(self);
    platform::Array titles;
    for (const std::string& title : buttons()) titles.emplace_back(title);
    uiKit_.record_.append(kind::alert, {{"operation", "show"},
                                        {"title", description_.title},
                                        {"message", description_.message},
                                        {"buttons", std::move(titles)}});
  }

  std::vector<std::string> buttons() const {
    std::vector<std::string> titles;
    if (description_.cancelButtonTitle) titles.push_back(*description_.cancelButtonTitle);
    titles.insert(titles.end(), description_.otherButtonTitles.begin(), description_.otherButtonTitles.end());
    return titles;
  }
  ShownAlert shown() const { return {tag_, description_.title, description_.message, buttons()}; }
  void tellDelegate(int buttonIndex) {
    if (!description_.clickedButtonAtIndex) return;
    description_.clickedButtonAtIndex(std::static_pointer_cast<UIAlertView>(shared_from_this()), buttonIndex);
  }

 private:
  SimulatedUIKit& uiKit_;
  platform::UIAlertDescription description_;
  int tag_ = 0;
};

SimulatedUIKit::SimulatedUIKit(VirtualTime& time, Record& record)
    : time_(time), record_(record), application_(std::make_shared<Application>(*this)) {}

std::shared_ptr<platform::UIAlertView> SimulatedUIKit::makeAlertView(platform::UIAlertDescription description) {
  return std::make_shared<AlertView>(*this, std::move(description));
}

std::unique_ptr<platform::UIGraphicsImageContext> SimulatedUIKit::beginImageContext(platform::CGSize size, bool opaque,
                                                                                    double scale) {
  return makeCairoImageContext(size, opaque, scale);
}

std::vector<SimulatedUIKit::ShownAlert> SimulatedUIKit::shownAlerts() const {
  std::vector<ShownAlert> alerts;
  for (const auto& alert : shown_) alerts.push_back(alert->shown());
  return alerts;
}

void SimulatedUIKit::answerAlert(int buttonIndex, std::size_t alert) {
  const auto answered = shown_.at(alert);
  const std::string button = answered->buttons().at(static_cast<std::size_t>(buttonIndex));
  record_.append(kind::alert, {{"operation", "answer"}, {"index", buttonIndex}, {"button", button}});
  shown_.erase(shown_.begin() + static_cast<std::ptrdiff_t>(alert));
  time_.after(0, [answered, buttonIndex] { answered->tellDelegate(buttonIndex); });
}

}  // namespace hushmode::devices
