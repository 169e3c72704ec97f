// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/support/PhoneFixture.h"

#include <memory>

namespace hushmode {
namespace {

using platform::Date;
using Texts = std::vector<std::string>;

class WiFiTest : public PhoneFixture {
 protected:
  platform::MobileWiFi& service() { return phone.mobileWiFi(); }

  Texts knownNetworks() {
    Texts names;
    for (const auto& network : service().WiFiManagerClientCopyNetworks(manager)) {
      names.push_back(service().WiFiNetworkGetSSID(network));
    }
    return names;
  }
  platform::Dictionary recordOf(std::size_t index) {
    return service().WiFiNetworkCopyRecord(service().WiFiManagerClientCopyNetworks(manager).at(index));
  }
  std::optional<std::string> current() {
    const auto devices = service().WiFiManagerClientCopyDevices(manager);
    if (!devices) return std::nullopt;
    const auto network = service().WiFiDeviceClientCopyCurrentNetwork(devices->at(0));
    return network ? std::optional(service().WiFiNetworkGetSSID(network)) : std::nullopt;
  }

  std::shared_ptr<platform::WiFiManagerClient> manager = service().WiFiManagerClientCreate(0);
};

TEST_F(WiFiTest, RemembersNetworksInTheOrderInWhichTheyBecameKnown) {
  phone.wifi().remember({"Home", Date(1), std::nullopt});
  phone.wifi().remember({"Office", std::nullopt, Date(2)});
  phone.wifi().remember({"Home", Date(3), Date(4)});
  EXPECT_EQ(knownNetworks(), (Texts{"Home", "Office"}));
  EXPECT_EQ(*recordOf(0).find("lastJoined"), platform::Value(Date(3)));
  EXPECT_EQ(*recordOf(0).find("lastAutoJoined"), platform::Value(Date(4)));
  EXPECT_EQ(recordOf(1).find("lastJoined"), nullptr);
  EXPECT_GT(recordOf(1).size(), 1U) << "other fields than the dates";
  EXPECT_EQ(current(), std::nullopt);
}

TEST_F(WiFiTest, StampsTheMannerOfEachJoin) {
  phone.wifi().join("Home");
  runFor(60);
  phone.wifi().join("Cafe", devices::SimulatedWiFi::Join::Automatic);
  EXPECT_EQ(knownNetworks(), (Texts{"Home", "Cafe"}));
  EXPECT_EQ(*recordOf(0).find("lastJoined"), platform::Value(at("08:00")));
  EXPECT_EQ(recordOf(0).find("lastAutoJoined"), nullptr);
  EXPECT_EQ(*recordOf(1).find("lastAutoJoined"), platform::Value(at("08:01")));
  EXPECT_EQ(current(), "Cafe");
  EXPECT_EQ(texts(), (Texts{"phone network joined Home", "phone network joined Cafe"}));
}

TEST_F(WiFiTest, LeavesAndForgets) {
  phone.wifi().join("Home");
  phone.wifi().leave();
  phone.wifi().leave();
  EXPECT_EQ(current(), std::nullopt);
  phone.wifi().join("Home");
  phone.wifi().forget("Home");
  phone.wifi().forget("Home");
  EXPECT_EQ(current(), std::nullopt);
  EXPECT_EQ(knownNetworks(), Texts());
  EXPECT_EQ(texts(), (Texts{"phone network joined Home", "phone network left Home", "phone network joined Home",
                            "phone network forgotten Home"}));
}

TEST_F(WiFiTest, CanHaveNoInterface) {
  phone.wifi().join("Home");
  phone.wifi().setHasDevice(false);
  EXPECT_EQ(service().WiFiManagerClientCopyDevices(manager), std::nullopt);
  EXPECT_EQ(phone.wifi().joined(), std::nullopt);
  EXPECT_EQ(knownNetworks(), Texts{"Home"});
  EXPECT_THROW(phone.wifi().join("Home"), std::logic_error);
  phone.wifi().setHasDevice(true);
  EXPECT_EQ(current(), std::nullopt);
}

TEST_F(WiFiTest, AnswersNothingToNoClient) {
  phone.wifi().join("Home");
  EXPECT_EQ(service().WiFiManagerClientCopyDevices(nullptr), std::nullopt);
  EXPECT_TRUE(service().WiFiManagerClientCopyNetworks(nullptr).empty());
  EXPECT_EQ(service().WiFiDeviceClientCopyCurrentNetwork(nullptr), nullptr);
  EXPECT_EQ(service().WiFiNetworkGetSSID(nullptr), "");
  EXPECT_TRUE(service().WiFiNetworkCopyRecord(nullptr).empty());
}

}  // namespace
}  // namespace hushmode
