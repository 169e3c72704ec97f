// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/base/BusClient.h"

#include "devices/linux/base/RemoteService.h"
#include "tests/support/MockedService.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

constexpr const char* name = "org.example.Service";
const BusClient::Object object{"/org/example/Service", "org.example.Service"};
const BusClient::Object silent{"/org/example/Nowhere", "org.example.Service"};

class BusClientTest : public ::testing::Test {
 protected:
  BusClientTest() {
    mock.answer(object.path, name, "Echo", "s", "s", "ret = args[0]");
    bool isFound = false;
    const NameWatch watch(
        connection, name,
        [&](const std::string& owner) {
          client.emplace(connection, owner, 300ms);
          isFound = true;
        },
        [] {});
    runUntil([&] { return isFound; });
  }

  void echo(const std::string& text, const std::string& replyType = "(s)") {
    client->call(
        object, "Echo", argumentsOf(Glib::ustring(text)), replyType,
        [this](const BusClient::Reply& reply) {
          events.push_back("reply " + std::string(valueAt<Glib::ustring>(reply.values, 0).value_or("none")));
        },
        [this](const BusClient::Failure& failure) { note(failure); });
  }
  void note(const BusClient::Failure& failure) {
    events.push_back((failure.refused ? "refused: " : "no answer: ") + failure.reason);
  }
  bool untilEvents(std::size_t count) {
    return runUntil([&] { return events.size() >= count; });
  }
  void tell(const std::string& signal, const std::string& type, const std::string& value,
            const std::string& path = "/org/example/Service") {
    mock.control(object.path, "EmitSignalDetailed",
                 "('" + std::string(name) + "', '" + signal + "', '" + type + "', [<" + value + ">], {'path': <'" +
                     path + "'>})");
  }

  MockedService mock{"session", name, {name, object.path, object.interface}};
  Glib::RefPtr<Gio::DBus::Connection> connection = connectTo("session");
  Texts events;
  std::optional<BusClient> client;
};

TEST_F(BusClientTest, GetsAReply) {
  echo("hello");
  EXPECT_TRUE(events.empty()) << "nothing before the main loop runs";
  ASSERT_TRUE(untilEvents(1));
  EXPECT_EQ(events, Texts{"reply hello"});
}

TEST_F(BusClientTest, TellsARefusalFromNoAnswer) {
  mock.answer(object.path, name, "Echo", "s", "s",
              "raise dbus.exceptions.DBusException('not now', name='org.example.NotNow')");
  echo("hello");
  ASSERT_TRUE(untilEvents(1));
  mock.hang();
  echo("hello");
  ASSERT_TRUE(untilEvents(2));
  mock.goOn();
  EXPECT_EQ(events, (Texts{"refused: not now", "no answer: Timeout was reached"}));
}

TEST_F(BusClientTest, TakesAReplyOfAnotherTypeForNoAnswer) {
  echo("hello", "(u)");
  ASSERT_TRUE(untilEvents(1));
  EXPECT_EQ(events.front().rfind("no answer: ", 0), 0U) << events.front();
}

TEST_F(BusClientTest, TakesADeathForNoAnswer) {
  mock.hang();
  echo("hello");
  mock.kill();
  ASSERT_TRUE(untilEvents(1));
  EXPECT_EQ(events.front().rfind("no answer: ", 0), 0U) << events.front();
  echo("again");
  ASSERT_TRUE(untilEvents(2));
  EXPECT_EQ(events.back().rfind("no answer: ", 0), 0U) << events.back();
}

TEST_F(BusClientTest, HearsSignalsOfItsOwnerOfTheRightType) {
  client->hear(object, "Changed", "(s)", [this](const std::string& path, const Glib::VariantContainerBase& values) {
    events.push_back(path + " " + std::string(valueAt<Glib::ustring>(values, 0).value()));
  });
  tell("Changed", "s", "'elsewhere'", silent.path);
  tell("Changed", "u", "uint32 1");
  tell("Other", "s", "'other'");
  connectTo("session")->emit_signal(object.path, name, "Changed", "", argumentsOf(Glib::ustring("from a stranger")));
  tell("Changed", "s", "'one'");
  ASSERT_TRUE(untilEvents(1));
  EXPECT_EQ(events, Texts{"/org/example/Service one"});
}

