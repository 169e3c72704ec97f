// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "TinyPhone.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <utility>

namespace tiny {

// --- Settings ---

std::optional<hp::Value> Defaults::valueForKey(std::string_view key) const {
  const hp::Value* value = values_.find(key);
  return value ? std::optional(*value) : std::nullopt;
}

float Defaults::floatForKey(std::string_view key) const {
  const hp::Value* value = values_.find(key);
  const double* number = value ? value->as<double>() : nullptr;
  return number ? static_cast<float>(*number) : 0;
}

bool Defaults::boolForKey(std::string_view key) const {
  const hp::Value* value = values_.find(key);
  const bool* flag = value ? value->as<bool>() : nullptr;
  return flag && *flag;
}

std::optional<hp::Dictionary> Defaults::persistentDomainForName(std::string_view name) const {
  const auto place = domains_.find(name);
  return place == domains_.end() ? std::nullopt : std::optional(place->second);
}

void Defaults::setPersistentDomain(const hp::Dictionary& domain, std::string_view name) {
  domains_.insert_or_assign(std::string(name), domain);
}

// --- Notifications ---

void Notifications::addObserver(const void* observer, std::string_view name, std::shared_ptr<hp::Object> sender,
                                std::function<void(const hp::Notification&)> handler) {
  observers_.push_back({observer, std::string(name), std::move(sender), std::move(handler)});
}

void Notifications::removeObserver(const void* observer) {
  std::erase_if(observers_, [&](const Observer& each) { return each.observer == observer; });
}

void Notifications::post(const hp::Notification& notification) {
  // Observers may come and go while they are told.
  const auto observers = observers_;
  for (const Observer& each : observers) {
    if (each.name == notification.name && (!each.sender || each.sender == notification.sender)) {
      each.handler(notification);
    }
  }
}

// --- Dates ---

namespace {

std::string clockText(hp::Date date) {
  const auto seconds = static_cast<long long>(date.secondsSince1970()) % 86400;
  char text[16];
  std::snprintf(text, sizeof text, "%02lld:%02lld:%02lld", seconds / 3600, seconds / 60 % 60, seconds % 60);
  return text;
}

/// The library makes these for its log; this phone keeps none.
class NoDates final : public hp::NSDateFormatter {
 public:
  void setDateFormat(std::optional<std::string> pattern) override { pattern_ = std::move(pattern); }
  std::optional<std::string> dateFormat() const override { return pattern_; }
  std::string stringFromDate(hp::Date) const override { return {}; }

 private:
  std::optional<std::string> pattern_;
};

}  // namespace

hp::DateComponents UtcCalendar::componentsOfDate(hp::Date date) const {
  using namespace std::chrono;
  const sys_seconds time{seconds(static_cast<long long>(std::floor(date.secondsSince1970())))};
  const auto midnight = floor<days>(time);
  const year_month_day day(midnight);
  const hh_mm_ss clock(time - midnight);
  return {static_cast<int>(day.year()),
          static_cast<int>(static_cast<unsigned>(day.month())),
          static_cast<int>(static_cast<unsigned>(day.day())),
          clock.hours().count(),
          clock.minutes().count(),
          clock.seconds().count()};
}

hp::Date UtcCalendar::dateFromComponents(const hp::DateComponents& components) const {
  using namespace std::chrono;
  const sys_days day = year(components.year) / month(static_cast<unsigned>(components.month)) /
                       std::chrono::day(static_cast<unsigned>(components.day));
  const auto seconds =
      components.hour.value_or(0) * 3600 + components.minute.value_or(0) * 60 + components.second.value_or(0);
  return hp::Date(static_cast<double>(day.time_since_epoch().count() * 86400LL + seconds));
}

std::shared_ptr<hp::NSDateFormatter> Foundation::makeDateFormatter() { return std::make_shared<NoDates>(); }

// --- Calendars ---

namespace {

class Store final : public hp::EKEventStore {
 public:
  explicit Store(const Calendars& calendars) : calendars_(calendars) {}

