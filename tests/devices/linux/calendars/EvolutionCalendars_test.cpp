// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionCalendars.h"

#include "tests/devices/linux/calendars/EvolutionUser.h"
#include "tests/devices/linux/calendars/MainLoop.h"
#include "tests/devices/linux/calendars/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <glibmm/spawn.h>
#include <gtest/gtest.h>
#include <map>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
using platform::Date;
using std::chrono::milliseconds;

std::string event(const std::string& uid, const std::string& more = "DTSTART:20260330T080000Z\r\nDURATION:PT1H\r\n") {
  return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:" + uid + "\r\n" + more +
         "END:VEVENT\r\n";
}

Glib::RefPtr<Gio::DBus::Connection> sessionBus() {
  return Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION);
}

class EvolutionCalendarsTest : public testing::Test {
 protected:
  EvolutionCalendarsTest() { user.addCalendar(uid, "Work"); }
  ~EvolutionCalendarsTest() override { user.removeCalendar(uid); }

  void open(milliseconds answerLimit = std::chrono::seconds(30)) {
    services.setListener([this](const std::string&, const ServiceState& now, const ServiceState*) {
      states.push_back((now.available ? "+ " : "- ") + now.detail);
    });
    source = makeEvolutionCalendars(
        sessionBus(), services, [this](const std::string& line) { lines.push_back(line); }, answerLimit);
    source->setChangeHandler([this](const platform::Dictionary&) { ++changes; });
  }
  void openAndRead() {
    open();
    runMainLoopUntil([&] { return services.isAvailable(kEvolutionServiceName); });
  }
  const CalendarInfo* calendar(const std::string& title = "Work") const {
    const auto& all = source->calendars();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const CalendarInfo& each) { return each.title == title; });
    return found == all.end() ? nullptr : &*found;
  }
  Texts titles() const {
    Texts list;
    for (const CalendarOccurrence& each : source->occurrences(Date(1774828800), Date(1774915200), *TimeZone::utc())) {
      list.push_back(each.details->title.value_or("-"));
    }
    std::sort(list.begin(), list.end());
    return list;
  }
  void waitFor(const Texts& expected) {
    try {
      runMainLoopUntil([&] { return titles() == expected; });
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(titles(), expected) << error.what();
    }
  }
  void killProcessOf(const std::string& name) {
    const pid_t process = user.processOf(name);
    ASSERT_GT(process, 1);
    ASSERT_EQ(kill(process, SIGKILL), 0);
    // Its name is free when the bus has seen that it is gone.
    runMainLoopUntil([&] { return user.processOf(name) != process; });
  }

  EvolutionUser user;
  static inline int calendars = 0;
  const std::string uid = "test" + std::to_string(++calendars);
  Services services;
  Texts states, lines;
  int changes = 0;
  std::unique_ptr<CalendarSource> source;
};

TEST_F(EvolutionCalendarsTest, AreThereOnceTheServiceHasToldThem) {
  user.create(uid, {event("a")});
  open();
  EXPECT_TRUE(source->calendars().empty());
  EXPECT_EQ(states, Texts());
  runMainLoopUntil([&] { return services.isAvailable(kEvolutionServiceName); });
  ASSERT_TRUE(calendar());
  EXPECT_EQ(calendar()->identifier, "evolution:" + uid);
  EXPECT_EQ(calendar()->accountTitle, "On This Computer");
  EXPECT_TRUE(calendar()->writable);
  ASSERT_TRUE(calendar("Birthdays & Anniversaries"));
  EXPECT_FALSE(calendar("Birthdays & Anniversaries")->writable);
  EXPECT_EQ(titles(), Texts{"a"});
  ASSERT_EQ(states.size(), 1U);
  EXPECT_EQ(states[0], "+ Evolution Data Server, 3 calendars");
  EXPECT_EQ(lines, Texts());
  EXPECT_EQ(source->withUniqueId("a", *TimeZone::utc())->details->eventIdentifier, "evolution:" + uid + ":a");
}

TEST_F(EvolutionCalendarsTest, OneEditIsOneChange) {
  openAndRead();
  changes = 0;
  Texts expected;
  std::vector<std::string> components;
  for (int number = 10; number < 40; ++number) {
    expected.push_back("e" + std::to_string(number));
    components.push_back(event(expected.back()));
  }
  user.create(uid, components);
  waitFor(expected);
  EXPECT_LE(changes, 2) << "of thirty events at once";
}

