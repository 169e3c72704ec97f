// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The wake timers of a profile: making, arming, stopping, firing.

#include "tests/scheduler/SchedulerFixture.h"

namespace hushmode {
namespace {

class WakeTimers : public SchedulerFixture {
 protected:
  void SetUp() override {
    SchedulerFixture::SetUp();
    clock("07:00");
    work = addProfile();
  }

  Profile work;
};

TEST_F(WakeTimers, ATimerNamesItsProfileAndItsService) {
  work->beginTimerForDate(at("09:00"));
  const auto armed = phone.wakeTimers().armed();
  ASSERT_EQ(armed.size(), 1u);
  EXPECT_EQ(armed[0].userInfo, (platform::Dictionary{{"ProfileIdentifier", 1000}}));
  EXPECT_EQ(armed[0].fireDate, at("09:00"));
  EXPECT_EQ(work->timer()->userInfo(), armed[0].userInfo);
  const platform::Value* service = phone.record().entries().back().fields.find("serviceIdentifier");
  ASSERT_NE(service, nullptr);
  EXPECT_EQ(*service, "com.quorvel.hushmode");
}

TEST_F(WakeTimers, ALaterIdentifierDoesNotChangeATimer) {
  work->beginTimerForDate(at("09:00"));
  work->setIdentifier(7);
  EXPECT_EQ(work->timer()->userInfo(), (platform::Dictionary{{"ProfileIdentifier", 1000}}));
}

TEST_F(WakeTimers, APastDateStopsTheOldTimerAndArmsNone) {
  work->beginTimerForDate(at("09:00"));
  story();
  work->beginTimerForDate(at("06:59:59.999"));
  EXPECT_EQ(story(), R"(
timer invalidate t1
E Supplied Date '06:59:59' is invalid or in the past..
)");
  EXPECT_EQ(work->timer(), nullptr);
  EXPECT_EQ(armed(), "");
}

TEST_F(WakeTimers, NoDateIsLikeAPastOne) {
  work->beginTimerForDate(at("09:00"));
  story();
  work->beginTimerForDate(std::nullopt);
  EXPECT_EQ(story(), R"(
timer invalidate t1
E Supplied Date '(null)' is invalid or in the past..
)");
  EXPECT_EQ(armed(), "");
}

TEST_F(WakeTimers, ADateEqualToNowIsValid) {
  work->beginTimerForDate(at("07:00"));
  EXPECT_EQ(armed(), "t1 at 07:00:00");
}

TEST_F(WakeTimers, OfTwoDatesOnlyTheSecondIsArmed) {
  work->beginTimerForDate(at("09:00"));
  work->beginTimerForDate(at("10:00"));
  EXPECT_EQ(story(), R"(
timer arm t1 at 09:00:00
timer invalidate t1
timer arm t2 at 10:00:00
)");
}

TEST_F(WakeTimers, MakingATimerDoesNotArmIt) {
  EXPECT_NE(work->timerWithDate(at("09:00")), nullptr);
  EXPECT_EQ(work->timer(), nullptr) << "it is nobody's property";
  EXPECT_NE(work->timerForDate(at("09:00")), nullptr);
  EXPECT_EQ(armed(), "");
}

TEST_F(WakeTimers, AnExistingTimerIsReturnedWhateverTheDate) {
  const auto timer = work->timerForDate(at("09:00"));
  EXPECT_EQ(work->timerForDate(at("10:00")), timer);
  EXPECT_EQ(work->timerForDate(std::nullopt), timer);
  work->stopTimer();
  EXPECT_EQ(work->timer(), nullptr);
  EXPECT_NE(work->timerForDate(at("10:00")), timer);
}

TEST_F(WakeTimers, TheStartTimerStaysTheSameUntilItIsStopped) {
  const auto start = work->startTimer();
  ASSERT_NE(start, nullptr);
  work->setStartDate(at("09:30"));
  EXPECT_EQ(work->startTimer(), start);
  work->stopStartTimer();
  const auto fresh = work->startTimer();
  EXPECT_NE(fresh, start);
  work->beginStartTimer();
  EXPECT_EQ(armed(), "t2 at 09:30:00");
}

TEST_F(WakeTimers, ABoundThatIsPastIsTriedAgainAtTheNextCall) {
  clock("12:00");
  EXPECT_EQ(work->startTimer(), nullptr);
  work->beginStartTimer();
  EXPECT_EQ(count("Supplied Date '08:00:00' is invalid or in the past.."), 2);
  work->setStartDate(at("13:00"));
  EXPECT_NE(work->startTimer(), nullptr);
  EXPECT_NE(work->endTimer(), nullptr);
}

TEST_F(WakeTimers, StoppingTheBoundsLeavesTheGeneralTimerRunning) {
  work->beginTimerForDate(at("09:00"));
  work->beginStartTimer();
  work->beginEndTimer();
  story();
  work->stopTimers();
  EXPECT_EQ(story(), R"(
timer invalidate t2
timer invalidate t3
)");
  EXPECT_EQ(armed(), "t1 at 09:00:00");
}

TEST_F(WakeTimers, SchedulingAllArmsTheEndTimerOnceAndFresh) {
  work->scheduleTimers();
  EXPECT_EQ(story(), R"(
timer arm t1 at 08:00:00
timer arm t2 at 17:00:00
timer invalidate t2
timer arm t3 at 17:00:00
)");
}

TEST_F(WakeTimers, SchedulingAllTwiceDoesNotStopTheStartTimer) {
  work->scheduleTimers();
  story();
  work->scheduleTimers();
  EXPECT_EQ(story(), R"(
timer invalidate t3
timer arm t4 at 17:00:00
)");
  EXPECT_EQ(armed(), "t1 at 08:00:00, t4 at 17:00:00");
}

TEST_F(WakeTimers, TheExactStartDateArmsBothBounds) {
  work->scheduleTimer(at("08:00"));
  EXPECT_EQ(story(), R"(
timer arm t1 at 08:00:00
timer arm t2 at 17:00:00
)");
}

TEST_F(WakeTimers, TheExactEndDateArmsTheEndAfresh) {
  work->beginEndTimer();
  story();
  work->scheduleTimer(at("17:00"));
  EXPECT_EQ(story(), R"(
timer invalidate t1
timer arm t2 at 17:00:00
)");
}

TEST_F(WakeTimers, AnyOtherDateIsRefused) {
  work->scheduleTimer(at("08:00:00.001"));
  EXPECT_EQ(story(), R"(
E Invalid date supplied hence ignoring schedule timers call...
)");
}

TEST_F(WakeTimers, WithoutTheTimerClassNothingIsArmedAndNothingSaid) {
  phone.classes().removeClass("PCSimpleTimer");
  work->beginTimerForDate(at("09:00"));
  work->scheduleTimers();
  EXPECT_EQ(story(), "\n");
  EXPECT_EQ(work->timer(), nullptr);
}

TEST_F(WakeTimers, OffTheMainThreadArmingWaitsForTheMainQueue) {
  phone.runLoop().setMainThread(false);
  work->beginTimerForDate(at("09:00"));
  EXPECT_NE(work->timer(), nullptr) << "made at once";
  EXPECT_EQ(armed(), "");
  phone.runLoop().setMainThread(true);
  runFor(0);
  EXPECT_EQ(armed(), "t1 at 09:00:00");
}

TEST_F(WakeTimers, ATimerStoppedBeforeTheMainQueueGotToItStaysDisarmed) {
  phone.runLoop().setMainThread(false);
  work->beginTimerForDate(at("09:00"));
  work->beginTimerForDate(at("10:00"));
  phone.runLoop().setMainThread(true);
  runFor(0);
  EXPECT_EQ(armed(), "t2 at 10:00:00");
}

TEST_F(WakeTimers, OffTheMainThreadTheBoundsTimersAreMadeOnTheMainQueueToo) {
  phone.runLoop().setMainThread(false);
  work->beginStartTimer();
  work->beginEndTimer();
  work->setEndDate(at("16:00"));
  phone.runLoop().setMainThread(true);
  runFor(0);
  EXPECT_EQ(armed(), "t1 at 08:00:00, t2 at 16:00:00");
}

TEST_F(WakeTimers, EachOfTheThreePlansTheProfileInAnyCase) {
  addEvent("Long", at("06:00"), at("18:00"));
  work->scheduleTimers();                // t1, t3
  work->beginTimerForDate(at("12:00"));  // t4
  story();
  runTo("08:00:01");
  EXPECT_EQ(count("schedulePowerEvent: t1"), 1);
  EXPECT_TRUE(work->isApplied());
  story();
  work->beginTimerForDate(at("12:00"));
  runTo("12:00:01");
  EXPECT_EQ(count("<refresh>"), 1) << "an unchanged event is not ignored before it is refreshed";
  runTo("17:00:01");
  EXPECT_EQ(count("schedulePowerEvent: t3"), 1);
  EXPECT_FALSE(work->isApplied());
}

TEST_F(WakeTimers, AFiredTimerStaysInItsPropertySpent) {
  const auto start = work->startTimer();
  work->beginStartTimer();
  runTo("08:01");
  EXPECT_EQ(work->startTimer(), start);
  work->beginStartTimer();
  EXPECT_EQ(armed(), "") << "it never fires again";
}

TEST_F(WakeTimers, ATimerReplacesItselfWhileItFires) {
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);  // Before the window: a wake-up at its start, which arms the one for the event.
  EXPECT_EQ(armed(), "t1 at 08:00:00");
  runTo("08:00:01");
  EXPECT_EQ(count("timer invalidate t1 (already fired)"), 1);
  EXPECT_EQ(armed(), "t2 at 09:00:00");
}

TEST_F(WakeTimers, AnArmedTimerOutlivesTheProfileObjectThatArmedIt) {
  addEvent("Standup", at("09:00"), at("10:00"));
  plan(work);
  runTo("09:00:01");
  ASSERT_TRUE(work->isApplied());
  manager().loadProfiles();  // New objects that have no timers of their own.
  work.reset();
  ASSERT_TRUE(manager().profiles().front()->isApplied());
  runTo("10:00:01");
  EXPECT_FALSE(manager().profiles().front()->isApplied());
}

TEST_F(WakeTimers, TheTimersOfAnEndedProcessAreGone) {
  work->beginTimerForDate(at("09:00"));
  restartProcess();
  story();
  runTo("10:00");
  EXPECT_EQ(story(), "\n");
}

}  // namespace
}  // namespace hushmode
