// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/words/Nearest.h"

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::simulation {

/// Input that cannot be used: the message names the file, the place, and what was expected.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A JSON value with its place in its file, so that every complaint can name both. Keys keep their order.
class JsonReader {
 public:
  using Json = nlohmann::ordered_json;

  /// Parses a whole file. `file` is how messages name it. The text must outlive nothing; the value is kept.
  static std::pair<std::shared_ptr<const Json>, JsonReader> parse(std::string_view text, const std::string& file);

  const Json& json() const { return *json_; }

  /// "file: place", for messages.
  std::string place() const;
  [[noreturn]] void fail(const std::string& expectation) const;

  /// The members of an object; any key that is not among `known` is a mistake, told with the nearest one.
  void requireKeys(std::initializer_list<std::string_view> known) const;
  std::optional<JsonReader> find(const std::string& key) const;
  JsonReader require(const std::string& key) const;
  std::vector<JsonReader> elements() const;
  std::vector<std::pair<std::string, JsonReader>> members() const;

  std::string text() const;
  bool boolean() const;
  double number(double lowest, double highest) const;
  std::vector<std::string> texts() const;

  /// The member's value where there is one, else `otherwise`.
  bool booleanOr(const std::string& key, bool otherwise) const;
  double numberOr(const std::string& key, double otherwise, double lowest, double highest) const;
  std::string textOr(const std::string& key, const std::string& otherwise) const;

 private:
  JsonReader(const Json& json, std::string file, std::string path)
      : json_(&json), file_(std::move(file)), path_(std::move(path)) {}

  const Json* json_;
  std::string file_, path_;
};

using hushmode::nearestOf;

}  // namespace hushmode::simulation
