// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The profile record: what a new one holds, the filter on event status, the list of networks.

#include "model/HMProfile.h"
#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

class ProfileRecord : public CoreTest {};

TEST_F(ProfileRecord, OfANewProfileHoldsItsCreationSecondAndNothingElse) {
  phone.time().runUntil(today(10, 0, 7.999));
  const auto profile = HMProfile::init();
  EXPECT_EQ(profile->identifier(), 1715673607);
  EXPECT_EQ(profile->title(), std::nullopt);
  EXPECT_EQ(profile->startTime(), std::nullopt);
  EXPECT_EQ(profile->endTime(), std::nullopt);
  EXPECT_EQ(profile->updatedDate(), std::nullopt);
  EXPECT_EQ(profile->alertToneIdentifier(), std::nullopt);
  EXPECT_EQ(profile->ringerVolume(), 0);
  EXPECT_EQ(profile->playBackVolume(), 0);
  EXPECT_EQ(profile->deviceVolume(), 0);
  EXPECT_EQ(profile->newRingtoneVolume(), 0);
  EXPECT_EQ(profile->alertSound(), 0);
  EXPECT_EQ(profile->alertSoundID(), 0U);
  EXPECT_EQ(profile->applyProfileEventStatus(), 0);
  for (const bool flag :
       {profile->isEnabled(), profile->isAllDay(), profile->isPlayAlert(), profile->isVibrate(),
        profile->isVibrateAlert(), profile->isShowOnStatusBar(), profile->isDnDEnabled(), profile->isSilent(),
        profile->isApplied(), profile->isWakeUpScreen(), profile->isAllDayEventsIgnored(), profile->isNewProfile(),
        profile->isVolumeAlertShown(), profile->shouldPreserveVolumeChange(), profile->isWifiEnabled()}) {
    EXPECT_FALSE(flag);
  }
  EXPECT_EQ(profile->timer(), nullptr);
}

TEST_F(ProfileRecord, TouchesNothingWhenAProfileIsMade) {
  HMProfile::init();
  EXPECT_EQ(texts(), Texts());
}

TEST_F(ProfileRecord, GivesTwoProfilesOfTheSameSecondTheSameIdentifier) {
  const auto first = HMProfile::init();
  runFor(0.9);
  const auto second = HMProfile::init();
  runFor(0.1);
  const auto third = HMProfile::init();
  EXPECT_EQ(first->identifier(), second->identifier());
  EXPECT_EQ(third->identifier(), first->identifier() + 1);
}

TEST_F(ProfileRecord, TruncatesTheIdentifierTowardZeroBefore1970) {
  phone.jumpClockTo(platform::Date(-1.5));
  EXPECT_EQ(HMProfile::init()->identifier(), -1);
}

TEST_F(ProfileRecord, ReadsAFilterOutOfRangeAsZeroAndKeepsTheZero) {
  const struct {
    std::int64_t stored, read;
  } cases[] = {
      {0, 0},
      {1, 1},
      {2, 2},
      {3, 3},
      {4, 0},
      {7, 0},
      {-1, 0},
      {std::numeric_limits<std::int64_t>::min(), 0},
      {std::numeric_limits<std::int64_t>::max(), 0},
      {std::int64_t{1} << 32, 0},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.stored);
    const auto profile = HMProfile::init();
    profile->setApplyProfileEventStatus(each.stored);
    EXPECT_EQ(profile->applyProfileEventStatus(), each.read);
    EXPECT_EQ(profile->applyProfileEventStatus(), each.read);
  }
}

TEST_F(ProfileRecord, NamesTheFilterByItsKeysWithoutATranslation) {
  const char* labels[] = {"All", "Accepted", "Tentative", "Declined/Cancelled"};
  const auto profile = HMProfile::init();
  for (int value = 0; value < 4; ++value) {
    profile->setApplyProfileEventStatus(value);
    EXPECT_EQ(profile->applyProfileEventStatusString(), labels[value]);
  }
  profile->setApplyProfileEventStatus(-1);
  EXPECT_EQ(profile->applyProfileEventStatusString(), "All");
  EXPECT_EQ(profile->applyProfileEventStatus(), 0);
}

TEST_F(ProfileRecord, NamesTheFilterInTheLanguageOfThePreferenceBundle) {
  phone.foundation().setBundle(
      "/Library/PreferenceBundles/HushmodePreferences.bundle",
      std::make_shared<devices::SimulatedBundle>(
          "com.quorvel.HushmodePreferences",
          devices::SimulatedBundle::StringTable{{"Declined/Cancelled", "Abgelehnt"}, {"All", "Alle"}}));
  const auto profile = HMProfile::init();
  profile->setApplyProfileEventStatus(3);
  EXPECT_EQ(profile->applyProfileEventStatus(), 3);
  EXPECT_EQ(profile->applyProfileEventStatusString(), "Abgelehnt");
  profile->setApplyProfileEventStatus(2);
  EXPECT_EQ(profile->applyProfileEventStatusString(), "Tentative");
}

