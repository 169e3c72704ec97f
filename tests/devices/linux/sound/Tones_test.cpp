// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/Tones.h"

#include "devices/linux/sound/PulseVolumes.h"
#include "tests/devices/linux/sound/Recording.h"
#include "tests/devices/linux/sound/SoundTest.h"

#include <chrono>
#include <csignal>
#include <giomm/dbusconnection.h>
#include <giomm/dbusownname.h>
#include <optional>

namespace hushmode::devices {
namespace {

using platform::TLAlert;
using Texts = std::vector<std::string>;

constexpr const char* chime = "texttone:Chime";
constexpr double longerThanTheChime = 0.5;  // Which is 0.3 seconds, and quieter ones.

/// Whether anybody plays anything.
bool isPlaying() { return !run({"pactl", "list", "short", "sink-inputs"}).empty(); }

struct TonesTest : ::testing::Test {
  explicit TonesTest(bool withBus = true)
      : bus(withBus ? Gio::DBus::Connection::get_sync(Gio::DBus::BusType::SESSION) : nullptr) {
    setVolumes(1);
    tones.emplace(bus, services);
  }

  /// Of the phone as a whole, and of the ringtone.
  static void setVolumes(float ringtone) {
    KeptNotifications center;
    ReportedServices services;
    PulseVolumes volumes(center, services);
    EXPECT_TRUE(runUntil([&] { return services.isAvailable("volumes"); }));
    EXPECT_TRUE(volumes.sharedAVSystemController()->setVolumeTo(1, PulseVolumes::general));
    EXPECT_TRUE(volumes.sharedAVSystemController()->setVolumeTo(ringtone, PulseVolumes::ringtone));
    EXPECT_TRUE(runUntil([&] { return !volumes.pending(); }));
  }

  void feedbackdIsThere() {
    ASSERT_TRUE(runUntil([this] { return services.isAvailable("vibration"); }));
  }
  std::shared_ptr<TLAlert> alert(const TLAlert::Identifier& tone) {
    return tones->alertClass().initWithType(1, tone, std::nullopt);
  }
  /// Starts the tone and hears so much of it; afterwards it still plays.
  void hears(const std::shared_ptr<TLAlert>& tone, double seconds = 0.1) {
    const Recording recording;
    tone->startPlayingRepeatedly();
    EXPECT_TRUE(runUntil([&] { return recording.loudSeconds() > seconds; })) << recording.loudSeconds() << " s heard";
  }
  void fallsSilent() {
    ASSERT_TRUE(runUntil([] { return !isPlaying(); }));
    const Recording recording;
    EXPECT_TRUE(runUntil([&] { return recording.seconds() > 0.5; }));
    EXPECT_EQ(recording.loudSeconds(), 0);
  }

  Glib::RefPtr<Gio::DBus::Connection> bus;
  ReportedServices services;
  std::optional<Tones> tones;
};

/// Feedbackd and what it says of the feedbacks that are over.
struct FeedbackdTonesTest : TonesTest {
  FeedbackdTonesTest() {
    subscription = bus->signal_subscribe(
        [this](const auto&, const auto&, const auto&, const auto&, const auto&,
               const Glib::VariantContainerBase& values) {
          Glib::Variant<guint32> reason;
          values.get_child(reason, 1);
          reasons.push_back(reason.get());
        },
        "org.sigxcpu.Feedback", "org.sigxcpu.Feedback", "FeedbackEnded");
  }
  ~FeedbackdTonesTest() override { bus->signal_unsubscribe(subscription); }

