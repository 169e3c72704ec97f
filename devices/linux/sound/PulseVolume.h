// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/sound/PulseConnection.h"
#include "devices/linux/sound/TrackedVolume.h"

#include <functional>
#include <optional>
#include <pulse/ext-stream-restore.h>
#include <pulse/volume.h>
#include <string>

namespace hushmode::devices {

/// One volume of a sound server: kept in mind, read anew when asked to, and set. It is what desktops show on their
/// sliders: the loudest channel, as a share of PA_VOLUME_NORM (a cubic scale).
class PulseVolume {
 public:
  /// `changed` is told of each change, `read` after each reading, both from the server's callbacks.
  struct Handlers {
    std::function<void(const VolumeChange&)> changed;
    std::function<void()> read;
  };

  PulseVolume(PulseConnection& connection, Handlers handlers);
  virtual ~PulseVolume();
  PulseVolume(const PulseVolume&) = delete;
  PulseVolume& operator=(const PulseVolume&) = delete;

  /// None while nothing is known; what was known last while the server is away.
  std::optional<float> value() const { return tracked_.value(); }
  /// Whether the volume was read since the server came, and whether it has one.
  bool wasRead() const { return wasRead_; }
  bool isThere() const { return isThere_; }
  bool pending() const { return tracked_.pending(); }

  /// Asks for a volume. False, and nothing is asked, while the server is away or has no such volume.
  bool set(float volume);
  /// Asks what it is. Calls while an answer is due make one more reading, however many they are.
  void read();
  void lost();

 protected:
  using Answer = void (*)(pa_context*, int accepted, void* self);
  virtual pa_operation* startReading(pa_context* context) = 0;
  virtual pa_operation* startWriting(pa_context* context, pa_volume_t level, Answer answer, void* self) = 0;

  /// A reading ends in one of these. `isOther`: it is another device's than before.
  void endReading(pa_volume_t level, bool isOther);
  void endReadingWithoutVolume();
  PulseConnection& connection() { return connection_; }

 private:
  void endReading();
  void answered(bool accepted);
  bool isProven(pa_volume_t level);
  void settle(bool accepted);

  PulseConnection& connection_;
  Handlers handlers_;
  TrackedVolume tracked_{PA_VOLUME_NORM};
  unsigned unproven_ = 0;  ///< Requests that PipeWire answered and may not have carried out.
  unsigned readingsLeft_ = 0;
  sigc::connection nextReading_;
  bool isReading_ = false, readAgain_ = false, wasRead_ = false, isThere_ = false;
};

/// The volume of the default sink: of what is played, and of the phone as a whole.
class PulseSinkVolume final : public PulseVolume {
 public:
  using PulseVolume::PulseVolume;

 private:
  pa_operation* startReading(pa_context* context) override;
  pa_operation* startWriting(pa_context* context, pa_volume_t level, Answer answer, void* self) override;
  void readSink(const pa_server_info* server);
  void sinkRead(const pa_sink_info* sink);

  struct Found {
    std::string output;  ///< Sink and port: headphones and speaker can be ports of one sink, each with its volume.
    pa_cvolume volume;
  };
  std::string sink_, output_;
  std::optional<Found> found_;
  pa_cvolume balance_{};  ///< Of the channels, as last heard.
};

/// The volume of the event role ("system sounds": notifications, tones): of streams that say so of themselves, kept by
/// module-stream-restore. As long as nobody ever set it the server has no entry for it, and plays at 1.0.
class PulseRoleVolume final : public PulseVolume {
 public:
  using PulseVolume::PulseVolume;

 private:
  struct Entry {
    pa_channel_map channels{1, {PA_CHANNEL_POSITION_MONO}};
    pa_cvolume volume{1, {PA_VOLUME_NORM}};
    std::string device;  ///< Empty: wherever other sounds go.
    bool isMuted = false;
  };

  pa_operation* startReading(pa_context* context) override;
  pa_operation* startWriting(pa_context* context, pa_volume_t level, Answer answer, void* self) override;
  void entryRead(const pa_ext_stream_restore_info& entry);
  void entriesRead(bool couldRead);

  Entry entry_;
};

}  // namespace hushmode::devices
