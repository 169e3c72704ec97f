// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"
#include "platform/Export.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace hushmode::platform {

class Value;
struct DictionaryEntry;

using Array = std::vector<Value>;
using Data = std::vector<std::byte>;

/// A property-list dictionary. It keeps the order in which keys were first set; keys are unique and case-sensitive.
class HUSHMODE_API Dictionary {
 public:
  Dictionary();
  Dictionary(std::initializer_list<DictionaryEntry> entries);
  Dictionary(const Dictionary&);
  Dictionary(Dictionary&&) noexcept;
  Dictionary& operator=(const Dictionary&);
  Dictionary& operator=(Dictionary&&) noexcept;
  ~Dictionary();

  /// The value under `key`, or null when there is none. Valid until the dictionary changes.
  const Value* find(std::string_view key) const;
  /// Sets or replaces the value under `key`; a replaced key keeps its place.
  void set(std::string_view key, Value value);
  /// Adds an entry at the end without looking for the key: only for keys known to be new.
  void append(std::string key, Value value);
  /// Removes `key`; nothing happens when it is absent.
  void remove(std::string_view key);
  void reserve(std::size_t count);

  bool empty() const;
  std::size_t size() const;
  const DictionaryEntry* begin() const;
  const DictionaryEntry* end() const;

  /// Same keys with same values, in whatever order.
  friend HUSHMODE_API bool operator==(const Dictionary&, const Dictionary&);

 private:
  std::vector<DictionaryEntry> entries_;
};

/// One property-list value: boolean, 64-bit integer, double, string (UTF-8), date, data, array or dictionary.
class HUSHMODE_API Value {
 public:
  using Variant = std::variant<bool, std::int64_t, double, std::string, Date, Data, Array, Dictionary>;

  template <std::same_as<bool> T>
  Value(T boolean) : variant_(boolean) {}
  template <std::integral T>
  requires(!std::same_as<T, bool>) Value(T integer) : variant_(static_cast<std::int64_t>(integer)) {}
  template <std::floating_point T>
  Value(T real) : variant_(static_cast<double>(real)) {}
  Value(const char* text) : variant_(std::string(text)) {}
  Value(std::string_view text) : variant_(std::string(text)) {}
  Value(std::string text) : variant_(std::move(text)) {}
  Value(Date date) : variant_(date) {}
  Value(Data data) : variant_(std::move(data)) {}
  Value(Array array) : variant_(std::move(array)) {}
  Value(Dictionary dictionary) : variant_(std::move(dictionary)) {}

  /// The value as `T` (one of Variant's alternatives), or null when it is of another type.
  template <class T>
  const T* as() const {
    return std::get_if<T>(&variant_);
  }
  template <class T>
  T* as() {
    return std::get_if<T>(&variant_);
  }
  const Variant& variant() const { return variant_; }

  friend HUSHMODE_API bool operator==(const Value&, const Value&);

 private:
  Variant variant_;
};

struct DictionaryEntry {
  std::string key;
  Value value;
};

}  // namespace hushmode::platform