  static constexpr guint32 cameToItsEnd = 0, wasEnded = 2;
  std::vector<guint32> reasons;
  guint subscription;
};

TEST_F(FeedbackdTonesTest, RepeatUntilStopped) {
  feedbackdIsThere();
  EXPECT_EQ(services.lines, (Texts{"tones: feedbackd", "vibration: feedbackd"}));
  const auto tone = alert(chime);
  hears(tone, longerThanTheChime);
  EXPECT_EQ(reasons, std::vector<guint32>());
  tone->stop();
  fallsSilent();
  EXPECT_EQ(reasons, std::vector<guint32>{wasEnded});
}

TEST_F(FeedbackdTonesTest, ThatAreStoppedAtOnceAreNotHeard) {
  feedbackdIsThere();
  const auto tone = alert(chime);
  tone->startPlayingRepeatedly();
  tone->stop();
  ASSERT_TRUE(runUntil([this] { return !reasons.empty(); }));
  EXPECT_EQ(reasons, std::vector<guint32>{wasEnded});
  fallsSilent();
}

TEST_F(FeedbackdTonesTest, EndWithWhoeverPlaysThem) {
  feedbackdIsThere();
  auto tone = alert(chime);
  hears(tone);
  tone.reset();
  fallsSilent();
  tone = alert(std::nullopt);
  hears(tone);
  tones.reset();
  fallsSilent();
  tone->startPlayingRepeatedly();
  tone->stop();
}

TEST_F(FeedbackdTonesTest, AreHeardOnceWhenAskedTo) {
  feedbackdIsThere();
  const Recording recording;
  tones->alertClass().playToneAndVibrationForType(1, chime, std::nullopt);
  ASSERT_TRUE(runUntil([this] { return !reasons.empty(); }));
  EXPECT_EQ(reasons, std::vector<guint32>{cameToItsEnd});
  EXPECT_GT(recording.loudSeconds(), 0.1);
}

TEST_F(FeedbackdTonesTest, SoundAtTheRingtoneVolume) {
  feedbackdIsThere();
  setVolumes(0);
  const Recording recording;
  tones->alertClass().playToneAndVibrationForType(1, chime, std::nullopt);
  ASSERT_TRUE(runUntil([this] { return !reasons.empty(); }));
  EXPECT_EQ(recording.loudSeconds(), 0);
}

TEST_F(FeedbackdTonesTest, VibrateWithoutASound) {
  feedbackdIsThere();
  const Recording recording;
  const platform::Dictionary pattern{{"VibePattern", platform::Array{true, 300.0}}, {"Intensity", 1.0}};
  tones->AudioServicesPlaySystemSoundWithVibration(4095, pattern);
  ASSERT_TRUE(runUntil([this] { return !reasons.empty(); }));
  EXPECT_EQ(reasons, std::vector<guint32>{cameToItsEnd}) << "it had something to do";
  const double then = recording.seconds();
  EXPECT_TRUE(runUntil([&] { return recording.seconds() > then + 0.3; }));
  EXPECT_EQ(recording.loudSeconds(), 0);
}

TEST_F(FeedbackdTonesTest, AreTheThemesSoundsWhileFeedbackdIsAway) {
  feedbackdIsThere();
  services.lines.clear();
  endProcess(ownerOfName("org.sigxcpu.Feedback"), SIGKILL);
  ASSERT_TRUE(runUntil([this] { return services.lines.size() == 2; }));
  EXPECT_EQ(services.lines, (Texts{"tones: sound theme (libcanberra)", "vibration rest: feedbackd is not running"}));
  tones->AudioServicesPlaySystemSoundWithVibration(4095, {});
  const auto tone = alert(chime);
  hears(tone);
  tone->stop();
  fallsSilent();
  services.lines.clear();
  start({"/usr/libexec/feedbackd"});
  ASSERT_TRUE(runUntil([this] { return services.lines.size() == 2; }));
  EXPECT_EQ(services.lines, (Texts{"tones: feedbackd", "vibration: feedbackd"}));
  hears(tone);
}

TEST_F(FeedbackdTonesTest, RestWhereFeedbackdRefuses) {
  feedbackdIsThere();
  endProcess(ownerOfName("org.sigxcpu.Feedback"), SIGKILL);
  ASSERT_TRUE(runUntil([this] { return !services.isAvailable("vibration"); }));
  // Somebody has its name and knows nothing of its trade.
  const guint name = Gio::DBus::own_name(Gio::DBus::BusType::SESSION, "org.sigxcpu.Feedback");
  feedbackdIsThere();
  services.lines.clear();
  const auto tone = alert(chime);
  tone->startPlayingRepeatedly();
  ASSERT_TRUE(runUntil([this] { return services.lines.size() == 2; }));
  EXPECT_TRUE(services.lines.front().starts_with("tones rest: feedbackd: ")) << services.lines.front();
  EXPECT_TRUE(services.lines.back().starts_with("vibration rest: feedbackd: ")) << services.lines.back();
  Gio::DBus::unown_name(name);
  ASSERT_TRUE(runUntil([this] { return services.isAvailable("tones"); }));
  start({"/usr/libexec/feedbackd"});
  feedbackdIsThere();
}

struct ThemeTonesTest : TonesTest {
  ThemeTonesTest() : TonesTest(false) {}
};

TEST_F(ThemeTonesTest, RepeatUntilStopped) {
  EXPECT_EQ(services.lines, (Texts{"tones: sound theme (libcanberra)", "vibration rest: feedbackd is not running"}));
  const auto tone = alert(chime);
  hears(tone, longerThanTheChime);
  tone->stop();
  fallsSilent();
  hears(tone);
  EXPECT_EQ(services.lines.size(), 2U) << ::testing::PrintToString(services.lines);
}

TEST_F(ThemeTonesTest, EndWithWhoeverPlaysThem) {
  auto tone = alert(chime);
  hears(tone);
  tone.reset();
  fallsSilent();
  tone = alert(chime);
  hears(tone);
  tones.reset();
  fallsSilent();
}

TEST_F(ThemeTonesTest, AreHeardOnceWhenAskedTo) {
  const Recording recording;
  tones->alertClass().playToneAndVibrationForType(1, chime, std::nullopt);
  ASSERT_TRUE(runUntil([] { return isPlaying(); }));
  ASSERT_TRUE(runUntil([] { return !isPlaying(); }));
  EXPECT_GT(recording.loudSeconds(), 0.1);
  EXPECT_LT(recording.loudSeconds(), longerThanTheChime);
}

TEST_F(ThemeTonesTest, AreStreamsOfTheEventRole) {
  const auto tone = alert(std::nullopt);
  tone->startPlayingRepeatedly();
  ASSERT_TRUE(runUntil([] { return isPlaying(); }));
  EXPECT_NE(run({"pactl", "list", "sink-inputs"}).find("media.role = \"event\""), std::string::npos);
}

TEST_F(ThemeTonesTest, DoNotHoldUpTheLoopWhenTheSoundServerHangs) {
  using Clock = std::chrono::steady_clock;
  const int server = pulseAudioProcess();
  ::kill(server, SIGSTOP);
  const auto begin = Clock::now();
  std::vector<std::shared_ptr<TLAlert>> alerts;
  for (int i = 0; i < 5; ++i) {
    alerts.push_back(alert(chime));
    alerts.back()->startPlayingRepeatedly();
  }
  EXPECT_EQ(services.lines.back(), "tones rest: libcanberra does not answer") << "one too many";
  alerts.clear();
  EXPECT_LT(Clock::now() - begin, std::chrono::milliseconds(500));
  tones.reset();
  EXPECT_LT(Clock::now() - begin, std::chrono::seconds(5)) << "a second for each at most";
  ::kill(server, SIGCONT);
  fallsSilent();
}

TEST(ThemeSoundsTest, SayWhatTheThemeLacks) {
  Texts told;
  ThemeSounds sounds([&told](const std::string& error) { told.push_back(error); });
  const auto playing = sounds.play("no-such-sound", Repeat::UntilStopped);
  ASSERT_TRUE(runUntil([&] { return !told.empty(); }));
  EXPECT_EQ(told, Texts{"libcanberra: File or data not found"});
}

TEST(ThemeSoundsTest, SayThatThereIsNoServerAndPlayWhenItReturns) {
  Texts told;
  ThemeSounds sounds([&told](const std::string& error) { told.push_back(error); });
  const Texts server = killPulseAudio();
  auto playing = sounds.play("message-new-instant", Repeat::UntilStopped);
  ASSERT_TRUE(runUntil([&] { return told.size() == 1; }));
  EXPECT_TRUE(told.front().starts_with("libcanberra: ")) << told.front();
  start(server);
  ASSERT_TRUE(runUntil([&] {
    playing = sounds.play("message-new-instant", Repeat::UntilStopped);
    const std::size_t before = told.size();
    return runUntil([&] { return told.size() > before; }) && told.back().empty();
  }));
}

}  // namespace
}  // namespace hushmode::devices
