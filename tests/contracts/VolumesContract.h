// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Celestial.h"
#include "platform/SpringBoard.h"

#include <gtest/gtest.h>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::contracts {

/// A notice about a change of a volume, and whether the phone's user made it.
struct VolumeNotice {
  std::string category;
  float volume;
  bool byUser;
  bool operator==(const VolumeNotice&) const = default;
};
inline void PrintTo(const VolumeNotice& notice, std::ostream* out) {
  *out << notice.category << " " << notice.volume << (notice.byUser ? " by the user" : "");
}

/// A phone, as far as its volumes are concerned: at first "Ringtone" is at 0.75, the media volume at 0.5.
class VolumesWorld {
 public:
  virtual ~VolumesWorld() = default;
  virtual platform::AVSystemController& controller() = 0;
  virtual platform::VolumeControl& mediaControl() = 0;
  /// The phone's user moves the slider of "Ringtone" or "Audio/Video".
  virtual void userSets(std::string_view category, float volume) = 0;
  /// What was done takes its effect, and is told.
  virtual void settle() = 0;
  /// What was told since the world began, in order.
  virtual const std::vector<VolumeNotice>& notices() = 0;
};

/// What the volumes of every phone do. Include it once in a program; the parameter makes the world.
class VolumesContract : public ::testing::TestWithParam<std::unique_ptr<VolumesWorld> (*)()> {
 protected:
  using Notices = std::vector<VolumeNotice>;

  /// What is read; -1 when nothing is.
  float volume(std::string_view category) {
    float read = -1;
    world->controller().getVolume(read, category);
    return read;
  }

  const std::unique_ptr<VolumesWorld> world = GetParam()();
};

TEST_P(VolumesContract, AreReadAsThePhoneHasThem) {
  EXPECT_EQ(volume("Ringtone"), 0.75F);
  EXPECT_EQ(world->mediaControl().getMediaVolume(), 0.5F);
  EXPECT_GE(volume("Volume"), 0);
  EXPECT_EQ(world->notices(), Notices()) << "to look is no change";
}

TEST_P(VolumesContract, ShowWhatWasSetAtOnceAndExactly) {
  for (const float wanted : {0.0625F, 0.3F, 0.0F, 1.0F}) {
    SCOPED_TRACE(wanted);
    EXPECT_TRUE(world->controller().setVolumeTo(wanted, "Ringtone"));
    world->mediaControl().setMediaVolume(1 - wanted);
    EXPECT_EQ(volume("Ringtone"), wanted);
    EXPECT_EQ(world->mediaControl().getMediaVolume(), 1 - wanted);
    world->settle();
    EXPECT_EQ(volume("Ringtone"), wanted) << "afterwards";
    EXPECT_EQ(world->mediaControl().getMediaVolume(), 1 - wanted) << "afterwards";
  }
}

TEST_P(VolumesContract, AreCutToWhatThereIs) {
  EXPECT_TRUE(world->controller().setVolumeTo(1.5F, "Ringtone"));
  world->mediaControl().setMediaVolume(-0.5F);
  world->settle();
  EXPECT_EQ(volume("Ringtone"), 1);
  EXPECT_EQ(world->mediaControl().getMediaVolume(), 0);
}

TEST_P(VolumesContract, OfACategoryThatThereIsNotFail) {
  float untouched = 0.1F;
  EXPECT_FALSE(world->controller().getVolume(untouched, "No such category"));
  EXPECT_EQ(untouched, 0.1F);
  EXPECT_FALSE(world->controller().setVolumeTo(0.5F, "No such category"));
}

TEST_P(VolumesContract, TellOfEachChangeAndWhetherItWasTheUsers) {
  world->controller().setVolumeTo(0.25F, "Ringtone");
  world->settle();
  world->mediaControl().setMediaVolume(0.125F);
  world->settle();
  world->userSets("Audio/Video", 0.625F);
  world->userSets("Ringtone", 0.875F);
  world->controller().setVolumeTo(0.375F, "Ringtone");
  world->settle();
  world->userSets("Ringtone", 0.5F);
  EXPECT_EQ(world->notices(), (Notices{{"Ringtone", 0.25F, false},
                                       {"Audio/Video", 0.125F, false},
                                       {"Audio/Video", 0.625F, true},
                                       {"Ringtone", 0.875F, true},
                                       {"Ringtone", 0.375F, false},
                                       {"Ringtone", 0.5F, true}}));
  EXPECT_EQ(volume("Ringtone"), 0.5F);
  EXPECT_EQ(world->mediaControl().getMediaVolume(), 0.625F);
}

TEST_P(VolumesContract, TellTheUsersChangeBackToWhatWeSetAsTheUsers) {
  world->controller().setVolumeTo(0.25F, "Ringtone");
  world->settle();
  world->userSets("Ringtone", 1);
  world->userSets("Ringtone", 0.25F);
  EXPECT_EQ(world->notices(), (Notices{{"Ringtone", 0.25F, false}, {"Ringtone", 1, true}, {"Ringtone", 0.25F, true}}));
}

}  // namespace hushmode::contracts
