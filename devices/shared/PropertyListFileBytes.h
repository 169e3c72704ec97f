// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListFileCalls.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// A whole file's content.
struct FileBytes {
  enum class State { Read, Missing, Unreadable } state;
  std::string bytes;
  std::string error;  ///< Of an unreadable one: what could not be done, and why.
};

/// Reads a regular file of at most `limit` bytes. One in a folder that does not exist is missing too.
FileBytes readFileBytes(FileCalls& calls, const std::string& path, std::size_t limit);

/// Where `path` leads when all symbolic links at its end are followed, also if nothing is there; `path` itself when
/// they lead in a circle.
std::string withoutLinks(const std::string& path);

/// Replaces the file at `path`, or makes one with mode 0600, such that a crash or power cut at any instant leaves the
/// old content or the new. Mode, owner (as far as permitted), and a symbolic link at `path` are kept; with a `model`
/// mode and owner are that file's. Makes missing folders, for the user alone.
///
/// Returns what could not be done, and why; none on success. After a failure the old content stands, except when the
/// folder alone could not be synced: then the new one does, but a power cut may still bring back the old. What a crash
/// leaves behind is a hidden ".hushmode-….new" beside the file, which nothing reads and no later one is mistaken for.
[[nodiscard]] std::optional<std::string> replaceFileBytes(FileCalls& calls, const std::string& path,
                                                          std::string_view bytes, const std::string* model = nullptr);

/// Makes the names in the folder of `path` survive a power cut. Returns the failure; none on success.
[[nodiscard]] std::optional<std::string> syncFolderOf(FileCalls& calls, const std::string& path);

/// "what: reason", the reason from `errno`.
std::string systemFailure(std::string_view what);

}  // namespace hushmode::devices