TEST_F(EvolutionCalendarsTest, AreReadWholeWhereMuchChanged) {
  openAndRead();
  Texts expected;
  std::vector<std::string> components;
  for (int number = 100; number < 300; ++number) {
    expected.push_back("e" + std::to_string(number));
    components.push_back(event(expected.back()));
  }
  user.create(uid, components);
  waitFor(expected);
  user.remove(uid, "e200");
  std::erase(expected, "e200");
  waitFor(expected);
}

TEST_F(EvolutionCalendarsTest, UseTheZonesThatAnEventBrings) {
  openAndRead();
  user.receive(uid,
               "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nMETHOD:PUBLISH\r\nBEGIN:VTIMEZONE\r\nTZID:Works Council\r\n"
               "BEGIN:STANDARD\r\nDTSTART:19700101T000000\r\nTZOFFSETFROM:+0530\r\nTZOFFSETTO:+0530\r\n"
               "END:STANDARD\r\nEND:VTIMEZONE\r\n" +
                   event("own", "DTSTART;TZID=Works Council:20260330T120000\r\nDURATION:PT1H\r\n") +
                   event("berlin", "DTSTART;TZID=Europe/Berlin:20260330T120000\r\nDURATION:PT1H\r\n") +
                   event("lost", "DTSTART;TZID=Nowhere:20260330T120000\r\nDURATION:PT1H\r\n") + "END:VCALENDAR\r\n");
  waitFor({"berlin", "lost", "own"});
  const auto hourOf = [&](const char* event) {
    return (source->withUniqueId(event, *TimeZone::utc())->start - Date(1774828800)) / 3600;
  };
  EXPECT_EQ(hourOf("own"), 6.5);
  EXPECT_EQ(hourOf("berlin"), 10);
  EXPECT_EQ(hourOf("lost"), 12) << "on the phone's clock";
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0], "\"lost\" in evolution:" + uid +
                          ": no time zone is known as \"Nowhere\": its times are taken for local ones");
}

TEST_F(EvolutionCalendarsTest, FollowNamesAndWhatIsEnabled) {
  user.create(uid, {event("a")});
  openAndRead();
  const auto identifier = calendar()->identifier;
  user.set(uid, "DisplayName", "Office");
  runMainLoopUntil([&] { return calendar("Office") != nullptr; });
  EXPECT_EQ(calendar("Office")->identifier, identifier);
  EXPECT_EQ(source->withUniqueId("a", *TimeZone::utc())->details->calendar->title(), "Office");
  user.set(uid, "Enabled", "false");
  runMainLoopUntil([&] { return calendar("Office") == nullptr; });
  EXPECT_EQ(titles(), Texts());
  user.set(uid, "Enabled", "true");
  runMainLoopUntil([&] { return calendar("Office") != nullptr; });
  EXPECT_EQ(titles(), Texts{"a"});
}

TEST_F(EvolutionCalendarsTest, StayAsTheyWereWhenTheServiceDiesAndAreReadAgain) {
  user.create(uid, {event("a")});
  openAndRead();
  for (int round = 0; round < 3; ++round) {
    changes = 0;
    states.clear();
    killProcessOf(EvolutionUser::factoryName);
    runMainLoopUntil([&] { return !services.isAvailable(kEvolutionServiceName); });
    EXPECT_NE(calendar(), nullptr);
    EXPECT_EQ(titles().size(), 1U + static_cast<std::size_t>(round));
    runMainLoopUntil([&] { return states.back() == "+ Evolution Data Server, 3 calendars"; });
    EXPECT_EQ(changes, 0) << "nothing is different";
    EXPECT_LE(states.size(), 3U) << "one line when it went, one when it returned, or two";
    user.create(uid, {event("b" + std::to_string(round))});
    runMainLoopUntil([&] { return titles().size() == 2U + static_cast<std::size_t>(round); });
  }
}

TEST_F(EvolutionCalendarsTest, AnEditWhileTheServiceWasAwayIsSeenAfterwards) {
  user.create(uid, {event("a"), event("b")});
  openAndRead();
  killProcessOf(EvolutionUser::factoryName);
  user.remove(uid, "b");
  user.create(uid, {event("c")});
  EXPECT_EQ(titles(), (Texts{"a", "b"}));
  waitFor({"a", "c"});
}

