// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace hushmode::host {

/// Something that is said to people: a whole sentence, with {0}, {1}, ... where its values go. The English form is the
/// key under which a program looks up the one of another language; the host itself knows no language.
///
/// Forms are literals in the call of the constructor, where the tools for translators find them.
class Message {
 public:
  /// The values are texts, numbers and other messages.
  template <class... Values>
  explicit Message(const char* form, const Values&... values) : form_(form), values_{valueOf(values)...} {}

  /// A text that is the same in all languages: a name, a path.
  static Message verbatim(std::string text);

  std::string english() const;

  /// In the language of a catalogue, which gives the form of that language for the English one.
  using Catalogue = std::function<const char*(const char* english)>;
  std::string in(const Catalogue& catalogue) const;

 private:
  Message() = default;

  static Message valueOf(const Message& message) { return message; }
  static Message valueOf(const std::string& text) { return verbatim(text); }
  template <class Number>
  requires std::is_arithmetic_v<Number>
  static Message valueOf(Number number) { return verbatim(std::to_string(number)); }

  const char* form_ = nullptr;  ///< Null: `text_` as it is.
  std::string text_;
  std::vector<Message> values_;
};

}  // namespace hushmode::host
