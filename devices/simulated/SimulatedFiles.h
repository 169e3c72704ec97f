// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "platform/Foundation.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// Property-list files in memory, by path. A file that holds no property list is kept as Data.
class MemoryFiles final : public platform::PropertyListFiles {
 public:
  bool fileExists(std::string_view path) const override { return files_.contains(path); }
  std::optional<platform::Array> arrayWithContentsOfFile(std::string_view path) const override;
  std::optional<platform::Dictionary> dictionaryWithContentsOfFile(std::string_view path) const override;
  bool writeArrayToFileAtomically(const platform::Array& array, std::string_view path) override;

  /// Puts a file there, or replaces it.
  void set(std::string_view path, platform::Value content) {
    files_.insert_or_assign(std::string(path), std::move(content));
  }
  /// What the file holds; null when there is none. Valid until the file changes.
  const platform::Value* find(std::string_view path) const;
  void remove(std::string_view path);

 private:
  std::map<std::string, platform::Value, std::less<>> files_;
};

/// The files of a simulated phone: those in memory, or a backend's. Writes are recorded and can be made to fail.
class SimulatedFiles final : public platform::PropertyListFiles {
 public:
  explicit SimulatedFiles(Record& record) : record_(record) {}
  SimulatedFiles(const SimulatedFiles&) = delete;
  SimulatedFiles& operator=(const SimulatedFiles&) = delete;

  bool fileExists(std::string_view path) const override;
  std::optional<platform::Array> arrayWithContentsOfFile(std::string_view path) const override;
  std::optional<platform::Dictionary> dictionaryWithContentsOfFile(std::string_view path) const override;
  bool writeArrayToFileAtomically(const platform::Array& array, std::string_view path) override;

  /// The files in memory, for putting them there and reading them back from outside; used while there is no backend.
  MemoryFiles& memory() { return memory_; }
  const MemoryFiles& memory() const { return memory_; }
  /// Reads and writes go to `backend`, which must outlive the phone; null for the files in memory.
  void setBackend(platform::PropertyListFiles* backend) { files_ = backend ? backend : &memory_; }

  /// Whether every write, or each write to `path`, fails and leaves the file as it is.
  void setWritesFail(bool fail) { allWritesFail_ = fail; }
  void setWritesFail(std::string_view path, bool fail);

 private:
  platform::PropertyListFiles& files() { return *files_; }
  const platform::PropertyListFiles& files() const { return *files_; }

  Record& record_;
  MemoryFiles memory_;
  platform::PropertyListFiles* files_ = &memory_;
  bool allWritesFail_ = false;
  std::set<std::string, std::less<>> failingPaths_;
};

}  // namespace hushmode::devices
