// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "util/Log.h"

namespace hushmode {

using Level = platform::LogLine::Level;

std::string_view logLevelName(Level level) {
  switch (level) {
    case Level::Information:
      return "Information";
    case Level::Warning:
      return "Warning";
    case Level::Error:
      return "Error";
    case Level::Bare:
      break;
  }
  return "";
}

std::string wholeLogLine(const platform::LogLine& line) {
  if (line.level == Level::Bare) return line.message;
  std::string text = "com.quorvel.Hushmode: ";
  text += logLevelName(line.level);
  text += " => ";
  text += line.method;
  text += ", [Line ";
  text += std::to_string(line.line);
  text += "], ";
  text += line.message;
  return text;
}

}  // namespace hushmode
