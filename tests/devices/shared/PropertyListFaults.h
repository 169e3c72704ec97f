// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListFileCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

/// Files that fail, and folders to try them in.
namespace hushmode::devices::faults {

/// An empty folder that goes with the object.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string folder = (std::filesystem::temp_directory_path() / "hushmode-test-XXXXXX").string();
    EXPECT_TRUE(mkdtemp(folder.data()));
    folder_ = folder;
  }
  ~ScratchFolder() { std::filesystem::remove_all(folder_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string operator/(std::string_view name) const { return (folder_ / name).string(); }

  /// The names in the folder, sorted.
  std::vector<std::string> names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) names.insert(entry.path().filename());
    return {names.begin(), names.end()};
  }

 private:
  std::filesystem::path folder_;
};

inline std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return file ? std::string(std::istreambuf_iterator<char>(file), {}) : "(missing)";
}

inline void writeFile(const std::string& path, std::string_view content, mode_t mode = 0600) {
  std::ofstream(path, std::ios::binary) << content;
  ASSERT_EQ(::chmod(path.c_str(), mode), 0);
}

inline mode_t modeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

/// The real calls, of which one kind fails.
class FailingCalls : public FileCalls {
 public:
  FailingCalls(std::string call, int error) : call_(std::move(call)), error_(error) {}

  int open(const char* path, int flags, mode_t mode) override {
    const char* call = flags & O_CREAT ? "create" : flags & O_DIRECTORY ? "open folder" : "open";
    return fails(call) ? -1 : track(FileCalls::open(path, flags, mode), flags);
  }
  ssize_t read(int file, void* bytes, std::size_t count) override {
    return fails("read") ? -1 : FileCalls::read(file, bytes, count);
  }
  /// Writes only a little at a time, and fails in the middle.
  ssize_t write(int file, const void* bytes, std::size_t count) override {
    return ++writes_ > 2 && fails("write") ? -1 : FileCalls::write(file, bytes, std::min<std::size_t>(count, 50));
  }
  int fstat(int file, struct stat* status) override { return fails("fstat") ? -1 : FileCalls::fstat(file, status); }
  int fchmod(int file, mode_t mode) override { return fails("fchmod") ? -1 : FileCalls::fchmod(file, mode); }
  int fsync(int file) override {
    return fails(folders_.contains(file) ? "fsync folder" : "fsync") ? -1 : FileCalls::fsync(file);
  }
  int close(int file) override {
    folders_.erase(file);
    --open_;
    return fails("close") ? (FileCalls::close(file), errno = error_, -1) : FileCalls::close(file);
  }
  int link(const char* existing, const char* path) override {
    return fails("link") ? -1 : FileCalls::link(existing, path);
  }
  int rename(const char* from, const char* to) override { return fails("rename") ? -1 : FileCalls::rename(from, to); }

  /// Files that are still open.
  int openFiles() const { return open_; }

 private:
  bool fails(std::string_view call) const {
    if (call == call_) errno = error_;
    return call == call_;
  }
  int track(int file, int flags) {
    if (file == -1) return file;
    ++open_;
    if (flags & O_DIRECTORY) folders_.insert(file);
    return file;
  }

  std::string call_;
  int error_;
  int writes_ = 0, open_ = 0;
  std::set<int> folders_;
};

struct PowerCut {};

/// The real calls, until the power goes after a number of steps. What was written and not synced is then lost.
class CutCalls : public FileCalls {
 public:
  explicit CutCalls(int steps) : steps_(steps) {}
  ~CutCalls() override {
    for (const auto& [file, path] : paths_) ::close(file);
  }

  int open(const char* path, int flags, mode_t mode) override {
    if (isDark_) return -1;
    const int file = FileCalls::open(path, flags, mode);
    if (file != -1) paths_[file] = path;
    if (flags & O_CREAT) step();
    return file;
  }
  ssize_t write(int file, const void* bytes, std::size_t count) override {
    if (isDark_) return -1;
    const ssize_t written = FileCalls::write(file, bytes, std::min<std::size_t>(count, 100));
    unsynced_.insert(paths_[file]);
    step();
    return written;
  }
  int fchmod(int file, mode_t mode) override { return isDark_ ? -1 : stepped(FileCalls::fchmod(file, mode)); }
  int fsync(int file) override {
    if (isDark_) return -1;
    unsynced_.erase(paths_[file]);
    return stepped(FileCalls::fsync(file));
  }
  int close(int file) override {
    if (isDark_) return -1;
    paths_.erase(file);
    return FileCalls::close(file);
  }
  int link(const char* existing, const char* path) override {
    return isDark_ ? -1 : stepped(FileCalls::link(existing, path));
  }
  int rename(const char* from, const char* to) override {
    if (isDark_) return -1;
    const int result = FileCalls::rename(from, to);
    if (unsynced_.erase(from)) unsynced_.insert(to);
    return stepped(result);
  }
  int unlink(const char* path) override { return isDark_ ? -1 : FileCalls::unlink(path); }

 private:
  int stepped(int result) {
    step();
    return result;
  }
  void step() {
    if (--steps_ > 0) return;
    isDark_ = true;
    for (const auto& path : unsynced_) std::filesystem::resize_file(path, 0);
    throw PowerCut();
  }

  int steps_;
  bool isDark_ = false;
  std::map<int, std::string> paths_;
  std::set<std::string> unsynced_;
};

}  // namespace hushmode::devices::faults
