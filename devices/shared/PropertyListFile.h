// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListFileCalls.h"
#include "devices/shared/PropertyListLimits.h"
#include "platform/PropertyList.h"

#include <optional>
#include <string>

namespace hushmode::devices {

/// What a property-list file holds.
struct PropertyListFileContent {
  enum class State { Read, Missing, Unreadable } state;
  std::optional<platform::Value> value;  ///< Of a file that was read.
  std::string error;  ///< Of an unreadable one: the file, the place in it, and what was expected there.
};

/// A file with one property list.
class PropertyListFile {
 public:
  /// `calls` must outlive the object.
  explicit PropertyListFile(std::string path, FileCalls& calls = FileCalls::system());

  const std::string& path() const { return path_; }

  PropertyListFileContent read(const PropertyListLimits& limits = {}) const;

  /// Replaces the file with `value` as XML, as replaceFileBytes does. Returns the file and why it could not; none on
  /// success.
  [[nodiscard]] std::optional<std::string> write(const platform::Value& value);

 private:
  std::string path_;
  FileCalls& calls_;
};

}  // namespace hushmode::devices