TEST_F(BusClientTest, HearsSignalsOfEveryObject) {
  client->hear({"", name}, "Changed", "(s)", [this](const std::string& path, const auto&) { events.push_back(path); });
  tell("Changed", "s", "'one'");
  tell("Changed", "s", "'two'", silent.path);
  ASSERT_TRUE(untilEvents(2));
  EXPECT_EQ(events, (Texts{object.path, silent.path}));
}

TEST_F(BusClientTest, FollowsProperties) {
  mock.control(object.path, "AddProperties", "('" + std::string(name) + "', {'Level': <int32 1>, 'Name': <'a'>})");
  client->follow(object, [this](const Properties& properties) {
    std::string text;
    if (const auto level = valueOf<std::int32_t>(properties, "Level")) text += "level " + std::to_string(*level);
    if (const auto label = valueOf<Glib::ustring>(properties, "Name")) text += " name " + std::string(*label);
    events.push_back(text);
  });
  ASSERT_TRUE(untilEvents(1));
  mock.control(object.path, "UpdateProperties", "('" + std::string(name) + "', {'Level': <int32 2>})");
  ASSERT_TRUE(untilEvents(2));
  // A change without its value: they are read again.
  mock.control(object.path, "EmitSignal",
               "('org.freedesktop.DBus.Properties', 'PropertiesChanged', 'sa{sv}as', [<'" + std::string(name) +
                   "'>, <@a{sv} {}>, <['Name']>])");
  ASSERT_TRUE(untilEvents(3));
  EXPECT_EQ(events, (Texts{"level 1 name a", "level 2", "level 2 name a"}));
}

TEST_F(BusClientTest, SaysWhenPropertiesCannotBeRead) {
  client->follow(
      silent, [this](const Properties&) { events.push_back("properties"); },
      [this](const BusClient::Failure& failure) { events.push_back(failure.refused ? "refused" : "no answer"); });
  ASSERT_TRUE(untilEvents(1));
  EXPECT_EQ(events, Texts{"refused"});
}

TEST_F(BusClientTest, CallsNothingBackOnceItIsGone) {
  client->hear(object, "Changed", "(s)", [this](const auto&, const auto&) { events.push_back("signal"); });
  const auto other = client->another();
  echo("hello");
  tell("Changed", "s", "'one'");
  client.reset();
  bool isAnswered = false;
  other->call(object, "Echo", argumentsOf(Glib::ustring("later")), "(s)", [&](const auto&) { isAnswered = true; });
  ASSERT_TRUE(runUntil([&] { return isAnswered; }));
  EXPECT_TRUE(events.empty()) << events.front();
}

TEST(Variants, ReadOnlyWhatIsThereAndOfItsType) {
  const Properties properties{{"number", Glib::Variant<std::int32_t>::create(7)}, {"nothing", Glib::VariantBase()}};
  EXPECT_EQ(valueOf<std::int32_t>(properties, "number"), 7);
  EXPECT_EQ(valueOf<std::uint32_t>(properties, "number"), std::nullopt);
  EXPECT_EQ(valueOf<std::int32_t>(properties, "nothing"), std::nullopt);
  EXPECT_EQ(valueOf<std::int32_t>(properties, "absent"), std::nullopt);
  const auto tuple = argumentsOf(Glib::ustring("a"), true);
  EXPECT_EQ(valueAt<bool>(tuple, 1), true);
  EXPECT_EQ(valueAt<bool>(tuple, 0), std::nullopt);
  EXPECT_EQ(valueAt<bool>(tuple, 2), std::nullopt);
  EXPECT_EQ(valueAt<bool>(Glib::VariantContainerBase(), 0), std::nullopt);
}

}  // namespace
}  // namespace hushmode::devices
