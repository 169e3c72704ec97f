// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// The classes that can be looked up by name on a simulated phone. Any class, and any selector of one, can be taken
/// away and given back.
class SimulatedClasses {
 public:
  /// Makes a class known. With `available`, it exists only while that answers true.
  void add(std::string_view name, std::unique_ptr<platform::Class> made, std::function<bool()> available = {});

  /// The class of that name; null when it is unknown, was taken away, or is not available at the moment.
  platform::Class* named(std::string_view name) const;

  /// Takes a class away, or gives it back. Throws std::invalid_argument when no class of that name is known.
  void removeClass(std::string_view name);
  void restoreClass(std::string_view name);

  /// Takes away a selector of a class and its instances, or gives it back. A selector is named by its first keyword;
  /// what follows a colon is passed over. "Alarm", which is no class to look up, is known here too.
  void removeSelector(std::string_view className, std::string_view selector);
  void restoreSelector(std::string_view className, std::string_view selector);
  bool responds(std::string_view className, std::string_view selector) const;
  /// Throws std::logic_error, as the sending of an unknown selector ends a process, when the selector was taken away.
  void require(std::string_view className, std::string_view selector) const;

 private:
  struct Entry {
    std::unique_ptr<platform::Class> made;
    std::function<bool()> available;
    bool removed = false;
  };
  Entry& entry(std::string_view name);

  std::map<std::string, Entry, std::less<>> classes_;
  std::map<std::string, std::set<std::string, std::less<>>, std::less<>> removedSelectors_;
};

/// An object, or the class of one, whose selectors can be taken away. Operations begin with `require`, so that sending
/// one that was taken away is noticed.
template <class Base>
class Answering : public Base {
 public:
  /// `className` must be a constant.
  Answering(const SimulatedClasses& classes, std::string_view className) : classes_(classes), className_(className) {}

  bool respondsTo(std::string_view selector) const override { return classes_.responds(className_, selector); }

 protected:
  void require(std::string_view selector) const { classes_.require(className_, selector); }

 private:
  const SimulatedClasses& classes_;
  std::string_view className_;
};

/// A class that is only ever asked whether it exists.
class NamedClass final : public platform::Class {};

}  // namespace hushmode::devices
