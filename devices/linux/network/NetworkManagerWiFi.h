// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"
#include "devices/linux/base/Services.h"
#include "devices/linux/network/WiFiSurvey.h"
#include "platform/MobileWiFi.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace hushmode::devices {

/// The phone's WiFi as NetworkManager has it, on the system bus; as the service "networks".
///
/// Answers come from what was last read; NetworkManager's signals have everything read again. While NetworkManager is
/// away, or does not answer, what was known stays, the joined network too: a radio that is switched off leaves its
/// network, a service that restarts does not. For the same reason a NetworkManager that is just starting up leaves no
/// network.
///
/// All networks are those of one interface, which is there at all times: a process asks for it only once, and
/// NetworkManager may come later, as may the radio.
class NetworkManagerWiFi final : public platform::MobileWiFi {
 public:
  /// `changed` is called from the main loop, after the known networks, their dates or the joined network are others
  /// than before; a burst of changes may be told as one.
  NetworkManagerWiFi(const Glib::RefPtr<Gio::DBus::Connection>& systemBus, Services& services,
                     std::function<void()> changed, std::chrono::milliseconds limit = BusClient::answerLimit);
  ~NetworkManagerWiFi() override;

  /// Whether NetworkManager was ever read. Until then there are no networks.
  bool isRead() const { return isRead_; }

  std::shared_ptr<platform::WiFiManagerClient> WiFiManagerClientCreate(int type) override;
  std::optional<std::vector<std::shared_ptr<platform::WiFiDeviceClient>>> WiFiManagerClientCopyDevices(
      const std::shared_ptr<platform::WiFiManagerClient>& manager) override;
  std::vector<std::shared_ptr<platform::WiFiNetwork>> WiFiManagerClientCopyNetworks(
      const std::shared_ptr<platform::WiFiManagerClient>& manager) override;
  std::shared_ptr<platform::WiFiNetwork> WiFiDeviceClientCopyCurrentNetwork(
      const std::shared_ptr<platform::WiFiDeviceClient>& client) override;
  std::string WiFiNetworkGetSSID(const std::shared_ptr<platform::WiFiNetwork>& network) override;
  platform::Dictionary WiFiNetworkCopyRecord(const std::shared_ptr<platform::WiFiNetwork>& network) override;

 private:
  void listenTo(BusClient& client);
  void lookAgain();
  void take(WiFiState state);

  Services& services_;
  std::function<void()> changed_;
  std::shared_ptr<platform::WiFiDeviceClient> device_;
  std::vector<std::shared_ptr<platform::WiFiNetwork>> networks_;
  std::shared_ptr<platform::WiFiNetwork> joined_;
  WiFiState state_;
  bool isRead_ = false;
  std::unique_ptr<WiFiSurvey> survey_;
  bool isOutdated_ = false;  ///< Something changed while a survey is under way.
  RemoteService service_;    ///< The last: nothing comes after it.
};

}  // namespace hushmode::devices
