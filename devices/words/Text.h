// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <fmt/format.h>
#include <libintl.h>
#include <string>

/// What is said to people: whole sentences, marked for translation, in the language of the process. A sentence is never
/// put together from pieces; what varies stands in it as {} or, where a language may want another order, {0}, {1}.
///
/// A program sets its language once (apps/words/Language.h), before it says anything; without, all is English.
namespace hushmode {

/// Marks a text where it stands, for one that is translated where it is shown.
#define HUSHMODE_MARKED(text) text

/// The message in the user's language.
inline std::string tr(const char* message) { return ::gettext(message); }

/// The same with values in it.
template <class... T>
std::string tr(const char* message, const T&... values) {
  return fmt::format(fmt::runtime(::gettext(message)), values...);
}

/// With a number, in its plural form: `one` for 1 in English.
template <class... T>
std::string trCount(const char* one, const char* many, unsigned long count, const T&... values) {
  return fmt::format(fmt::runtime(::ngettext(one, many, count)), count, values...);
}

}  // namespace hushmode
