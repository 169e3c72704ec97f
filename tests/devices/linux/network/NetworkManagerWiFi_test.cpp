// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/network/NetworkManagerWiFi.h"

#include "tests/devices/linux/network/MockedNetworkManager.h"
#include "tests/support/ServiceReports.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using platform::Date;
using Texts = std::vector<std::string>;
using namespace std::chrono_literals;
using namespace std::string_literals;

class NetworkManagerWiFiTest : public ::testing::Test {
 protected:
  void begin(std::chrono::milliseconds limit = BusClient::answerLimit) {
    wiFi.emplace(
        connection, reports.services, [this] { ++changes; }, limit);
  }
  bool untilReported(std::size_t count) {
    return runUntil([&] { return reports.lines.size() >= count; });
  }
  bool untilJoined(const std::optional<std::string>& ssid) {
    return runUntil([&] { return joined() == ssid; });
  }
  Texts known() {
    Texts names;
    for (const auto& network : networks()) names.push_back(wiFi->WiFiNetworkGetSSID(network));
    return names;
  }
  std::vector<std::shared_ptr<platform::WiFiNetwork>> networks() {
    return wiFi->WiFiManagerClientCopyNetworks(wiFi->WiFiManagerClientCreate(0));
  }
  std::optional<std::string> joined() {
    const auto devices = wiFi->WiFiManagerClientCopyDevices(wiFi->WiFiManagerClientCreate(0));
    const auto network = wiFi->WiFiDeviceClientCopyCurrentNetwork(devices.value().front());
    return network ? std::optional(wiFi->WiFiNetworkGetSSID(network)) : std::nullopt;
  }
  std::optional<Date> dateOf(std::size_t index, std::string_view key) {
    const platform::Dictionary record = wiFi->WiFiNetworkCopyRecord(networks().at(index));
    const platform::Value* date = record.find(key);
    return date ? std::optional(*date->as<Date>()) : std::nullopt;
  }

  /// A call on the way that the reader's calls take, and its answer behind theirs.
  void roundTrip() {
    bool isAnswered = false;
    connection->call(
        MockedNetworkManager::root, MockedNetworkManager::manager, "state", {},
        [&](const Glib::RefPtr<Gio::AsyncResult>& result) {
          connection->call_finish(result);
          isAnswered = true;
        },
        MockedNetworkManager::manager);
    ASSERT_TRUE(runUntil([&] { return isAnswered; }));
  }

  MockedNetworkManager mock;
  Glib::RefPtr<Gio::DBus::Connection> connection = connectTo("system");
  ServiceReports reports;
  int changes = 0;
  std::optional<NetworkManagerWiFi> wiFi;
};

