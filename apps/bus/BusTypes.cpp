// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/bus/BusTypes.h"

#include "apps/words/Words.h"
#include "devices/linux/base/Variants.h"
#include "host/ProfileCheck.h"

#include <optional>

namespace hushmode::bus {

using devices::variantOf;
using platform::Array;
using platform::Date;
using platform::Value;

namespace {

Glib::VariantBase list(const Array& array) {
  std::vector<Glib::ustring> texts;
  for (const Value& each : array) {
    if (const auto* entry = each.as<std::string>()) texts.emplace_back(*entry);
  }
  return variantOf(texts);
}

std::optional<Glib::VariantBase> busForm(const Value& value) {
  if (const auto* flag = value.as<bool>()) return variantOf(*flag);
  if (const auto* number = value.as<std::int64_t>()) return variantOf(static_cast<gint64>(*number));
  if (const auto* real = value.as<double>()) return variantOf(*real);
  if (const auto* string = value.as<std::string>()) return variantOf(*string);
  if (const auto* date = value.as<Date>()) return variantOf(date->secondsSince1970());
  if (const auto* array = value.as<Array>()) return list(*array);
  return std::nullopt;
}

template <class T>
std::optional<T> as(const Glib::VariantBase& given) {
  if (!given.is_of_type(Glib::Variant<T>::variant_type())) return std::nullopt;
  return Glib::VariantBase::cast_dynamic<Glib::Variant<T>>(given).get();
}

std::optional<std::int64_t> wholeNumber(const Glib::VariantBase& given) {
  if (const auto number = as<gint64>(given)) return *number;
  if (const auto number = as<gint32>(given)) return *number;
  if (const auto number = as<guint32>(given)) return *number;
  if (const auto number = as<gint16>(given)) return *number;
  if (const auto number = as<guint16>(given)) return *number;
  if (const auto number = as<guchar>(given)) return *number;
  if (const auto number = as<guint64>(given); number && *number <= G_MAXINT64) return static_cast<gint64>(*number);
  return std::nullopt;
}

bool isVolume(const std::string& key) {
  for (const host::ProfileKey& each : host::profileKeys()) {
    if (each.name == key) return each.kind == host::ProfileKeyKind::Volume;
  }
  return false;
}

Value valueOf(const std::string& key, const Glib::VariantBase& given) {
  if (const auto flag = as<bool>(given)) return *flag;
  if (const auto real = as<double>(given)) return *real;
  if (const auto number = wholeNumber(given)) {
    return isVolume(key) ? Value(static_cast<double>(*number)) : Value(*number);
  }
  if (const auto string = as<Glib::ustring>(given)) return string->raw();
  if (const auto texts = as<std::vector<Glib::ustring>>(given)) {
    Array array;
    for (const auto& each : *texts) array.emplace_back(each.raw());
    return array;
  }
  throw host::EditError(host::EditError::Kind::InvalidArgument,
                        host::Message("\"{0}\": no profile holds a value of type \"{1}\"", key.substr(0, 100),
                                      given.get_type_string().substr(0, 100)));
}

}  // namespace

Dictionary busForm(const platform::Dictionary& profile) {
  Dictionary form;
  for (const auto& [key, value] : profile) {
    if (auto each = busForm(value)) form.emplace(key, std::move(*each));
  }
  return form;
}

platform::Dictionary profileFrom(const Dictionary& given) {
  platform::Dictionary profile;
  for (const auto& [key, value] : given) profile.set(key.raw(), valueOf(key.raw(), value));
  return profile;
}

/// For people in the daemon's language, and for programs.
static void addReason(Dictionary& form, const host::Reason& reason) {
  form.emplace("reason", variantOf(inWords(reason)));
  form.emplace("cause", variantOf(std::string(host::codeOf(reason.kind))));
  if (reason.about) form.emplace("about", variantOf(*reason.about));
}

Dictionary busForm(const host::Switch& each) {
  Dictionary form{
      {"date", variantOf(each.at.secondsSince1970())},
      {"profile", variantOf(each.profile)},
      {"identifier", variantOf(static_cast<gint64>(each.identifier))},
      {"on", variantOf(each.on)},
      {"change", variantOf(each.withNext ? std::string() : inWords(host::difference(each.before, each.after)))}};
  addReason(form, each.reason);
  return form;
}

Dictionary busForm(const host::AppliedProfile& each) {
  Dictionary form{{"identifier", variantOf(static_cast<gint64>(each.identifier))},
                  {"title", variantOf(each.title)},
                  {"since", variantOf(each.since.secondsSince1970())}};
  addReason(form, each.reason);
  if (each.until) form.emplace("until", variantOf(each.until->secondsSince1970()));
  return form;
}

Dictionary busForm(const host::PlannedWakeUp& each) {
  Dictionary form{{"date", variantOf(each.date.secondsSince1970())}};
  if (each.profile) form.emplace("profile", variantOf(static_cast<gint64>(*each.profile)));
  return form;
}

std::string reasonText(const Dictionary& told) {
  const auto textAt = [&](const char* key) -> std::optional<std::string> {
    const auto place = told.find(key);
    const auto value = place == told.end() ? std::nullopt : as<Glib::ustring>(place->second);
    return value ? std::optional(value->raw()) : std::nullopt;
  };
  const auto kind = host::reasonKindOf(textAt("cause").value_or(""));
  return kind ? inWords(host::Reason{*kind, textAt("about")}) : textAt("reason").value_or("");
}

}  // namespace hushmode::bus
