// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/FolderCalendars.h"

namespace hushmode::devices {

FolderCalendars::FolderCalendars(std::filesystem::path root, CalendarFolder::Diagnostics diagnostics,
                                 std::string identifierPrefix)
    : folder_(std::move(root), std::move(diagnostics), std::move(identifierPrefix)) {
  folder_.rescan();
}

bool FolderCalendars::rescan() {
  const bool changed = folder_.rescan();
  if (changed) tellChanged({{"step", "calendars read again"}});
  return changed;
}

}  // namespace hushmode::devices
