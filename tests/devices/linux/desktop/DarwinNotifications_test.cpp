// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/DarwinNotifications.h"

#include "devices/linux/base/Variants.h"
#include "tests/contracts/DarwinNotificationsContract.h"
#include "tests/devices/linux/desktop/DesktopTest.h"

#include <algorithm>
#include <optional>

namespace hushmode::contracts {

namespace {

/// Two processes on one bus, which knows already what they listen to.
class BusWorld {
 public:
  BusWorld() { devices::exchangeWith(bus_); }
  void observe(std::function<void(std::string_view)> handler) {
    observations_.push_back(center_.observe(std::move(handler)));
  }
  void post(std::string_view name) { EXPECT_TRUE(center_.post(name)); }
  void postFromAnotherProcess(std::string_view name) { EXPECT_TRUE(otherCenter_.post(name)); }
  void settle() {
    devices::exchangeWith(otherBus_);
    devices::exchangeWith(bus_);
    // What the handlers of those posted.
    devices::exchangeWith(bus_);
  }

 private:
  Glib::RefPtr<Gio::DBus::Connection> bus_ = devices::connectToSessionBus(), otherBus_ = devices::connectToSessionBus();
  devices::Services services_;
  devices::DarwinNotifications center_{bus_, services_}, otherCenter_{otherBus_, services_};
  std::vector<devices::DarwinNotifications::Observation> observations_;
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(SessionBus, DarwinNotificationsContract, BusWorld);

}  // namespace hushmode::contracts

namespace hushmode::devices {

namespace {

using Texts = std::vector<std::string>;

class DarwinNotificationsTest : public DesktopTest {
 protected:
  DarwinNotificationsTest() { exchangeWith(bus); }
  /// A signal from another program, as it likes.
  void send(const Glib::VariantContainerBase& values, const std::string& path = "/com/quorvel/Hushmode/Darwin",
            const std::string& interface = "com.quorvel.Hushmode.Darwin1") {
    otherBus->emit_signal(path, interface, "Posted", {}, values);
  }
  void settle() {
    exchangeWith(otherBus);
    exchangeWith(bus);
  }

  Texts heard;
  Glib::RefPtr<Gio::DBus::Connection> otherBus = connectToSessionBus();
  DarwinNotifications center{bus, services};
  DarwinNotifications::Observation observation =
      center.observe([this](std::string_view name) { heard.emplace_back(name); });
};

}  // namespace

TEST_F(DarwinNotificationsTest, AnEndedObservationIsToldNothingMore) {
  center.post("one");
  observation.reset();
  center.post("two");
  settle();
  EXPECT_EQ(heard, Texts());
}

TEST_F(DarwinNotificationsTest, AnObserverThatEndsAnotherDuringAPostIsHeeded) {
  Texts second;
  DarwinNotifications::Observation other;
  const auto ending = center.observe([&](std::string_view) { other.reset(); });
  other = center.observe([&](std::string_view name) { second.emplace_back(name); });
  center.post("one");
  settle();
  EXPECT_EQ(heard, Texts{"one"});
  EXPECT_EQ(second, Texts());
}

TEST_F(DarwinNotificationsTest, NamesOfOthersAreBounded) {
  send(argumentsOf(Glib::ustring(std::string(255, 'x'))));
  send(argumentsOf(Glib::ustring(std::string(256, 'y'))));
  send(argumentsOf(Glib::ustring()));
  settle();
  EXPECT_EQ(heard, Texts{std::string(255, 'x')});
}

TEST_F(DarwinNotificationsTest, SignalsOfAnotherShapeArePassedOver) {
  send(Glib::VariantContainerBase());
  send(argumentsOf(static_cast<guint32>(7)));
  send(argumentsOf(Glib::ustring("two"), Glib::ustring("names")));
  send(argumentsOf(Glib::ustring("elsewhere")), "/com/quorvel/Other");
  send(argumentsOf(Glib::ustring("another")), "/com/quorvel/Hushmode/Darwin", "com.quorvel.Hushmode.Darwin2");
  send(argumentsOf(Glib::ustring("right")));
  settle();
  EXPECT_EQ(heard, Texts{"right"});
}

TEST_F(DarwinNotificationsTest, WhatIsNoNameIsNotPosted) {
  EXPECT_TRUE(center.post(std::string(255, 'x')));
  EXPECT_FALSE(center.post(std::string(256, 'x')));
  EXPECT_FALSE(center.post(""));
  EXPECT_FALSE(center.post("\xff"));
  EXPECT_FALSE(center.post(std::string_view("a\0b", 3)));
  settle();
  EXPECT_EQ(heard.size(), 1u);
}

TEST_F(DarwinNotificationsTest, WithoutABusTheyStayInTheProcess) {
  Services own;
  DarwinNotifications alone(nullptr, own);
  EXPECT_FALSE(own.isAvailable("notifications between programs"));
  Texts heardAlone;
  const auto alsoObserved = alone.observe([&](std::string_view name) { heardAlone.emplace_back(name); });
  EXPECT_TRUE(alone.post("one"));
  settle();
  EXPECT_EQ(heardAlone, Texts{"one"});
  EXPECT_EQ(heard, Texts());
}

TEST_F(DarwinNotificationsTest, ABusThatIsGoneIsReportedOnceAndTheProcessGoesOn) {
  Services own;
  const auto dyingBus = connectToSessionBus();
  DarwinNotifications dying(dyingBus, own);
  Texts heardThere;
  const auto observed = dying.observe([&](std::string_view name) { heardThere.emplace_back(name); });
  EXPECT_TRUE(own.isAvailable("notifications between programs"));
  dyingBus->close_sync();
  EXPECT_TRUE(dying.post("one"));
  EXPECT_TRUE(waitUntil([&] { return !own.isAvailable("notifications between programs"); }));
  settle();
  EXPECT_EQ(heardThere, Texts{"one"});
}

TEST_F(DarwinNotificationsTest, NothingIsToldAfterItsEnd) {
  std::optional<DarwinNotifications> other(std::in_place, otherBus, services);
  Texts heardThere;
  const auto observed = other->observe([&](std::string_view name) { heardThere.emplace_back(name); });
  other->post("one");
  center.post("two");
  other.reset();
  settle();
  EXPECT_EQ(heardThere, Texts());
  std::sort(heard.begin(), heard.end());  // Who was first is not told between processes.
  EXPECT_EQ(heard, (Texts{"one", "two"}));
}

}  // namespace hushmode::devices
