// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/simulated/Record.h"
#include "devices/simulated/SimulatedClasses.h"
#include "devices/simulated/SimulatedNotifications.h"
#include "platform/Celestial.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// The volumes of a simulated phone: per category ("Ringtone", "Volume"), and of media. All are from 0.0 to 1.0; what
/// is set beyond is cut to that.
class SimulatedSound final : public platform::Celestial {
 public:
  static constexpr std::string_view ringtone = "Ringtone";
  static constexpr std::string_view general = "Volume";
  static constexpr std::string_view media = "Audio/Video";  ///< The category that notices about the media volume name.

  /// Whether a change of volume by the process is noticed by a notification, and when it is delivered. What the user
  /// changes is always noticed.
  enum class Notices { None, InsideTheCall, FromTheRunLoop };

  SimulatedSound(VirtualTime& time, Record& record, SimulatedClasses& classes, SimulatedNotificationCenter& center);

  std::shared_ptr<platform::AVSystemController> sharedAVSystemController() override;

  /// A category's volume; none when there is no such category.
  std::optional<float> volume(std::string_view category) const;
  void setVolume(std::string_view category, float volume);
  float mediaVolume() const { return mediaVolume_; }
  void setMediaVolume(float volume);
  /// What the class "VolumeControl" answers for `volume`: 0 at first, and unaffected by all else.
  void setVolumeControlVolume(float volume) { volumeControlVolume_ = volume; }
  /// What the legacy class "AVController" answers; the "Volume" category when none. That class is absent at first.
  void setLegacyVolume(std::optional<float> volume) { legacyVolume_ = volume; }

  /// The user sets a category's volume with the buttons; observers are told inside this call.
  void pressVolumeButton(std::string_view category, float volume);

  /// Called before observers are told of a change: whoever drives the phone marks it as the user's or its own. Empty
  /// for none.
  void setOnChange(std::function<void(bool byUser)> onChange) { onChange_ = std::move(onChange); }
  void setNotices(Notices notices) { notices_ = notices; }
  void setReadFails(std::string_view category, bool fails) { setMember(failingReads_, category, fails); }
  void setWriteFails(std::string_view category, bool fails) { setMember(failingWrites_, category, fails); }

  /// Drops the process's shared controller, and with it the marks kept beside that.
  void processEnded() { controller_.reset(); }

 private:
  class SystemController;
  class LegacyController;
  class LegacyClass;
  class MediaControl;
  class MediaClass;
  using Categories = std::set<std::string, std::less<>>;

  static void setMember(Categories& categories, std::string_view category, bool member);
  bool write(std::string_view category, float volume);
  void writeMedia(float volume);
  void notice(std::string_view category, float volume);
  void deliverNotice(std::string_view category, float volume, bool byUser);

  VirtualTime& time_;
  Record& record_;
  SimulatedClasses& classes_;
  SimulatedNotificationCenter& center_;
  std::shared_ptr<platform::AVSystemController> controller_;
  std::map<std::string, float, std::less<>> volumes_{{std::string(ringtone), 0.8f}, {std::string(general), 0.6f}};
  float mediaVolume_ = 0.5f;
  float volumeControlVolume_ = 0;
  std::optional<float> legacyVolume_;
  Notices notices_ = Notices::None;
  std::function<void(bool)> onChange_;
  Categories failingReads_, failingWrites_;
};

}  // namespace hushmode::devices
