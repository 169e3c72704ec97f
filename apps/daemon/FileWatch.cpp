// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/daemon/FileWatch.h"

#include <giomm/file.h>
#include <glibmm/main.h>

namespace hushmode::daemon {

namespace {
/// A replacement is several events.
constexpr unsigned togetherMilliseconds = 20;
}  // namespace

FileWatch::FileWatch(const std::filesystem::path& file, std::function<void()> changed)
    : name_(file.filename()), changed_(std::move(changed)) {
  // The folder and not the file: what replaces a file is another one.
  monitor_ = Gio::File::create_for_path(file.parent_path())->monitor_directory({}, Gio::FileMonitorFlags::WATCH_MOVES);
  events_ = monitor_->signal_changed().connect([this](const Glib::RefPtr<Gio::File>& one,
                                                      const Glib::RefPtr<Gio::File>& other, Gio::FileMonitor::Event) {
    const auto concerns = [&](const Glib::RefPtr<Gio::File>& each) { return each && each->get_basename() == name_; };
    if (soon_.connected() || (!concerns(one) && !concerns(other))) return;
    soon_ = Glib::signal_timeout().connect(
        [this] {
          changed_();
          return false;
        },
        togetherMilliseconds);
  });
}

FileWatch::~FileWatch() {
  events_.disconnect();
  soon_.disconnect();
  monitor_->cancel();
}

}  // namespace hushmode::daemon
