// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/support/PhoneFixture.h"

#include <memory>
#include <thread>

namespace hushmode {
namespace {

using Texts = std::vector<std::string>;

class RunLoopTest : public PhoneFixture {
 protected:
  std::function<void()> note(std::string name) {
    return [this, name = std::move(name)] { ran.push_back(name); };
  }
  std::shared_ptr<platform::NSTimer> timer(double seconds, std::string name) {
    return phone.foundation().timerWithTimeInterval(seconds, [run = note(std::move(name))](const auto&) { run(); });
  }
  platform::RunLoop& loop() { return phone.runLoop(); }

  Texts ran;
};

/// A target with a name.
class Target final : public platform::Object {
 public:
  explicit Target(std::string name) : name_(std::move(name)) {}
  std::string description() const override { return "<" + name_ + ">"; }

 private:
  std::string name_;
};

TEST_F(RunLoopTest, NeverRunsDispatchedWorkInsideTheCall) {
  loop().dispatchAsync(note("async"));
  loop().dispatchAfter(0, note("after nothing"));
  EXPECT_EQ(ran, Texts());
  runFor(0);
  EXPECT_EQ(ran, (Texts{"async", "after nothing"}));
}

TEST_F(RunLoopTest, KnowsTheMainThread) {
  EXPECT_TRUE(loop().isMainThread());
  bool elsewhere = true;
  std::thread([&] { elsewhere = loop().isMainThread(); }).join();
  EXPECT_FALSE(elsewhere);
  phone.runLoop().setMainThread(false);
  EXPECT_FALSE(loop().isMainThread());
  phone.runLoop().setMainThread(std::nullopt);
  EXPECT_TRUE(loop().isMainThread());
}

TEST_F(RunLoopTest, CountsATimersIntervalFromTheMomentItIsAdded) {
  const auto debounce = timer(2.5, "debounce");
  runFor(10);
  loop().addTimer(debounce);
  loop().addTimer(debounce);
  runFor(2.4);
  EXPECT_EQ(ran, Texts());
  runFor(0.2);
  EXPECT_EQ(ran, Texts{"debounce"});
  loop().addTimer(debounce);
  runFor(10);
  EXPECT_EQ(ran, Texts{"debounce"}) << "one shot";
}

TEST_F(RunLoopTest, KeepsAnAddedTimerAndDropsAnInvalidatedOne) {
  loop().addTimer(timer(1, "kept"));
  const auto invalidated = timer(1, "invalidated");
  loop().addTimer(invalidated);
  invalidated->invalidate();
  const auto neverAdded = timer(1, "never added");
  neverAdded->invalidate();
  loop().addTimer(neverAdded);
  runFor(5);
  EXPECT_EQ(ran, Texts{"kept"});
}

TEST_F(RunLoopTest, LetsATimerInvalidateItselfInItsOwnAction) {
  loop().addTimer(phone.foundation().timerWithTimeInterval(1, [&](const auto& timer) {
    timer->invalidate();
    ran.push_back("fired");
  }));
  runFor(5);
  EXPECT_EQ(ran, Texts{"fired"});
}

TEST_F(RunLoopTest, RefusesTimersOfAnotherMake) {
  struct Foreign final : platform::NSTimer {
    void invalidate() override {}
  };
  EXPECT_THROW(loop().addTimer(std::make_shared<Foreign>()), std::invalid_argument);
  EXPECT_THROW(loop().addTimer(nullptr), std::invalid_argument);
}

TEST_F(RunLoopTest, CancelsRequestsByTargetAndSelector) {
  const auto work = std::make_shared<Target>("HMProfile Work");
  const auto other = std::make_shared<Target>("HMProfile Other");
  loop().performSelector(work, "hideSystemVolumeHUD", 2, note("work's, twice"));
  loop().performSelector(work, "hideSystemVolumeHUD", 1, note("work's, twice"));
  loop().performSelector(work, "another", 2, note("work's other"));
  loop().performSelector(other, "hideSystemVolumeHUD", 2, note("other's"));
  clearRecord();
  loop().cancelPreviousPerformRequests(work, "hideSystemVolumeHUD");
  loop().cancelPreviousPerformRequests(work, "hideSystemVolumeHUD");
  loop().performSelector(work, "hideSystemVolumeHUD", 2, note("work's"));
  EXPECT_EQ(texts(), (Texts{
                         "fx cancel hideSystemVolumeHUD on <HMProfile Work>",
                         "fx cancel hideSystemVolumeHUD on <HMProfile Work>",
                         "fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s",
                     }));
  runFor(5);
  EXPECT_EQ(ran, (Texts{"work's other", "other's", "work's"}));
}

TEST_F(RunLoopTest, KeepsATargetUntilItsActionIsOver) {
  auto target = std::make_shared<Target>("target");
  const std::weak_ptr<Target> watched = target;
  loop().performSelector(target, "act", 1, [&] {
    loop().cancelPreviousPerformRequests(watched.lock(), "act");  // Too late: it runs.
    ran.push_back(watched.expired() ? "gone" : "kept");
  });
  target.reset();
  runFor(2);
  EXPECT_EQ(ran, Texts{"kept"});
  EXPECT_TRUE(watched.expired());
}

TEST_F(RunLoopTest, DeliversSystemWideNotificationsFromTheLoop) {
  phone.foundation().darwinCenter().observe([&](std::string_view name) { ran.emplace_back(name); });
  phone.coreFoundation().postDarwinNotification("a");
  phone.foundation().darwinCenter().postFromOutside("b");
  EXPECT_EQ(ran, Texts());
  runFor(0);
  EXPECT_EQ(ran, (Texts{"a", "b"}));
  EXPECT_EQ(texts(), (Texts{"darwin a", "phone darwin from another process b"}));
}

TEST_F(RunLoopTest, LoadsOnlyLibrariesThatAreThere) {
  phone.foundation().setLoads("/lib/a.dylib", true);
  EXPECT_TRUE(phone.coreFoundation().dlopen("/lib/a.dylib", 2));
  EXPECT_FALSE(phone.coreFoundation().dlopen("/lib/b.dylib", 2));
  EXPECT_EQ(texts(), (Texts{"fx dlopen /lib/a.dylib mode 2", "fx dlopen /lib/b.dylib mode 2 (failed)"}));
}

}  // namespace
}  // namespace hushmode
