// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "host/GuardedDevice.h"

#include "util/Numbers.h"

#include <algorithm>

namespace hushmode::host {

using platform::Date;
using platform::Dictionary;
using platform::LSStatusBarItem;
using platform::Notification;
using platform::NSTimer;
using platform::Object;
using platform::PCSimpleTimer;

class GuardedDevice::Files final : public platform::PropertyListFiles {
 public:
  explicit Files(GuardedDevice& guard) : guard_(guard) {}
  bool fileExists(std::string_view path) const override { return real().fileExists(path); }
  std::optional<platform::Array> arrayWithContentsOfFile(std::string_view path) const override {
    return real().arrayWithContentsOfFile(path);
  }
  std::optional<Dictionary> dictionaryWithContentsOfFile(std::string_view path) const override {
    return real().dictionaryWithContentsOfFile(path);
  }
  bool writeArrayToFileAtomically(const platform::Array& array, std::string_view path) override {
    guard_.hooks_.beforeArrayIsWritten(array, path);
    return real().writeArrayToFileAtomically(array, path);
  }

 private:
  platform::PropertyListFiles& real() const { return guard_.phone_.foundation().files(); }
  GuardedDevice& guard_;
};

class GuardedDevice::Center final : public platform::NotificationCenter {
 public:
  explicit Center(GuardedDevice& guard) : guard_(guard) {}
  void addObserver(const void* observer, std::string_view name, std::shared_ptr<Object> sender,
                   std::function<void(const Notification&)> handler) override {
    real().addObserver(observer, name, std::move(sender),
                       [&hooks = guard_.hooks_, handler = std::move(handler)](const Notification& notification) {
                         hooks.enter([&] { handler(notification); }, false);
                       });
  }
  void removeObserver(const void* observer) override { real().removeObserver(observer); }
  void post(const Notification& notification) override { real().post(notification); }

 private:
  platform::NotificationCenter& real() const { return guard_.phone_.foundation().defaultNotificationCenter(); }
  GuardedDevice& guard_;
};

class GuardedDevice::Foundation final : public platform::Foundation {
 public:
  explicit Foundation(GuardedDevice& guard) : guard_(guard), files_(guard), center_(guard) {}
  Date now() const override { return real().now(); }
  const platform::Calendar& currentCalendar() const override { return real().currentCalendar(); }
  const platform::Calendar& gregorianCalendar() const override { return real().gregorianCalendar(); }
  platform::PropertyListFiles& files() override { return files_; }
  platform::UserDefaults& standardUserDefaults() override { return real().standardUserDefaults(); }
  platform::NotificationCenter& defaultNotificationCenter() override { return center_; }
  std::shared_ptr<platform::Bundle> bundleWithPath(std::string_view path) override {
    return real().bundleWithPath(path);
  }
  std::shared_ptr<platform::Bundle> mainBundle() override { return real().mainBundle(); }
  std::shared_ptr<NSTimer> timerWithTimeInterval(double seconds,
                                                 std::function<void(const std::shared_ptr<NSTimer>&)> action) override {
    return real().timerWithTimeInterval(
        seconds, [&hooks = guard_.hooks_, action = std::move(action)](const std::shared_ptr<NSTimer>& timer) {
          hooks.enter([&] { action(timer); }, true);
        });
  }
  platform::SystemLog& systemLog() override { return real().systemLog(); }
  std::shared_ptr<platform::NSDateFormatter> makeDateFormatter() override { return real().makeDateFormatter(); }

 private:
  platform::Foundation& real() const { return guard_.phone_.foundation(); }
  GuardedDevice& guard_;
  Files files_;
  Center center_;
};

class GuardedDevice::Loop final : public platform::RunLoop {
 public:
  explicit Loop(GuardedDevice& guard) : guard_(guard) {}
  bool isMainThread() const override { return real().isMainThread(); }
  void dispatchAsync(std::function<void()> work) override { real().dispatchAsync(guarded(std::move(work))); }
  void dispatchAfter(double seconds, std::function<void()> work) override {
    real().dispatchAfter(seconds, guarded(std::move(work)));
  }
  void addTimer(const std::shared_ptr<NSTimer>& timer) override { real().addTimer(timer); }
  void performSelector(std::shared_ptr<Object> target, std::string_view selector, double seconds,
                       std::function<void()> action) override {
    real().performSelector(std::move(target), selector, seconds, guarded(std::move(action)));
  }
  void cancelPreviousPerformRequests(const std::shared_ptr<Object>& target, std::string_view selector) override {
    real().cancelPreviousPerformRequests(target, selector);
  }

