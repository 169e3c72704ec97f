// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedFiles.h"

namespace hushmode::devices {

using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

template <class T>
std::optional<T> contentAs(const Value* content) {
  const T* value = content ? content->as<T>() : nullptr;
  return value ? std::optional(*value) : std::nullopt;
}

}  // namespace

std::optional<Array> MemoryFiles::arrayWithContentsOfFile(std::string_view path) const {
  return contentAs<Array>(find(path));
}

std::optional<Dictionary> MemoryFiles::dictionaryWithContentsOfFile(std::string_view path) const {
  return contentAs<Dictionary>(find(path));
}

bool MemoryFiles::writeArrayToFileAtomically(const Array& array, std::string_view path) {
  set(path, array);
  return true;
}

const Value* MemoryFiles::find(std::string_view path) const {
  const auto place = files_.find(path);
  return place == files_.end() ? nullptr : &place->second;
}

void MemoryFiles::remove(std::string_view path) {
  if (const auto place = files_.find(path); place != files_.end()) files_.erase(place);
}

bool SimulatedFiles::fileExists(std::string_view path) const { return files().fileExists(path); }

std::optional<Array> SimulatedFiles::arrayWithContentsOfFile(std::string_view path) const {
  return files().arrayWithContentsOfFile(path);
}

std::optional<Dictionary> SimulatedFiles::dictionaryWithContentsOfFile(std::string_view path) const {
  return files().dictionaryWithContentsOfFile(path);
}

bool SimulatedFiles::writeArrayToFileAtomically(const Array& array, std::string_view path) {
  const bool fails = allWritesFail_ || failingPaths_.contains(path);
  const bool ok = !fails && files().writeArrayToFileAtomically(array, path);
  record_.append(kind::file, {{"operation", "write"}, {"path", path}, {"ok", ok}});
  return ok;
}

void SimulatedFiles::setWritesFail(std::string_view path, bool fail) {
  if (fail) {
    failingPaths_.emplace(path);
  } else {
    failingPaths_.erase(std::string(path));
  }
}

}  // namespace hushmode::devices
