// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/PropertyListFile.h"
#include "platform/Foundation.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// User defaults on a real disk: each domain is one property-list file in a folder, "<domain>.plist"; the standard
/// defaults are the domain of the process. Domains are read when first asked for; the standard ones are written by
/// `synchronize` when they changed, other applications' at once.
///
/// What cannot be read counts as empty, and what cannot be written stays in memory; both are told to the diagnostics in
/// a line that names the file and the reason. A file that cannot be read is not overwritten. For one thread.
class DiskDefaults final : public platform::UserDefaults {
 public:
  using Diagnostics = std::function<void(const std::string& line)>;

  DiskDefaults(std::filesystem::path folder, std::string standardDomain, Diagnostics diagnose,
               FileCalls& calls = FileCalls::system());

  std::optional<platform::Value> valueForKey(std::string_view key) const override;
  float floatForKey(std::string_view key) const override;
  bool boolForKey(std::string_view key) const override;
  void setFloat(float value, std::string_view key) override;
  void setBool(bool value, std::string_view key) override;
  void removeObjectForKey(std::string_view key) override;
  void synchronize() override;
  std::optional<platform::Dictionary> persistentDomainForName(std::string_view name) const override;
  void setPersistentDomain(const platform::Dictionary& domain, std::string_view name) override;

 private:
  struct Domain {
    platform::Dictionary values;
    bool exists = false;      ///< There is a file.
    bool unreadable = false;  ///< There is one that nobody may overwrite.
    bool changed = false;
  };
  Domain& domain(std::string_view name) const;
  const platform::Value* find(std::string_view key) const;
  void set(platform::Value value, std::string_view key);
  void write(Domain& domain, std::string_view name);
  std::string pathOf(std::string_view name) const;

  std::filesystem::path folder_;
  std::string standardDomain_;
  Diagnostics diagnose_;
  FileCalls& calls_;
  mutable std::map<std::string, Domain, std::less<>> domains_;
};

}  // namespace hushmode::devices
