// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/contracts/WiFiContract.h"

#include "devices/linux/network/NetworkManagerWiFi.h"
#include "tests/devices/linux/network/MockedNetworkManager.h"

namespace hushmode::contracts {
namespace {

class NetworkManagerWorld final : public WiFiWorld {
 public:
  NetworkManagerWorld() { settle(); }

  platform::MobileWiFi& wiFi() override { return wiFi_; }
  void remember(const std::string& ssid) override {
    paths_[ssid] = mock_.add({ssid});
    settle();
  }
  void join(const std::string& ssid, platform::Date date) override {
    deactivate();
    mock_.setTimestamp(paths_.at(ssid), static_cast<std::uint64_t>(date.secondsSince1970()));
    active_ = mock_.activate(paths_.at(ssid), 1);
    mock_.setState(*active_, 2);
    settle();
  }
  void leave() override {
    deactivate();
    settle();
  }
  void forget(const std::string& ssid) override {
    mock_.remove(paths_.at(ssid));
    active_.reset();
    settle();
  }

 private:
  void deactivate() {
    if (active_) mock_.deactivate(*active_);
    active_.reset();
  }
  /// Whatever was done has been read: a network that is added now is seen after all that came before.
  void settle() {
    const std::string marker = mock_.add({"marker"});
    const auto isKnown = [&] {
      const auto manager = wiFi_.WiFiManagerClientCreate(0);
      for (const auto& network : wiFi_.WiFiManagerClientCopyNetworks(manager)) {
        if (wiFi_.WiFiNetworkGetSSID(network) == "marker") return true;
      }
      return false;
    };
    if (!runUntil(isKnown)) throw std::runtime_error("a new network was not noticed");
    mock_.remove(marker);
    if (!runUntil([&] { return !isKnown(); })) throw std::runtime_error("a network that went was not noticed");
  }

  MockedNetworkManager mock_;
  std::map<std::string, std::string> paths_;
  std::optional<std::string> active_;
  devices::Services services_;
  devices::NetworkManagerWiFi wiFi_{connectTo("system"), services_, {}};
};

INSTANTIATE_TYPED_TEST_SUITE_P(NetworkManager, WiFiContract, NetworkManagerWorld);

}  // namespace
}  // namespace hushmode::contracts
