// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"

#include <string>
#include <vector>

namespace hushmode {

/// Notes each change of a service, as a line: "networks: there, NetworkManager", "networks: away, …".
class ServiceReports {
 public:
  ServiceReports() {
    services.setListener([this](const std::string& name, const devices::ServiceState& now, const auto*) {
      lines.push_back(name + (now.available ? ": there, " : ": away, ") + now.detail);
    });
  }

  devices::Services services;
  std::vector<std::string> lines;
};

}  // namespace hushmode
