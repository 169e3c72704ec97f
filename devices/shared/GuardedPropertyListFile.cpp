// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/GuardedPropertyListFile.h"

#include "devices/shared/PropertyListCodec.h"
#include "devices/shared/PropertyListFileBytes.h"
#include "devices/words/Text.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace hushmode::devices {

namespace {

/// Why the bytes are not an array; none when they are.
std::optional<std::string> whyNoArray(std::string_view bytes) {
  const auto parsed = parsePropertyList(bytes);
  if (!parsed) return parsed.error;
  if (!parsed.value->as<platform::Array>()) return tr("expected an array, found another value");
  return std::nullopt;
}

/// Whether hard links are impossible here, so that a copy has to be made of bytes.
bool needsBytes(int error) { return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK; }

}  // namespace

GuardedPropertyListFile::GuardedPropertyListFile(std::string path, std::function<void(const std::string&)> diagnose,
                                                 FileCalls& calls)
    : path_(std::move(path)), diagnose_(std::move(diagnose)), calls_(calls) {}

std::optional<std::string> GuardedPropertyListFile::write(const platform::Array& array) {
  auto xml = serializeXml(array);
  auto failure = xml ? keepUnreadable() : xml.error;
  if (!failure) failure = replaceFileBytes(calls_, path_, *xml.value);
  if (failure) return path_ + ": " + *failure;
  knownGood_ = *std::move(xml.value);
  return std::nullopt;
}

/// Returns why what is in the file cannot be kept; none when there is nothing to keep, or it was kept.
std::optional<std::string> GuardedPropertyListFile::keepUnreadable() {
  const FileBytes file = readFileBytes(calls_, path_, PropertyListLimits().bytes);
  switch (file.state) {
    case FileBytes::State::Missing:
      return std::nullopt;
    case FileBytes::State::Unreadable:
      return keepCopy(file.error, nullptr);
    case FileBytes::State::Read:
      break;
  }
  if (!knownGood_.empty() && file.bytes == knownGood_) return std::nullopt;
  const auto reason = whyNoArray(file.bytes);
  return reason ? keepCopy(*reason, &file.bytes) : std::nullopt;
}

/// `bytes` is null when the file could not be read at all.
std::optional<std::string> GuardedPropertyListFile::keepCopy(const std::string& reason, const std::string* bytes) {
  constexpr int kMostCopies = 10'000;
  const std::string file = withoutLinks(path_);
  for (int number = 1; number <= kMostCopies; ++number) {
    const std::string copy = file + ".unreadable-" + std::to_string(number);
    // A second name for the file is a copy that needs neither space nor the right to read it: the replacement takes
    // only the first name away.
    if (calls_.link(file.c_str(), copy.c_str()) != 0) {
      if (errno == EEXIST) {
        if (!isCopy(copy, file, bytes)) continue;
      } else if (bytes && needsBytes(errno)) {
        if (const auto failure = replaceFileBytes(calls_, copy, *bytes, &file)) {
          return tr("cannot keep a copy of what is unreadable in it: {}", *failure);
        }
      } else {
        return tr("cannot keep a copy of what is unreadable in it: {}", std::strerror(errno));
      }
    }
    if (auto failure = syncFolderOf(calls_, copy)) return failure;
    diagnose_(tr("{0} cannot be read ({1}); before it is replaced, it is kept as {2}", path_, reason, copy));
    return std::nullopt;
  }
  return tr("too many copies of what was unreadable are kept beside it");
}

/// Whether `copy`, which exists, holds what `file` does.
bool GuardedPropertyListFile::isCopy(const std::string& copy, const std::string& file, const std::string* bytes) const {
  std::error_code error;
  if (std::filesystem::equivalent(copy, file, error)) return true;
  if (!bytes) return false;
  const FileBytes kept = readFileBytes(calls_, copy, bytes->size());
  return kept.state == FileBytes::State::Read && kept.bytes == *bytes;
}

}  // namespace hushmode::devices
