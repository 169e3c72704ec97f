// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TinyLoop.h"

#include <map>
#include <memory>
#include <optional>
#include <platform/Device.h>
#include <string>
#include <string_view>
#include <vector>

/// The least of a phone that the library can work on: files and settings in memory, one calendar, UTC, a ringtone
/// volume that prints what becomes of it. What this phone does not have (WiFi, alarms, a screen ...) is simply absent.
namespace tiny {

class Files final : public hp::PropertyListFiles {
 public:
  bool fileExists(std::string_view path) const override { return arrays.contains(path) || dictionaries.contains(path); }
  std::optional<hp::Array> arrayWithContentsOfFile(std::string_view path) const override { return in(arrays, path); }
  std::optional<hp::Dictionary> dictionaryWithContentsOfFile(std::string_view path) const override {
    return in(dictionaries, path);
  }
  /// On a disk: write a temporary file, sync it, rename it over the old one.
  bool writeArrayToFileAtomically(const hp::Array& array, std::string_view path) override {
    arrays.insert_or_assign(std::string(path), array);
    return true;
  }

  std::map<std::string, hp::Array, std::less<>> arrays;
  std::map<std::string, hp::Dictionary, std::less<>> dictionaries;

 private:
  template <class T>
  static std::optional<T> in(const std::map<std::string, T, std::less<>>& files, std::string_view path) {
    const auto place = files.find(path);
    return place == files.end() ? std::nullopt : std::optional(place->second);
  }
};

class Defaults final : public hp::UserDefaults {
 public:
  std::optional<hp::Value> valueForKey(std::string_view key) const override;
  float floatForKey(std::string_view key) const override;
  bool boolForKey(std::string_view key) const override;
  void setFloat(float value, std::string_view key) override { values_.set(key, static_cast<double>(value)); }
  void setBool(bool value, std::string_view key) override { values_.set(key, value); }
  void removeObjectForKey(std::string_view key) override { values_.remove(key); }
  void synchronize() override {}
  std::optional<hp::Dictionary> persistentDomainForName(std::string_view name) const override;
  void setPersistentDomain(const hp::Dictionary& domain, std::string_view name) override;

 private:
  hp::Dictionary values_;
  std::map<std::string, hp::Dictionary, std::less<>> domains_;
};

class Notifications final : public hp::NotificationCenter {
 public:
  void addObserver(const void* observer, std::string_view name, std::shared_ptr<hp::Object> sender,
                   std::function<void(const hp::Notification&)> handler) override;
  void removeObserver(const void* observer) override;
  void post(const hp::Notification& notification) override;
  void clear() { observers_.clear(); }

 private:
  struct Observer {
    const void* observer;
    std::string name;
    std::shared_ptr<hp::Object> sender;
    std::function<void(const hp::Notification&)> handler;
  };
  std::vector<Observer> observers_;
};

/// Days and hours of UTC.
class UtcCalendar final : public hp::Calendar {
 public:
  hp::DateComponents componentsOfDate(hp::Date date) const override;
  hp::Date dateFromComponents(const hp::DateComponents& components) const override;
  hp::Date dateByAddingDays(hp::Date date, int days) const override { return date.addingSeconds(days * 86400.0); }
};

/// No texts of its own: the library's stand as they are.
class Bundle final : public hp::Bundle {
 public:
  std::string localizedStringForKey(std::string_view key, std::optional<std::string_view> value) const override {
    return std::string(value && !value->empty() ? *value : key);
  }
  std::string bundleIdentifier() const override { return "com.example.tiny-phone"; }
};

class Silence final : public hp::SystemLog {
 public:
  bool isListening(hp::LogLine::Level) const override { return false; }
  void write(const hp::LogLine&) override {}
};

class Foundation final : public hp::Foundation, public hp::CoreFoundation {
 public:
  explicit Foundation(TinyLoop& loop) : loop_(loop) {}

  hp::Date now() const override { return loop_.now(); }
  const hp::Calendar& currentCalendar() const override { return calendar_; }
  const hp::Calendar& gregorianCalendar() const override { return calendar_; }
  Files& files() override { return files_; }
  hp::UserDefaults& standardUserDefaults() override { return defaults_; }
  Notifications& defaultNotificationCenter() override { return notifications_; }
  std::shared_ptr<hp::Bundle> bundleWithPath(std::string_view) override { return nullptr; }
  std::shared_ptr<hp::Bundle> mainBundle() override { return bundle_; }
  std::shared_ptr<hp::NSTimer> timerWithTimeInterval(
      double seconds, std::function<void(const std::shared_ptr<hp::NSTimer>&)> action) override {
    return std::make_shared<TinyTimer>(loop_, seconds, std::move(action));
  }
  hp::SystemLog& systemLog() override { return log_; }
  std::shared_ptr<hp::NSDateFormatter> makeDateFormatter() override;

