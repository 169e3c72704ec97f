// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/WatchedCalendarFolder.h"

#include "devices/shared/FolderPrefix.h"
#include "devices/words/Text.h"

#include <system_error>
#include <utility>

namespace hushmode::devices {

WatchedCalendarFolder::WatchedCalendarFolder(const std::filesystem::path& root, Services& services,
                                             CalendarFolder::Diagnostics diagnostics)
    : root_(root),
      services_(services),
      folder_(root, std::move(diagnostics), folderPrefix),
      watch_(
          root,
          [this] {
            if (read()) tellChanged({{"step", "calendars read again"}});
          },
          [this](const std::string& line) { folder_.set().report(line); }) {
  read();
}

/// Watches first, so that nothing happens unseen between the two.
bool WatchedCalendarFolder::read() {
  watch_.follow();
  const bool changed = folder_.rescan();
  std::error_code unknown;
  const bool exists = std::filesystem::is_directory(root_, unknown);
  services_.report(serviceName, {exists, exists ? root_.string() : tr("{} does not exist", root_.string())});
  return changed;
}

}  // namespace hushmode::devices
