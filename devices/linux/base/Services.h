// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// What stands behind one of the phone's operations at present.
struct ServiceState {
  bool available = false;
  std::string detail;  ///< For people: which service it is ("PulseAudio 16.1"), or what is missing.
  bool operator==(const ServiceState&) const = default;
};

/// What is known of the services of a Linux phone, by what they do ("volumes", "calendars", "do not disturb"). Each
/// adapter reports its own changes here; whoever assembles the phone says a line for each, and lets the host know.
///
/// For one thread, that of the main loop.
class Services {
 public:
  /// What changed, and from what.
  using Listener = std::function<void(const std::string& name, const ServiceState& now, const ServiceState* before)>;

  /// Called inside `report`, with `before` null at the first report of a name. Empty for none.
  void setListener(Listener listener) { listener_ = std::move(listener); }

  /// An adapter tells how its service stands. Nothing happens when that is known already.
  void report(const std::string& name, ServiceState state);

  /// All that was reported, by name.
  const std::map<std::string, ServiceState, std::less<>>& states() const { return states_; }
  bool isAvailable(std::string_view name) const;

 private:
  std::map<std::string, ServiceState, std::less<>> states_;
  Listener listener_;
};

}  // namespace hushmode::devices
