// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Export.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hushmode::platform {

/// An object with identity, held by `std::shared_ptr`. The root of everything that a category can extend.
class HUSHMODE_API Object : public std::enable_shared_from_this<Object> {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();

  /// The object as text, for the log and for people.
  virtual std::string description() const;

  /// Whether the object answers `selector`. An interface answers all that it declares unless an implementation says
  /// otherwise; callers ask before they use an operation that not every system version has.
  virtual bool respondsTo(std::string_view selector) const;

  /// The instance variable `name`, or null when there is no such variable or it holds nothing.
  virtual std::shared_ptr<Object> instanceVariable(std::string_view name) const;

  /// What a category keeps beside this object under `key` (the address of a variable of the category's own); null when
  /// nothing is kept. The association is strong and ends with the object.
  const std::shared_ptr<void>& association(const void* key) const;
  /// Keeps `value` under `key`; null removes the association.
  void setAssociation(const void* key, std::shared_ptr<void> value);

 private:
  std::vector<std::pair<const void*, std::shared_ptr<void>>> associations_;
};

/// Reads an instance variable by name; null when `object` is null or has no such variable.
HUSHMODE_API std::shared_ptr<Object> instanceVariable(const std::shared_ptr<Object>& object, std::string_view name);

using ObjectList = std::vector<std::shared_ptr<Object>>;

/// A list of objects that is an object itself, as instance variables hold them.
class HUSHMODE_API ObjectArray : public Object {
 public:
  explicit ObjectArray(ObjectList elements) : elements_(std::move(elements)) {}
  ~ObjectArray() override;
  const ObjectList& elements() const { return elements_; }

 private:
  ObjectList elements_;
};

/// A class looked up by name at run time: the receiver of class methods.
class HUSHMODE_API Class : public Object {
 public:
  ~Class() override;
};

}  // namespace hushmode::platform
