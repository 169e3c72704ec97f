// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/PulseVolume.h"

#include "devices/linux/sound/Later.h"

#include <string_view>
#include <utility>

namespace hushmode::devices {

namespace {

// How long PipeWire may take to do what it said it did.
constexpr unsigned proofReadings = 20;
constexpr unsigned proofMilliseconds = 25;

constexpr const char* eventRole = "sink-input-by-media-role:event";

std::string textOf(const char* text) { return text ? text : ""; }

}  // namespace

PulseVolume::PulseVolume(PulseConnection& connection, Handlers handlers)
    : connection_(connection), handlers_(std::move(handlers)) {}

PulseVolume::~PulseVolume() { nextReading_.disconnect(); }

bool PulseVolume::set(float volume) {
  pa_context* context = connection_.context();
  if (!context || !isThere_) return false;
  const auto answer = [](pa_context*, int accepted, void* self) {
    static_cast<PulseVolume*>(self)->answered(accepted != 0);
  };
  pa_operation* operation = startWriting(context, tracked_.levelFor(volume), answer, this);
  if (!operation) return false;
  tracked_.asked(volume);
  connection_.await(operation);
  return true;
}

void PulseVolume::answered(bool accepted) {
  connection_.answered();
  if (!accepted || !connection_.isPipeWire()) return settle(accepted);
  ++unproven_;
  readingsLeft_ = proofReadings;
  read();
}

void PulseVolume::settle(bool accepted) {
  const auto change = tracked_.answered(accepted);
  if (!accepted) read();
  if (change) handlers_.changed(*change);
}

/// PipeWire answers first, and then does what it was asked to. A level read in between is an old one.
bool PulseVolume::isProven(pa_volume_t level) {
  if (unproven_ == 0) return true;
  if (tracked_.isAsked(level)) {
    for (; unproven_ > 0; --unproven_) settle(true);
    return true;
  }
  if (readingsLeft_ == 0) {
    for (; unproven_ > 0; --unproven_) tracked_.answered(false);
    return true;
  }
  --readingsLeft_;
  nextReading_.disconnect();
  nextReading_ = callLater(proofMilliseconds, [this] { read(); });
  return false;
}

void PulseVolume::read() {
  readAgain_ = isReading_;
  if (isReading_ || !connection_.context()) return;
  pa_operation* operation = startReading(connection_.context());
  isReading_ = operation != nullptr;
  connection_.await(operation);
}

void PulseVolume::endReading(pa_volume_t level, bool isOther) {
  isThere_ = true;
  if (isOther) tracked_.takeNewBaseline();
  const auto change = isProven(level) ? tracked_.seen(level) : std::nullopt;
  endReading();
  if (change) handlers_.changed(*change);
}

void PulseVolume::endReadingWithoutVolume() {
  isThere_ = false;
  if (std::exchange(unproven_, 0) > 0) tracked_.lost();
  tracked_.unknown();
  endReading();
}

void PulseVolume::endReading() {
  isReading_ = false;
  wasRead_ = true;
  if (readAgain_) read();
  handlers_.read();
}

void PulseVolume::lost() {
  tracked_.lost();
  nextReading_.disconnect();
  unproven_ = 0;
  isReading_ = readAgain_ = wasRead_ = isThere_ = false;
}

pa_operation* PulseSinkVolume::startReading(pa_context* context) {
  return pa_context_get_server_info(
      context,
      [](pa_context*, const pa_server_info* server, void* self) {
        static_cast<PulseSinkVolume*>(self)->readSink(server);
      },
      this);
}

void PulseSinkVolume::readSink(const pa_server_info* server) {
  connection().answered();
  sink_ = server ? textOf(server->default_sink_name) : "";
  found_.reset();
  pa_operation* operation = sink_.empty()
                                ? nullptr
                                : pa_context_get_sink_info_by_name(
                                      connection().context(), sink_.c_str(),
                                      [](pa_context*, const pa_sink_info* sink, int end, void* self) {
                                        static_cast<PulseSinkVolume*>(self)->sinkRead(end == 0 ? sink : nullptr);
                                      },
                                      this);
  if (!operation) return endReadingWithoutVolume();
  connection().await(operation);
}

void PulseSinkVolume::sinkRead(const pa_sink_info* sink) {
  if (sink) {
    found_ = Found{sink_ + '\n' + (sink->active_port ? textOf(sink->active_port->name) : ""), sink->volume};
    return;
  }
  connection().answered();
  if (!found_ || !pa_cvolume_valid(&found_->volume)) return endReadingWithoutVolume();
  const pa_volume_t level = pa_cvolume_max(&found_->volume);
  const bool isOther = found_->output != output_;
  output_ = found_->output;
  // Silence says nothing of the balance.
  if (isOther || level != PA_VOLUME_MUTED) balance_ = found_->volume;
  endReading(level, isOther);
}

pa_operation* PulseSinkVolume::startWriting(pa_context* context, pa_volume_t level, Answer answer, void* self) {
  pa_cvolume volume = balance_;
  pa_cvolume_scale(&volume, level);
  return pa_context_set_sink_volume_by_name(context, sink_.c_str(), &volume, answer, self);
}

pa_operation* PulseRoleVolume::startReading(pa_context* context) {
  entry_ = Entry();
  return pa_ext_stream_restore_read(
      context,
      [](pa_context*, const pa_ext_stream_restore_info* entry, int end, void* self) {
        auto& role = *static_cast<PulseRoleVolume*>(self);
        end == 0 ? role.entryRead(*entry) : role.entriesRead(end > 0);
      },
      this);
}

void PulseRoleVolume::entryRead(const pa_ext_stream_restore_info& entry) {
  if (textOf(entry.name) != eventRole) return;
  entry_.device = textOf(entry.device);
  entry_.isMuted = entry.mute != 0;
  // An entry can be about the device alone.
  if (!pa_cvolume_valid(&entry.volume) || !pa_cvolume_compatible_with_channel_map(&entry.volume, &entry.channel_map)) {
    return;
  }
  entry_.channels = entry.channel_map;
  entry_.volume = entry.volume;
}

void PulseRoleVolume::entriesRead(bool couldRead) {
  connection().answered();
  couldRead ? endReading(pa_cvolume_max(&entry_.volume), false) : endReadingWithoutVolume();
}

pa_operation* PulseRoleVolume::startWriting(pa_context* context, pa_volume_t level, Answer answer, void* self) {
  pa_ext_stream_restore_info entry{};
  entry.name = eventRole;
  entry.channel_map = entry_.channels;
  entry.volume = entry_.volume;
  pa_cvolume_scale(&entry.volume, level);
  entry.device = entry_.device.empty() ? nullptr : entry_.device.c_str();
  entry.mute = entry_.isMuted;
  constexpr int alsoToWhatIsPlaying = 1;
  return pa_ext_stream_restore_write(context, PA_UPDATE_REPLACE, &entry, 1, alsoToWhatIsPlaying, answer, self);
}

}  // namespace hushmode::devices
