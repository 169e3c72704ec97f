// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/PulseVolumes.h"

#include "tests/devices/linux/sound/SoundTest.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <glibmm/main.h>
#include <optional>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;

/// Volumes in a real PulseAudio with an output of two channels, "spk".
struct PulseVolumesTest : ::testing::Test {
  PulseVolumesTest() { open(); }

  void open() {
    volumes.emplace(center, services, [this](bool byUser) { lastIsByUser = byUser; });
    center.addObserver(this, "", nullptr, [this](const platform::Notification& notice) { note(notice); });
  }
  void ready() {
    ASSERT_TRUE(runUntil([this] { return services.isAvailable("volumes"); })) << ::testing::PrintToString(reports());
  }
  /// What was asked is done and told; the notices of it are forgotten.
  void settle() {
    ASSERT_TRUE(runUntil([this] { return !volumes->pending(); }));
    while (Glib::MainContext::get_default()->iteration(false)) {
    }
    notices.clear();
  }
  /// Waits for so many notices since the last call, and answers them.
  Texts noticed(std::size_t count) {
    EXPECT_TRUE(runUntil([&] { return notices.size() >= count; }));
    return std::exchange(notices, {});
  }
  std::optional<float> volume(std::string_view category) {
    float read = -1;
    return volumes->sharedAVSystemController()->getVolume(read, category) ? std::optional(read) : std::nullopt;
  }
  bool set(std::string_view category, float wanted) {
    return volumes->sharedAVSystemController()->setVolumeTo(wanted, category);
  }
  platform::VolumeControl& media() { return *volumes->volumeControlClass().sharedVolumeControl(); }
  const Texts& reports() const { return services.lines; }

  /// The output's volumes as PulseAudio has them, such as "40% 80%".
  static std::string percentages() {
    const std::string text = run({"sh", "-c", "pactl get-sink-volume spk | grep -o '[0-9]*%' | tr '\\n' ' '"});
    return text.substr(0, text.find_last_not_of(' ') + 1);
  }
  static void pactl(Texts arguments) {
    arguments.insert(arguments.begin(), "pactl");
    run(arguments);
  }

  ReportedServices services;
  KeptNotifications center;
  Texts notices;
  bool lastIsByUser = false;
  std::optional<PulseVolumes> volumes;

 private:
  void note(const platform::Notification& notice) {
    const auto value = [&](const char* key) { return std::get<platform::Value>(notice.userInfo.at(key)); };
    char percent[16];
    std::snprintf(percent, sizeof percent, " %.0f%%",
                  100 * *value("AVSystemController_AudioVolumeNotificationParameter").as<double>());
    notices.push_back(*value("AVSystemController_AudioCategoryNotificationParameter").as<std::string>() + percent +
                      (lastIsByUser ? " by the user" : ""));
  }
};

TEST_F(PulseVolumesTest, KnowNothingBeforeTheServerTold) {
  float untouched = 0.1F;
  for (const auto category : {"Ringtone", "Volume"}) {
    EXPECT_FALSE(volumes->sharedAVSystemController()->getVolume(untouched, category));
    EXPECT_FALSE(set(category, 0.5F));
  }
  EXPECT_EQ(untouched, 0.1F);
  EXPECT_EQ(media().getMediaVolume(), 0);
  EXPECT_FALSE(volumes->pending());
  EXPECT_EQ(reports(), Texts());
}

TEST_F(PulseVolumesTest, AreReportedOnceAllIsKnown) {
  ready();
  ASSERT_EQ(reports().size(), 1U);
  EXPECT_TRUE(reports().front().starts_with("volumes: PulseAudio ")) << reports().front();
  EXPECT_TRUE(volume("Ringtone"));
  EXPECT_TRUE(volume("Volume"));
}

TEST_F(PulseVolumesTest, OfTheOutputAreOneVolume) {
  ready();
  EXPECT_TRUE(set("Volume", 0.25F));
  EXPECT_EQ(media().getMediaVolume(), 0.25F);
  EXPECT_EQ(media().volume(), 0.25F);
  settle();
  EXPECT_EQ(percentages(), "25% 25%");
  media().setMediaVolume(0.5F);
  EXPECT_EQ(volume("Volume"), 0.5F);
}

TEST_F(PulseVolumesTest, ArePendingUntilTheServerAnswered) {
  ready();
  EXPECT_FALSE(volumes->pending());
  set("Ringtone", 0.5F);
  EXPECT_TRUE(volumes->pending());
  settle();
  set("Volume", 0.5F);
  EXPECT_TRUE(volumes->pending());
  settle();
}

