// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"
#include "platform/PropertyList.h"

#include <memory>
#include <optional>
#include <vector>

/// MobileWiFi: the networks that the device knows, and the one it is joined to.
namespace hushmode::platform {

/// A network.
class HUSHMODE_API WiFiNetwork : public Object {
 public:
  ~WiFiNetwork() override;
};

/// A WiFi interface of the device.
class HUSHMODE_API WiFiDeviceClient : public Object {
 public:
  ~WiFiDeviceClient() override;
};

/// A connection to the WiFi service.
class HUSHMODE_API WiFiManagerClient : public Object {
 public:
  ~WiFiManagerClient() override;
};

/// What MobileWiFi offers a process. Calls with a null client answer none.
class HUSHMODE_API MobileWiFi {
 public:
  virtual ~MobileWiFi();
  /// A manager client of the given type (0 is the ordinary one).
  virtual std::shared_ptr<WiFiManagerClient> WiFiManagerClientCreate(int type) = 0;
  /// The WiFi interfaces; none when the device has no WiFi.
  virtual std::optional<std::vector<std::shared_ptr<WiFiDeviceClient>>> WiFiManagerClientCopyDevices(
      const std::shared_ptr<WiFiManagerClient>& manager) = 0;
  /// Every network that the device remembers, in the platform's order.
  virtual std::vector<std::shared_ptr<WiFiNetwork>> WiFiManagerClientCopyNetworks(
      const std::shared_ptr<WiFiManagerClient>& manager) = 0;
  /// The network that the interface is joined to now, or null.
  virtual std::shared_ptr<WiFiNetwork> WiFiDeviceClientCopyCurrentNetwork(
      const std::shared_ptr<WiFiDeviceClient>& client) = 0;
  virtual std::string WiFiNetworkGetSSID(const std::shared_ptr<WiFiNetwork>& network) = 0;
  /// The network's record; among others the dates "lastAutoJoined" and "lastJoined".
  virtual Dictionary WiFiNetworkCopyRecord(const std::shared_ptr<WiFiNetwork>& network) = 0;
};

}  // namespace hushmode::platform