TEST_F(EvolutionCalendarsTest, StayAsTheyWereWhenTheRegistryDies) {
  user.create(uid, {event("a")});
  openAndRead();
  states.clear();
  changes = 0;
  killProcessOf(EvolutionUser::registryName);
  runMainLoopUntil([&] { return !services.isAvailable(kEvolutionServiceName); });
  EXPECT_EQ(titles(), Texts{"a"});
  runMainLoopUntil([&] { return services.isAvailable(kEvolutionServiceName); });
  EXPECT_EQ(titles(), Texts{"a"});
  EXPECT_EQ(changes, 0) << "nothing is different";
  user.create(uid, {event("b")});
  waitFor({"a", "b"});
  user.set(uid, "DisplayName", "Office");
  runMainLoopUntil([&] { return calendar("Office") != nullptr; });
}

TEST_F(EvolutionCalendarsTest, AServiceThatDoesNotAnswerIsGivenUpAndUsedWhenItDoes) {
  user.create(uid, {event("a")});
  const pid_t process = user.processOfCalendar(uid);
  ASSERT_GT(process, 1);
  ASSERT_EQ(kill(process, SIGSTOP), 0);
  open(milliseconds(300));
  runMainLoopUntil([&] { return !states.empty(); });
  EXPECT_EQ(states[0].substr(0, 2), "- ");
  EXPECT_NE(states[0].find("it does not answer"), std::string::npos) << states[0];
  ASSERT_EQ(kill(process, SIGCONT), 0);
  runMainLoopUntil([&] { return services.isAvailable(kEvolutionServiceName) && calendar() != nullptr; });
  waitFor({"a"});
}

TEST_F(EvolutionCalendarsTest, NothingComesOnceTheyAreGone) {
  user.create(uid, {event("a")});
  for (int turns = 0; turns < 40; ++turns) {
    open();
    for (int turn = 0; turn < turns; ++turn) Glib::MainContext::get_default()->iteration(turn % 4 == 3);
    source.reset();
  }
  changes = 0;
  states.clear();
  user.create(uid, {event("b")});
  runMainLoopFor(milliseconds(300));
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(states, Texts());
}

TEST_F(EvolutionCalendarsTest, WithoutASessionBusThereAreNone) {
  source = makeEvolutionCalendars({}, services);
  EXPECT_TRUE(source->calendars().empty());
  EXPECT_EQ(services.states().at(kEvolutionServiceName).detail, "Evolution Data Server: there is no session bus");
}

/// Run by the next test, on a bus that can start nothing.
TEST(EvolutionCalendarsElsewhere, DISABLED_RestWithoutAnError) {
  Services services;
  Texts lines;
  const auto source =
      makeEvolutionCalendars(sessionBus(), services, [&](const std::string& line) { lines.push_back(line); });
  runMainLoopUntil([&] { return services.states().contains(kEvolutionServiceName); });
  EXPECT_EQ(services.states().at(kEvolutionServiceName).detail, "Evolution Data Server: not installed");
  EXPECT_FALSE(services.isAvailable(kEvolutionServiceName));
  EXPECT_TRUE(source->calendars().empty());
  EXPECT_EQ(lines, Texts());
}

TEST(EvolutionCalendarsElsewhere, RestWhereTheServiceIsNotInstalled) {
  TemporaryFolder folder;
  folder.write("bus.conf",
               "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>"
               "<policy context='default'><allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
               "<allow own='*'/></policy></busconfig>");
  std::string output, errors;
  int status = 0;
  Glib::spawn_sync(
      "",
      std::vector<std::string>{"dbus-run-session", "--config-file=" + (folder.path() / "bus.conf").string(), "--",
                               "/proc/" + std::to_string(getpid()) + "/exe", "--gtest_also_run_disabled_tests",
                               "--gtest_filter=EvolutionCalendarsElsewhere.DISABLED_*"},
      Glib::SpawnFlags::SEARCH_PATH, {}, &output, &errors, &status);
  EXPECT_EQ(status, 0) << output << errors;
  EXPECT_NE(output.find("[  PASSED  ] 1 test"), std::string::npos) << output << errors;
}

}  // namespace
}  // namespace hushmode::devices