TEST_F(PulseVolumesTest, OfTheRingtoneIsWhatStreamsOfTheEventRolePlayAt) {
  ready();
  set("Ringtone", 0.5F);
  settle();
  const int player =
      start({"sh", "-c", "exec pacat --playback --property=media.role=event --client-name=tone </dev/zero"});
  const auto playing = [](const char* what) {
    return run({"sh", "-c", "pactl list sink-inputs | grep -B99 media.role | " + std::string(what)});
  };
  ASSERT_TRUE(runUntil([&] { return !playing("cat; true").empty(); }));
  EXPECT_NE(playing("grep Volume:").find(" 50% "), std::string::npos) << playing("grep Volume:");
  notices.clear();
  // The user turns the tone that is playing down: from now on, all tones.
  run({"sh", "-c", "pactl set-sink-input-volume $(pactl list short sink-inputs | tail -1 | cut -f1) 30%"});
  EXPECT_EQ(noticed(1), Texts{"Ringtone 30% by the user"});
  EXPECT_NEAR(volume("Ringtone").value(), 0.3F, 1e-4);
  endProcess(player, SIGTERM);
}

TEST_F(PulseVolumesTest, TellWhatTheUserChangesWithPactl) {
  ready();
  set("Volume", 0.5F);
  settle();
  pactl({"set-sink-volume", "spk", "75%"});
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 75% by the user"});
  set("Volume", 0.125F);
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 12%"});
}

TEST_F(PulseVolumesTest, TellNothingOfMutingAndLeaveItAlone) {
  ready();
  set("Volume", 0.5F);
  settle();
  pactl({"set-sink-mute", "spk", "1"});
  set("Volume", 0.25F);
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 25%"});
  EXPECT_EQ(run({"pactl", "get-sink-mute", "spk"}), "Mute: yes\n");
  pactl({"set-sink-mute", "spk", "0"});
  pactl({"set-sink-volume", "spk", "30%"});
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 30% by the user"});
}

TEST_F(PulseVolumesTest, KeepTheBalanceOfTheChannels) {
  ready();
  pactl({"set-sink-volume", "spk", "40%", "80%"});
  ASSERT_TRUE(runUntil([this] { return std::abs(volume("Volume").value_or(0) - 0.8F) < 1e-4; }));
  for (const float wanted : {0.4F, 0.0F, 0.8F}) {
    set("Volume", wanted);
    settle();
  }
  EXPECT_EQ(percentages(), "40% 80%");
  pactl({"set-sink-volume", "spk", "50%"});
}

TEST_F(PulseVolumesTest, BringAnAmplifiedOutputBackAsItWasFound) {
  ready();
  pactl({"set-sink-volume", "spk", "130%"});
  ASSERT_TRUE(runUntil([this] { return volume("Volume") == 1.0F; }));
  for (const float wanted : {0.0F, 1.0F}) {
    set("Volume", wanted);
    settle();
  }
  EXPECT_EQ(percentages(), "130% 130%");
  pactl({"set-sink-volume", "spk", "50%"});
}

TEST_F(PulseVolumesTest, OfAnotherOutputAreNoChangeByTheUser) {
  ready();
  set("Volume", 0.5F);
  settle();
  pactl({"load-module", "module-null-sink", "sink_name=headphones", "channels=1", "channel_map=mono"});
  pactl({"set-sink-volume", "headphones", "20%"});
  pactl({"set-default-sink", "headphones"});
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 20%"});
  pactl({"set-sink-volume", "headphones", "30%"});
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 30% by the user"});
  set("Volume", 0.25F);
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 25%"});
  EXPECT_EQ(percentages(), "50% 50%") << "of the output that is not in use";
  run({"sh", "-c", "pactl unload-module $(pactl list short modules | grep headphones | cut -f1)"});
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 50%"});
}

TEST_F(PulseVolumesTest, RestWhileThereIsNoOutput) {
  ready();
  set("Volume", 0.5F);
  settle();
  pactl({"unload-module", "module-null-sink"});
  ASSERT_TRUE(runUntil([this] { return reports().size() == 2; }));
  EXPECT_TRUE(reports().back().ends_with(", no output")) << reports().back();
  EXPECT_EQ(volume("Volume"), std::nullopt);
  EXPECT_FALSE(set("Volume", 0.5F));
  EXPECT_TRUE(set("Ringtone", 0.25F));
  pactl({"load-module", "module-null-sink", "sink_name=spk"});
  ASSERT_TRUE(runUntil([this] { return reports().size() == 3; }));
  EXPECT_EQ(reports().back(), reports().front());
  EXPECT_TRUE(set("Volume", 0.25F));
  settle();
  EXPECT_EQ(percentages(), "25% 25%");
}

