// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cctype>
#include <charconv>
#include <optional>
#include <string_view>

namespace hushmode::cli {

/// Reads a short text piece by piece, as people write times and lengths. Each piece is taken only when it is there.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : rest_(text) {}

  /// A number of `least` to `most` digits; all digits that stand there must belong to it.
  std::optional<int> number(std::size_t least, std::size_t most) {
    std::size_t count = 0;
    while (count < rest_.size() && std::isdigit(static_cast<unsigned char>(rest_[count]))) ++count;
    if (count < least || count > most || count == 0) return std::nullopt;
    int value = 0;
    std::from_chars(rest_.data(), rest_.data() + count, value);
    rest_.remove_prefix(count);
    return value;
  }

  bool take(std::string_view text) {
    if (!rest_.starts_with(text)) return false;
    rest_.remove_prefix(text.size());
    return true;
  }

  void skipBlanks() {
    while (take(" ")) {
    }
  }

  bool isAtEnd() const { return rest_.empty(); }
  std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
};

}  // namespace hushmode::cli
