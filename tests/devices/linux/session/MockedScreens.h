// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/MockedService.h"

#include <string>

namespace hushmode {

/// A stand-in for Mutter's control of the screens' power.
class MockedMutter {
 public:
  explicit MockedMutter(int power = 0) { prepare(power); }

  MockedService& service() { return service_; }
  void setPower(int power) {
    service_.control(path, "UpdateProperties",
                     "('" + std::string(name) + "', {'PowerSaveMode': <" + std::to_string(power) + ">})");
  }
  int power() {
    const auto reply =
        service_.call(path, "org.freedesktop.DBus.Properties", "Get", "('" + std::string(name) + "', 'PowerSaveMode')");
    Glib::VariantBase value;
    reply.get_child(value, 0);
    GVariant* held = g_variant_get_variant(value.gobj());
    const int power = g_variant_get_int32(held);
    g_variant_unref(held);
    return power;
  }
  void restart(int power) {
    service_.kill();
    service_.start();
    prepare(power);
    setPower(power);  // It may have been asked before it had the property.
  }

  static constexpr const char* name = "org.gnome.Mutter.DisplayConfig";
  static constexpr const char* path = "/org/gnome/Mutter/DisplayConfig";

 private:
  void prepare(int power) {
    service_.control(path, "AddProperty",
                     "('" + std::string(name) + "', 'PowerSaveMode', <" + std::to_string(power) + ">)");
  }

  MockedService service_{"session", name, {name, path, name}};
};

/// A stand-in for the desktop's screen saver.
class MockedScreenSaver {
 public:
  explicit MockedScreenSaver(bool isActive = false) {
    service_.answer(path, name, "SimulateUserActivity", "", "", "");
    answerActive(isActive);
  }

  MockedService& service() { return service_; }
  void setActive(bool isActive) {
    answerActive(isActive);
    service_.control(path, "EmitSignal",
                     "('" + std::string(name) + "', 'ActiveChanged', 'b', [<" + (isActive ? "true" : "false") + ">])");
  }
  std::size_t activities() { return service_.callsOf(path, "SimulateUserActivity"); }

  static constexpr const char* name = "org.freedesktop.ScreenSaver";
  static constexpr const char* path = "/org/freedesktop/ScreenSaver";

 private:
  void answerActive(bool isActive) {
    service_.answer(path, name, "GetActive", "", "b", isActive ? "ret = True" : "ret = False");
  }

  MockedService service_{"session", name, {name, path, name}};
};

}  // namespace hushmode