TEST_F(PulseVolumesTest, OfAServerThatDiedRestUntilItReturns) {
  ready();
  set("Ringtone", 0.5F);
  set("Volume", 0.5F);
  settle();
  const Texts server = killPulseAudio();
  ASSERT_TRUE(runUntil([this] { return reports().size() == 2; }));
  EXPECT_EQ(reports().back(), "volumes rest: PulseAudio is not running");
  EXPECT_FALSE(set("Ringtone", 0));
  media().setMediaVolume(0);
  EXPECT_FALSE(volumes->pending());
  EXPECT_EQ(volume("Ringtone"), 0.5F) << "as last known";
  EXPECT_EQ(media().getMediaVolume(), 0.5F) << "as last known";

  start(server);
  ASSERT_TRUE(runUntil([this] { return reports().size() == 3; }));
  EXPECT_EQ(reports().back(), reports().front());
  notices.clear();
  EXPECT_TRUE(set("Ringtone", 0.75F));
  EXPECT_EQ(noticed(1), Texts{"Ringtone 75%"});
  pactl({"set-sink-volume", "spk", "30%"});
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 30% by the user"});
  EXPECT_EQ(reports().size(), 3U) << ::testing::PrintToString(reports());
}

TEST_F(PulseVolumesTest, ThatTheServerComesBackWithAreNoChangeByTheUser) {
  ready();
  set("Volume", 0.5F);
  settle();
  Texts server = killPulseAudio();
  std::replace(server.begin(), server.end(), std::string("module-device-restore"),
               std::string("module-device-restore restore_volume=no"));
  start(server);
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 100%"});
  EXPECT_EQ(media().getMediaVolume(), 1);
}

TEST_F(PulseVolumesTest, OfTheRingtoneIsFullWhereNobodyEverSetIt) {
  ready();
  set("Ringtone", 0.5F);
  settle();
  const Texts server = killPulseAudio();
  run({"sh", "-c", "rm \"$XDG_CONFIG_HOME\"/pulse/*-stream-volumes.*"});
  start(server);
  EXPECT_EQ(noticed(1), Texts{"Ringtone 100%"});
  EXPECT_TRUE(set("Ringtone", 0.5F));
  EXPECT_EQ(noticed(1), Texts{"Ringtone 50%"});
}

TEST_F(PulseVolumesTest, OfTheRingtoneRestWhereTheServerKeepsNone) {
  const Texts server = killPulseAudio();
  Texts without = server;
  const auto module = std::find(without.begin(), without.end(), "module-stream-restore");
  ASSERT_NE(module, without.end());
  without.erase(module - 1, module + 1);
  const int process = start(without);
  ready();
  EXPECT_NE(reports().back().find("no ringtone volume"), std::string::npos) << reports().back();
  EXPECT_EQ(volume("Ringtone"), std::nullopt);
  EXPECT_FALSE(set("Ringtone", 0.5F));
  EXPECT_TRUE(set("Volume", 0.5F));
  settle();
  endProcess(process, SIGKILL);
  start(server);
  ASSERT_TRUE(runUntil([this] { return volume("Ringtone").has_value(); }));
}

TEST_F(PulseVolumesTest, OfAServerThatHangsRestUntilItAnswersAgain) {
  ready();
  const int server = pulseAudioProcess();
  ::kill(server, SIGSTOP);
  set("Ringtone", 0.25F);
  EXPECT_TRUE(runUntil([this] { return reports().size() == 2; }));
  EXPECT_EQ(reports().back(), "volumes rest: PulseAudio does not answer");
  EXPECT_FALSE(volumes->pending());
  ::kill(server, SIGCONT);
  ASSERT_TRUE(runUntil([this] { return reports().size() == 3; }));
  EXPECT_EQ(reports().back(), reports().front());
  set("Ringtone", 0.5F);
  settle();
}

TEST_F(PulseVolumesTest, ThatAreGoneCallNobodyBackAndKnowNothing) {
  ready();
  const auto controller = volumes->sharedAVSystemController();
  const auto control = volumes->volumeControlClass().sharedVolumeControl();
  set("Ringtone", 0.25F);
  set("Volume", 0.25F);
  volumes.reset();
  float untouched = 0.1F;
  EXPECT_FALSE(controller->getVolume(untouched, "Ringtone"));
  EXPECT_FALSE(controller->setVolumeTo(0.5F, "Ringtone"));
  EXPECT_EQ(control->getMediaVolume(), 0);
  notices.clear();
  // Another one sees what happens on the server; the first would have been told before it.
  PulseVolumes other(center, services, [this](bool byUser) { lastIsByUser = byUser; });
  ASSERT_TRUE(runUntil([&] { return other.sharedAVSystemController()->getVolume(untouched, "Volume"); }));
  pactl({"set-sink-volume", "spk", "90%"});
  EXPECT_EQ(noticed(1), Texts{"Audio/Video 90% by the user"});
}

}  // namespace
}  // namespace hushmode::devices
