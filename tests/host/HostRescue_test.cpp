// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What a process that died has left changed, put back by one that does nothing else.

#include "apps/simulation/Simulation.h"
#include "host/Host.h"
#include "host/Ledger.h"
#include "tests/support/PhoneFixture.h"

#include <functional>
#include <optional>
#include <ostream>

namespace hushmode::host {
namespace {

using devices::SimulatedPhone;
using platform::Dictionary;

constexpr std::string_view homeScreen = "com.apple.springboard";

/// The phone before any profile.
const PhoneState loud{.ringtone = 0.8F,
                      .media = 0.5F,
                      .ringVibrate = true,
                      .silentVibrate = true,
                      .doNotDisturb = false,
                      .icon = std::nullopt};

PhoneState but(PhoneState state, const std::function<void(PhoneState&)>& change) {
  change(state);
  return state;
}

/// As the profile of these tests asks.
const PhoneState quiet = but(loud, [](PhoneState& s) { s.ringtone = 0.25F, s.media = 0.125F; });

const std::function<void(SimulatedPhone&)> nothing = [](SimulatedPhone&) {};

void loseLedger(SimulatedPhone& phone) { phone.files().memory().remove(Ledger::path); }
void fillDisk(SimulatedPhone& phone) { phone.files().setWritesFail(true); }

/// A phone with one profile and a meeting from 9:00 to 10:00, and a host that dies on it.
struct Death {
  std::string name;
  std::string at = "09:30";  ///< Empty: no host ever ran.
  Dictionary profile = {};   ///< Beside the volumes and the calendar.
  PhoneState left = quiet;   ///< What the rescue finds.
  PhoneState wanted = loud;
  PhoneState after = loud;
  bool isSaved = true;
  // What else happens, by others: before the host starts, at 9:15, and after its death.
  std::function<void(SimulatedPhone&)> before = nothing, meanwhile = nothing, since = nothing;
};

std::ostream& operator<<(std::ostream& out, const Death& death) { return out << death.name; }

class RescueFixture : public PhoneFixture {
 protected:
  RescueFixture() {
    killProcess();
    phone.defaults().domains()[std::string(homeScreen)].set("silent-vibrate", true);
    phone.calendars().add({"meeting", "work", "Meeting", at("09:00"), at("10:00")});
  }

  Host& newHost() {
    host_.reset();
    return host_.emplace(phone, [](const Message&) {});
  }

  void die(const Death& death) {
    Dictionary profile{{"identifier", 5},      {"title", "Work"},
                       {"enabled", true},      {"allDay", true},
                       {"ringerVolume", 0.25}, {"playBackVolume", 0.125},
                       {"vibrate", true},      {"calendarIdentifiers", platform::Array{"work"}}};
    for (const auto& [key, value] : death.profile) profile.set(key, value);
    writeProfilesFile({profile});
    death.before(phone);
    if (!death.at.empty()) {
      newHost().start();
      if (at(death.at) > at("09:15")) {
        runTo("09:15");
        death.meanwhile(phone);
        host_->phoneChanged();
      }
      runTo(death.at);
      host_->kill();
    }
    death.since(phone);
  }

  /// What the phone shows of what `like` has.
  PhoneState shown(const PhoneState& like) const {
    return but(simulation::stateOf(phone), [&](PhoneState& s) {
      s.icon.reset();
      if (!like.media) s.media.reset();
    });
  }
  bool isLedgerOpen() const {
    const auto content = phone.files().arrayWithContentsOfFile(Ledger::path);
    return content && !content->empty();
  }
  /// All that outlives a process.
  std::vector<std::optional<platform::Value>> kept() const {
    std::vector<std::optional<platform::Value>> all;
    for (const std::string_view path : {Ledger::path, profilesPath, settingsPath}) {
      const platform::Value* content = phone.files().memory().find(path);
      all.push_back(content ? std::optional(*content) : std::nullopt);
    }
    all.emplace_back(platform::Value(phone.defaults().standard()));
    for (const auto& [name, domain] : phone.defaults().domains()) all.emplace_back(platform::Value(domain));
    return all;
  }