 private:
  std::function<void()> guarded(std::function<void()> work) const {
    return [&hooks = guard_.hooks_, work = std::move(work)] { hooks.enter(work, false); };
  }
  platform::RunLoop& real() const { return guard_.phone_.coreFoundation().mainRunLoop(); }
  GuardedDevice& guard_;
};

class GuardedDevice::CoreFoundation final : public platform::CoreFoundation {
 public:
  explicit CoreFoundation(GuardedDevice& guard) : guard_(guard), loop_(guard) {}
  platform::RunLoop& mainRunLoop() override { return loop_; }
  void postDarwinNotification(std::string_view name) override { real().postDarwinNotification(name); }
  bool dlopen(std::string_view path, int mode) override { return real().dlopen(path, mode); }

 private:
  platform::CoreFoundation& real() const { return guard_.phone_.coreFoundation(); }
  GuardedDevice& guard_;
  Loop loop_;
};

class GuardedDevice::Kit final : public platform::UIKit {
 public:
  explicit Kit(GuardedDevice& guard) : guard_(guard) {}
  std::shared_ptr<platform::UIApplication> sharedApplication() override { return real().sharedApplication(); }
  std::shared_ptr<platform::UIAlertView> makeAlertView(platform::UIAlertDescription description) override {
    description.clickedButtonAtIndex = [&hooks = guard_.hooks_, answer = std::move(description.clickedButtonAtIndex)](
                                           const std::shared_ptr<platform::UIAlertView>& alert, int button) {
      hooks.enter(
          [&] {
            if (answer) answer(alert, button);
          },
          false);
    };
    return real().makeAlertView(std::move(description));
  }
  std::string systemVersion() const override { return real().systemVersion(); }
  std::optional<int> userInterfaceStyle() const override { return real().userInterfaceStyle(); }
  std::unique_ptr<platform::UIGraphicsImageContext> beginImageContext(platform::CGSize size, bool opaque,
                                                                      double scale) override {
    return real().beginImageContext(size, opaque, scale);
  }

 private:
  platform::UIKit& real() const { return guard_.phone_.uiKit(); }
  GuardedDevice& guard_;
};

/// The armed wake-ups, kept by both the device and the timers.
struct GuardedDevice::Armed {
  std::vector<std::shared_ptr<Timer>> timers;
};

class GuardedDevice::Timer final : public PCSimpleTimer {
 public:
  Timer(Date fireDate, Dictionary userInfo, std::shared_ptr<Armed> armed)
      : fireDate_(fireDate), userInfo_(std::move(userInfo)), armed_(std::move(armed)) {}

  void setReal(std::shared_ptr<PCSimpleTimer> real) { real_ = std::move(real); }
  std::string description() const override { return real_->description(); }
  void scheduleInRunLoop(platform::RunLoop& runLoop) override {
    if (spent_ || isArmed()) return;
    armed_->timers.push_back(self());
    real_->scheduleInRunLoop(runLoop);
  }
  void invalidate() override {
    const auto held = self();
    forget();
    real_->invalidate();
  }
  const Dictionary& userInfo() const override { return userInfo_; }

  Date fireDate() const { return fireDate_; }
  /// It fired or was invalidated.
  void forget() {
    spent_ = true;
    std::erase(armed_->timers, self());
  }

 private:
  std::shared_ptr<Timer> self() { return std::static_pointer_cast<Timer>(shared_from_this()); }
  bool isArmed() { return std::find(armed_->timers.begin(), armed_->timers.end(), self()) != armed_->timers.end(); }

