// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The single instance and what its start does.

#include "effects/VolumeMarks.h"
#include "tests/support/StoreTest.h"

#include <thread>

namespace hushmode {
namespace {

constexpr std::string_view volumeNotification = "AVSystemController_SystemVolumeDidChangeNotification";

class StartUp : public StoreTest {};

TEST_F(StartUp, LoadsTheStatusBarMakesAHiddenIconAndThenLoadsTheProfiles) {
  writeProfilesFile({platform::Dictionary{{"identifier", 42}}});
  manager();
  EXPECT_EQ(texts(), (Texts{
                         "fx dlopen /Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib mode 2",
                         "log I ******* 2. 'libstatusbar.dylib' loaded succesfully ********",
                         "fx statusBarItem initWithIdentifier:com.quorvel.hushmode alignment:2",
                         "fx statusBarItem setImageName:Profile",
                         "fx statusBarItem setVisible:false",
                         "log I setPropertiesFromDicitonary=> {identifier = 42}",
                     }));
  ASSERT_TRUE(phone.statusBar().icon());
  EXPECT_FALSE(phone.statusBar().isIconVisible());
  EXPECT_EQ(listed(), Identifiers{42});
}

TEST_F(StartUp, HappensOnceForTheOneInstance) {
  const auto first = HMProfilesManager::sharedManager();
  const Texts started = texts();
  EXPECT_EQ(HMProfilesManager::sharedManager(), first);
  EXPECT_EQ(texts(), started);
}

TEST_F(StartUp, HappensOnceAlsoWhenManyThreadsAskAtOnce) {
  std::vector<std::shared_ptr<HMProfilesManager>> found(4);
  std::vector<std::thread> threads;
  for (auto& each : found) threads.emplace_back([&each] { each = HMProfilesManager::sharedManager(); });
  for (std::thread& thread : threads) thread.join();
  for (const auto& each : found) EXPECT_EQ(each, found.front());
  EXPECT_EQ(texts({devices::kind::effect}).size(), 4U);
}

TEST_F(StartUp, BeginsWithAnEmptyTableAndWithoutTimerAndAlert) {
  EXPECT_TRUE(manager().scheduledEventsDict().empty());
  EXPECT_EQ(manager().eventStoreUpdateTimer(), nullptr);
  EXPECT_EQ(manager().volumePreserveAlertView(), nullptr);
  EXPECT_NE(manager().statusBarItem(), nullptr);
}

TEST_F(StartUp, PlansNothingAndReadsNoCalendarAlsoForAnEnabledProfile) {
  phone.calendars().addCalendar("cal-1", "Work");
  phone.calendars().add({"e1", "cal-1", "Standup", today(10, 30), today(11)});
  writeProfilesFile({platform::Dictionary{{"identifier", 42}, {"enabled", true}, {"allDay", true}}});
  manager();
  EXPECT_EQ(phone.time().pending(), 0U);
  EXPECT_EQ(texts({devices::kind::timer, devices::kind::table, devices::kind::file, devices::kind::defaults}), Texts());
  EXPECT_EQ(phone.notifications().observerCount(), 1U) << "the volume, and not the calendars";
}

TEST_F(StartUp, IsTheSameWhileTheMasterSwitchIsOff) {
  setMasterSwitch(false);
  writeProfilesFile({stored(42, "Work")});
  EXPECT_EQ(listed(), Identifiers{42});
}

TEST_F(StartUp, ObservesTheVolumeOfAnySender) {
  manager();
  const auto controller = phone.celestial().sharedAVSystemController();
  const auto counter = hm_ChangedCounter(controller);
  phone.notifications().post({std::string(volumeNotification), nullptr, {}});
  phone.notifications().post({std::string(volumeNotification), std::make_shared<platform::Object>(), {}});
  phone.notifications().post({"another notification", nullptr, {}});
  EXPECT_EQ(hm_ChangedCounter(controller), counter - 2) << "the handler counts the changes that nobody marked";
}

TEST_F(StartUp, GoesOnWithoutTheStatusBarLibrary) {
  phone.foundation().setLoads(devices::SimulatedStatusBar::libraryPath, false);
  writeProfilesFile({stored(42, "Work")});
  EXPECT_EQ(listed(), Identifiers{42});
  EXPECT_EQ(manager().statusBarItem(), nullptr);
  EXPECT_EQ(texts({devices::kind::effect}),
            Texts{"fx dlopen /Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib mode 2 (failed)"});
  EXPECT_EQ(phone.notifications().observerCount(), 1U);
}

TEST_F(StartUp, MakesANewInstanceForANewProcess) {
  const auto former = HMProfilesManager::sharedManager();
  former->setProfiles({profile(7)});
  writeProfilesFile({stored(42, "Work")});
  restartProcess();
  EXPECT_NE(HMProfilesManager::sharedManager(), former);
  EXPECT_EQ(listed(), Identifiers{42});
}

TEST_F(StartUp, LeavesAnInstanceThatSomebodyHoldsHarmlessWhenItsProcessEnds) {
  auto held = HMProfilesManager::sharedManager();
  killProcess();
  held.reset();
  restartProcess();
  EXPECT_NE(HMProfilesManager::sharedManager(), nullptr);
}

TEST_F(StartUp, EndsItsObservationsWithTheInstance) {
  manager();
  ASSERT_EQ(phone.notifications().observerCount(), 1U);
  killProcess();
  EXPECT_EQ(phone.notifications().observerCount(), 0U);
}

}  // namespace
}  // namespace hushmode
