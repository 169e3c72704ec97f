// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/Logind.h"

#include "tests/devices/linux/session/MockedLogind.h"
#include "tests/support/ServiceReports.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

class LogindTest : public ::testing::Test {
 protected:
  void begin(const std::string& sessionId = "1", std::chrono::milliseconds limit = BusClient::answerLimit) {
    logind.emplace(
        connectTo("system"), reports.services, sessionId,
        Logind::Callbacks{[this] { events.push_back("about to sleep"); }, [this] { events.push_back("resumed"); },
                          [this] { events.push_back("lock changed"); }},
        limit);
  }
  bool untilLocked(std::optional<bool> isLocked) {
    return runUntil([&] { return logind->isLocked() == isLocked; });
  }
  bool untilEvents(const Texts& expected) {
    runUntil([&] { return events.size() >= expected.size(); });
    return events == expected;
  }
  bool untilDelayLocks(std::size_t count) {
    return runUntil([&] { return mock.delayLocks() == count; });
  }
  bool untilReported(std::size_t count) {
    return runUntil([&] { return reports.lines.size() >= count; });
  }

  MockedLogind mock;
  ServiceReports reports;
  Texts events;
  std::optional<Logind> logind;
};

TEST_F(LogindTest, TellsWhetherTheSessionIsLocked) {
  mock.setLocked(true);
  begin();
  EXPECT_EQ(logind->isLocked(), std::nullopt);
  ASSERT_TRUE(untilLocked(true));
  mock.setLocked(false);
  ASSERT_TRUE(untilLocked(false));
  EXPECT_EQ(events, (Texts{"lock changed", "lock changed"}));
  EXPECT_EQ(reports.lines, Texts{"sleep and lock: there, logind"});
}

TEST_F(LogindTest, FindsTheUsersSessionAtASeatByItself) {
  mock.addSession("other", "seat1", getuid() + 1);
  mock.setLocked(true, "other");
  begin("");
  ASSERT_TRUE(untilLocked(false));
  mock.setLocked(true);
  EXPECT_TRUE(untilLocked(true));
}

TEST_F(LogindTest, TakesTheSessionOfThisUserThatIsAtASeat) {
  mock.addSession("2", "seat1", getuid() + 1);
  mock.addSession("3");
  const std::string user = std::to_string(getuid()), other = std::to_string(getuid() + 1);
  mock.service().answer(MockedLogind::manager, "org.freedesktop.login1.Manager", "ListSessions", "", "a(susso)",
                        "ret = [('2', " + other + ", 'another', 'seat1', '" + MockedLogind::session("2") +
                            "'), ('3', " + user + ", 'somebody', '', '" + MockedLogind::session("3") + "'), ('1', " +
                            user + ", 'somebody', 'seat0', '" + MockedLogind::session("1") + "')]");
  mock.setLocked(true, "1");
  begin("");
  EXPECT_TRUE(untilLocked(true)) << "neither the other user's nor the one without a seat, which are unlocked";
}

TEST_F(LogindTest, LooksForASessionWhenItsOwnIsNoMore) {
  mock.service().answer(MockedLogind::manager, "org.freedesktop.login1.Manager", "GetSession", "s", "o",
                        "raise dbus.exceptions.DBusException('no', name='org.freedesktop.login1.NoSuchSession')");
  begin("7");
  EXPECT_TRUE(untilLocked(false));
}

TEST_F(LogindTest, FollowsASessionThatBeginsLater) {
  mock.service().control(MockedLogind::manager, "RemoveObject", "('" + MockedLogind::session("1") + "',)");
  begin("");
  ASSERT_TRUE(untilReported(1));
  mock.addSession("2");
  mock.setLocked(true, "2");
  mock.service().control(MockedLogind::manager, "EmitSignal",
                         "('org.freedesktop.login1.Manager', 'SessionNew', 'so', [<'2'>, <objectpath '" +
                             MockedLogind::session("2") + "'>])");
  ASSERT_TRUE(untilLocked(true));
  mock.service().control(MockedLogind::manager, "RemoveObject", "('" + MockedLogind::session("2") + "',)");
  mock.service().control(MockedLogind::manager, "EmitSignal",
                         "('org.freedesktop.login1.Manager', 'SessionRemoved', 'so', [<'2'>, <objectpath '" +
                             MockedLogind::session("2") + "'>])");
  EXPECT_TRUE(untilLocked(std::nullopt));
}

TEST_F(LogindTest, DelaysSleepUntilTheSwitchIsOver) {
  begin();
  ASSERT_TRUE(untilDelayLocks(1));
  logind->readyToSleep();
  EXPECT_EQ(mock.delayLocks(), 1U) << "it is not about to sleep";
  mock.prepareForSleep(true);
  ASSERT_TRUE(runUntil([&] { return !events.empty() && events.back() == "about to sleep"; }));
  EXPECT_EQ(mock.delayLocks(), 1U);
  logind->readyToSleep();
  ASSERT_TRUE(untilDelayLocks(0));
  mock.prepareForSleep(false);
  ASSERT_TRUE(runUntil([&] { return events.back() == "resumed"; }));
  EXPECT_TRUE(untilDelayLocks(1)) << "for the next time";
}

