// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/JsonReader.h"

#include "devices/words/Text.h"

#include <algorithm>

namespace hushmode::simulation {

namespace {

std::string inQuotes(std::string_view text) {
  constexpr std::size_t most = 60;
  return text.size() <= most ? "\"" + std::string(text) + "\"" : "\"" + std::string(text.substr(0, most)) + "...\"";
}

}  // namespace

std::pair<std::shared_ptr<const JsonReader::Json>, JsonReader> JsonReader::parse(std::string_view text,
                                                                                 const std::string& file) {
  try {
    auto json = std::make_shared<const Json>(Json::parse(text));
    JsonReader reader(*json, file, "");
    return {std::move(json), std::move(reader)};
  } catch (const nlohmann::json::parse_error& error) {
    // The library's text begins with its own name and number in brackets; people need the rest.
    std::string reason = error.what();
    if (const auto bracket = reason.find("] "); bracket != std::string::npos) reason.erase(0, bracket + 2);
    throw InputError(tr("{0}: not JSON: {1}", file, reason));
  }
}

std::string JsonReader::place() const { return path_.empty() ? tr("{0}: top level", file_) : file_ + ": " + path_; }

void JsonReader::fail(const std::string& expectation) const { throw InputError(place() + ": " + expectation); }

void JsonReader::requireKeys(std::initializer_list<std::string_view> known) const {
  if (!json_->is_object()) fail(tr("expected an object"));
  for (const auto& [key, value] : json_->items()) {
    if (std::find(known.begin(), known.end(), key) != known.end()) continue;
    const std::string near = nearestOf(key, known);
    std::string all;
    for (const std::string_view each : known) all += (all.empty() ? "" : ", ") + std::string(each);
    fail(near.empty() ? tr("unknown key {0}; known are: {1}", inQuotes(key), all)
                      : tr("unknown key {0}; did you mean \"{1}\"?", inQuotes(key), near));
  }
}

std::optional<JsonReader> JsonReader::find(const std::string& key) const {
  if (!json_->is_object()) fail(tr("expected an object"));
  const auto place = json_->find(key);
  if (place == json_->end()) return std::nullopt;
  return JsonReader(*place, file_, path_.empty() ? key : path_ + "." + key);
}

JsonReader JsonReader::require(const std::string& key) const {
  auto value = find(key);
  if (!value) fail(tr("expected a key \"{}\"", key));
  return *std::move(value);
}

std::vector<JsonReader> JsonReader::elements() const {
  if (!json_->is_array()) fail(tr("expected a list"));
  std::vector<JsonReader> list;
  for (std::size_t i = 0; i < json_->size(); ++i) {
    list.push_back(JsonReader((*json_)[i], file_, path_ + "[" + std::to_string(i) + "]"));
  }
  return list;
}

std::vector<std::pair<std::string, JsonReader>> JsonReader::members() const {
  if (!json_->is_object()) fail(tr("expected an object"));
  std::vector<std::pair<std::string, JsonReader>> list;
  for (const auto& [key, value] : json_->items()) {
    list.emplace_back(key, JsonReader(value, file_, path_.empty() ? key : path_ + "." + key));
  }
  return list;
}

std::string JsonReader::text() const {
  if (!json_->is_string()) fail(tr("expected a text"));
  return json_->get<std::string>();
}

bool JsonReader::boolean() const {
  if (!json_->is_boolean()) fail(tr("expected true or false"));
  return json_->get<bool>();
}

double JsonReader::number(double lowest, double highest) const {
  const double number = json_->is_number() ? json_->get<double>() : lowest - 1;
  if (!(number >= lowest && number <= highest)) {
    fail(tr("expected a number from {0} to {1}", Json(lowest).dump(), Json(highest).dump()));
  }
  return number;
}

std::vector<std::string> JsonReader::texts() const {
  std::vector<std::string> list;
  for (const JsonReader& element : elements()) list.push_back(element.text());
  return list;
}

bool JsonReader::booleanOr(const std::string& key, bool otherwise) const {
  const auto value = find(key);
  return value ? value->boolean() : otherwise;
}

double JsonReader::numberOr(const std::string& key, double otherwise, double lowest, double highest) const {
  const auto value = find(key);
  return value ? value->number(lowest, highest) : otherwise;
}

std::string JsonReader::textOr(const std::string& key, const std::string& otherwise) const {
  const auto value = find(key);
  return value ? value->text() : otherwise;
}

}  // namespace hushmode::simulation
