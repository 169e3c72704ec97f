// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedDefaults.h"

#include <charconv>

namespace hushmode::devices {

using platform::Dictionary;
using platform::Value;

namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\n\r\f\v");
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

float leadingNumber(std::string_view text) {
  text = withoutLeadingBlanks(text);
  if (text.starts_with('+')) text.remove_prefix(1);
  // No words for infinity or "not a number" are numbers here.
  if (text.find_first_not_of("-.") == std::string_view::npos) return 0;
  if (const char first = text[text.find_first_not_of("-.")]; first < '0' || first > '9') return 0;
  float number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

bool meansYes(std::string_view text) {
  text = withoutLeadingBlanks(text);
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  const std::size_t first = text.find_first_not_of('0');
  return first != std::string_view::npos &&
         std::string_view("YyTt123456789").find(text[first]) != std::string_view::npos;
}

}  // namespace

std::optional<Value> SimulatedDefaults::valueForKey(std::string_view key) const {
  const Value* value = standard_.find(key);
  return value ? std::optional(*value) : std::nullopt;
}

float SimulatedDefaults::floatForKey(std::string_view key) const {
  const Value* value = standard_.find(key);
  if (!value) return 0;
  if (const auto* real = value->as<double>()) return static_cast<float>(*real);
  if (const auto* integer = value->as<std::int64_t>()) return static_cast<float>(*integer);
  if (const auto* boolean = value->as<bool>()) return *boolean ? 1 : 0;
  if (const auto* text = value->as<std::string>()) return leadingNumber(*text);
  return 0;
}

bool SimulatedDefaults::boolForKey(std::string_view key) const {
  const Value* value = standard_.find(key);
  if (!value) return false;
  if (const auto* boolean = value->as<bool>()) return *boolean;
  if (const auto* integer = value->as<std::int64_t>()) return *integer != 0;
  if (const auto* real = value->as<double>()) return *real != 0;
  if (const auto* text = value->as<std::string>()) return meansYes(*text);
  return false;
}

void SimulatedDefaults::set(Value value, std::string_view key) {
  record_.append(kind::defaults, {{"operation", "set"}, {"key", key}, {"value", value}});
  standard_.set(key, std::move(value));
}

void SimulatedDefaults::setFloat(float value, std::string_view key) { set(value, key); }

void SimulatedDefaults::setBool(bool value, std::string_view key) { set(value, key); }

void SimulatedDefaults::removeObjectForKey(std::string_view key) {
  record_.append(kind::defaults, {{"operation", "remove"}, {"key", key}});
  standard_.remove(key);
}

void SimulatedDefaults::synchronize() { record_.append(kind::defaults, {{"operation", "synchronize"}}); }

std::optional<Dictionary> SimulatedDefaults::persistentDomainForName(std::string_view name) const {
  const auto domain = domains_.find(name);
  return domain == domains_.end() ? std::nullopt : std::optional(domain->second);
}

void SimulatedDefaults::setPersistentDomain(const Dictionary& domain, std::string_view name) {
  record_.append(kind::defaults, {{"operation", "domain"}, {"key", name}, {"value", domain}});
  domains_.insert_or_assign(std::string(name), domain);
}

}  // namespace hushmode::devices
