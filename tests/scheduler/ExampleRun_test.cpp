// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// One working day in full: everything that the phone is asked to do around one meeting, in order.

#include "effects/VolumeMarks.h"
#include "tests/scheduler/SchedulerFixture.h"

#include <string>
#include <string_view>

namespace hushmode {
namespace {

/// Dates of the day are cut to their clock time; "@n" behind a log line's level is its source line where that is fixed.
constexpr std::string_view wholeRun = R"(
@ 08:30:00
log I ***************** schedulePowerEventsForProfiles is called ********************
log I **** Trying to schedule events for profile 'Work'
log bare ***** Checking whether the event start date: 09:00:00 and end dates 10:00:00 with current time..
log W No event found for Profile with id 1700000000
table 1700000000[0] := <EKEvent "Standup" 09:00:00-10:00:00 UTC>
log I ******Scheduling power events for <EKEvent "Standup" 09:00:00-10:00:00 UTC>
log I ******** Scheduling power wakeup at: 09:00:00 for applying profile.
log I ******** Scheduling timer for 09:00:00 ***************
timer arm t1 at 09:00:00 {"ProfileIdentifier": 1700000000}
@ 09:00:00.500
timer fire t1 (09:00:00)
log I ************** schedulePowerEvent: t1 *****************
log I **** Trying to schedule events for profile 'Work'
log bare ***** Checking whether the event start date: 09:00:00 and end dates 10:00:00 with current time..
log I ************ __________ (((((( )))))))))))))) ______________ ************
log I setSilent is called......
table 1700000000[0] := <EKEvent "Standup" 09:00:00-10:00:00 UTC>
log I ******Scheduling power events for <EKEvent "Standup" 09:00:00-10:00:00 UTC>
log I **** Calling 'getCurrentScheduledEventFromProfile' *************
log I Processing scheduled event: <EKEvent "Standup" 09:00:00-10:00:00 UTC>
log I [currentEvent.startDate timeIntervalSinceNow]: -0.500000 & startTimeDiffInt: 0
log I [currentEvent.endDate timeIntervalSinceNow]: 3599.500000 & endTimeDiffInt: 3599
log I ********************* TURNING PROFILE ON ******************
log I ********* applying profile ************
file write profiles ok
log I@286 Profiles saved successfully to the disk.
log I@32 HMProfilesManager+Hushmode -> Profile updated successfully.
darwin com.quorvel.ProfileAppliedStateChangedNotification
fx turnOnScreenFullyWithBacklightSource:1
log I *********** applySoundSettings: 1
def set "com.quorvel.hushmode-ringtone" = 0.800000012
def synchronize
def set "com.quorvel.hushmode-volume" = 0.0999999791
def synchronize
log I *********** Volume-> olderDeviceVol: 0.100000
log I ******* Older Ringer Volume: 0.800000
log I ******* ringerVolume: 0.062500
log I ******* deviceVolume: 0.000000
log I self.isPlayAlert: 1 & apply: 1 && self.isSilent: 0
fx setSystemVolumeHUDEnabled:false
fx tone start type 1 "texttone:Calendar Alert"
log I ************************************************
log I oldRingVibrateState: 1
log I ************************************************
fx vibration feedback (4095)
def set "com.quorvel.hushmode-ring-vibrate" = true
def set "com.quorvel.hushmode-silent-vibrate" = false
def synchronize
log I ************* Scheduling power wakeup at: 10:00:00 for reverting profile.
log I ******** Scheduling timer for 10:00:00 ***************
timer invalidate t1 (already fired)
timer arm t2 at 10:00:00 {"ProfileIdentifier": 1700000000}
@ 09:00:01.500
fx tone stop
@ 09:00:02.300
fx setVolumeTo:0.062500 forCategory:Ringtone
log I ******* Before, [volumeController getMediaVolume]: 0.500000
def set "com.quorvel.hushmode-playBackVolume" = 0.5
def synchronize
log I ******* playBackVolume: 0.500000
log I ******* [volumeController volume]: 0.000000
log I ******* self.playBackVolume: 0.000000
fx setMediaVolume:0.000000
log I ******* After, [volumeController getMediaVolume]: 0.000000
fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s
@ 09:00:04.300
fx setSystemVolumeHUDEnabled:true
@ 09:00:05.500
fx _setBacklightFactorToZeroForProx
@ 10:00:00.500
timer fire t2 (10:00:00)
log I ************** schedulePowerEvent: t2 *****************
log I **** Trying to schedule events for profile 'Work'
log I **** Currently the state of DND module is 0 & and you are asking me to set its state as 0. Since both are same, I'm not doing anything!!
fx statusBarItem setVisible:false
log I No events found to be scheduled for Profile 'Work', between 08:00:00 & 17:00:00
file write profiles ok
log I@286 Profiles saved successfully to the disk.
log I@32 HMProfilesManager+Hushmode -> Profile updated successfully.
darwin com.quorvel.ProfileAppliedStateChangedNotification
log I ************ __________ (((((( )))))))))))))) ______________ ************
log I setSilent is called......
fx turnOnScreenFullyWithBacklightSource:1
log I *********** applySoundSettings: 0
log I ******* Older Ringer Volume: 0.000000
log I ******* ringerVolume: 0.800000
log I ******* deviceVolume: 0.100000
log I self.isPlayAlert: 1 & apply: 0 && self.isSilent: 0
fx setSystemVolumeHUDEnabled:false
fx setVolumeTo:0.800000 forCategory:Ringtone
fx tone start type 1 "texttone:Calendar Alert"
log I ************************************************
log I oldRingVibrateState: 1
log I ************************************************
fx vibration feedback (4095)
def set "com.quorvel.hushmode-ring-vibrate" = true
def set "com.quorvel.hushmode-silent-vibrate" = false
def synchronize
log I ************************************************
log I changeVibrateStatus() is called
log I ************************************************
fx springboard domain ring-vibrate=false silent-vibrate=false
darwin com.apple.springboard.ring-vibrate.changed
darwin com.apple.springboard.silent-vibrate.changed
log I ************************************************
log I shouldRevertStatus, hence oldHMRingVibrateState: 1 & oldHMSilentVibrateState: 0
log I ************************************************
fx statusBarItem setVisible:false
log I **** Currently the state of DND module is 0 & and you are asking me to set its state as 0. Since both are same, I'm not doing anything!!
def remove "com.quorvel.hushmode-ringtone"
def remove "com.quorvel.hushmode-volume"
def remove "com.quorvel.hushmode-playBackVolume"
def synchronize
log I Got current event as: <EKEvent "Standup" 09:00:00-10:00:00 UTC>
log I ******** Removing <EKEvent "Standup" 09:00:00-10:00:00 UTC> from scheduled list (<EKEvent "Standup" 09:00:00-10:00:00 UTC>)
@ 10:00:00.800
fx springboard domain ring-vibrate=true silent-vibrate=false
darwin com.apple.springboard.ring-vibrate.changed
darwin com.apple.springboard.silent-vibrate.changed
@ 10:00:01.500
fx tone stop
@ 10:00:02.300
log I ******* Before, [volumeController getMediaVolume]: 0.000000
def set "com.quorvel.hushmode-playBackVolume" = 0
def synchronize
log I ******* playBackVolume: 0.000000
log I ******* [volumeController volume]: 0.000000
log I ******* self.playBackVolume: 0.000000
fx setMediaVolume:0.000000
log I ******* After, [volumeController getMediaVolume]: 0.000000
fx schedule hideSystemVolumeHUD on <HMProfile Work> at +2.0 s
@ 10:00:04.300
fx setSystemVolumeHUDEnabled:true
@ 10:00:05.500
fx _setBacklightFactorToZeroForProx
)";

