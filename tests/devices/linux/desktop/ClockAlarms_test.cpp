// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/ClockAlarms.h"

#include "devices/linux/base/Variants.h"
#include "tests/contracts/AlarmsContract.h"
#include "tests/devices/linux/desktop/DesktopTest.h"

#include <memory>
#include <sstream>

namespace hushmode::devices {

namespace {

using Texts = std::vector<std::string>;

constexpr const char* clocks = "org.gnome.clocks";

/// The settings of GNOME Clocks, as that program has them: written and read by another process.
struct StoredAlarms {
  /// Writes the text of a value.
  void write(const std::string& text) {
    runCommand("gsettings set org.gnome.clocks alarms \"" + text + "\"");
    EXPECT_TRUE(waitUntil([&] { return read() == seenHere(); }));
  }
  void writeTitles(const Texts& titles) {
    std::ostringstream text;
    text << "@aa{sv} [";
    for (std::size_t index = 0; index < titles.size(); ++index) {
      text << (index == 0 ? "" : ", ") << "{'name': <'" << titles[index] << "'>, 'id': <'id-" << index
           << "'>, 'active': <true>, 'hour': <7>, 'minute': <30>, 'days': <[1, 2, 3, 4, 5]>}";
    }
    write(text.str() + "]");
  }
  std::string read() const { return runCommand("gsettings get org.gnome.clocks alarms"); }
  Texts titles() const {
    GVariant* const array = g_variant_ref_sink(g_variant_parse(nullptr, read().c_str(), nullptr, nullptr, nullptr));
    Texts titles;
    for (gsize index = 0; index < g_variant_n_children(array); ++index) {
      GVariant* const entry = g_variant_get_child_value(array, index);
      const char* title = "";
      g_variant_lookup(entry, "name", "&s", &title);
      titles.emplace_back(title);
      g_variant_unref(entry);
    }
    g_variant_unref(array);
    return titles;
  }

 private:
  std::string seenHere() const {
    Glib::VariantBase value;
    Gio::Settings::create(clocks)->get_value("alarms", value);
    return value.print(true) + "\n";
  }
};

class ClockAlarmsTest : public DesktopTest {
 protected:
  ClockAlarmsTest() {
    stored.writeTitles({"A", "B"});
    exchangeWith(bus);
  }
  std::shared_ptr<platform::AlarmManager> manager() {
    return dynamic_cast<platform::AlarmManager::Class&>(*alarms.classNamed("AlarmManager")).sharedManager();
  }
  void removeFirst() {
    manager()->loadAlarms();
    manager()->removeAlarm(manager()->alarms().at(0));
  }
  Texts loaded() {
    manager()->loadAlarms();
    Texts titles;
    for (const auto& alarm : manager()->alarms()) titles.push_back(alarm->title());
    return titles;
  }

