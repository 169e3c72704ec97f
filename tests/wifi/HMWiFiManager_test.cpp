// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The known networks, the joined one and the last one, as entries.

#include "wifi/HMWiFiManager.h"

#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

using platform::Dictionary;

class WiFiManager : public CoreTest {
 protected:
  static HMWiFiManager& manager() { return *HMWiFiManager::sharedManager(); }
  static Texts namesOf(const std::vector<Dictionary>& networks) {
    Texts names;
    for (const Dictionary& each : networks) names.push_back(networkName(each).value_or("none"));
    return names;
  }
  static std::optional<std::string> lastName() {
    const auto last = manager().lastConnectedNetwork();
    return last ? networkName(*last) : std::nullopt;
  }
};

TEST_F(WiFiManager, IsOneAndMadeOnFirstUse) {
  const auto first = HMWiFiManager::sharedManager();
  EXPECT_EQ(HMWiFiManager::sharedManager(), first);
  EXPECT_NE(first->manager(), nullptr);
  EXPECT_NE(first->client(), nullptr);
  EXPECT_FALSE(first->isLastConnectedToNetwork());
  restartProcess();
  EXPECT_NE(HMWiFiManager::sharedManager(), first);
}

TEST_F(WiFiManager, OfOnesOwnIsInitialisedAndApart) {
  phone.wifi().join("Home");
  const auto own = HMWiFiManager::init();
  EXPECT_NE(own->client(), nullptr);
  own->currentNetWork();
  EXPECT_TRUE(own->isLastConnectedToNetwork());
  EXPECT_FALSE(manager().isLastConnectedToNetwork());
}

TEST_F(WiFiManager, ListsTheKnownNetworksInThePlatformsOrderWithTheirDatesOnly) {
  phone.wifi().remember({"Office", today(9), today(8)});
  phone.wifi().remember({"Cafe", std::nullopt, std::nullopt});
  phone.wifi().remember({"Home", std::nullopt, today(7)});
  const auto known = manager().knownNetworks();
  ASSERT_EQ(namesOf(known), (Texts{"Office", "Cafe", "Home"}));
  EXPECT_EQ(known[0], (Dictionary{{"SSID", "Office"},
                                  {"record", Dictionary{{"lastAutoJoined", today(8)}, {"lastJoined", today(9)}}}}));
  EXPECT_EQ(known[1], (Dictionary{{"SSID", "Cafe"}, {"record", Dictionary{}}}));
  EXPECT_EQ(known[2], (Dictionary{{"SSID", "Home"}, {"record", Dictionary{{"lastAutoJoined", today(7)}}}}));
}

TEST_F(WiFiManager, ListsNothingWhenNoNetworkIsKnown) { EXPECT_EQ(manager().knownNetworks().size(), 0U); }

TEST_F(WiFiManager, GivesTheJoinedNetworkAndNotesThatThereWasOne) {
  phone.wifi().join("Home");
  EXPECT_FALSE(manager().isLastConnectedToNetwork());
  EXPECT_EQ(manager().currentNetWork(),
            (Dictionary{{"SSID", "Home"}, {"record", Dictionary{{"lastJoined", today(10)}}}}));
  EXPECT_TRUE(manager().isLastConnectedToNetwork());
  phone.wifi().leave();
  EXPECT_TRUE(manager().isLastConnectedToNetwork()) << "nobody asked since";
  EXPECT_EQ(manager().currentNetWork(), Dictionary());
  EXPECT_FALSE(manager().isLastConnectedToNetwork());
}

TEST_F(WiFiManager, GivesTheNetworkWithTheLatestDateAsTheLastWhichNeedNotBeTheJoinedOne) {
  phone.wifi().remember({"Office", today(18), std::nullopt});
  phone.wifi().join("Home");
  EXPECT_EQ(networkName(manager().currentNetWork()), "Home");
  EXPECT_EQ(lastName(), "Office");
}

TEST_F(WiFiManager, GivesTheFirstKnownOfEqualDatesAsTheLast) {
  phone.wifi().remember({"B", today(9), std::nullopt});
  phone.wifi().remember({"A", std::nullopt, today(9)});
  manager().setLastConnectedToNetwork(true);
  EXPECT_EQ(lastName(), "B");
}

TEST_F(WiFiManager, KeepsNoNameOfItsOwnForTheLastNetwork) {
  phone.wifi().join("Home");
  manager().currentNetWork();
  phone.wifi().leave();
  runFor(60);
  phone.wifi().join("Office");
  EXPECT_EQ(lastName(), "Office") << "the newest date counts, and not what was seen at the last check";
}

TEST_F(WiFiManager, SaysSoAndGivesAnEmptyEntryWhenItWasNotConnected) {
  phone.wifi().remember({"Home", today(9), std::nullopt});
  manager();
  clearRecord();
  EXPECT_EQ(manager().lastConnectedNetwork(), Dictionary()) << "before the first check";
  EXPECT_EQ(logged(), Texts{"information 102 lastConnectedNetwork Seems last time its not connected to a network.."});
  phone.wifi().join("Home");
  manager().currentNetWork();
  phone.wifi().leave();
  manager().currentNetWork();
  EXPECT_EQ(manager().lastConnectedNetwork(), Dictionary());
  EXPECT_EQ(logged().size(), 2U);
}

TEST_F(WiFiManager, LogsNothingElse) {
  phone.wifi().join("Home");
  clearRecord();
  manager().currentNetWork();
  manager().lastConnectedNetwork();
  manager().knownNetworks();
  manager().netWorkBySSID("Home");
  EXPECT_EQ(texts(), Texts());
}

TEST_F(WiFiManager, GivesNoneAndNoEmptyEntryWhenItWasConnectedAndKnowsNoNetwork) {
  phone.wifi().join("Home");
  manager().currentNetWork();
  phone.wifi().forget("Home");
  EXPECT_EQ(manager().lastConnectedNetwork(), std::nullopt);
}

TEST_F(WiFiManager, FindsANetworkByItsExactName) {
  phone.wifi().remember({"Home", today(9), std::nullopt});
  phone.wifi().remember({"home office", today(9), std::nullopt});
  EXPECT_EQ(networkName(manager().netWorkBySSID("Home")), "Home");
  for (const char* name : {"home", "Home ", "Hom", ""}) EXPECT_EQ(manager().netWorkBySSID(name), Dictionary()) << name;
}

TEST_F(WiFiManager, AnswersNothingOnAPhoneWithoutWiFi) {
  phone.wifi().setHasDevice(false);
  EXPECT_EQ(manager().client(), nullptr);
  EXPECT_EQ(manager().currentNetWork(), Dictionary());
  EXPECT_FALSE(manager().isLastConnectedToNetwork());
}

TEST_F(WiFiManager, NeverChangesANetwork) {
  phone.wifi().join("Home");
  runFor(60);
  manager().currentNetWork();
  manager().lastConnectedNetwork();
  EXPECT_EQ(phone.wifi().joined(), "Home");
  EXPECT_EQ(phone.wifi().known().size(), 1U);
  EXPECT_EQ(phone.wifi().known()[0].lastJoined, today(10));
}

}  // namespace
}  // namespace hushmode
