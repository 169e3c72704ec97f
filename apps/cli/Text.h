#pragma once

#include <fmt/format.h>
#include <libintl.h>
#include <string>

/// What the program says to people: whole sentences, marked for translation. A sentence is never put together from
/// pieces; what varies stands in it as {} or, where a language may want another order, {0}, {1}.
namespace hushmode::cli {

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

}  // namespace hushmode::cli
