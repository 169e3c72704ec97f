// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Device.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace hushmode::platform {

/// The host process: it holds the device and the lazily made single instances of the library.
///
/// Making a process current starts nothing. Ending it drops the single instances as the death of a process would (no
/// revert, no save) and leaves the device as it is, so that a process can die in the middle of anything and a new one
/// start on the same phone. One process is current at a time.
class HUSHMODE_API Process {
 public:
  /// Makes this process current. The device must outlive it. Throws std::logic_error when another is current.
  explicit Process(Device& device);
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// The current process; throws std::logic_error when there is none.
  static Process& current();
  static bool hasCurrent();

  Device& device() const { return device_; }

  /// The single instance kept under `key` (the address of a variable of its class). The first call, and only the first
  /// whatever the number of threads, makes it with `make` and then sends it `initialize`; a call from inside
  /// `initialize` for the same key would wait for itself.
  template <class T>
  std::shared_ptr<T> singleInstance(const void* key, std::shared_ptr<T> (*make)(), void (*initialize)(T&)) {
    Slot& slot = slotFor(key);
    std::call_once(slot.once, [&] {
      std::shared_ptr<T> made = make();
      slot.object = made;
      initialize(*made);
    });
    return std::static_pointer_cast<T>(slot.object);
  }

 private:
  struct Slot {
    std::once_flag once;
    std::shared_ptr<void> object;
  };
  Slot& slotFor(const void* key);

  Device& device_;
  std::mutex mutex_;
  std::map<const void*, Slot> slots_;
};

/// The current process's device.
HUSHMODE_API Device& device();

/// Looks up a class by the name that its interface carries; null when the class is absent.
template <class T>
typename T::Class* find() {
  return dynamic_cast<typename T::Class*>(device().classNamed(T::className));
}

/// Whether `object` is of the class that the interface `T` names: false when the class is absent.
template <class T>
bool isKindOf(const std::shared_ptr<Object>& object) {
  return device().classNamed(T::className) && std::dynamic_pointer_cast<T>(object);
}

}  // namespace hushmode::platform
