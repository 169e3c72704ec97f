// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/simulated/SimulatedTone.h"

namespace hushmode::devices {

using platform::TLAlert;

class SimulatedTone::ToneAlert final : public Answering<TLAlert> {
 public:
  ToneAlert(SimulatedTone& player, Playing tone)
      : Answering(player.classes_, className), player_(player), tone_(std::move(tone)) {}

  void startPlayingRepeatedly() override {
    require("startPlayingRepeatedly");
    player_.recordStart(tone_, "startPlayingRepeatedly");
    player_.playing_ = tone_;
  }
  void stop() override {
    require("stop");
    player_.record_.effect("tone stop");
    player_.playing_.reset();
  }

 private:
  SimulatedTone& player_;
  Playing tone_;
};

class SimulatedTone::ToneClass final : public Answering<TLAlert::Class> {
 public:
  explicit ToneClass(SimulatedTone& player) : Answering(player.classes_, TLAlert::className), player_(player) {}

  std::shared_ptr<TLAlert> initWithType(int type, const TLAlert::Identifier& tone,
                                        const TLAlert::Identifier& vibration) override {
    require("initWithType");
    return std::make_shared<ToneAlert>(player_, Playing{type, tone, vibration});
  }
  void playToneAndVibrationForType(int type, const TLAlert::Identifier& tone,
                                   const TLAlert::Identifier& vibration) override {
    require("playToneAndVibrationForType");
    player_.recordStart({type, tone, vibration}, "playToneAndVibrationForType");
  }
  void _playToneAndVibrationForType(int type, const TLAlert::Identifier& tone, const TLAlert::Identifier& vibration,
                                    bool) override {
    require("_playToneAndVibrationForType");
    player_.recordStart({type, tone, vibration}, "_playToneAndVibrationForType");
  }

 private:
  SimulatedTone& player_;
};

SimulatedTone::SimulatedTone(Record& record, SimulatedClasses& classes) : record_(record), classes_(classes) {
  classes.add(TLAlert::className, std::make_unique<ToneClass>(*this));
}

void SimulatedTone::recordStart(const Playing& tone, std::string_view way) {
  platform::Dictionary fields{{"name", "tone start"}, {"type", tone.type}};
  if (tone.tone) fields.append("tone", *tone.tone);
  if (tone.vibration) fields.append("vibration", *tone.vibration);
  fields.append("way", way);
  record_.append(kind::effect, std::move(fields));
}

void SimulatedTone::AudioServicesPlaySystemSoundWithVibration(std::uint32_t soundID,
                                                              const platform::Dictionary& pattern) {
  record_.effect("vibration feedback", {{"soundID", soundID}, {"pattern", pattern}});
}

}  // namespace hushmode::devices
