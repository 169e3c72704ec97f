// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/pictures/PictureText.h"

#include <array>
#include <glib.h>

namespace hushmode::cli {

namespace {

/// Hundredths of the size, from the blank to the tilde, of the widest of the usual fonts.
constexpr std::array<int, 95> widths = {32, 40, 46, 84, 64, 95, 78, 27, 39, 39, 50, 84, 32, 36,  32, 34, 64, 64, 64,
                                        64, 64, 64, 64, 64, 64, 64, 34, 34, 84, 84, 84, 53, 100, 71, 69, 70, 77, 63,
                                        58, 77, 75, 29, 29, 66, 56, 86, 75, 79, 60, 79, 69, 63,  60, 73, 68, 99, 69,
                                        61, 69, 39, 34, 39, 84, 50, 50, 61, 63, 55, 63, 62, 35,  63, 63, 28, 28, 58,
                                        28, 97, 63, 61, 63, 63, 40, 52, 39, 63, 59, 82, 59, 59,  52, 64, 34, 64, 84};
/// Bold letters are so much wider.
constexpr double boldFactor = 1.15;
constexpr int wideWidth = 130;  // Emoji; ideographs are narrower.
constexpr int otherUpper = 110, otherLower = 92, punctuation = 100;

int hundredthsOf(gunichar c) {
  if (c >= ' ' && c <= '~') return widths[c - ' '];
  if (g_unichar_iszerowidth(c)) return 0;
  if (g_unichar_iswide(c)) return wideWidth;
  if (!g_unichar_isalnum(c)) return c < 0x2100 ? punctuation : wideWidth;
  return g_unichar_isupper(c) ? otherUpper : otherLower;
}

constexpr bool turnsDirection(gunichar c) {
  return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0x200E || c == 0x200F || c == 0x061C;
}

/// Characters that XML cannot hold, or that break lines.
bool hasNoPlace(gunichar c) {
  return g_unichar_iscntrl(c) || c == 0x2028 || c == 0x2029 || c == 0xFFFE || c == 0xFFFF || turnsDirection(c);
}

}  // namespace

double widthOf(std::string_view text, double size, Weight weight) {
  int sum = 0;
  for (const char *at = text.data(), *end = at + text.size(); at < end; at = g_utf8_next_char(at)) {
    sum += hundredthsOf(g_utf8_get_char(at));
  }
  return sum * size / 100 * (weight == Weight::Bold ? boldFactor : 1);
}

std::string cutToWidth(const std::string& text, double size, double width, Weight weight) {
  if (widthOf(text, size, weight) <= width) return text;
  static constexpr std::string_view ellipsis = "…";
  const double room = width - widthOf(ellipsis, size, weight);
  if (room < 0) return {};
  std::size_t kept = 0;
  double taken = 0;
  for (std::size_t at = 0; at < text.size();) {
    const auto next = static_cast<std::size_t>(g_utf8_next_char(text.data() + at) - text.data());
    const std::string_view letter(text.data() + at, next - at);
    taken += widthOf(letter, size, weight);
    // What has no width belongs to the letter before.
    if (taken > room) break;
    kept = at = next;
  }
  while (kept > 0 && text[kept - 1] == ' ') --kept;
  return text.substr(0, kept).append(ellipsis);
}

std::string oneLine(std::string_view text) {
  std::string line;
  for (const char *at = text.data(), *end = at + text.size(); at < end;) {
    const gunichar c = g_utf8_get_char_validated(at, end - at);
    if (c == static_cast<gunichar>(-1) || c == static_cast<gunichar>(-2)) {
      line += "\uFFFD";
      ++at;
      continue;
    }
    const char* next = g_utf8_next_char(at);
    if (c == '\n' || c == '\t') {
      line += ' ';
    } else if (!hasNoPlace(c)) {
      line.append(at, next);
    }
    at = next;
  }
  return line;
}

std::string xmlEscaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

}  // namespace hushmode::cli
