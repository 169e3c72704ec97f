// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/PulseVolumes.h"

#include "devices/linux/sound/Later.h"
#include "devices/words/Text.h"

#include <pulse/subscribe.h>
#include <utility>

namespace hushmode::devices {

using platform::AVSystemController;
using platform::VolumeControl;

/// Shared with the process, and so may outlive the volumes: then it knows nothing.
class PulseVolumes::SystemController final : public AVSystemController {
 public:
  explicit SystemController(PulseVolumes& volumes) : volumes_(&volumes) {}
  void leave() { volumes_ = nullptr; }

  std::string description() const override { return "<AVSystemController>"; }

  bool getVolume(float& volume, std::string_view category) const override {
    const PulseVolume* asked = volumes_ ? volumes_->volumeOf(category) : nullptr;
    const auto known = asked ? asked->value() : std::nullopt;
    if (known) volume = *known;
    return known.has_value();
  }
  bool setVolumeTo(float volume, std::string_view category) override {
    PulseVolume* asked = volumes_ ? volumes_->volumeOf(category) : nullptr;
    return asked && asked->set(volume);
  }

 private:
  PulseVolumes* volumes_;
};

class PulseVolumes::MediaControl final : public VolumeControl {
 public:
  explicit MediaControl(std::shared_ptr<SystemController> controller) : controller_(std::move(controller)) {}

  /// Reads only where there is something to read: the operations have no way to say that nothing is known yet.
  bool respondsTo(std::string_view selector) const override {
    float known = 0;
    return (selector != "getMediaVolume" && selector != "volume") || controller_->getVolume(known, general);
  }
  float getMediaVolume() const override { return volume(); }
  void setMediaVolume(float volume) override { controller_->setVolumeTo(volume, general); }
  float volume() const override {
    float known = 0;
    controller_->getVolume(known, general);
    return known;
  }

 private:
  std::shared_ptr<SystemController> controller_;
};

class PulseVolumes::MediaClass final : public VolumeControl::Class {
 public:
  explicit MediaClass(std::shared_ptr<SystemController> controller)
      : control_(std::make_shared<MediaControl>(std::move(controller))) {}
  std::shared_ptr<VolumeControl> sharedVolumeControl() override { return control_; }

 private:
  std::shared_ptr<MediaControl> control_;
};

PulseVolumes::PulseVolumes(platform::NotificationCenter& center, Services& services, ChangeListener onChange)
    : center_(center),
      services_(services),
      onChange_(std::move(onChange)),
      connection_({[this] { serverCame(); }, [this](const std::string& why) { serverLost(why); }}),
      ringtone_(connection_, handlersFor(ringtone)),
      sink_(connection_, handlersFor(media)),
      controller_(std::make_shared<SystemController>(*this)),
      mediaClass_(std::make_unique<MediaClass>(controller_)) {}

std::shared_ptr<AVSystemController> PulseVolumes::sharedAVSystemController() { return controller_; }

VolumeControl::Class& PulseVolumes::volumeControlClass() { return *mediaClass_; }

PulseVolumes::~PulseVolumes() {
  controller_->leave();
  telling_.disconnect();
}

PulseVolume* PulseVolumes::volumeOf(std::string_view category) {
  if (category == ringtone) return &ringtone_;
  return category == general ? &sink_ : nullptr;
}

PulseVolume::Handlers PulseVolumes::handlersFor(std::string_view category) {
  return {[this, category](const VolumeChange& change) {
            notices_.push_back({category, change});
            tellLater();
          },
          [this] { tellLater(); }};
}

void PulseVolumes::serverCame() {
  trouble_.clear();
  pa_context* context = connection_.context();
  const auto something = [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
    static_cast<PulseVolumes*>(self)->readAll();
  };
  pa_context_set_subscribe_callback(context, something, this);
  const auto subscribed = [](pa_context*, int, void* self) {
    static_cast<PulseVolumes*>(self)->connection_.answered();
  };
  unsigned events = PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER;
  // PipeWire never tells of a role's volume; but desktops let hear what their sliders are set to.
  if (connection_.isPipeWire()) events |= PA_SUBSCRIPTION_MASK_SINK_INPUT;
  connection_.await(pa_context_subscribe(context, static_cast<pa_subscription_mask_t>(events), subscribed, this));
  const auto role = [](pa_context*, void* self) { static_cast<PulseVolumes*>(self)->ringtone_.read(); };
  pa_ext_stream_restore_set_subscribe_cb(context, role, this);
  connection_.await(pa_ext_stream_restore_subscribe(context, 1, subscribed, this));
  readAll();
}

void PulseVolumes::serverLost(const std::string& why) {
  trouble_ = why;
  ringtone_.lost();
  sink_.lost();
  tellLater();
}

/// The role as well at each event, for PipeWire's sake.
void PulseVolumes::readAll() {
  ringtone_.read();
  sink_.read();
}

/// Listeners are no business of the sound library's callbacks, and may throw: they are told from the loop itself.
void PulseVolumes::tellLater() {
  if (telling_.connected()) return;
  telling_ = callLater(0, [this] { tell(); });
}

void PulseVolumes::tell() {
  telling_ = {};
  if (notices_.empty()) return report();
  const Notice notice = notices_.front();
  notices_.pop_front();
  tellLater();
  if (onChange_) onChange_(notice.change.byUser);
  center_.post({std::string(AVSystemController::systemVolumeDidChangeNotification),
                controller_,
                {{"AVSystemController_AudioCategoryNotificationParameter", platform::Value(notice.category)},
                 {"AVSystemController_AudioVolumeNotificationParameter", platform::Value(notice.change.volume)}}});
}

void PulseVolumes::report() {
  if (const auto now = state()) services_.report("volumes", *now);
}

/// None while the first answers are due.
std::optional<ServiceState> PulseVolumes::state() const {
  if (!trouble_.empty()) return ServiceState{false, trouble_};
  if (!ringtone_.wasRead() || !sink_.wasRead()) return std::nullopt;
  std::string detail = connection_.serverName();
  if (!ringtone_.isThere()) detail = tr("{}, no ringtone volume (module-stream-restore is not loaded)", detail);
  if (!sink_.isThere()) detail = tr("{}, no output", detail);
  return ServiceState{ringtone_.isThere() || sink_.isThere(), detail};
}

}  // namespace hushmode::devices
