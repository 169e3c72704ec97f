// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/DiskFiles.h"

#include "devices/shared/PropertyListFile.h"
#include "devices/words/Text.h"

namespace hushmode::devices {

namespace fs = std::filesystem;
using platform::Array;
using platform::Dictionary;

DiskFiles::DiskFiles(std::string devicePrefix, fs::path folder, Diagnostics diagnose, FileCalls& calls)
    : devicePrefix_(std::move(devicePrefix)),
      folder_(std::move(folder)),
      diagnose_(std::move(diagnose)),
      calls_(calls) {}

std::optional<fs::path> DiskFiles::diskPath(std::string_view path) const {
  if (!path.starts_with(devicePrefix_)) return std::nullopt;
  const std::string_view name = path.substr(devicePrefix_.size());
  if (name.empty() || name.find('/') != std::string_view::npos || name == "." || name == "..") return std::nullopt;
  return folder_ / name;
}

bool DiskFiles::fileExists(std::string_view path) const {
  const auto file = diskPath(path);
  std::error_code error;
  // Also one that cannot be looked at exists: whoever asks must not take it for free to be written.
  return file && fs::symlink_status(*file, error).type() != fs::file_type::not_found;
}

void DiskFiles::tellOnce(const std::string& line) const {
  if (line == lastTold_) return;
  lastTold_ = line;
  if (diagnose_) diagnose_(line);
}

template <class T>
std::optional<T> DiskFiles::contentsOf(std::string_view path, const char* expectation) const {
  using State = PropertyListFileContent::State;
  const auto file = diskPath(path);
  if (!file) return std::nullopt;
  auto content = PropertyListFile(file->string(), calls_).read();
  if (content.state == State::Missing) return std::nullopt;
  if (content.state == State::Unreadable) {
    tellOnce(content.error);
    return std::nullopt;
  }
  if (T* held = content.value->as<T>()) return std::move(*held);
  tellOnce(tr(expectation, file->string()));
  return std::nullopt;
}

std::optional<Array> DiskFiles::arrayWithContentsOfFile(std::string_view path) const {
  return contentsOf<Array>(path, HUSHMODE_MARKED("{}: top level: expected an array"));
}

std::optional<Dictionary> DiskFiles::dictionaryWithContentsOfFile(std::string_view path) const {
  return contentsOf<Dictionary>(path, HUSHMODE_MARKED("{}: top level: expected a dictionary"));
}

bool DiskFiles::writeArrayToFileAtomically(const Array& array, std::string_view path) {
  const auto file = diskPath(path);
  if (!file) {
    if (diagnose_) diagnose_(tr("{0}: lies outside of {1} and cannot be written", path, devicePrefix_));
    return false;
  }
  auto& guarded = guarded_[file->string()];
  if (!guarded) guarded = std::make_unique<GuardedPropertyListFile>(file->string(), diagnose_, calls_);
  const auto failure = guarded->write(array);
  if (failure && diagnose_) diagnose_(*failure);
  return !failure;
}

}  // namespace hushmode::devices
