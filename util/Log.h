// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Process.h"
#include "util/Format.h"

#include <source_location>
#include <string>
#include <string_view>

namespace hushmode {

/// Where a log line comes from: the selector as the interface writes it, and a source line.
struct LogOrigin {
  /// The line of the call.
  LogOrigin(const char* method, std::source_location here = std::source_location::current())
      : method(method), line(static_cast<int>(here.line())) {}
  /// A fixed line, for the messages that people look for by number.
  LogOrigin(const char* method, int line) : method(method), line(line) {}

  std::string_view method;
  int line;
};

namespace detail {
template <class... Arguments>
void log(platform::LogLine::Level level, const LogOrigin& origin, std::string_view format,
         const Arguments&... arguments) {
  platform::SystemLog& log = platform::device().foundation().systemLog();
  if (!log.isListening(level)) return;
  log.write({level, origin.method, origin.line, formatted(format, arguments...)});
}
}  // namespace detail

/// Logs one line. `format` takes the placeholders of `formatted`; nothing is formatted when nobody listens.
template <class... Arguments>
void logInformation(const LogOrigin& origin, std::string_view format, const Arguments&... arguments) {
  detail::log(platform::LogLine::Level::Information, origin, format, arguments...);
}
template <class... Arguments>
void logWarning(const LogOrigin& origin, std::string_view format, const Arguments&... arguments) {
  detail::log(platform::LogLine::Level::Warning, origin, format, arguments...);
}
template <class... Arguments>
void logError(const LogOrigin& origin, std::string_view format, const Arguments&... arguments) {
  detail::log(platform::LogLine::Level::Error, origin, format, arguments...);
}
/// Logs the message alone, without prefix, level, method and line.
template <class... Arguments>
void logBare(const LogOrigin& origin, std::string_view format, const Arguments&... arguments) {
  detail::log(platform::LogLine::Level::Bare, origin, format, arguments...);
}

/// The whole line as the system log shows it: prefix, level, method, line and message; of a bare line the message
/// alone.
HUSHMODE_API std::string wholeLogLine(const platform::LogLine& line);
/// "Information", "Warning", "Error"; of a bare line "".
HUSHMODE_API std::string_view logLevelName(platform::LogLine::Level level);

}  // namespace hushmode
