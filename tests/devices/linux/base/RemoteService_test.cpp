// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/RemoteService.h"

#include "tests/support/MockedService.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

constexpr const char* name = "org.example.Service";

class RemoteServiceTest : public ::testing::Test {
 protected:
  void begin() {
    service.emplace(
        connectTo("session"), name,
        [this](BusClient& client) {
          events.push_back("appeared");
          owners.push_back(client.owner());
        },
        [this] { events.push_back("vanished"); }, 100ms);
  }
  bool untilEvents(const Texts& expected) {
    runUntil([&] { return events.size() >= expected.size(); });
    return events == expected;
  }

  Texts events, owners;
  std::optional<RemoteService> service;
};

TEST_F(RemoteServiceTest, HasAClientWhileTheNameHasAnOwner) {
  begin();
  ASSERT_TRUE(untilEvents({"vanished"}));
  EXPECT_EQ(service->client(), nullptr);
  MockedService mock("session", name, {name, "/org/example/Service", name});
  ASSERT_TRUE(untilEvents({"vanished", "appeared"}));
  ASSERT_NE(service->client(), nullptr);
  EXPECT_EQ(service->client()->owner(), owners.back());
  mock.kill();
  ASSERT_TRUE(untilEvents({"vanished", "appeared", "vanished"}));
  EXPECT_EQ(service->client(), nullptr);
  mock.start();
  ASSERT_TRUE(untilEvents({"vanished", "appeared", "vanished", "appeared"}));
  EXPECT_NE(owners.front(), owners.back());
}

TEST_F(RemoteServiceTest, StartsOverOnceForWhateverFailedMeanwhile) {
  const MockedService mock("session", name, {name, "/org/example/Service", name});
  begin();
  ASSERT_TRUE(untilEvents({"appeared"}));
  service->tryAgainLater();
  service->tryAgainLater();
  EXPECT_EQ(events.size(), 1U);
  ASSERT_TRUE(untilEvents({"appeared", "appeared"}));
  EXPECT_EQ(owners.front(), owners.back());
  service->tryAgainLater();
  EXPECT_TRUE(untilEvents({"appeared", "appeared", "appeared"}));
}

TEST_F(RemoteServiceTest, TriesAServiceThatWentNoMore) {
  MockedService mock("session", name, {name, "/org/example/Service", name});
  begin();
  ASSERT_TRUE(untilEvents({"appeared"}));
  service->tryAgainLater();
  mock.kill();
  ASSERT_TRUE(untilEvents({"appeared", "vanished"}));
  service->tryAgainLater();
  mock.start();
  EXPECT_TRUE(untilEvents({"appeared", "vanished", "appeared"}));
}

TEST_F(RemoteServiceTest, IsAwayWithoutABus) {
  service.emplace(
      Glib::RefPtr<Gio::DBus::Connection>(), name, [this](BusClient&) { events.push_back("appeared"); },
      [this] { events.push_back("vanished"); });
  EXPECT_EQ(events, Texts{"vanished"});
  EXPECT_EQ(service->client(), nullptr);
  service->tryAgainLater();
}

}  // namespace
}  // namespace hushmode::devices