TEST_F(ProfileRecord, IsDescribedByItsTitleWithoutReadingACalendar) {
  const auto profile = HMProfile::init();
  EXPECT_EQ(profile->description(), "<HMProfile (null)>");
  profile->setTitle("Work");
  EXPECT_EQ(profile->description(), "<HMProfile Work>");
  phone.calendars().addCalendar("cal-late", "Late");
  EXPECT_EQ(profile->calendarIdentifiers(), Texts{"cal-late"}) << "the description filled the list too early";
}

class ProfileNetworks : public CoreTest {
 protected:
  const std::shared_ptr<HMProfile> profile = HMProfile::init();
};

TEST_F(ProfileNetworks, AreAnEmptyListOnFirstReadAndTheSameListAfterwards) {
  EXPECT_EQ(profile->wifiNetworks(), Texts());
  profile->wifiNetworks().push_back("Home");
  EXPECT_EQ(profile->wifiNetworks(), Texts{"Home"});
  EXPECT_TRUE(profile->isWifiEnabled());
  profile->setWifiNetworks(std::nullopt);
  EXPECT_EQ(profile->wifiNetworks(), Texts());
  EXPECT_FALSE(profile->isWifiEnabled());
}

TEST_F(ProfileNetworks, AreLoggedBeforeAndAfterAnAddition) {
  profile->addToWiFiNetwork("Home");
  profile->addToWiFiNetwork("Office");
  EXPECT_EQ(logged(), (Texts{
                          "information 587 addToWiFiNetwork: ****** Adding 'Home' to WiFi list",
                          "information 589 addToWiFiNetwork: ****** After adding 'Home' to WiFi list, (Home)",
                          "information 587 addToWiFiNetwork: ****** Adding 'Office' to WiFi list",
                          "information 589 addToWiFiNetwork: ****** After adding 'Office' to WiFi list, (Home, Office)",
                      }));
}

TEST_F(ProfileNetworks, AreLoggedBeforeAndAfterARemoval) {
  profile->setWifiNetworks(Texts{"Home", "Office"});
  profile->removeFromWiFiNetwork("Home");
  EXPECT_EQ(logged(),
            (Texts{
                "information 594 removeFromWiFiNetwork: ****** Removing 'Home' for WiFi list",
                "information 604 removeFromWiFiNetwork: ****** After removing 'Home' WiFi from list, (Office)",
            }));
}

TEST_F(ProfileNetworks, MayHoldANameTwiceAndLoseBothAtOnce) {
  for (const char* name : {"Home", "Office", "Home"}) profile->addToWiFiNetwork(name);
  EXPECT_EQ(profile->wifiNetworks(), (Texts{"Home", "Office", "Home"}));
  profile->removeFromWiFiNetwork("Home");
  EXPECT_EQ(profile->wifiNetworks(), Texts{"Office"});
}

TEST_F(ProfileNetworks, StayAsTheyAreWhenAnUnknownNameIsRemoved) {
  profile->setWifiNetworks(Texts{"Home"});
  profile->removeFromWiFiNetwork("home");
  EXPECT_EQ(profile->wifiNetworks(), Texts{"Home"});
  EXPECT_EQ(logged().size(), 2U);
}

TEST_F(ProfileNetworks, CanBeEditedWithANameOutOfTheListItself) {
  profile->setWifiNetworks(Texts{"a network with a long name", "Office"});
  profile->wifiNetworks().shrink_to_fit();
  profile->addToWiFiNetwork(profile->wifiNetworks()[0]);
  EXPECT_EQ(profile->wifiNetworks()[2], "a network with a long name");
  profile->removeFromWiFiNetwork(profile->wifiNetworks()[2]);
  EXPECT_EQ(profile->wifiNetworks(), Texts{"Office"});
  const Texts lines = logged();
  EXPECT_EQ(lines[1],
            "information 589 addToWiFiNetwork: ****** After adding 'a network with a long name' to WiFi list, "
            "(a network with a long name, Office, a network with a long name)");
  EXPECT_EQ(lines[3],
            "information 604 removeFromWiFiNetwork: ****** After removing 'a network with a long name' WiFi from "
            "list, (Office)");
}

TEST_F(ProfileNetworks, AreFoundByTheirExactName) {
  profile->setWifiNetworks(Texts{"Home", "Office"});
  EXPECT_TRUE(profile->hasWiFiNetwork("Office"));
  EXPECT_FALSE(profile->hasWiFiNetwork("office"));
  EXPECT_FALSE(profile->hasWiFiNetwork("Off"));
  EXPECT_FALSE(profile->hasWiFiNetwork("Home "));
}

TEST_F(ProfileNetworks, HoldNoNameWhileTheListIsEmpty) {
  EXPECT_FALSE(profile->hasWiFiNetwork("Home"));
  EXPECT_FALSE(profile->hasWiFiNetwork(""));
}

TEST_F(ProfileNetworks, NeverHoldAnAbsentNameNotEvenBesideAnEmptyOne) {
  profile->setWifiNetworks(Texts{""});
  EXPECT_FALSE(profile->hasWiFiNetwork(std::nullopt));
  EXPECT_TRUE(profile->hasWiFiNetwork(""));
}

}  // namespace
}  // namespace hushmode
