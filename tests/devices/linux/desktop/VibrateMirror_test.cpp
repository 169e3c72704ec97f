// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/VibrateMirror.h"

#include "devices/shared/DiskDefaults.h"
#include "tests/devices/linux/desktop/DesktopTest.h"

#include <cstdlib>
#include <filesystem>
#include <optional>

namespace hushmode::devices {

namespace {

using platform::Dictionary;

constexpr const char* switches = "com.apple.springboard";

std::string profile() {
  std::string text = runCommand("gsettings get org.sigxcpu.feedbackd profile");
  return text.substr(1, text.size() - 3);  // Without quotes and the end of the line.
}

/// A phone whose user chooses a feedback profile in another program, and vibrate switches through the library.
class VibrateMirrorTest : public DesktopTest {
 protected:
  VibrateMirrorTest() {
    std::filesystem::remove_all(folder);
    openDefaults();
  }
  void openDefaults() {
    defaults.emplace(folder, "com.quorvel.hushmode", [](const std::string& line) { ADD_FAILURE() << line; });
  }

  void userChooses(const std::string& chosen) {
    runCommand("gsettings set org.sigxcpu.feedbackd profile " + chosen);
    const auto settings = Gio::Settings::create("org.sigxcpu.feedbackd");
    EXPECT_TRUE(waitUntil([&] { return settings->get_string("profile") == Glib::ustring(chosen); }));
  }
  void start() { mirror.emplace(*defaults, notifications, services); }
  /// As the library does it.
  void switchVibration(bool ring, bool silent) {
    Dictionary domain = defaults->persistentDomainForName(switches).value_or(Dictionary());
    domain.set("ring-vibrate", ring);
    domain.set("silent-vibrate", silent);
    defaults->setPersistentDomain(domain, switches);
    notifications.post("com.apple.springboard.ring-vibrate.changed");
    notifications.post("com.apple.springboard.silent-vibrate.changed");
    exchangeWith(bus);
  }
  /// Ends the process, and starts it anew with what is on the disk.
  void restart() {
    mirror.reset();
    openDefaults();
    start();
  }

