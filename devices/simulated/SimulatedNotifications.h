#pragma once

#include "devices/simulated/Record.h"
#include "platform/Foundation.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// The in-process notification centre of a simulated phone.
///
/// Observers may come and go during a post: one that is removed is not told any more, one that is added is told from
/// the next post on.
class SimulatedNotificationCenter final : public platform::NotificationCenter {
 public:
  explicit SimulatedNotificationCenter(Record& record) : record_(record) {}

  void addObserver(const void* observer, std::string_view name, std::shared_ptr<platform::Object> sender,
                   std::function<void(const platform::Notification&)> handler) override;
  void removeObserver(const void* observer) override;
  void post(const platform::Notification& notification) override;

  /// Tells the observers without a record of it: what the phone's own services post.
  void deliver(const platform::Notification& notification);
  std::size_t observerCount() const { return observers_.size(); }
  void processEnded();

 private:
  struct Observer {
    const void* identity;
    std::string name;
    std::shared_ptr<platform::Object> sender;
    std::function<void(const platform::Notification&)> handler;
    bool removed = false;
  };

  Record& record_;
  std::vector<std::shared_ptr<Observer>> observers_;
};

/// System-wide notifications: recorded at once, delivered to the observers in the process from its run loop.
class SimulatedDarwinCenter {
 public:
  using Handler = std::function<void(std::string_view name)>;

  SimulatedDarwinCenter(VirtualTime& time, Record& record) : time_(time), record_(record) {}

  void post(std::string_view name);
  /// A post by another process, such as the settings app.
  void postFromOutside(std::string_view name);
  /// Observes every name until the process ends.
  void observe(Handler handler) { observers_.push_back(std::make_shared<Handler>(std::move(handler))); }
  void processEnded() { observers_.clear(); }

 private:
  void deliver(std::string_view name);

  VirtualTime& time_;
  Record& record_;
  std::vector<std::shared_ptr<Handler>> observers_;
};

}  // namespace hushmode::devices