  std::vector<std::shared_ptr<hp::EKCalendar>> calendarsForEntityType(hp::EKEntityType type) const override {
    if (type != hp::EKEntityType::Event) return {};
    return {calendars_.calendar()};
  }
  std::vector<std::shared_ptr<hp::EKEvent>> eventsMatchingPredicate(
      const hp::EKEventPredicate& predicate) const override {
    std::vector<std::shared_ptr<hp::EKEvent>> found;
    if (predicate.calendars.empty()) return found;
    for (const auto& each : calendars_.events()) {
      if (each->startDate() < predicate.end && each->endDate() > predicate.start) found.push_back(copyOf(*each));
    }
    return found;
  }
  std::shared_ptr<hp::EKEvent> eventWithIdentifier(std::string_view identifier) const override {
    return eventWithUniqueId(identifier);
  }
  std::shared_ptr<hp::EKEvent> eventWithUUID(std::string_view uuid) const override { return eventWithUniqueId(uuid); }
  std::shared_ptr<hp::EKEvent> eventWithUniqueId(std::string_view uniqueId) const override {
    for (const auto& each : calendars_.events()) {
      if (each->uniqueId() == uniqueId) return copyOf(*each);
    }
    return nullptr;
  }
  std::shared_ptr<hp::EKEvent> eventWithUniqueId(std::string_view uniqueId, hp::Date start) const override {
    const auto event = eventWithUniqueId(uniqueId);
    return event && event->startDate() == start ? event : nullptr;
  }

 private:
  /// Every query answers with new objects: the library keeps its own notes on them.
  static std::shared_ptr<hp::EKEvent> copyOf(const hp::EKEvent& event) {
    auto details = std::make_shared<hp::EKEventDetails>();
    details->title = event.title();
    details->UUID = details->uniqueId = details->eventIdentifier = event.uniqueId();
    details->status = event.status();
    details->calendar = event.calendar();
    return std::make_shared<hp::EKEvent>(details, event.startDate(), event.endDate());
  }

  const Calendars& calendars_;
};

}  // namespace

std::shared_ptr<hp::EKEventStore> Calendars::makeEventStore() { return std::make_shared<Store>(*this); }

void Calendars::add(const std::string& title, hp::Date start, hp::Date end) {
  auto details = std::make_shared<hp::EKEventDetails>();
  details->title = title;
  details->UUID = details->uniqueId = details->eventIdentifier = title;
  details->status = hp::EKEventStatus::Confirmed;
  details->calendar = calendar_;
  events_.push_back(std::make_shared<hp::EKEvent>(details, start, end));
}

// --- Volumes ---

namespace {

class Controller final : public hp::AVSystemController {
 public:
  explicit Controller(const TinyLoop& loop) : loop_(loop) {}
  bool getVolume(float& volume, std::string_view category) const override {
    if (category != "Ringtone") return false;
    volume = ringtone_;
    return true;
  }
  bool setVolumeTo(float volume, std::string_view category) override {
    if (category != "Ringtone") return false;
    if (volume != ringtone_) {
      std::printf("%s  ringtone %.0f%% to %.0f%%\n", clockText(loop_.now()).c_str(), ringtone_ * 100, volume * 100);
    }
    ringtone_ = volume;
    return true;
  }

 private:
  const TinyLoop& loop_;
  float ringtone_ = 0.8F;
};

}  // namespace

Volumes::Volumes(TinyLoop& loop) : controller_(std::make_shared<Controller>(loop)) {}

// --- Screen ---

namespace {

class Application final : public hp::UIApplication {
 public:
  void setSystemVolumeHUDEnabled(bool) override {}
};

/// A question that nobody sees.
class Unasked final : public hp::UIAlertView {
 public:
  void setTag(int tag) override { tag_ = tag; }
  int tag() const override { return tag_; }
  void show() override {}

 private:
  int tag_ = 0;
};

}  // namespace

std::shared_ptr<hp::UIApplication> NoScreen::sharedApplication() { return std::make_shared<Application>(); }
std::shared_ptr<hp::UIAlertView> NoScreen::makeAlertView(hp::UIAlertDescription) { return std::make_shared<Unasked>(); }

}  // namespace tiny
