// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/PersistentConnection.h"
#include "tests/support/PhoneFixture.h"

#include <memory>
#include <thread>

namespace hushmode {
namespace {

using platform::PCSimpleTimer;
using Texts = std::vector<std::string>;

class WakeTimersTest : public PhoneFixture {
 protected:
  std::shared_ptr<PCSimpleTimer> make(platform::Date date, PCSimpleTimer::Action action = {}) {
    if (!action) action = [this](const auto& timer) { fired.push_back(timer->description()); };
    return platform::find<PCSimpleTimer>()->initWithFireDate(date, "com.quorvel.hushmode", std::move(action),
                                                             {{"ProfileIdentifier", 7}});
  }
  void arm(const std::shared_ptr<PCSimpleTimer>& timer) { timer->scheduleInRunLoop(phone.runLoop()); }

  Texts fired;
};

TEST_F(WakeTimersTest, AreRecordedFromArmingToFiring) {
  const auto timer = make(at("09:00"));
  arm(timer);
  EXPECT_EQ(timer->userInfo(), (platform::Dictionary{{"ProfileIdentifier", 7}}));
  arm(make(at("09:00").addingSeconds(86400)));
  runTo("09:01");
  timer->invalidate();
  EXPECT_EQ(texts(), (Texts{
                         R"(timer arm t1 at 09:00:00 {"ProfileIdentifier": 7})",
                         R"(timer arm t2 at 2024-05-15 09:00:00 {"ProfileIdentifier": 7})",
                         "timer fire t1 (09:00:00)",
                         "timer invalidate t1 (already fired)",
                     }));
  ASSERT_EQ(phone.wakeTimers().armed().size(), 1U);
  EXPECT_EQ(phone.wakeTimers().armed()[0].name, "t2");
}

TEST_F(WakeTimersTest, AreRecordedInThePhonesZone) {
  phone.moveToTimeZone("Europe/Berlin");
  clearRecord();
  arm(make(at("12:00")));
  EXPECT_EQ(texts(), Texts{R"(timer arm t1 at 12:00:00 {"ProfileIdentifier": 7})"});
  EXPECT_EQ(phone.record().entries()[0].localTime(), "2024-05-14 10:00:00");
}

TEST_F(WakeTimersTest, FireAfterTheLatencyAndNeverEarly) {
  struct Case {
    const char* name;
    double latency;
    double fireDate;   ///< Seconds from now.
    double delivered;  ///< Seconds from now.
  } const cases[] = {
      {"half a second late", 0.5, 60, 60.5},
      {"in time", 0, 60, 60},
      {"very late", 90, 60, 150},
      {"a date that is now", 0.5, 0, 0.5},
      {"a date that has passed", 0.5, -3600, 0.5},
      {"a date that has passed, in time", 0, -1, 0},
      {"a latency below nothing", -1, 60, 60},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.name);
    phone.wakeTimers().setLatency(each.latency);
    const platform::Date now = phone.time().now();
    std::optional<double> delivered;
    arm(make(now.addingSeconds(each.fireDate), [&](const auto&) { delivered = phone.time().now() - now; }));
    EXPECT_FALSE(delivered) << "not inside the arming";
    runFor(1000);
    EXPECT_EQ(delivered, each.delivered);
    EXPECT_GE(phone.wakeTimers().latency(), 0);
  }
}

TEST_F(WakeTimersTest, LiveWhileArmedThoughNobodyElseHoldsThem) {
  std::weak_ptr<PCSimpleTimer> watched;
  {
    const auto timer = make(at("09:00"));
    arm(timer);
    watched = timer;
  }
  EXPECT_FALSE(watched.expired());
  runTo("10:00");
  EXPECT_EQ(fired, Texts{"t1"});
  EXPECT_TRUE(watched.expired());
}

TEST_F(WakeTimersTest, LiveThroughTheirOwnCallbackThoughItLetsGoOfThem) {
  std::shared_ptr<PCSimpleTimer> held;
  held = make(at("09:00"), [&](const std::shared_ptr<PCSimpleTimer>& timer) {
    held->invalidate();
    held.reset();
    fired.push_back(timer->description());
  });
  arm(held);
  runTo("10:00");
  EXPECT_EQ(fired, Texts{"t1"});
  EXPECT_EQ(texts().back(), "timer invalidate t1 (already fired)");
}

TEST_F(WakeTimersTest, AreArmedOnce) {
  const auto timer = make(at("09:00"));
  arm(timer);
  arm(timer);
  runTo("10:00");
  arm(timer);
  runTo("11:00");
  EXPECT_EQ(fired, Texts{"t1"});
  EXPECT_EQ(texts().size(), 2U) << "one arming, one firing";
}

TEST_F(WakeTimersTest, NeverFireOnceInvalidated) {
  const auto armed = make(at("09:00"));
  arm(armed);
  armed->invalidate();
  arm(armed);
  const auto unarmed = make(at("09:00"));
  unarmed->invalidate();
  arm(unarmed);
  runTo("10:00");
  EXPECT_EQ(fired, Texts());
  EXPECT_EQ(texts(), (Texts{R"(timer arm t1 at 09:00:00 {"ProfileIdentifier": 7})", "timer invalidate t1",
                            "timer invalidate t2 (not armed)"}));
  EXPECT_TRUE(phone.wakeTimers().armed().empty());
}

TEST_F(WakeTimersTest, FollowTheWallClockWhenItJumps) {
  arm(make(at("09:00")));
  arm(make(at("12:00")));
  phone.jumpClockTo(at("11:00"));
  EXPECT_EQ(fired, Texts());
  runFor(1);
  EXPECT_EQ(fired, Texts{"t1"});
  phone.jumpClockTo(at("08:00"));
  runFor(3 * 3600);
  EXPECT_EQ(fired, Texts{"t1"});
  runFor(3600 + 1);
  EXPECT_EQ(fired, (Texts{"t1", "t2"}));
  EXPECT_EQ(texts({"phone"}),
            (Texts{"phone clock set to 2024-05-14 11:00:00", "phone clock set to 2024-05-14 08:00:00"}));
}

TEST_F(WakeTimersTest, WakeASuspendedPhone) {
  arm(make(at("09:00")));
  phone.suspend();
  runTo("10:00");
  EXPECT_EQ(texts({"phone", "timer"}), (Texts{
                                           R"(timer arm t1 at 09:00:00 {"ProfileIdentifier": 7})",
                                           "phone suspend",
                                           R"(phone resume cause="wake timer")",
                                           "timer fire t1 (09:00:00)",
                                       }));
}

TEST_F(WakeTimersTest, MayBeMadeAndStoppedOnAnotherThread) {
  std::shared_ptr<PCSimpleTimer> timer;
  std::thread([&] { timer = make(at("09:00")); }).join();
  arm(timer);
  std::thread([&] { timer->invalidate(); }).join();
  runTo("10:00");
  EXPECT_EQ(fired, Texts());
}

TEST_F(WakeTimersTest, AreNotMadeWhereTheirClassIsAbsent) {
  phone.classes().removeClass("PCSimpleTimer");
  EXPECT_EQ(platform::find<PCSimpleTimer>(), nullptr);
}

}  // namespace
}  // namespace hushmode
