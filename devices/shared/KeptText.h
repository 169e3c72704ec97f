// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace hushmode::devices {

/// A text, or none, that is made once and kept with many others: a pointer wide, and on the heap no larger than it is.
class KeptText {
 public:
  KeptText() = default;
  /// At most 4 GiB.
  explicit KeptText(std::string_view text) : bytes_(new char[sizeof(std::uint32_t) + text.size()]) {
    const auto size = static_cast<std::uint32_t>(text.size());
    std::memcpy(bytes_.get(), &size, sizeof size);
    text.copy(bytes_.get() + sizeof size, size);
  }

  /// False for none; the empty text is one.
  explicit operator bool() const { return bytes_ != nullptr; }
  /// Empty for none.
  std::string_view view() const {
    if (!bytes_) return {};
    std::uint32_t size = 0;
    std::memcpy(&size, bytes_.get(), sizeof size);
    return {bytes_.get() + sizeof size, size};
  }

 private:
  std::unique_ptr<char[]> bytes_;  ///< The size, and the characters.
};

}  // namespace hushmode::devices