TEST_F(NetworkManagerWiFiTest, ReadsWhatIsThereAtTheStart) {
  const std::string home = mock.add({"Home", 1'700'000'000});
  mock.add({"Caf\xE9", 1'600'000'000, false});
  mock.activate(home);
  begin();
  EXPECT_FALSE(wiFi->isRead());
  ASSERT_TRUE(untilReported(1));
  EXPECT_TRUE(wiFi->isRead());
  EXPECT_EQ(reports.lines, Texts{"networks: there, NetworkManager"});
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(known(), (Texts{"Home", "Caf\\xE9"}));
  EXPECT_EQ(joined(), "Home");
  EXPECT_EQ(dateOf(0, "lastJoined"), Date(1'700'000'000));
  EXPECT_EQ(dateOf(0, "lastAutoJoined"), Date(1'700'000'000)) << "no word of autoconnect means yes";
  EXPECT_EQ(dateOf(1, "lastJoined"), Date(1'600'000'000));
  EXPECT_EQ(dateOf(1, "lastAutoJoined"), std::nullopt) << "never joined by itself";
}

TEST_F(NetworkManagerWiFiTest, HasJoinedANetworkWhileItsConnectionIsActivated) {
  const std::string home = mock.add({"Home"});
  begin();
  ASSERT_TRUE(untilReported(1));
  const std::string active = mock.activate(home, 1);
  mock.add({"seen after the activation began"});
  ASSERT_TRUE(runUntil([&] { return known().size() == 2; }));
  EXPECT_EQ(joined(), std::nullopt);
  mock.setState(active, 2);
  EXPECT_TRUE(untilJoined("Home"));
  mock.setState(active, 3);
  EXPECT_TRUE(untilJoined(std::nullopt));
}

TEST_F(NetworkManagerWiFiTest, TakesNeitherCablesNorItsOwnHotspotForANetwork) {
  const std::string hotspot = mock.add({.ssid = "My phone", .mode = "ap"});
  const std::string cable = mock.add({.ssid = "", .type = "802-3-ethernet"});
  mock.add({"Home"});
  mock.activate(hotspot);
  mock.activate(cable);
  begin();
  ASSERT_TRUE(untilReported(1));
  EXPECT_EQ(known(), Texts{"Home"});
  EXPECT_EQ(joined(), std::nullopt);
}

TEST_F(NetworkManagerWiFiTest, HasOneNetworkForSeveralConnectionsToIt) {
  mock.add({"Home", 1'600'000'000});
  mock.add({"Office", 1'500'000'000});
  mock.add({"Home", 1'700'000'000, false});
  begin();
  ASSERT_TRUE(untilReported(1));
  EXPECT_EQ(known(), (Texts{"Home", "Office"}));
  EXPECT_EQ(dateOf(0, "lastJoined"), Date(1'700'000'000));
  EXPECT_EQ(dateOf(0, "lastAutoJoined"), Date(1'600'000'000));
}

TEST_F(NetworkManagerWiFiTest, PassesOverWhatCannotBeANetwork) {
  mock.add({std::string(33, 'x')});
  mock.add({""});
  const std::string wrong = mock.add({"of the wrong type"});
  mock.service().answer(wrong, "org.freedesktop.NetworkManager.Settings.Connection", "GetSettings", "", "a{sa{sv}}",
                        "ret = {'connection': {'type': dbus.UInt32(7)}, '802-11-wireless': {'ssid': 'text'}}");
  const std::string gone = mock.add({"gone"});
  mock.service().answer(gone, "org.freedesktop.NetworkManager.Settings.Connection", "GetSettings", "", "a{sa{sv}}",
                        "raise dbus.exceptions.DBusException('no', name='org.freedesktop.NetworkManager.Error.Gone')");
  mock.add({"Far future", 18'446'744'073'709'551'615U});
  mock.add({std::string(32, 'y')});
  begin();
  ASSERT_TRUE(untilReported(1));
  EXPECT_EQ(known(), (Texts{"Far future", std::string(32, 'y')}));
  EXPECT_EQ(dateOf(0, "lastJoined"), std::nullopt);
}

TEST_F(NetworkManagerWiFiTest, ReadsABoundedNumberOfConnections) {
  const std::string home = mock.add({"Home"});
  mock.service().answer(MockedNetworkManager::settings, "org.freedesktop.NetworkManager.Settings", "ListConnections",
                        "", "ao", "ret = ['" + home + "'] * 5000");
  begin();
  ASSERT_TRUE(untilReported(1));
  EXPECT_EQ(reports.lines, Texts{"networks: there, NetworkManager"});
  EXPECT_EQ(known(), Texts{"Home"});
  EXPECT_EQ(mock.service().callsOf(home, "GetSettings"), WiFiSurvey::mostConnections);
}

TEST_F(NetworkManagerWiFiTest, TellsABurstOfChangesOnce) {
  begin();
  ASSERT_TRUE(untilReported(1));
  for (int i = 0; i < 20; ++i) mock.add({"Network " + std::to_string(i)});
  ASSERT_TRUE(runUntil([&] { return known().size() == 20; }));
  EXPECT_EQ(changes, 1);
}

TEST_F(NetworkManagerWiFiTest, TellsNothingWhenNothingChanged) {
  const std::string home = mock.add({"Home", 1'700'000'000});
  begin();
  ASSERT_TRUE(untilReported(1));
  mock.setTimestamp(home, 1'700'000'000);
  ASSERT_TRUE(runUntil([&] { return mock.service().callsOf(home, "GetSettings") == 2; }));
  roundTrip();  // The settings are read,
  roundTrip();  // and what is active.
  mock.add({"Office"});
  ASSERT_TRUE(runUntil([&] { return known().size() == 2; }));
  EXPECT_EQ(changes, 2) << "the first look, and one for the new network";
}

TEST_F(NetworkManagerWiFiTest, KeepsWhatItKnewUntilNetworkManagerReturns) {
  mock.activate(mock.add({"Home"}));
  begin();
  ASSERT_TRUE(untilReported(1));
  mock.service().kill();
  ASSERT_TRUE(untilReported(2));
  EXPECT_EQ(joined(), "Home");
  EXPECT_EQ(known(), Texts{"Home"});
  EXPECT_EQ(changes, 1);
  mock.service().start();
  ASSERT_TRUE(untilReported(3));
  EXPECT_EQ(joined(), std::nullopt);
  EXPECT_TRUE(known().empty());
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(reports.lines, (Texts{"networks: there, NetworkManager", "networks: away, NetworkManager is not running",
                                  "networks: there, NetworkManager"}));
}

TEST_F(NetworkManagerWiFiTest, LeavesNoNetworkBecauseNetworkManagerIsStartingUp) {
  const std::string home = mock.add({"Home"});
  const std::string active = mock.activate(home);
  begin();
  ASSERT_TRUE(untilReported(1));
  mock.setStartingUp(true);
  mock.deactivate(active);
  mock.add({"seen after all that"});
  ASSERT_TRUE(runUntil([&] { return known().size() == 2; }));
  EXPECT_EQ(joined(), "Home");
  mock.setStartingUp(false);
  EXPECT_TRUE(untilJoined(std::nullopt));
}

TEST_F(NetworkManagerWiFiTest, AsksAgainWhenThereWasNoAnswer) {
  mock.activate(mock.add({"Home"}));
  begin(200ms);
  ASSERT_TRUE(untilReported(1));
  mock.add({"Office"});
  mock.service().hang();
  ASSERT_TRUE(untilReported(2));
  EXPECT_EQ(reports.lines.back().rfind("networks: away, NetworkManager does not answer", 0), 0U)
      << reports.lines.back();
  EXPECT_EQ(joined(), "Home");
  mock.service().goOn();
  ASSERT_TRUE(untilReported(3));
  EXPECT_EQ(known(), (Texts{"Home", "Office"}));
}

TEST_F(NetworkManagerWiFiTest, KeepsWhatItKnewWhenTheAnswerIsNonsense) {
  mock.activate(mock.add({"Home"}));
  begin(200ms);
  ASSERT_TRUE(untilReported(1));
  mock.service().answer(MockedNetworkManager::settings, "org.freedesktop.NetworkManager.Settings", "ListConnections",
                        "", "s", "ret = 'nonsense'");
  mock.setStartingUp(false);
  ASSERT_TRUE(untilReported(2));
  EXPECT_EQ(reports.lines.back().rfind("networks: away, NetworkManager does not answer", 0), 0U)
      << reports.lines.back();
  EXPECT_EQ(joined(), "Home");
  EXPECT_EQ(known(), Texts{"Home"});
  mock.service().answer(MockedNetworkManager::settings, "org.freedesktop.NetworkManager.Settings", "ListConnections",
                        "", "ao", "ret = self.Get('org.freedesktop.NetworkManager.Settings', 'Connections')");
  ASSERT_TRUE(untilReported(3));
  EXPECT_EQ(joined(), "Home");
  EXPECT_EQ(reports.lines.size(), 3U);
}

TEST_F(NetworkManagerWiFiTest, KeepsWhatItKnewWhenOneAnswerOfManyIsMissing) {
  const std::string home = mock.add({"Home"});
  mock.activate(home);
  begin(200ms);
  ASSERT_TRUE(untilReported(1));
  mock.service().answer(home, "org.freedesktop.NetworkManager.Settings.Connection", "GetSettings", "", "s",
                        "ret = 'nonsense'");
  mock.add({"Office"});
  ASSERT_TRUE(untilReported(2));
  EXPECT_EQ(joined(), "Home");
  EXPECT_EQ(known(), Texts{"Home"});
}

TEST_F(NetworkManagerWiFiTest, HasNoNetworksWithoutABus) {
  wiFi.emplace(Glib::RefPtr<Gio::DBus::Connection>(), reports.services, [this] { ++changes; });
  EXPECT_EQ(reports.lines, Texts{"networks: away, NetworkManager is not running"});
  EXPECT_TRUE(known().empty());
  EXPECT_EQ(joined(), std::nullopt);
}

TEST_F(NetworkManagerWiFiTest, CanEndInTheMiddleOfALook) {
  mock.add({"Home"});
  for (int turns = 0; turns < 12; ++turns) {
    begin();
    for (int turn = 0; turn < turns && !wiFi->isRead(); ++turn) Glib::MainContext::get_default()->iteration(true);
    wiFi.reset();
  }
  begin();
  EXPECT_TRUE(runUntil([&] { return wiFi->isRead(); }));
}

TEST_F(NetworkManagerWiFiTest, MayEndInsideItsOwnCallback) {
  mock.add({"Home"});
  bool wasCalled = false;
  std::unique_ptr<NetworkManagerWiFi> own;
  own = std::make_unique<NetworkManagerWiFi>(connectTo("system"), reports.services, [&] {
    wasCalled = true;
    own.reset();
  });
  EXPECT_TRUE(runUntil([&] { return wasCalled; }));
  EXPECT_EQ(own, nullptr);
}

}  // namespace
}  // namespace hushmode::devices
