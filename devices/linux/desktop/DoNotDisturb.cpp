// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/DoNotDisturb.h"

#include "devices/linux/desktop/DoNotDisturbModule.h"
#include "devices/words/Text.h"

#include <utility>

namespace hushmode::devices {

DoNotDisturb::DoNotDisturb(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services,
                           std::chrono::milliseconds timeLimit)
    : services_(services),
      managerClass_(DoNotDisturbModule::makeManagerClass(*this)),
      buttonViewClass_(DoNotDisturbModule::makeButtonViewClass()),
      setting_([this] { update(); }),
      inhibition_(sessionBus, timeLimit, [this] { update(); }) {
  lastShown_ = isOn();
  report();
}

DoNotDisturb::~DoNotDisturb() = default;

bool DoNotDisturb::isAvailable() const { return usesInhibition_ || setting_.isInstalled(); }

bool DoNotDisturb::isOn() const { return usesInhibition_ ? inhibition_.isInhibited() : setting_.isQuiet(); }

void DoNotDisturb::set(bool on) {
  isOurs_ = on;
  if (usesInhibition_) {
    inhibition_.setInhibited(on);
  } else {
    lockedSetting_ = setting_.isInstalled() && !setting_.setQuiet(on);
  }
  update();
}

void DoNotDisturb::update() {
  choose();
  const bool shown = isOn();
  if (!shown) isOurs_ = false;
  report();
  if (std::exchange(lastShown_, shown) != shown && listener_) listener_(shown);
}

platform::Class* DoNotDisturb::classNamed(std::string_view name) const {
  if (!isAvailable()) return nullptr;
  if (name == platform::CCUIModuleInstanceManager::className) return managerClass_.get();
  if (name == platform::CCUIButtonModuleView::className) return buttonViewClass_.get();
  return nullptr;
}

/// Another notification service may make another of the two the right one. What was switched on here moves along.
void DoNotDisturb::choose() {
  if (usesInhibition_ == inhibition_.isOffered()) return;
  usesInhibition_ = inhibition_.isOffered();
  if (!isOurs_) return;
  inhibition_.setInhibited(usesInhibition_);
  setting_.setQuiet(!usesInhibition_);
}

void DoNotDisturb::report() {
  constexpr const char* name = "do not disturb";
  if (!inhibition_.isKnown()) return;
  if (usesInhibition_ && !inhibition_.isPresent()) {
    services_.report(name, {false, tr("the notification service is away")});
  } else if (usesInhibition_ && !inhibition_.trouble().empty()) {
    services_.report(name, {false, tr("the notification service does not follow: {}", inhibition_.trouble())});
  } else if (usesInhibition_) {
    services_.report(name, {true, tr("inhibitions of the notification service")});
  } else if (lockedSetting_) {
    services_.report(name, {false, tr("the setting org.gnome.desktop.notifications show-banners is locked")});
  } else if (setting_.isInstalled()) {
    services_.report(name, {true, tr("the setting org.gnome.desktop.notifications show-banners")});
  } else {
    services_.report(name, {false, tr("the notification service has no inhibitions, and the settings "
                                      "org.gnome.desktop.notifications are not installed")});
  }
}

}  // namespace hushmode::devices
