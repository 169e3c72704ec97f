// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/Message.h"

#include <string_view>

namespace hushmode::host {

Message Message::verbatim(std::string text) {
  Message message;
  message.text_ = std::move(text);
  return message;
}

std::string Message::english() const {
  return in([](const char* form) { return form; });
}

std::string Message::in(const Catalogue& catalogue) const {
  if (!form_) return text_;
  const std::string_view form = catalogue(form_);
  std::string text;
  for (std::size_t at = 0; at < form.size(); ++at) {
    const bool isPlace = form[at] == '{' && at + 2 < form.size() && form[at + 2] == '}';
    const auto index = isPlace ? static_cast<std::size_t>(form[at + 1] - '0') : values_.size();
    if (index < values_.size()) {
      text += values_[index].in(catalogue);
      at += 2;
    } else {
      text += form[at];
    }
  }
  return text;
}

}  // namespace hushmode::host
