// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Foundation.h"

#include <functional>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// How much a line matters, by the numbers of syslog.
enum class Priority { Error = 3, Warning = 4, Notice = 5, Information = 6, Debug = 7 };

/// Takes the lines that a program says.
using LogSink = std::function<void(Priority priority, const std::string& line)>;

/// A sink that writes each line to a file descriptor, with its priority in front as the journal reads it ("<6>text").
/// A line stays one line whatever is in it. Lines above `most` (less important) are left out.
LogSink journalSink(int fd, Priority most);

/// The library's own lines. They name events and networks, so all of them are for those who look for a fault: debug.
class LibraryLog final : public platform::SystemLog {
 public:
  LibraryLog(LogSink sink, bool listening) : sink_(std::move(sink)), listening_(listening && sink_) {}

  bool isListening(platform::LogLine::Level) const override { return listening_; }
  void write(const platform::LogLine& line) override;

 private:
  LogSink sink_;
  bool listening_;
};

}  // namespace hushmode::devices
