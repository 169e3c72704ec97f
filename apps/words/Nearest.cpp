// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/words/Nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace hushmode {

namespace {

/// Letter case is no slip. Of other alphabets than the Latin one it stays as it is.
std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

/// How many slips of the pen lead from one to the other: a letter too much, too little or another, or two exchanged.
std::size_t editDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    before = std::exchange(last, row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1), last[j] + 1, row[j - 1] + 1});
      const bool areExchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (areExchanged) row[j] = std::min(row[j], before[j - 2] + 1);
    }
  }
  return row.back();
}

template <class Candidates>
std::string nearest(std::string_view given, const Candidates& candidates) {
  constexpr std::size_t longestWord = 100;  // Nothing of that length is a slip of the pen.
  if (given.size() > longestWord) return "";
  const std::string word = lowered(given);
  const std::size_t most = std::max<std::size_t>(1, word.size() / 3);
  std::string best;
  // Twice the distance, so that of equally near ones the one that begins alike is nearer: "of" is "off", not "on".
  std::size_t bestCost = 2 * most + 2;
  for (const auto& candidate : candidates) {
    const std::string other = lowered(candidate);
    const std::size_t distance = editDistance(word, other);
    const bool hasNothingInCommon = distance >= std::max(word.size(), other.size()) && distance > 0;
    const std::size_t cost = 2 * distance + (other.starts_with(word) ? 0 : 1);
    if (distance > most || hasNothingInCommon || cost >= bestCost) continue;
    bestCost = cost;
    best = candidate;
  }
  return best;
}

}  // namespace

std::string nearestOf(std::string_view word, std::initializer_list<std::string_view> candidates) {
  return nearest(word, candidates);
}
std::string nearestOf(std::string_view word, const std::vector<std::string>& candidates) {
  return nearest(word, candidates);
}

}  // namespace hushmode