TEST_F(LogindTest, TellsEachSleepOnce) {
  mock.service().control(MockedLogind::manager, "RemoveObject", "('" + MockedLogind::session("1") + "',)");
  begin("");
  ASSERT_TRUE(untilDelayLocks(1));
  mock.prepareForSleep(true);
  mock.prepareForSleep(true);
  mock.prepareForSleep(false);
  mock.prepareForSleep(false);
  mock.prepareForSleep(true);
  EXPECT_TRUE(untilEvents({"about to sleep", "resumed", "about to sleep"}));
}

TEST_F(LogindTest, LetsThePhoneSleepWhenNobodyWantsToKnow) {
  logind.emplace(connectTo("system"), reports.services, "1", Logind::Callbacks{});
  ASSERT_TRUE(untilDelayLocks(1));
  mock.prepareForSleep(true);
  EXPECT_TRUE(untilDelayLocks(0));
}

TEST_F(LogindTest, NoticesThatThePhoneResumedWhileLogindWasAway) {
  begin();
  ASSERT_TRUE(untilDelayLocks(1));
  mock.prepareForSleep(true);
  ASSERT_TRUE(runUntil([&] { return !events.empty() && events.back() == "about to sleep"; }));
  mock.service().kill();
  ASSERT_TRUE(untilLocked(std::nullopt));
  mock.service().start();
  ASSERT_TRUE(runUntil([&] { return events.back() == "resumed"; }));
  EXPECT_TRUE(untilDelayLocks(1));
}

TEST_F(LogindTest, IsUsedAgainWhenItReturns) {
  mock.setLocked(true);
  begin();
  ASSERT_TRUE(untilLocked(true));
  mock.service().kill();
  ASSERT_TRUE(untilLocked(std::nullopt));
  mock.service().start();
  mock.addSession("1");
  mock.setLocked(true);
  ASSERT_TRUE(untilReported(3));
  EXPECT_TRUE(untilDelayLocks(1));
  EXPECT_EQ(reports.lines, (Texts{"sleep and lock: there, logind", "sleep and lock: away, logind is not running",
                                  "sleep and lock: there, logind"}));
}

TEST_F(LogindTest, AsksAgainWhenThereWasNoAnswer) {
  mock.service().hang();
  begin("1", 200ms);
  ASSERT_TRUE(untilReported(1));
  EXPECT_EQ(reports.lines.back().rfind("sleep and lock: away, logind does not answer", 0), 0U) << reports.lines.back();
  mock.service().goOn();
  ASSERT_TRUE(untilReported(2));
  EXPECT_TRUE(untilLocked(false));
}

TEST_F(LogindTest, SaysSoWhenSleepCannotBeDelayed) {
  mock.service().answer(MockedLogind::manager, "org.freedesktop.login1.Manager", "Inhibit", "ssss", "h",
                        "raise dbus.exceptions.DBusException('Permission denied', name='org.example.Denied')");
  begin();
  ASSERT_TRUE(untilReported(2));
  EXPECT_EQ(reports.lines.back(), "sleep and lock: there, logind, but sleep cannot be delayed: Permission denied");
  mock.prepareForSleep(true);
  EXPECT_TRUE(runUntil([&] { return !events.empty() && events.back() == "about to sleep"; }));
}

TEST_F(LogindTest, TakesNoNonsense) {
  begin();
  ASSERT_TRUE(untilLocked(false));
  events.clear();
  mock.service().control(MockedLogind::manager, "EmitSignal",
                         "('org.freedesktop.login1.Manager', 'PrepareForSleep', 's', [<'yes'>])");
  mock.service().control(MockedLogind::session("1"), "EmitSignal",
                         "('org.freedesktop.DBus.Properties', 'PropertiesChanged', 'sa{sv}as', "
                         "[<'org.freedesktop.login1.Session'>, <{'LockedHint': <'maybe'>}>, <@as []>])");
  mock.setLocked(true);
  ASSERT_TRUE(untilLocked(true));
  EXPECT_EQ(events, Texts{"lock changed"});
}

TEST_F(LogindTest, LetsItsLockGoWhenItEnds) {
  begin();
  ASSERT_TRUE(untilDelayLocks(1));
  logind.reset();
  EXPECT_TRUE(untilDelayLocks(0));
}

TEST_F(LogindTest, RestsWithoutABus) {
  logind.emplace(Glib::RefPtr<Gio::DBus::Connection>(), reports.services, "", Logind::Callbacks{});
  logind->readyToSleep();
  EXPECT_EQ(logind->isLocked(), std::nullopt);
  EXPECT_EQ(reports.lines, Texts{"sleep and lock: away, logind is not running"});
}

}  // namespace
}  // namespace hushmode::devices
