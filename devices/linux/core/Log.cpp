// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/Log.h"

#include "util/Log.h"

#include <unistd.h>

namespace hushmode::devices {

LogSink journalSink(int fd, Priority most) {
  return [fd, most](Priority priority, const std::string& line) {
    if (priority > most) return;
    std::string text = "<" + std::to_string(static_cast<int>(priority)) + ">";
    for (const char c : line) {
      const bool isControl = static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
      text += isControl ? ' ' : c;
    }
    text += '\n';
    // One call, so that lines of several writers do not mix. Whoever closed the log does not want it.
    [[maybe_unused]] const auto written = ::write(fd, text.data(), text.size());
  };
}

void LibraryLog::write(const platform::LogLine& line) {
  if (listening_) sink_(Priority::Debug, wholeLogLine(line));
}

}  // namespace hushmode::devices
