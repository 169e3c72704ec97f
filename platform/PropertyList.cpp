// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/PropertyList.h"

#include <algorithm>

namespace hushmode::platform {

Dictionary::Dictionary() = default;
Dictionary::Dictionary(const Dictionary&) = default;
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(const Dictionary&) = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

Dictionary::Dictionary(std::initializer_list<DictionaryEntry> entries) {
  for (const DictionaryEntry& entry : entries) set(entry.key, entry.value);
}

const Value* Dictionary::find(std::string_view key) const {
  for (const DictionaryEntry& entry : entries_) {
    if (entry.key == key) return &entry.value;
  }
  return nullptr;
}

void Dictionary::set(std::string_view key, Value value) {
  for (DictionaryEntry& entry : entries_) {
    if (entry.key == key) {
      entry.value = std::move(value);
      return;
    }
  }
  entries_.push_back({std::string(key), std::move(value)});
}

void Dictionary::append(std::string key, Value value) { entries_.push_back({std::move(key), std::move(value)}); }

void Dictionary::remove(std::string_view key) {
  std::erase_if(entries_, [&](const DictionaryEntry& entry) { return entry.key == key; });
}

void Dictionary::reserve(std::size_t count) { entries_.reserve(count); }
bool Dictionary::empty() const { return entries_.empty(); }
std::size_t Dictionary::size() const { return entries_.size(); }
const DictionaryEntry* Dictionary::begin() const { return entries_.data(); }
const DictionaryEntry* Dictionary::end() const { return entries_.data() + entries_.size(); }

bool operator==(const Dictionary& a, const Dictionary& b) {
  return a.size() == b.size() && std::all_of(a.begin(), a.end(), [&](const DictionaryEntry& entry) {
           const Value* other = b.find(entry.key);
           return other && *other == entry.value;
         });
}

bool operator==(const Value& a, const Value& b) { return a.variant_ == b.variant_; }

}  // namespace hushmode::platform
