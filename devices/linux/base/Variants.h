// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <glibmm/variant.h>
#include <map>
#include <optional>
#include <string>

namespace hushmode::devices {

/// Properties of an object on a bus, by name.
using Properties = std::map<Glib::ustring, Glib::VariantBase>;

/// What `variant` holds, when it is of exactly that type: what comes from outside can be anything, also nothing.
template <class T>
std::optional<T> valueOf(const Glib::VariantBase& variant) {
  if (!variant || !variant.is_of_type(Glib::Variant<T>::variant_type())) return std::nullopt;
  return Glib::VariantBase::cast_dynamic<Glib::Variant<T>>(variant).get();
}

/// The property `name`, when it is there and of that type.
template <class T>
std::optional<T> valueOf(const Properties& properties, const Glib::ustring& name) {
  const auto place = properties.find(name);
  return place == properties.end() ? std::nullopt : valueOf<T>(place->second);
}

/// The value at `index` of a tuple, when there is one and it is of that type.
template <class T>
std::optional<T> valueAt(const Glib::VariantContainerBase& tuple, gsize index) {
  if (!tuple || index >= tuple.get_n_children()) return std::nullopt;
  Glib::VariantBase child;
  tuple.get_child(child, index);
  return valueOf<T>(child);
}

/// The same for texts.
inline std::optional<std::string> textOf(const Properties& properties, const Glib::ustring& name) {
  const auto text = valueOf<Glib::ustring>(properties, name);
  return text ? std::optional<std::string>(*text) : std::nullopt;
}
inline std::optional<std::string> textAt(const Glib::VariantContainerBase& tuple, gsize index) {
  const auto text = valueAt<Glib::ustring>(tuple, index);
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

template <class T>
Glib::VariantBase variantOf(const T& value) {
  return Glib::Variant<T>::create(value);
}
inline Glib::VariantBase variantOf(const std::string& text) { return variantOf(Glib::ustring(text)); }

/// The arguments of a call: a tuple of these values.
template <class... T>
Glib::VariantContainerBase argumentsOf(const T&... values) {
  return Glib::VariantContainerBase::create_tuple({Glib::Variant<T>::create(values)...});
}

}  // namespace hushmode::devices