  Date fireDate_;
  Dictionary userInfo_;
  std::shared_ptr<Armed> armed_;
  std::shared_ptr<PCSimpleTimer> real_;
  bool spent_ = false;
};

class GuardedDevice::TimerClass final : public PCSimpleTimer::Class {
 public:
  explicit TimerClass(GuardedDevice& guard) : guard_(guard) {}
  std::shared_ptr<PCSimpleTimer> initWithFireDate(Date fireDate, std::string_view serviceIdentifier,
                                                  PCSimpleTimer::Action action, Dictionary userInfo) override {
    auto* real = dynamic_cast<PCSimpleTimer::Class*>(guard_.phone_.classNamed(PCSimpleTimer::className));
    if (!real) return nullptr;
    // A bound of a window belongs to it, so that at the very moment of the end the library asks to be woken at the end.
    // Woken in that moment it would ask again, and again.
    const Date soonest = guard_.phone_.foundation().now().addingSeconds(leastSecondsAhead);
    if (fireDate < soonest) fireDate = soonest;
    const auto timer = std::make_shared<Timer>(fireDate, userInfo, guard_.armed_);
    const std::weak_ptr<Timer> weak = timer;
    timer->setReal(real->initWithFireDate(
        fireDate, serviceIdentifier,
        [&hooks = guard_.hooks_, weak, action = std::move(action)](const std::shared_ptr<PCSimpleTimer>&) {
          const auto fired = weak.lock();
          if (!fired) return;
          fired->forget();
          if (hooks.mayWake()) hooks.enter([&] { action(fired); }, true);
        },
        std::move(userInfo)));
    return timer;
  }

 private:
  static constexpr double leastSecondsAhead = 0.001;
  GuardedDevice& guard_;
};

class GuardedDevice::Icon final : public LSStatusBarItem {
 public:
  explicit Icon(std::shared_ptr<LSStatusBarItem> real) : real_(std::move(real)) {}
  void setImageName(std::string_view name) override { real_->setImageName(name); }
  void setVisible(bool visible) override {
    visible_ = visible;
    real_->setVisible(visible);
  }
  bool respondsTo(std::string_view selector) const override { return real_->respondsTo(selector); }
  bool isVisible() const { return visible_; }

 private:
  std::shared_ptr<LSStatusBarItem> real_;
  bool visible_ = false;
};

class GuardedDevice::IconClass final : public LSStatusBarItem::Class {
 public:
  explicit IconClass(GuardedDevice& guard) : guard_(guard) {}
  std::shared_ptr<LSStatusBarItem> initWithIdentifier(std::string_view identifier, int alignment) override {
    auto* real = dynamic_cast<LSStatusBarItem::Class*>(guard_.phone_.classNamed(LSStatusBarItem::className));
    const auto item = real ? real->initWithIdentifier(identifier, alignment) : nullptr;
    if (!item) return nullptr;
    const auto icon = std::make_shared<Icon>(item);
    guard_.icon_ = icon;
    return icon;
  }

 private:
  GuardedDevice& guard_;
};

GuardedDevice::GuardedDevice(platform::Device& phone, GuardHooks hooks)
    : phone_(phone),
      hooks_(std::move(hooks)),
      volumes_(phone),
      armed_(std::make_shared<Armed>()),
      foundation_(std::make_unique<Foundation>(*this)),
      coreFoundation_(std::make_unique<CoreFoundation>(*this)),
      kit_(std::make_unique<Kit>(*this)),
      timerClass_(std::make_unique<TimerClass>(*this)),
      iconClass_(std::make_unique<IconClass>(*this)) {}

GuardedDevice::~GuardedDevice() { armed_->timers.clear(); }

platform::Foundation& GuardedDevice::foundation() { return *foundation_; }
platform::CoreFoundation& GuardedDevice::coreFoundation() { return *coreFoundation_; }
platform::UIKit& GuardedDevice::uiKit() { return *kit_; }

platform::Class* GuardedDevice::classNamed(std::string_view name) {
  platform::Class* real = phone_.classNamed(name);
  if (!real) return nullptr;
  if (name == PCSimpleTimer::className) return timerClass_.get();
  if (name == LSStatusBarItem::className) return iconClass_.get();
  if (name == platform::VolumeControl::className) return volumes_.volumeControlClass();
  return real;
}

void GuardedDevice::processEnded() {
  volumes_.forget();
  phone_.processEnded();
  armed_->timers.clear();
}

std::vector<ArmedWakeUp> GuardedDevice::armedWakeUps() const {
  std::vector<ArmedWakeUp> wakeUps;
  for (const auto& timer : armed_->timers) {
    wakeUps.push_back({timer->fireDate(), integerMeaning(timer->userInfo().find("ProfileIdentifier"))});
  }
  return wakeUps;
}

void GuardedDevice::disarmWakeUps() {
  const auto timers = armed_->timers;
  for (const auto& timer : timers) timer->invalidate();
}

std::optional<bool> GuardedDevice::isIconVisible() const {
  const auto icon = icon_.lock();
  return icon ? std::optional(icon->isVisible()) : std::nullopt;
}

}  // namespace hushmode::host
