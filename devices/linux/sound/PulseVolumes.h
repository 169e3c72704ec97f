// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "devices/linux/sound/PulseConnection.h"
#include "devices/linux/sound/PulseVolume.h"
#include "platform/Celestial.h"
#include "platform/Foundation.h"
#include "platform/SpringBoard.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <sigc++/connection.h>
#include <string>
#include <string_view>

namespace hushmode::devices {

/// The volumes of a Linux phone, in PulseAudio or in PipeWire's stand-in for it: "Ringtone" is the volume of the event
/// role, "Volume" and the media volume are the default sink's. They are 0.0 to 1.0, as on the desktop's own sliders.
///
/// A read answers from memory: nothing (false, or 0 for the media volume) until the server first told, and what was
/// known last while it is away. A write shows in reads at once and goes out asynchronously; while the server is away it
/// is refused and dropped, and whoever wants it asks again when "volumes" are reported to be back.
///
/// Every change of a volume, whoever made it, is posted as `systemVolumeDidChangeNotification` from the main loop,
/// under "Ringtone" or "Audio/Video". A switch to another output is no change by the user, nor is the server's restart.
/// Muting is something else than a volume, and is left alone.
///
/// For the main loop's thread.
class PulseVolumes final : public platform::Celestial {
 public:
  static constexpr std::string_view ringtone = "Ringtone";
  static constexpr std::string_view general = "Volume";
  static constexpr std::string_view media = "Audio/Video";  ///< The category of notices about the default sink.

  /// Called before each notice, at once before it is posted.
  using ChangeListener = std::function<void(bool byUser)>;

  /// `center` and `services` must outlive it. Nothing is told inside the constructor.
  PulseVolumes(platform::NotificationCenter& center, Services& services, ChangeListener onChange = {});
  ~PulseVolumes() override;

  std::shared_ptr<platform::AVSystemController> sharedAVSystemController() override;
  /// The class that is found as "VolumeControl".
  platform::VolumeControl::Class& volumeControlClass();

  /// Whether a write is still unanswered by the server.
  bool pending() const { return ringtone_.pending() || sink_.pending(); }

 private:
  class SystemController;
  class MediaControl;
  class MediaClass;
  struct Notice {
    std::string_view category;
    VolumeChange change;
  };

  PulseVolume* volumeOf(std::string_view category);
  PulseVolume::Handlers handlersFor(std::string_view category);
  void serverCame();
  void serverLost(const std::string& why);
  void readAll();
  void tellLater();
  void tell();
  void report();
  std::optional<ServiceState> state() const;

  platform::NotificationCenter& center_;
  Services& services_;
  ChangeListener onChange_;
  std::string trouble_;         ///< Why the server is away; empty while it is there, or not yet asked.
  std::deque<Notice> notices_;  ///< To be posted, one in each turn of the loop.
  sigc::connection telling_;
  PulseConnection connection_;
  PulseRoleVolume ringtone_;
  PulseSinkVolume sink_;
  std::shared_ptr<SystemController> controller_;
  std::unique_ptr<MediaClass> mediaClass_;
};

}  // namespace hushmode::devices
