// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListFile.h"

#include "devices/shared/PropertyListCodec.h"
#include "devices/shared/PropertyListFileBytes.h"

#include <utility>

namespace hushmode::devices {

PropertyListFile::PropertyListFile(std::string path, FileCalls& calls) : path_(std::move(path)), calls_(calls) {}

PropertyListFileContent PropertyListFile::read(const PropertyListLimits& limits) const {
  using State = PropertyListFileContent::State;
  const FileBytes file = readFileBytes(calls_, path_, limits.bytes);
  if (file.state == FileBytes::State::Missing) return {State::Missing, std::nullopt, {}};
  if (file.state == FileBytes::State::Unreadable) return {State::Unreadable, std::nullopt, path_ + ": " + file.error};
  auto parsed = parsePropertyList(file.bytes, limits);
  if (!parsed) return {State::Unreadable, std::nullopt, path_ + ": " + parsed.error};
  return {State::Read, std::move(parsed.value), {}};
}

std::optional<std::string> PropertyListFile::write(const platform::Value& value) {
  const auto xml = serializeXml(value);
  const auto failure = xml ? replaceFileBytes(calls_, path_, *xml.value) : xml.error;
  return failure ? std::optional(path_ + ": " + *failure) : std::nullopt;
}

}  // namespace hushmode::devices
