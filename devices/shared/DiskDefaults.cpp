// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/DiskDefaults.h"

#include "devices/words/Text.h"
#include "util/Numbers.h"

namespace hushmode::devices {

using platform::Dictionary;
using platform::Value;

DiskDefaults::DiskDefaults(std::filesystem::path folder, std::string standardDomain, Diagnostics diagnose,
                           FileCalls& calls)
    : folder_(std::move(folder)),
      standardDomain_(std::move(standardDomain)),
      diagnose_(std::move(diagnose)),
      calls_(calls) {}

std::string DiskDefaults::pathOf(std::string_view name) const {
  return (folder_ / (std::string(name) + ".plist")).string();
}

DiskDefaults::Domain& DiskDefaults::domain(std::string_view name) const {
  if (const auto known = domains_.find(name); known != domains_.end()) return known->second;
  Domain& made = domains_[std::string(name)];
  const std::string path = pathOf(name);
  auto content = PropertyListFile(path, calls_).read();
  using State = PropertyListFileContent::State;
  if (content.state == State::Missing) return made;
  made.exists = true;
  if (content.state == State::Read && content.value->as<Dictionary>()) {
    made.values = std::move(*content.value->as<Dictionary>());
    return made;
  }
  made.unreadable = true;
  if (diagnose_) {
    diagnose_(tr("{}; it is left as it is, and changes are kept in memory only: mend or remove it",
                 content.error.empty() ? tr("{}: top level: expected a dictionary", path) : content.error));
  }
  return made;
}

const Value* DiskDefaults::find(std::string_view key) const { return domain(standardDomain_).values.find(key); }

std::optional<Value> DiskDefaults::valueForKey(std::string_view key) const {
  const Value* value = find(key);
  return value ? std::optional(*value) : std::nullopt;
}

float DiskDefaults::floatForKey(std::string_view key) const { return floatMeaning(find(key)); }
bool DiskDefaults::boolForKey(std::string_view key) const { return booleanMeaning(find(key)); }

void DiskDefaults::set(Value value, std::string_view key) {
  Domain& standard = domain(standardDomain_);
  const Value* held = standard.values.find(key);
  if (held && *held == value) return;
  standard.values.set(key, std::move(value));
  standard.changed = true;
}

void DiskDefaults::setFloat(float value, std::string_view key) { set(static_cast<double>(value), key); }
void DiskDefaults::setBool(bool value, std::string_view key) { set(value, key); }

void DiskDefaults::removeObjectForKey(std::string_view key) {
  Domain& standard = domain(standardDomain_);
  if (!standard.values.find(key)) return;
  standard.values.remove(key);
  standard.changed = true;
}

void DiskDefaults::write(Domain& domain, std::string_view name) {
  if (domain.unreadable) return;
  if (const auto failure = PropertyListFile(pathOf(name), calls_).write(domain.values)) {
    if (diagnose_) diagnose_(*failure);
    return;
  }
  domain.exists = true;
  domain.changed = false;
}

void DiskDefaults::synchronize() {
  Domain& standard = domain(standardDomain_);
  if (standard.changed) write(standard, standardDomain_);
}

std::optional<Dictionary> DiskDefaults::persistentDomainForName(std::string_view name) const {
  const Domain& held = domain(name);
  return held.exists ? std::optional(held.values) : std::nullopt;
}

void DiskDefaults::setPersistentDomain(const Dictionary& values, std::string_view name) {
  Domain& held = domain(name);
  held.values = values;
  held.exists = held.changed = true;
  write(held, name);
}

}  // namespace hushmode::devices
