// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

namespace hushmode::cli {

/// How much something that was found matters.
enum class Severity {
  Note,     ///< Nothing is wrong.
  Warning,  ///< It works, but hardly as somebody would want it.
  Problem,  ///< Something does not work.
};

/// Something that the user should know of, and what to do about it.
struct Finding {
  Severity severity = Severity::Note;
  std::string_view name;  ///< Of the kind of finding, for programs: "window-never-opens". Stable.
  std::string text;       ///< One sentence. Titles in it come from outside: to be shown through `harmless`.
  std::string remedy;     ///< A command to type, or in words what to do; may be empty for a note.
};

}  // namespace hushmode::cli
