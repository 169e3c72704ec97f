// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <giomm/filemonitor.h>
#include <map>
#include <memory>
#include <set>
#include <sigc++/connection.h>
#include <string>
#include <sys/types.h>

namespace hushmode::devices {

/// Watches a folder of calendars: its files, the folders in it and in these, and whether it is there at all.
///
/// For the thread of the main loop.
class FolderWatch {
 public:
  /// `look` runs in the main loop some 20 ms after something changed, once for all changes in that time; it is to call
  /// `follow` and then read the folder. `report` takes a line for people about what cannot be watched. The folder need
  /// not exist. Watches nothing until the first `follow`.
  FolderWatch(std::filesystem::path root, std::function<void()> look, std::function<void(const std::string&)> report);
  ~FolderWatch();
  FolderWatch(const FolderWatch&) = delete;
  FolderWatch& operator=(const FolderWatch&) = delete;

  /// Watches the folders that there are now. What changes in them from now on is noticed.
  void follow();

 private:
  struct Watched {
    dev_t device = 0;
    ino_t inode = 0;
    Glib::RefPtr<Gio::FileMonitor> monitor;
    sigc::connection connection;

    Watched() = default;
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    ~Watched();
  };
  using Folders = std::map<std::string, std::unique_ptr<Watched>>;

  void watch(const std::filesystem::path& folder, Folders& seen);
  void watchAround(Folders& seen);
  void watchBelow(const std::filesystem::path& folder, int depth, Folders& seen);
  void noticed(const std::string& watched, const std::string& path, const std::string& otherPath,
               Gio::FileMonitor::Event event);
  bool concerns(const std::string& watched, const std::filesystem::path& path) const;
  void lookSoon();

  std::filesystem::path root_;
  std::function<void()> look_;
  std::function<void(const std::string&)> report_;
  Folders folders_;              ///< By path.
  std::set<std::string> stale_;  ///< Paths of which another folder may have taken the place.
  std::set<std::string> problems_;
  sigc::connection looking_;
  std::chrono::milliseconds delay_;
};

}  // namespace hushmode::devices
