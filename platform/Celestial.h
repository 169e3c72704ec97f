// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <memory>
#include <string_view>

/// Celestial: volumes by category.
namespace hushmode::platform {

/// The system's volumes. Every change, whoever made it, posts `systemVolumeDidChangeNotification` in-process.
class HUSHMODE_API AVSystemController : public Object {
 public:
  static constexpr std::string_view systemVolumeDidChangeNotification =
      "AVSystemController_SystemVolumeDidChangeNotification";

  ~AVSystemController() override;
  /// Writes the category's volume (0.0 to 1.0) to `volume`; on failure answers false and leaves `volume` untouched.
  virtual bool getVolume(float& volume, std::string_view category) const = 0;
  virtual bool setVolumeTo(float volume, std::string_view category) = 0;
};

/// The legacy volume controller of older systems. Looked up by name.
class HUSHMODE_API AVController : public Object {
 public:
  static constexpr std::string_view className = "AVController";

  class HUSHMODE_API Class : public platform::Class {
   public:
    ~Class() override;
    virtual std::shared_ptr<AVController> avController() = 0;
  };

  ~AVController() override;
  virtual float volume() const = 0;
};

/// What Celestial offers a process.
class HUSHMODE_API Celestial {
 public:
  virtual ~Celestial();
  /// Never null.
  virtual std::shared_ptr<AVSystemController> sharedAVSystemController() = 0;
};

}  // namespace hushmode::platform
