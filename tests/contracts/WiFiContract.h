// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/MobileWiFi.h"
#include "platform/Process.h"
#include "tests/support/PartlyReal.h"
#include "wifi/HMWiFiManager.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::contracts {

/// A phone, as far as its WiFi is concerned, and what its user does with it. All of it has settled on return.
class WiFiWorld {
 public:
  virtual ~WiFiWorld() = default;
  virtual platform::MobileWiFi& wiFi() = 0;
  /// The phone remembers a network, though it was never joined.
  virtual void remember(const std::string& ssid) = 0;
  /// The phone joins a known network by itself, at that instant, leaving another if need be.
  virtual void join(const std::string& ssid, platform::Date date) = 0;
  virtual void leave() = 0;
  virtual void forget(const std::string& ssid) = 0;
};

/// What the WiFi of every phone does.
template <class World>
class WiFiContract : public ::testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  platform::MobileWiFi& wiFi() { return world.wiFi(); }
  Texts known() {
    Texts names;
    for (const auto& network : wiFi().WiFiManagerClientCopyNetworks(manager)) {
      names.push_back(wiFi().WiFiNetworkGetSSID(network));
    }
    return names;
  }
  std::optional<std::string> joined() {
    const auto devices = wiFi().WiFiManagerClientCopyDevices(manager);
    if (!devices || devices->empty()) return "no interface";
    const auto network = wiFi().WiFiDeviceClientCopyCurrentNetwork(devices->front());
    return network ? std::optional(wiFi().WiFiNetworkGetSSID(network)) : std::nullopt;
  }
  std::optional<platform::Date> lastAutoJoined(std::size_t index) {
    const auto network = wiFi().WiFiManagerClientCopyNetworks(manager).at(index);
    const platform::Dictionary record = wiFi().WiFiNetworkCopyRecord(network);
    const platform::Value* date = record.find("lastAutoJoined");
    return date ? std::optional(*date->as<platform::Date>()) : std::nullopt;
  }

  World world;
  std::shared_ptr<platform::WiFiManagerClient> manager = wiFi().WiFiManagerClientCreate(0);
};
TYPED_TEST_SUITE_P(WiFiContract);

constexpr platform::Date eight(1'715'673'600), nine(1'715'677'200);

TYPED_TEST_P(WiFiContract, KnowsAndHasJoinedNothingAtFirst) {
  EXPECT_TRUE(this->known().empty());
  EXPECT_EQ(this->joined(), std::nullopt);
}

TYPED_TEST_P(WiFiContract, KeepsNetworksInTheOrderInWhichTheyBecameKnown) {
  for (const char* ssid : {"Home", "B\xC3\xBCro", "Cafe"}) this->world.remember(ssid);
  EXPECT_EQ(this->known(), (std::vector<std::string>{"Home", "B\xC3\xBCro", "Cafe"}));
  EXPECT_EQ(this->lastAutoJoined(0), std::nullopt);
}

TYPED_TEST_P(WiFiContract, TellsTheJoinedNetworkAndWhenItWasJoined) {
  this->world.remember("Home");
  this->world.remember("Office");
  this->world.join("Office", eight);
  EXPECT_EQ(this->joined(), "Office");
  EXPECT_EQ(this->lastAutoJoined(0), std::nullopt);
  EXPECT_EQ(this->lastAutoJoined(1), eight);
}

TYPED_TEST_P(WiFiContract, StillKnowsANetworkThatItLeft) {
  this->world.remember("Home");
  this->world.join("Home", eight);
  this->world.leave();
  EXPECT_EQ(this->joined(), std::nullopt);
  EXPECT_EQ(this->known(), std::vector<std::string>{"Home"});
  EXPECT_EQ(this->lastAutoJoined(0), eight);
}

TYPED_TEST_P(WiFiContract, ChangesFromOneNetworkToAnother) {
  this->world.remember("Home");
  this->world.remember("Office");
  this->world.join("Home", eight);
  this->world.join("Office", nine);
  EXPECT_EQ(this->joined(), "Office");
  EXPECT_EQ(this->lastAutoJoined(0), eight);
  EXPECT_EQ(this->lastAutoJoined(1), nine);
}

TYPED_TEST_P(WiFiContract, LeavesANetworkThatItForgets) {
  this->world.remember("Home");
  this->world.remember("Office");
  this->world.join("Home", eight);
  this->world.forget("Home");
  EXPECT_EQ(this->joined(), std::nullopt);
  EXPECT_EQ(this->known(), std::vector<std::string>{"Office"});
}

TYPED_TEST_P(WiFiContract, AnswersNoneToNoClient) {
  this->world.remember("Home");
  this->world.join("Home", eight);
  EXPECT_EQ(this->wiFi().WiFiManagerClientCopyDevices(nullptr), std::nullopt);
  EXPECT_TRUE(this->wiFi().WiFiManagerClientCopyNetworks(nullptr).empty());
  EXPECT_EQ(this->wiFi().WiFiDeviceClientCopyCurrentNetwork(nullptr), nullptr);
  EXPECT_EQ(this->wiFi().WiFiNetworkGetSSID(nullptr), "");
  EXPECT_TRUE(this->wiFi().WiFiNetworkCopyRecord(nullptr).empty());
}

TYPED_TEST_P(WiFiContract, LetsTheLibraryTellTheNetworkThatWasJoinedLast) {
  devices::SimulatedPhone phone{eight};
  PartlyReal device(phone);
  device.ownWiFi = &this->wiFi();
  const platform::Process process(device);
  const auto manager = HMWiFiManager::sharedManager();
  for (const char* ssid : {"Home", "Office", "Cafe"}) this->world.remember(ssid);
  this->world.join("Home", nine);
  this->world.join("Office", eight);
  EXPECT_EQ(networkName(manager->currentNetWork()), "Office");
  EXPECT_EQ(networkName(manager->lastConnectedNetwork().value()), "Home") << "by the dates";
  EXPECT_EQ(networkName(manager->netWorkBySSID("Cafe")), "Cafe");
  this->world.leave();
  EXPECT_TRUE(manager->currentNetWork().empty());
}

REGISTER_TYPED_TEST_SUITE_P(WiFiContract, KnowsAndHasJoinedNothingAtFirst,
                            KeepsNetworksInTheOrderInWhichTheyBecameKnown, TellsTheJoinedNetworkAndWhenItWasJoined,
                            StillKnowsANetworkThatItLeft, ChangesFromOneNetworkToAnother, LeavesANetworkThatItForgets,
                            AnswersNoneToNoClient, LetsTheLibraryTellTheNetworkThatWasJoinedLast);

}  // namespace hushmode::contracts
