// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/network/NetworkManagerWiFi.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <utility>

namespace hushmode::devices {

using platform::Dictionary;
using platform::WiFiDeviceClient;
using platform::WiFiManagerClient;
using platform::WiFiNetwork;

namespace {

constexpr const char* serviceName = "networks";
constexpr const char* managerInterface = "org.freedesktop.NetworkManager";
constexpr const char* settingsInterface = "org.freedesktop.NetworkManager.Settings";
constexpr const char* connectionInterface = "org.freedesktop.NetworkManager.Settings.Connection";
constexpr const char* activeInterface = "org.freedesktop.NetworkManager.Connection.Active";

class Manager final : public WiFiManagerClient {};
class Device final : public WiFiDeviceClient {};

class Network final : public WiFiNetwork {
 public:
  explicit Network(KnownNetwork network) : known(std::move(network)) {}
  std::string description() const override { return "<WiFiNetwork " + known.ssid + ">"; }

  const KnownNetwork known;
};

}  // namespace

NetworkManagerWiFi::NetworkManagerWiFi(const Glib::RefPtr<Gio::DBus::Connection>& systemBus, Services& services,
                                       std::function<void()> changed, std::chrono::milliseconds limit)
    : services_(services),
      changed_(std::move(changed)),
      device_(std::make_shared<Device>()),
      service_(
          systemBus, managerInterface, [this](BusClient& client) { listenTo(client); },
          [this] {
            survey_.reset();
            services_.report(serviceName, {false, tr("NetworkManager is not running")});
          },
          limit) {}

NetworkManagerWiFi::~NetworkManagerWiFi() = default;

void NetworkManagerWiFi::listenTo(BusClient& client) {
  const auto look = [this](const std::string&, const Glib::VariantContainerBase&) { lookAgain(); };
  for (const char* signal : {"NewConnection", "ConnectionRemoved"}) {
    client.hear({"", settingsInterface}, signal, "(o)", look);
  }
  client.hear({"", connectionInterface}, "Updated", "()", look);
  client.hear({"", "org.freedesktop.DBus.Properties"}, "PropertiesChanged", "(sa{sv}as)",
              [this](const std::string&, const Glib::VariantContainerBase& values) {
                const auto interface = textAt(values, 0);
                const auto changed = valueAt<Properties>(values, 1);
                const auto hasChanged = [&](const char* name) { return changed && changed->contains(name); };
                const bool matters = interface == managerInterface
                                         ? hasChanged("ActiveConnections") || hasChanged("Startup")
                                         : interface == activeInterface && hasChanged("State");
                if (matters) lookAgain();
              });
  survey_.reset();
  lookAgain();
}

void NetworkManagerWiFi::lookAgain() {
  isOutdated_ = survey_ != nullptr;
  if (survey_ || !service_.client()) return;
  survey_ = std::make_unique<WiFiSurvey>(
      *service_.client(), [this](WiFiState state) { take(std::move(state)); },
      [this](const BusClient::Failure& failure) {
        survey_.reset();
        services_.report(serviceName, {false, tr("NetworkManager does not answer: {}", failure.reason)});
        service_.tryAgainLater();
      });
}

void NetworkManagerWiFi::take(WiFiState state) {
  survey_.reset();
  // Whoever is told asks again by itself; an own look that is due comes first, so that what is told is up to date.
  if (isOutdated_) return lookAgain();
  if (state.isStartingUp && !state.joined) state.joined = state_.joined;
  services_.report(serviceName, {true, "NetworkManager"});
  isRead_ = true;
  state.isStartingUp = false;
  if (state == state_) return;
  state_ = std::move(state);
  networks_.clear();
  joined_.reset();
  for (const KnownNetwork& known : state_.known) {
    networks_.push_back(std::make_shared<Network>(known));
    if (known.ssid == state_.joined) joined_ = networks_.back();
  }
  // Kept over a restart, though it is no longer remembered.
  if (state_.joined && !joined_) joined_ = std::make_shared<Network>(KnownNetwork{*state_.joined, {}, {}});
  if (changed_) changed_();
}

std::shared_ptr<WiFiManagerClient> NetworkManagerWiFi::WiFiManagerClientCreate(int) {
  return std::make_shared<Manager>();
}

std::optional<std::vector<std::shared_ptr<WiFiDeviceClient>>> NetworkManagerWiFi::WiFiManagerClientCopyDevices(
    const std::shared_ptr<WiFiManagerClient>& manager) {
  if (!manager) return std::nullopt;
  return std::vector{device_};
}

std::vector<std::shared_ptr<WiFiNetwork>> NetworkManagerWiFi::WiFiManagerClientCopyNetworks(
    const std::shared_ptr<WiFiManagerClient>& manager) {
  if (!manager) return {};
  return networks_;
}

std::shared_ptr<WiFiNetwork> NetworkManagerWiFi::WiFiDeviceClientCopyCurrentNetwork(
    const std::shared_ptr<WiFiDeviceClient>& client) {
  return client ? joined_ : nullptr;
}

std::string NetworkManagerWiFi::WiFiNetworkGetSSID(const std::shared_ptr<WiFiNetwork>& network) {
  const auto own = std::dynamic_pointer_cast<Network>(network);
  return own ? own->known.ssid : std::string();
}

Dictionary NetworkManagerWiFi::WiFiNetworkCopyRecord(const std::shared_ptr<WiFiNetwork>& network) {
  const auto own = std::dynamic_pointer_cast<Network>(network);
  if (!own) return {};
  Dictionary record{{"SSID_STR", own->known.ssid}};
  if (own->known.lastAutoJoined) record.append("lastAutoJoined", *own->known.lastAutoJoined);
  if (own->known.lastJoined) record.append("lastJoined", *own->known.lastJoined);
  return record;
}

}  // namespace hushmode::devices
