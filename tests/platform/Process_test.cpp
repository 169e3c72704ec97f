// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The host process: what it makes once, and what is gone when it ends.

#include "platform/Process.h"

#include "devices/simulated/SimulatedPhone.h"
#include "platform/SpringBoard.h"

#include <atomic>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace hushmode::platform {
namespace {

struct Single {
  static inline std::atomic<int> made = 0, initialised = 0;
  static std::shared_ptr<Single> make() {
    ++made;
    return std::make_shared<Single>();
  }
  static std::shared_ptr<Single> shared() {
    static constexpr char key = 0;
    return Process::current().singleInstance<Single>(&key, &Single::make, [](Single&) { ++initialised; });
  }
};

class ProcessTest : public testing::Test {
 protected:
  ProcessTest() { Single::made = Single::initialised = 0; }
  devices::SimulatedPhone phone{Date(1715673600)};
};

TEST_F(ProcessTest, IsCurrentFromItsMakingToItsEnd) {
  EXPECT_FALSE(Process::hasCurrent());
  EXPECT_THROW(Process::current(), std::logic_error);
  EXPECT_THROW(device(), std::logic_error);
  {
    const Process process(phone);
    EXPECT_EQ(&Process::current(), &process);
    EXPECT_EQ(&device(), &phone);
  }
  EXPECT_FALSE(Process::hasCurrent());
}

TEST_F(ProcessTest, IsTheOnlyOneAtATime) {
  const Process process(phone);
  EXPECT_THROW(Process another(phone), std::logic_error);
  EXPECT_EQ(&Process::current(), &process) << "the failed one must not have taken the first one's place";
}

TEST_F(ProcessTest, StartsNothing) {
  const Process process(phone);
  EXPECT_TRUE(phone.record().entries().empty());
}

TEST_F(ProcessTest, MakesASingleInstanceOnceAndInitialisesItAfterwards) {
  const Process process(phone);
  const auto first = Single::shared();
  EXPECT_EQ(Single::shared(), first);
  EXPECT_EQ(Single::made, 1);
  EXPECT_EQ(Single::initialised, 1);
}

TEST_F(ProcessTest, MakesASingleInstanceOnceForAllThreads) {
  const Process process(phone);
  std::vector<std::shared_ptr<Single>> found(4);
  std::vector<std::thread> threads;
  for (auto& each : found) threads.emplace_back([&each] { each = Single::shared(); });
  for (std::thread& thread : threads) thread.join();
  for (const auto& each : found) EXPECT_EQ(each, found[0]);
  EXPECT_EQ(Single::made, 1);
}

TEST_F(ProcessTest, DropsItsInstancesWhenItEndsAndTellsTheDeviceOnce) {
  std::weak_ptr<Single> former;
  {
    const Process process(phone);
    former = Single::shared();
  }
  EXPECT_TRUE(former.expired());
  ASSERT_EQ(phone.record().entries().size(), 1U);
  EXPECT_EQ(phone.record().entries()[0].text(), "phone process ended");
  const Process next(phone);
  Single::shared();
  EXPECT_EQ(Single::made, 2);
}

TEST_F(ProcessTest, FindsClassesByTheNameOfTheirInterface) {
  const Process process(phone);
  EXPECT_NE(find<VolumeControl>(), nullptr);
  phone.classes().removeClass("VolumeControl");
  EXPECT_EQ(find<VolumeControl>(), nullptr);
  phone.classes().restoreClass("VolumeControl");
  EXPECT_NE(find<VolumeControl>(), nullptr);
}

}  // namespace
}  // namespace hushmode::platform
