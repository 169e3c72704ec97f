// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "platform/Foundation.h"

#include <map>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// The standard user defaults of the process, and the domains of other applications, in memory. Both belong to the
/// phone and outlive the process. The standard defaults are no domain of their own: writing a whole domain never
/// touches them, also when it bears the host's bundle identifier.
class SimulatedDefaults final : public platform::UserDefaults {
 public:
  explicit SimulatedDefaults(Record& record) : record_(record) {}

  std::optional<platform::Value> valueForKey(std::string_view key) const override;
  /// Numbers as they are; booleans as 1 and 0; a text's leading decimal number; of everything else 0.
  float floatForKey(std::string_view key) const override;
  /// Booleans as they are; numbers unless 0; texts that begin with Y, T or a number other than 0; nothing else.
  bool boolForKey(std::string_view key) const override;
  void setFloat(float value, std::string_view key) override;
  void setBool(bool value, std::string_view key) override;
  void removeObjectForKey(std::string_view key) override;
  void synchronize() override;
  std::optional<platform::Dictionary> persistentDomainForName(std::string_view name) const override;
  void setPersistentDomain(const platform::Dictionary& domain, std::string_view name) override;

  /// The standard defaults and the domains, for preparing the phone and looking at it; nothing is recorded.
  platform::Dictionary& standard() { return standard_; }
  const platform::Dictionary& standard() const { return standard_; }
  std::map<std::string, platform::Dictionary, std::less<>>& domains() { return domains_; }
  const std::map<std::string, platform::Dictionary, std::less<>>& domains() const { return domains_; }

 private:
  void set(platform::Value value, std::string_view key);

  Record& record_;
  platform::Dictionary standard_;
  std::map<std::string, platform::Dictionary, std::less<>> domains_;
};

}  // namespace hushmode::devices