  std::filesystem::path folder = std::filesystem::path(std::getenv("XDG_STATE_HOME")) / "vibrate";
  std::optional<DiskDefaults> defaults;
  DarwinNotifications notifications{bus, services};
  std::optional<VibrateMirror> mirror;
};

}  // namespace

TEST(FeedbackProfile, IsSilentOnlyInThePlaceOfQuietAndWithoutVibration) {
  EXPECT_EQ(feedbackProfileFor("quiet", false), "silent");
  EXPECT_EQ(feedbackProfileFor("quiet", true), "quiet");
  for (const bool vibrate : {false, true}) {
    EXPECT_EQ(feedbackProfileFor("full", vibrate), "full");
    EXPECT_EQ(feedbackProfileFor("silent", vibrate), "silent");
    EXPECT_EQ(feedbackProfileFor("something new", vibrate), "something new");
  }
}

TEST_F(VibrateMirrorTest, AQuietPhoneThatShallNotVibrateIsSilentUntilItShallAgain) {
  userChooses("quiet");
  start();
  EXPECT_EQ(reported("vibrate switches"), "+the profile of feedbackd");
  EXPECT_EQ(profile(), "quiet");
  switchVibration(false, false);
  EXPECT_EQ(profile(), "silent");
  switchVibration(true, true);
  EXPECT_EQ(profile(), "quiet");
}

TEST_F(VibrateMirrorTest, TheRingSwitchAloneChangesNothing) {
  userChooses("quiet");
  start();
  switchVibration(false, true);
  EXPECT_EQ(profile(), "quiet");
  switchVibration(true, false);
  EXPECT_EQ(profile(), "silent");
}

TEST_F(VibrateMirrorTest, APhoneThatRingsGoesOnRinging) {
  userChooses("full");
  start();
  switchVibration(false, false);
  EXPECT_EQ(profile(), "full");
  switchVibration(true, true);
  EXPECT_EQ(profile(), "full");
}

TEST_F(VibrateMirrorTest, ASilentPhoneStaysSilent) {
  userChooses("silent");
  start();
  switchVibration(false, false);
  switchVibration(true, true);
  EXPECT_EQ(profile(), "silent");
}

TEST_F(VibrateMirrorTest, SwitchesThatWereNeverSetAreOnAndSetOnesAreKept) {
  userChooses("quiet");
  defaults->setPersistentDomain(Dictionary{{"other", 1}, {"silent-vibrate", false}}, switches);
  start();
  EXPECT_EQ(defaults->persistentDomainForName(switches),
            (Dictionary{{"other", 1}, {"silent-vibrate", false}, {"ring-vibrate", true}}));
  EXPECT_EQ(profile(), "silent");
}

TEST_F(VibrateMirrorTest, WhatTheUserChoosesMeanwhileStands) {
  userChooses("quiet");
  start();
  switchVibration(false, false);
  ASSERT_EQ(profile(), "silent");
  userChooses("full");
  switchVibration(true, true);
  EXPECT_EQ(profile(), "full");
  userChooses("silent");
  switchVibration(false, false);
  switchVibration(true, true);
  EXPECT_EQ(profile(), "silent");
}

TEST_F(VibrateMirrorTest, AUserWhoWentOnToSilentMeanwhileStaysThere) {
  userChooses("quiet");
  start();
  switchVibration(false, false);
  userChooses("full");
  userChooses("silent");
  switchVibration(true, true);
  EXPECT_EQ(profile(), "silent");
}

TEST_F(VibrateMirrorTest, WhatTheUserChoseWhileItWasAwayStands) {
  userChooses("quiet");
  start();
  switchVibration(false, false);
  mirror.reset();
  userChooses("full");
  restart();
  EXPECT_EQ(profile(), "full");
  switchVibration(true, true);
  EXPECT_EQ(profile(), "full");
}

TEST_F(VibrateMirrorTest, TheChoiceComesBackAfterTheProcessDied) {
  userChooses("quiet");
  start();
  switchVibration(false, false);
  restart();
  EXPECT_EQ(profile(), "silent");
  switchVibration(true, true);
  EXPECT_EQ(profile(), "quiet");
  // And is not kept any longer.
  userChooses("silent");
  restart();
  EXPECT_EQ(profile(), "silent");
}

TEST_F(VibrateMirrorTest, SwitchesThatWereTurnedOnWhileItWasAwayAreFollowedAtTheStart) {
  userChooses("quiet");
  start();
  switchVibration(false, false);
  mirror.reset();
  switchVibration(true, true);
  EXPECT_EQ(profile(), "silent");
  start();
  EXPECT_EQ(profile(), "quiet");
}

TEST_F(VibrateMirrorTest, AMemoryThatMakesNoSenseIsNone) {
  userChooses("silent");
  for (const Dictionary& memory :
       {Dictionary{{"chosen-feedback-profile", 7}}, Dictionary{{"chosen-feedback-profile", "full"}}}) {
    defaults->setPersistentDomain(memory, "com.quorvel.hushmode.vibrate");
    restart();
    EXPECT_EQ(profile(), "silent");
  }
}

TEST_F(VibrateMirrorTest, OtherNotificationsAreNotItsBusiness) {
  userChooses("quiet");
  start();
  defaults->setPersistentDomain(Dictionary{{"ring-vibrate", false}, {"silent-vibrate", false}}, switches);
  notifications.post("com.quorvel.ProfileChangedNotification");
  exchangeWith(bus);
  EXPECT_EQ(profile(), "quiet");
}

TEST_F(VibrateMirrorTest, EachOfTheTwoNotificationsIsEnough) {
  for (const char* name :
       {"com.apple.springboard.ring-vibrate.changed", "com.apple.springboard.silent-vibrate.changed"}) {
    userChooses("quiet");
    defaults->setPersistentDomain(Dictionary{{"ring-vibrate", true}, {"silent-vibrate", true}}, switches);
    restart();
    defaults->setPersistentDomain(Dictionary{{"ring-vibrate", false}, {"silent-vibrate", false}}, switches);
    notifications.post(name);
    exchangeWith(bus);
    EXPECT_EQ(profile(), "silent") << name;
  }
}

}  // namespace hushmode::devices
