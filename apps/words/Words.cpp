// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/words/Words.h"

#include "devices/words/Text.h"

#include <string_view>

namespace hushmode {

std::string inWords(const host::Message& message) {
  return message.in([](const char* english) { return ::gettext(english); });
}

std::string inWords(const host::Reason& reason) { return inWords(host::messageOf(reason)); }

namespace {

/// Whether the pieces of a form between its values stand in a text, one after the other, from its beginning to its end.
bool hasForm(std::string_view text, std::string_view form) {
  for (bool isFirst = true;; isFirst = false) {
    const std::size_t open = form.find('{'), close = form.find('}');
    const std::string_view piece = form.substr(0, open);
    if (open == std::string_view::npos || close == std::string_view::npos) {
      return isFirst ? text == piece : text.ends_with(piece);
    }
    const std::size_t place = isFirst && !text.starts_with(piece) ? std::string_view::npos : text.find(piece);
    if (place == std::string_view::npos) return false;
    text.remove_prefix(place + piece.size());
    form.remove_prefix(close + 1);
  }
}

}  // namespace

bool isSaid(const std::string& text, const char* form) { return hasForm(text, form) || hasForm(text, ::gettext(form)); }

std::string serviceText(const std::string& name) {
  static constexpr const char* names[] = {HUSHMODE_MARKED("alarms"),
                                          HUSHMODE_MARKED("appearance"),
                                          HUSHMODE_MARKED("calendar folder"),
                                          HUSHMODE_MARKED("calendar service"),
                                          HUSHMODE_MARKED("do not disturb"),
                                          HUSHMODE_MARKED("networks"),
                                          HUSHMODE_MARKED("notifications between programs"),
                                          HUSHMODE_MARKED("questions"),
                                          HUSHMODE_MARKED("screen"),
                                          HUSHMODE_MARKED("sleep and lock"),
                                          HUSHMODE_MARKED("status icon"),
                                          HUSHMODE_MARKED("tones"),
                                          HUSHMODE_MARKED("vibrate switches"),
                                          HUSHMODE_MARKED("vibration"),
                                          HUSHMODE_MARKED("volumes"),
                                          HUSHMODE_MARKED("wake-ups")};
  for (const char* each : names) {
    if (name == each) return tr(each);
  }
  return name;
}

}  // namespace hushmode