class ExampleRun : public SchedulerFixture {
 protected:
  static platform::Dictionary work() {
    return {{"identifier", 1700000000},
            {"title", "Work"},
            {"enabled", true},
            {"allDay", false},
            {"startTime", "8:00 AM"},
            {"endTime", "5:00 PM"},
            {"ringerVolume", 0.0625},
            {"playBackVolume", 0.0},
            {"deviceVolume", 0.0},
            {"playAlert", true},
            {"vibrate", true},
            {"vibrateAlert", true},
            {"applyProfileEventStatus", 0},
            {"alertSound", 1005},
            {"alertToneIdentifier", "texttone:Calendar Alert"},
            {"calendarIdentifiers", platform::Array{"cal-A"}},
            {"wifiNetworks", platform::Array{}},
            {"wakeUpScreen", true},
            {"allDayEventsIgnored", true}};
  }

  void SetUp() override {
    clock("08:30");
    writeProfilesFile({work()});
    addEvent("Standup", at("09:00"), at("10:00"));
    SchedulerFixture::SetUp();
  }

  /// The whole record, with a line for each new instant.
  std::string run() const {
    std::string text = "\n", instant;
    for (const devices::RecordEntry& entry : phone.record().entries()) {
      if (entry.localTime() != instant) text += "@ " + withoutToday(instant = entry.localTime()) + "\n";
      std::string line = withoutToday(entry.text());
      const platform::Value* fixed = entry.fields.find("line");
      const bool fixedOnes = line.ends_with(" Profiles saved successfully to the disk.") ||
                             line.ends_with(" -> Profile updated successfully.");
      if (fixed && fixedOnes) line.replace(0, 5, "log I@" + std::to_string(*fixed->as<std::int64_t>()));
      text += line + "\n";
    }
    return text;
  }
};

TEST_F(ExampleRun, AMeetingAppliesAndRevertsTheProfileStepByStep) {
  manager().schedulePowerEventsForProfiles();
  runTo("10:00:10");
  EXPECT_EQ(run(), wholeRun);
}

TEST_F(ExampleRun, AfterTheMeetingThePhoneIsAsBeforeButForTheMediaVolume) {
  const platform::Dictionary homeScreen = phone.defaults().domains().at("com.apple.springboard");
  manager().schedulePowerEventsForProfiles();
  runTo("10:00:10");

  EXPECT_FLOAT_EQ(*phone.sound().volume("Ringtone"), 0.8F);
  EXPECT_EQ(phone.sound().mediaVolume(), 0.0F) << "the saved value goes before the tone's end could put it back";
  EXPECT_EQ(phone.defaults().domains().at("com.apple.springboard"), homeScreen);
  EXPECT_EQ(phone.defaults().standard(), (platform::Dictionary{{"com.quorvel.hushmode-ring-vibrate", true},
                                                               {"com.quorvel.hushmode-silent-vibrate", false},
                                                               {"com.quorvel.hushmode-playBackVolume", 0.0}}));
  EXPECT_EQ(armed(), "");
  const auto* list = manager().scheduledEventsDict().find(1700000000);
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(list->empty());
  EXPECT_EQ(hm_ChangedCounter(phone.sound().sharedAVSystemController()), 2);
  EXPECT_FALSE(manager().profiles().front()->isApplied());
}

}  // namespace
}  // namespace hushmode