 private:
  std::optional<Host> host_;
};

class RescueOf : public RescueFixture, public ::testing::WithParamInterface<Death> {};

TEST_P(RescueOf, PutsBackWhatWasFoundAndPlansNothing) {
  const Death& death = GetParam();
  die(death);
  Host& host = newHost();
  const Rescue rescue = host.rescue();
  EXPECT_EQ(rescue.before, death.left) << differenceText(death.left, rescue.before);
  EXPECT_EQ(rescue.wanted, death.wanted) << differenceText(death.wanted, rescue.wanted);
  EXPECT_EQ(rescue.after, death.after) << differenceText(death.after, rescue.after);
  EXPECT_EQ(rescue.isSaved, death.isSaved);
  EXPECT_FALSE(host.isRunning());
  EXPECT_TRUE(phone.wakeTimers().armed().empty());
  runTo("12:00");
  EXPECT_EQ(shown(death.after), death.after) << differenceText(death.after, shown(death.after));
  EXPECT_FALSE(death.isSaved && isLedgerOpen());
}

TEST_P(RescueOf, IsForeseenAsItHappens) {
  const Death& death = GetParam();
  die(death);
  const auto before = kept();
  const Rescue foreseen = newHost().wouldRescue();
  EXPECT_EQ(foreseen.before, death.left) << differenceText(death.left, foreseen.before);
  EXPECT_EQ(foreseen.after, foreseen.before);
  EXPECT_EQ(foreseen.wanted, death.wanted) << differenceText(death.wanted, foreseen.wanted);
  EXPECT_EQ(shown(death.left), death.left) << differenceText(death.left, shown(death.left));
  EXPECT_EQ(kept(), before);
  EXPECT_EQ(newHost().rescue().wanted, foreseen.wanted);
}

TEST_P(RescueOf, LeavesASecondOneOnlyWhatCouldNotBeSaved) {
  const Death& death = GetParam();
  die(death);
  newHost().rescue();
  const Rescue second = newHost().rescue();
  const PhoneState wanted = death.isSaved ? PhoneState() : death.wanted;
  EXPECT_EQ(second.wanted, wanted) << differenceText(wanted, second.wanted);
  EXPECT_EQ(second.before, second.after);
  EXPECT_EQ(second.isSaved, death.isSaved);
}

const PhoneState withDoNotDisturb = but(quiet, [](PhoneState& s) { s.doNotDisturb = true; });
const PhoneState withoutMedia = but(loud, [](PhoneState& s) { s.media.reset(); });

INSTANTIATE_TEST_SUITE_P(
    APhoneThat, RescueOf,
    ::testing::Values(
        Death{.name = "NeverHadAHost", .at = "", .left = loud, .wanted = {}},
        Death{.name = "WasNotInAMeeting", .at = "08:30", .left = loud, .wanted = {}}, Death{.name = "WasInAMeeting"},
        Death{.name = "HadItsVibrationOffForAMoment",
              .at = "10:00:00.5",
              .left = but(loud, [](PhoneState& s) { s.ringVibrate = s.silentVibrate = false; })},
        Death{.name = "WasNotToDisturb", .profile = {{"dnDEnabled", true}}, .left = withDoNotDisturb},
        Death{.name = "WasNotToDisturbBefore",
              .profile = {{"dnDEnabled", true}},
              .left = withDoNotDisturb,
              .wanted = but(loud, [](PhoneState& s) { s.doNotDisturb = true; }),
              .after = but(loud, [](PhoneState& s) { s.doNotDisturb = true; }),
              .before = [](SimulatedPhone& phone) { phone.controlCenter().setDoNotDisturb(true); }},
        Death{.name = "WasSetByHandMeanwhile",
              .profile = {{"dnDEnabled", true}},
              .left = but(quiet, [](PhoneState& s) { s.media = 0.7F; }),
              .wanted = but(loud, [](PhoneState& s) { s.media = 0.7F; }),
              .after = but(loud, [](PhoneState& s) { s.media = 0.7F; }),
              .meanwhile =
                  [](SimulatedPhone& phone) {
                    phone.sound().setMediaVolume(0.7F);
                    phone.controlCenter().switchDoNotDisturb(false);
                  }},
        // Back at the volume of the profile, so that only the ledger still knows what the user wanted.
        Death{.name = "WasSetByHandMeanwhileAndShowsTheProfilesVolumeAgain",
              .wanted = but(loud, [](PhoneState& s) { s.media = 0.7F; }),
              .after = but(loud, [](PhoneState& s) { s.media = 0.7F; }),
              .meanwhile = [](SimulatedPhone& phone) { phone.sound().setMediaVolume(0.7F); },
              .since = [](SimulatedPhone& phone) { phone.sound().setMediaVolume(0.125F); }},
        Death{.name = "WasSetByHandSince",
              .left = but(quiet, [](PhoneState& s) { s.ringtone = 0.4F, s.doNotDisturb = true; }),
              .wanted = but(loud, [](PhoneState& s) { s.ringtone = 0.4F, s.doNotDisturb = true; }),
              .after = but(loud, [](PhoneState& s) { s.ringtone = 0.4F, s.doNotDisturb = true; }),
              .since =
                  [](SimulatedPhone& phone) {
                    phone.sound().setVolume("Ringtone", 0.4F);
                    phone.controlCenter().setDoNotDisturb(true);
                  }},
        Death{.name = "HadNotHeardTheToneToItsEnd", .at = "09:00:01", .profile = {{"playAlert", true}}, .left = loud},
        Death{.name = "HadNotHeardTheLastToneToItsEnd",
              .at = "10:00:01.2",
              .profile = {{"playAlert", true}},
              .left = but(loud, [](PhoneState& s) { s.media = 0.125F; })},
        Death{.name = "WasSwitchedOffSince",
              .since =
                  [](SimulatedPhone& phone) {
                    phone.files().memory().set(HMProfilesManager::settingsPath,
                                               Dictionary{{"com.quorvel.hushmode.enabled", false}});
                  }},
        // What the library noted of itself.
        Death{.name = "HasLostItsLedger", .since = loseLedger},
        Death{.name = "HasALedgerThatCannotBeRead",
              .since =
                  [](SimulatedPhone& phone) {
                    phone.files().memory().set(Ledger::path, Dictionary{{"no", "list"}});
                  }},
        Death{.name = "HasLostItsMediaVolume",
              .left = but(quiet, [](PhoneState& s) { s.media.reset(); }),
              .after = withoutMedia,
              .isSaved = false,
              .since = [](SimulatedPhone& phone) { phone.classes().removeClass("VolumeControl"); }},
        Death{.name = "HasAFullDisk", .isSaved = false, .since = fillDisk},
        Death{.name = "HasLostItsLedgerAndHasAFullDisk",
              .isSaved = false,
              .since = [](SimulatedPhone& phone) { loseLedger(phone), fillDisk(phone); }},
        Death{.name = "WasRevertedAndHasAFullDisk",
              .at = "10:00:01.2",
              .profile = {{"playAlert", true}},
              .left = but(loud, [](PhoneState& s) { s.media = 0.125F; }),
              .isSaved = false,
              .since = fillDisk}),
    [](const auto& info) { return info.param.name; });

class HostRescue : public RescueFixture {};

TEST_F(HostRescue, GoesOnWhenTheServiceThatWasAwayIsBack) {
  die({.name = ""});
  phone.classes().removeClass("VolumeControl");
  EXPECT_FALSE(newHost().rescue().isSaved);
  EXPECT_TRUE(isLedgerOpen());
  phone.classes().restoreClass("VolumeControl");
  const Rescue rescue = newHost().rescue();
  EXPECT_EQ(rescue.wanted, loud) << differenceText(loud, rescue.wanted);
  EXPECT_EQ(rescue.after, loud) << differenceText(loud, rescue.after);
  EXPECT_TRUE(rescue.isSaved);
  EXPECT_FALSE(isLedgerOpen());
}

TEST_F(HostRescue, IsSavedOnceTheDiskHasRoom) {
  die({.name = ""});
  phone.files().setWritesFail(true);
  newHost().rescue();
  phone.files().setWritesFail(false);
  EXPECT_TRUE(newHost().rescue().isSaved);
  EXPECT_EQ(newHost().wouldRescue().wanted, PhoneState());
}

TEST_F(HostRescue, LeavesTheNextHostAMeetingAsEver) {
  die({.name = ""});
  newHost().rescue();
  Host& next = newHost();
  next.start();
  runTo("09:40");
  EXPECT_EQ(shown(quiet), quiet) << differenceText(quiet, shown(quiet));
  runTo("10:10");
  EXPECT_EQ(shown(loud), loud) << differenceText(loud, shown(loud));
}

TEST_F(HostRescue, IsRefusedWhileTheHostRuns) {
  Host& host = newHost();
  host.start();
  EXPECT_THROW(host.rescue(), std::logic_error);
  EXPECT_THROW(host.wouldRescue(), std::logic_error);
  EXPECT_TRUE(host.isRunning());
}

}  // namespace
}  // namespace hushmode::host
