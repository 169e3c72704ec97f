// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <functional>
#include <giomm/filemonitor.h>
#include <sigc++/connection.h>
#include <string>

namespace hushmode::daemon {

/// Watches one file that programs replace or write, whether it is there or not. Main thread.
class FileWatch {
 public:
  /// `changed` runs in the main loop soon after a change, once for several at a time. The folder must exist.
  FileWatch(const std::filesystem::path& file, std::function<void()> changed);
  ~FileWatch();
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;

 private:
  std::string name_;
  std::function<void()> changed_;
  Glib::RefPtr<Gio::FileMonitor> monitor_;
  sigc::connection events_, soon_;
};

}  // namespace hushmode::daemon
