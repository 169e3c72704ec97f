// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/FolderWatch.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <giomm/error.h>
#include <giomm/file.h>
#include <glibmm/main.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace hushmode::devices {

namespace {

namespace fs = std::filesystem;
using Event = Gio::FileMonitor::Event;
using std::chrono::milliseconds;

/// Long enough for a synchroniser's burst of files to be one change, too short for people to notice.
constexpr milliseconds kShortestDelay(20), kLongestDelay(2000);
/// Reading takes no more than this part of the time, however long files go on changing.
constexpr int kShareOfTime = 5;

/// Below the root there are accounts, and in these calendars.
constexpr int kDepth = 2;

bool isHidden(const fs::path& path) { return path.filename().native().starts_with('.'); }

}  // namespace

FolderWatch::Watched::~Watched() {
  connection.disconnect();
  if (monitor) monitor->cancel();
}

FolderWatch::FolderWatch(fs::path root, std::function<void()> look, std::function<void(const std::string&)> report)
    : root_(fs::absolute(root).lexically_normal()),
      look_(std::move(look)),
      report_(std::move(report)),
      delay_(kShortestDelay) {
  if (!root_.has_filename()) root_ = root_.parent_path();
}

FolderWatch::~FolderWatch() { looking_.disconnect(); }

void FolderWatch::follow() {
  Folders seen;
  watchAround(seen);
  watchBelow(root_, kDepth, seen);
  folders_ = std::move(seen);
  stale_.clear();
}

/// The folder around the root tells when the root comes, goes, or is exchanged; while that is missing, the next one.
void FolderWatch::watchAround(Folders& seen) {
  std::error_code error;
  for (fs::path around = root_.parent_path();; around = around.parent_path()) {
    if (fs::is_directory(around, error)) {
      watch(around, seen);
      return;
    }
    if (around == around.parent_path()) return;
  }
}

void FolderWatch::watchBelow(const fs::path& folder, int depth, Folders& seen) {
  watch(folder, seen);
  std::error_code error;
  fs::directory_iterator entries(folder, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const fs::directory_entry& entry = *entries;
    if (isHidden(entry.path())) continue;
    std::error_code unknown;
    if (entry.is_directory(unknown)) {
      if (depth > 0) watchBelow(entry.path(), depth - 1, seen);
    } else if (entry.is_symlink(unknown)) {
      // The file itself changes elsewhere.
      const fs::path target = fs::canonical(entry.path(), unknown);
      if (!unknown) watch(target.parent_path(), seen);
    }
  }
}

void FolderWatch::watch(const fs::path& folder, Folders& seen) {
  const std::string& path = folder.native();
  struct stat status {};
  if (seen.contains(path) || stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return;
  const auto known = folders_.find(path);
  if (known != folders_.end() && known->second && known->second->device == status.st_dev &&
      known->second->inode == status.st_ino && !stale_.contains(path)) {
    seen[path] = std::move(known->second);
    return;
  }
  auto watched = std::make_unique<Watched>();
  watched->device = status.st_dev;
  watched->inode = status.st_ino;
  try {
    watched->monitor = Gio::File::create_for_path(path)->monitor_directory(Gio::FileMonitorFlags::WATCH_MOVES);
  } catch (const Glib::Error& error) {
    const std::string line = tr("{0}: cannot be watched: {1}", path, error.what());
    if (problems_.insert(line).second) report_(line);
    return;
  }
  watched->connection = watched->monitor->signal_changed().connect(
      [this, path](const Glib::RefPtr<Gio::File>& file, const Glib::RefPtr<Gio::File>& other, Event event) {
        noticed(path, file ? file->get_path() : "", other ? other->get_path() : "", event);
      });
  seen[path] = std::move(watched);
}

void FolderWatch::noticed(const std::string& watched, const std::string& path, const std::string& otherPath,
                          Event event) {
  if (event == Event::CHANGED || event == Event::PRE_UNMOUNT) return;
  std::error_code unknown;
  // A new file is read when it is written; a new folder has nothing to wait for.
  if (event == Event::CREATED && !fs::is_directory(path, unknown)) return;
  if (!concerns(watched, path) && (otherPath.empty() || !concerns(watched, otherPath))) return;
  if (event != Event::CHANGES_DONE_HINT && event != Event::ATTRIBUTE_CHANGED) {
    for (const std::string& each : {path, otherPath}) {
      if (folders_.contains(each)) stale_.insert(each);
    }
  }
  lookSoon();
}

/// Whether calendars can have changed by what happened at `path`. Much goes on in the folders around.
bool FolderWatch::concerns(const std::string& watched, const fs::path& path) const {
  const fs::path folder(watched);
  const bool isAround =
      folder != root_ && std::mismatch(folder.begin(), folder.end(), root_.begin(), root_.end()).first == folder.end();
  if (!isAround) return !isHidden(path) || path == root_;
  return std::mismatch(path.begin(), path.end(), root_.begin(), root_.end()).first == path.end();
}

void FolderWatch::lookSoon() {
  if (looking_.connected()) return;
  looking_ = Glib::signal_timeout().connect(
      [this] {
        looking_ = {};
        const auto begin = std::chrono::steady_clock::now();
        look_();
        const auto taken = std::chrono::ceil<milliseconds>(std::chrono::steady_clock::now() - begin);
        delay_ = std::clamp(taken * kShareOfTime, kShortestDelay, kLongestDelay);
        return false;
      },
      static_cast<unsigned>(delay_.count()), Glib::PRIORITY_DEFAULT_IDLE);
}

}  // namespace hushmode::devices
