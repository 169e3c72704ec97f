// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace hushmode::devices {

/// A folder that is removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "hushmode-calendars-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
    path_ = pattern;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Writes a file in place, and makes the folders around it.
  void write(const std::string& name, const std::string& text) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream file(path_ / name, std::ios::binary);
    file << text;
    if (!file.flush()) throw std::runtime_error(name + " cannot be written");
  }
  /// Writes a hidden file beside it, which then takes its name.
  void replace(const std::string& name, const std::string& text) const {
    const std::filesystem::path path(name);
    const std::string temporary = (path.parent_path() / (".tmp-" + path.filename().string())).string();
    write(temporary, text);
    std::filesystem::rename(path_ / temporary, path_ / name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace hushmode::devices
