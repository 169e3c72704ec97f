// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/TrackedVolume.h"

#include <cmath>
#include <gtest/gtest.h>
#include <optional>

namespace hushmode::devices {
namespace {

using Change = std::optional<VolumeChange>;
constexpr Change nothing;

struct TrackedVolumeTest : ::testing::Test {
  TrackedVolume volume{1000};
};

TEST_F(TrackedVolumeTest, IsUnknownUntilSeenAndThenIsNoChange) {
  EXPECT_EQ(volume.value(), std::nullopt);
  EXPECT_EQ(volume.seen(250), nothing);
  EXPECT_EQ(volume.value(), 0.25F);
}

TEST_F(TrackedVolumeTest, ThatThereIsNoMoreIsUnknownAndThenMayBeAnother) {
  volume.seen(250);
  volume.unknown();
  EXPECT_EQ(volume.value(), std::nullopt);
  EXPECT_EQ(volume.seen(500), (VolumeChange{0.5F, false})) << "there again";
  volume.unknown();
  EXPECT_EQ(volume.seen(500), nothing);
  EXPECT_EQ(volume.value(), 0.5F);
}

TEST_F(TrackedVolumeTest, TellsWhatOthersChangeOnce) {
  volume.seen(250);
  EXPECT_EQ(volume.seen(500), (VolumeChange{0.5F, true}));
  EXPECT_EQ(volume.seen(500), nothing);
}

TEST_F(TrackedVolumeTest, ReadsWhatWasAskedAtOnceAndTellsItWhenAnswered) {
  volume.seen(250);
  volume.asked(0.3333F);
  EXPECT_TRUE(volume.pending());
  EXPECT_EQ(volume.levelFor(0.3333F), 333U);
  EXPECT_EQ(volume.value(), 0.3333F);
  EXPECT_EQ(volume.answered(true), (VolumeChange{0.3333F, false}));
  EXPECT_FALSE(volume.pending());
  EXPECT_EQ(volume.seen(333), nothing) << "the server's notice of the same";
  EXPECT_EQ(volume.value(), 0.3333F) << "exactly as asked, whatever the server's steps";
}

TEST_F(TrackedVolumeTest, ForgetsARequestOnceItIsAnswered) {
  volume.seen(250);
  volume.asked(0.25F);
  EXPECT_EQ(volume.answered(true), nothing) << "it was so before";
  EXPECT_EQ(volume.seen(500), (VolumeChange{0.5F, true}));
  EXPECT_EQ(volume.seen(250), (VolumeChange{0.25F, true})) << "the user's, though equal to what we asked once";
}

TEST_F(TrackedVolumeTest, PassesOverWhatARequestOverwrites) {
  volume.seen(250);
  volume.asked(0.5F);
  EXPECT_EQ(volume.seen(900), nothing);
  EXPECT_EQ(volume.value(), 0.5F);
  EXPECT_EQ(volume.answered(true), (VolumeChange{0.5F, false}));
}

TEST_F(TrackedVolumeTest, TellsEachOfSeveralRequests) {
  volume.seen(250);
  volume.asked(0.5F);
  volume.asked(0.75F);
  EXPECT_EQ(volume.answered(true), (VolumeChange{0.5F, false}));
  EXPECT_EQ(volume.value(), 0.75F) << "the last one stands";
  EXPECT_TRUE(volume.pending());
  EXPECT_EQ(volume.answered(true), (VolumeChange{0.75F, false}));
  EXPECT_EQ(volume.answered(true), nothing) << "an answer to nothing";
}

TEST_F(TrackedVolumeTest, GoesBackWhenRefused) {
  volume.seen(250);
  volume.asked(0.5F);
  EXPECT_EQ(volume.answered(false), nothing);
  EXPECT_EQ(volume.value(), 0.25F);
  EXPECT_EQ(volume.seen(300), (VolumeChange{0.3F, false})) << "whose doing that is, nobody knows";
  EXPECT_EQ(volume.seen(350), (VolumeChange{0.35F, true}));
}

TEST_F(TrackedVolumeTest, OfAnotherOutputIsNoChangeByTheUser) {
  volume.seen(250);
  volume.takeNewBaseline();
  EXPECT_EQ(volume.seen(750), (VolumeChange{0.75F, false}));
  EXPECT_EQ(volume.seen(250), (VolumeChange{0.25F, true}));
  volume.takeNewBaseline();
  EXPECT_EQ(volume.seen(250), nothing) << "the same there";
  EXPECT_EQ(volume.seen(300), (VolumeChange{0.3F, true})) << "a baseline is taken once";
}

TEST_F(TrackedVolumeTest, KeepsItsBaselineForAfterARequest) {
  volume.seen(250);
  volume.asked(0.5F);
  volume.takeNewBaseline();
  EXPECT_EQ(volume.seen(750), nothing);
  volume.answered(true);
  EXPECT_EQ(volume.seen(750), (VolumeChange{0.75F, false}));
}

TEST_F(TrackedVolumeTest, OfAServerThatWentIsTheOneSeenLast) {
  volume.seen(250);
  volume.asked(0.5F);
  volume.lost();
  EXPECT_FALSE(volume.pending());
  EXPECT_EQ(volume.value(), 0.25F);
  EXPECT_EQ(volume.seen(600), (VolumeChange{0.6F, false})) << "no change by the user";
}

TEST_F(TrackedVolumeTest, IsTheSameWhereNobodyCanTellTheDifference) {
  volume.seen(250);
  EXPECT_EQ(volume.seen(253), nothing);
  EXPECT_EQ(volume.seen(247), nothing);
  EXPECT_EQ(volume.seen(254), (VolumeChange{0.254F, true}));
  volume.asked(0.5F);
  EXPECT_TRUE(volume.isAsked(502));
  EXPECT_FALSE(volume.isAsked(504));
  volume.answered(true);
  EXPECT_EQ(volume.seen(502), nothing) << "our own, rounded";
  EXPECT_EQ(volume.value(), 0.5F);
  EXPECT_FALSE(volume.isAsked(500)) << "it is answered";
}

TEST_F(TrackedVolumeTest, CutsWhatIsAsked) {
  volume.seen(250);
  const struct {
    float asked;
    TrackedVolume::Level level;
    float read;
  } cases[] = {{-1, 0, 0}, {1.5F, 1000, 1}, {std::nanf(""), 0, 0}, {0.0001F, 0, 0.0001F}, {0.9999F, 1000, 0.9999F}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.asked);
    EXPECT_EQ(volume.levelFor(each.asked), each.level);
    volume.asked(each.asked);
    EXPECT_EQ(volume.value(), each.read);
  }
}

TEST_F(TrackedVolumeTest, BringsAnAmplifiedVolumeBackAsItWasFound) {
  volume.seen(1300);
  EXPECT_EQ(volume.value(), 1.0F);
  volume.asked(0);
  volume.answered(true);
  EXPECT_EQ(volume.seen(0), nothing);
  EXPECT_EQ(volume.levelFor(1), 1300U);
  volume.asked(1);
  EXPECT_EQ(volume.answered(true), (VolumeChange{1, false}));
  EXPECT_EQ(volume.seen(400), (VolumeChange{0.4F, true}));
  EXPECT_EQ(volume.levelFor(1), 1000U) << "the user wants it no more";
}

}  // namespace
}  // namespace hushmode::devices