  StoredAlarms stored;
  Glib::RefPtr<Gio::DBus::Connection> clocksBus = connectToSessionBus();
  ClockAlarms alarms{bus, services};
};

}  // namespace

TEST_F(ClockAlarmsTest, AreThereWhereClocksIsInstalled) {
  EXPECT_EQ(reported("alarms"), "+GNOME Clocks");
  EXPECT_TRUE(alarms.classNamed("AlarmManager"));
  EXPECT_FALSE(alarms.classNamed("Alarm"));
}

TEST_F(ClockAlarmsTest, WhatIsRemovedWhileClocksRunsIsWrittenOnceItHasLeft) {
  ownName(clocksBus, clocks);
  exchangeWith(bus);
  removeFirst();
  exchangeWith(bus);
  EXPECT_EQ(loaded(), Texts{"B"});
  EXPECT_EQ(stored.titles(), (Texts{"A", "B"}));
  giveUpName(clocksBus, clocks);
  EXPECT_TRUE(waitUntil([&] { return stored.titles() == Texts{"B"}; }));
}

TEST_F(ClockAlarmsTest, WhatClocksWritesWhileItRunsIsKept) {
  ownName(clocksBus, clocks);
  exchangeWith(bus);
  removeFirst();
  // It knows nothing of the removal: it moves the removed alarm to another hour, and adds one.
  stored.write("[{'name': <'A'>, 'id': <'id-0'>, 'hour': <9>}, {'name': <'New'>, 'id': <'id-7'>}]");
  EXPECT_EQ(loaded(), Texts{"New"});
  giveUpName(clocksBus, clocks);
  EXPECT_TRUE(waitUntil([&] { return stored.titles() == Texts{"New"}; }));
}

TEST_F(ClockAlarmsTest, AnAlarmThatTheUserDeletedMeanwhileIsNoLoss) {
  ownName(clocksBus, clocks);
  exchangeWith(bus);
  removeFirst();
  stored.writeTitles({});
  giveUpName(clocksBus, clocks);
  exchangeWith(bus);
  EXPECT_EQ(stored.titles(), Texts());
}

TEST_F(ClockAlarmsTest, OtherAlarmsStayAsTheyAreToTheLastUnknownDetail) {
  stored.write("[{'name': <'A'>, 'id': <'1'>}, {'name': <'B'>, 'id': <'2'>, 'moods': <{'x': <(1, [true])>}>}]");
  removeFirst();
  EXPECT_EQ(stored.read(), "[{'name': <'B'>, 'id': <'2'>, 'moods': <{'x': <(1, [true])>}>}]\n");
}

TEST_F(ClockAlarmsTest, AnAlarmWithoutIdentifierIsKnownByAllThatItSays) {
  stored.write("[{'name': <'A'>, 'hour': <7>}, {'name': <'A'>, 'hour': <8>}]");
  manager()->loadAlarms();
  manager()->removeAlarm(manager()->alarms().at(1));
  EXPECT_EQ(stored.read(), "[{'name': <'A'>, 'hour': <7>}]\n");
}

TEST_F(ClockAlarmsTest, AnAlarmWhoseNameIsNoTextHasNone) {
  stored.write("[{'name': <7>, 'id': <'1'>}, {'id': <'2'>}]");
  EXPECT_EQ(loaded(), (Texts{"", ""}));
}

TEST_F(ClockAlarmsTest, NotAllOfVeryManyAreLookedAtAndNoneIsLost) {
  Texts many(ClockAlarms::maximumCount + 5, "A");
  many.back() = "Last";
  stored.writeTitles(many);
  EXPECT_EQ(loaded().size(), ClockAlarms::maximumCount);
  removeFirst();
  EXPECT_EQ(stored.titles().size(), many.size() - 1);
  EXPECT_EQ(stored.titles().back(), "Last");
}

TEST_F(ClockAlarmsTest, WithoutABusNothingIsWritten) {
  ClockAlarms alone(nullptr, services);
  const auto list = dynamic_cast<platform::AlarmManager::Class&>(*alone.classNamed("AlarmManager")).sharedManager();
  list->loadAlarms();
  list->removeAlarm(list->alarms().at(0));
  EXPECT_EQ(list->alarms().size(), 1u);
  exchangeWith(bus);
  EXPECT_EQ(stored.titles(), (Texts{"A", "B"}));
}

}  // namespace hushmode::devices

namespace hushmode::contracts {

namespace {

class ClocksWorld {
 public:
  ClocksWorld() {
    userSetsAlarms({});
    devices::exchangeWith(bus_);
  }
  platform::Class* classNamed(std::string_view name) { return alarms_.classNamed(name); }
  void userSetsAlarms(std::vector<std::string> titles) { stored_.writeTitles(titles); }
  std::vector<std::string> titles() { return stored_.titles(); }

 private:
  Glib::RefPtr<Gio::DBus::Connection> bus_ = devices::connectToSessionBus();
  devices::Services services_;
  devices::ClockAlarms alarms_{bus_, services_};
  devices::StoredAlarms stored_;
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(GnomeClocks, AlarmsContract, ClocksWorld);

}  // namespace hushmode::contracts
