// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/Ledger.h"

#include "platform/Process.h"

namespace hushmode::host {

using platform::Array;
using platform::Dictionary;
using platform::Value;

namespace {

std::optional<float> volumeOf(const Value* value) {
  const double* real = value ? value->as<double>() : nullptr;
  return real && *real >= 0 && *real <= 1 ? std::optional(static_cast<float>(*real)) : std::nullopt;
}

std::optional<bool> flagOf(const Value* value) {
  const bool* flag = value ? value->as<bool>() : nullptr;
  return flag ? std::optional(*flag) : std::nullopt;
}

std::vector<float> volumesOf(const Value* value) {
  std::vector<float> volumes;
  if (const Array* array = value ? value->as<Array>() : nullptr) {
    for (const Value& each : *array) {
      if (const auto volume = volumeOf(&each)) volumes.push_back(*volume);
    }
  }
  return volumes;
}

Array arrayOf(const std::vector<float>& volumes) {
  Array array;
  for (const float volume : volumes) array.emplace_back(volume);
  return array;
}

template <class T>
void put(Dictionary& dictionary, std::string_view key, const std::optional<T>& value) {
  if (value) dictionary.set(key, *value);
}

/// All but the icon, which shows for as long as a process says so.
PhoneState stateOf(const Dictionary& dictionary) {
  return {.ringtone = volumeOf(dictionary.find("ringtone")),
          .media = volumeOf(dictionary.find("media")),
          .ringVibrate = flagOf(dictionary.find("ringVibrate")),
          .silentVibrate = flagOf(dictionary.find("silentVibrate")),
          .doNotDisturb = flagOf(dictionary.find("doNotDisturb")),
          .icon = std::nullopt};
}

void putState(Dictionary& dictionary, const PhoneState& state) {
  put(dictionary, "ringtone", state.ringtone);
  put(dictionary, "media", state.media);
  put(dictionary, "ringVibrate", state.ringVibrate);
  put(dictionary, "silentVibrate", state.silentVibrate);
  put(dictionary, "doNotDisturb", state.doNotDisturb);
}

}  // namespace

Ledger Ledger::load() {
  Ledger ledger;
  const auto content = platform::device().foundation().files().arrayWithContentsOfFile(path);
  const Dictionary* entry = content && !content->empty() ? content->front().as<Dictionary>() : nullptr;
  if (!entry) return ledger;
  ledger.open = true;
  ledger.found = stateOf(*entry);
  ledger.ringtonesSet = volumesOf(entry->find("ringtonesSet"));
  ledger.mediasSet = volumesOf(entry->find("mediasSet"));
  ledger.doNotDisturbSet = flagOf(entry->find("doNotDisturbSet")).value_or(false);
  const Value* hand = entry->find("byHand");
  if (const auto* byHand = hand ? hand->as<Dictionary>() : nullptr) ledger.byHand = stateOf(*byHand);
  return ledger;
}

bool Ledger::save() const {
  Array content;
  if (open) {
    Dictionary entry;
    putState(entry, found);
    entry.set("ringtonesSet", arrayOf(ringtonesSet));
    entry.set("mediasSet", arrayOf(mediasSet));
    entry.set("doNotDisturbSet", doNotDisturbSet);
    Dictionary hand;
    putState(hand, byHand);
    entry.set("byHand", std::move(hand));
    content.emplace_back(std::move(entry));
  }
  return platform::device().foundation().files().writeArrayToFileAtomically(content, path);
}

}  // namespace hushmode::host
