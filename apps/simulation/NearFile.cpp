// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/NearFile.h"

#include "apps/words/Nearest.h"
#include "devices/words/Text.h"

namespace hushmode::simulation {

std::string nearestFile(const std::filesystem::path& missing) {
  // "calendars/" is the folder "calendars".
  const auto path = missing.has_filename() ? missing : missing.parent_path();
  const auto folder = path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
  // The same ending makes no two names alike: they are compared without it, or it alone.
  std::vector<std::string> stems, namesakes;
  std::error_code none;  // A folder that cannot be read offers nothing.
  for (std::filesystem::directory_iterator each(folder, none), end; !none && each != end; each.increment(none)) {
    const auto& other = each->path();
    if (other.extension() == path.extension()) stems.push_back(other.stem().string());
    if (other.stem() == path.stem()) namesakes.push_back(other.filename().string());
  }
  if (const std::string near = nearestOf(path.stem().string(), stems); !near.empty()) {
    return (path.parent_path() / (near + path.extension().string())).string();
  }
  const std::string near = nearestOf(path.filename().string(), namesakes);
  return near.empty() ? "" : (path.parent_path() / near).string();
}

InputError wrongFile(const std::filesystem::path& path, const std::string& reason, const std::string& expected) {
  std::error_code none;
  const std::string near = std::filesystem::exists(path, none) ? "" : nearestFile(path);
  return InputError(near.empty()
                        ? tr("{0}: {1}; expected {2}", path.string(), reason, expected)
                        : tr("{0}: {1}; expected {2}; did you mean \"{3}\"?", path.string(), reason, expected, near));
}

}  // namespace hushmode::simulation