  hp::RunLoop& mainRunLoop() override { return loop_; }
  void postDarwinNotification(std::string_view) override {}
  bool dlopen(std::string_view, int) override { return false; }

 private:
  TinyLoop& loop_;
  UtcCalendar calendar_;
  Files files_;
  Defaults defaults_;
  Notifications notifications_;
  Silence log_;
  std::shared_ptr<Bundle> bundle_ = std::make_shared<Bundle>();
};

/// One calendar, "work".
class Calendars final : public hp::EventKit {
 public:
  std::shared_ptr<hp::EKEventStore> makeEventStore() override;
  void add(const std::string& title, hp::Date start, hp::Date end);
  const std::vector<std::shared_ptr<hp::EKEvent>>& events() const { return events_; }
  const std::shared_ptr<hp::EKCalendar>& calendar() const { return calendar_; }

 private:
  std::shared_ptr<hp::EKCalendar> calendar_ =
      std::make_shared<hp::EKCalendar>("work", "Work", true, std::make_shared<hp::EKSource>("Tiny"));
  std::vector<std::shared_ptr<hp::EKEvent>> events_;
};

/// The ringtone volume; the media volume is its own class, which this phone lacks.
class Volumes final : public hp::Celestial {
 public:
  explicit Volumes(TinyLoop& loop);
  std::shared_ptr<hp::AVSystemController> sharedAVSystemController() override { return controller_; }

 private:
  std::shared_ptr<hp::AVSystemController> controller_;
};

class NoWiFi final : public hp::MobileWiFi {
 public:
  std::shared_ptr<hp::WiFiManagerClient> WiFiManagerClientCreate(int) override { return nullptr; }
  std::optional<std::vector<std::shared_ptr<hp::WiFiDeviceClient>>> WiFiManagerClientCopyDevices(
      const std::shared_ptr<hp::WiFiManagerClient>&) override {
    return std::nullopt;
  }
  std::vector<std::shared_ptr<hp::WiFiNetwork>> WiFiManagerClientCopyNetworks(
      const std::shared_ptr<hp::WiFiManagerClient>&) override {
    return {};
  }
  std::shared_ptr<hp::WiFiNetwork> WiFiDeviceClientCopyCurrentNetwork(
      const std::shared_ptr<hp::WiFiDeviceClient>&) override {
    return nullptr;
  }
  std::string WiFiNetworkGetSSID(const std::shared_ptr<hp::WiFiNetwork>&) override { return {}; }
  hp::Dictionary WiFiNetworkCopyRecord(const std::shared_ptr<hp::WiFiNetwork>&) override { return {}; }
};

class NoSounds final : public hp::AudioToolbox {
 public:
  void AudioServicesPlaySystemSoundWithVibration(std::uint32_t, const hp::Dictionary&) override {}
};

/// Nobody to ask, nothing to draw on.
class NoScreen final : public hp::UIKit {
 public:
  std::shared_ptr<hp::UIApplication> sharedApplication() override;
  std::shared_ptr<hp::UIAlertView> makeAlertView(hp::UIAlertDescription) override;
  std::string systemVersion() const override { return "13.1"; }
  std::optional<int> userInterfaceStyle() const override { return std::nullopt; }
  std::unique_ptr<hp::UIGraphicsImageContext> beginImageContext(hp::CGSize, bool, double) override { return nullptr; }
};

class Phone final : public hp::Device {
 public:
  explicit Phone(hp::Date start) : loop_(start), foundation_(loop_), volumes_(loop_), wakeTimers_(loop_) {}

  TinyLoop& loop() { return loop_; }
  Foundation& foundation() override { return foundation_; }
  Foundation& coreFoundation() override { return foundation_; }
  Calendars& eventKit() override { return calendars_; }
  hp::MobileWiFi& mobileWiFi() override { return wifi_; }
  hp::Celestial& celestial() override { return volumes_; }
  hp::AudioToolbox& audioToolbox() override { return sounds_; }
  hp::UIKit& uiKit() override { return screen_; }
  /// Calls on classes that are missing do nothing. Without this one nothing would switch at its second.
  hp::Class* classNamed(std::string_view name) override {
    return name == hp::PCSimpleTimer::className ? &wakeTimers_ : nullptr;
  }
  void processEnded() override {
    loop_.clear();
    foundation_.defaultNotificationCenter().clear();
  }

 private:
  TinyLoop loop_;
  Foundation foundation_;
  Calendars calendars_;
  Volumes volumes_;
  NoWiFi wifi_;
  NoSounds sounds_;
  NoScreen screen_;
  TinyWakeTimerClass wakeTimers_;
};

}  // namespace tiny
