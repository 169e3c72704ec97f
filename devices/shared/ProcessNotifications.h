// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Foundation.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// The in-process notification centre. Observers may come and go during a post: one that is removed is not told any
/// more, one that is added is told from the next post on. For one thread.
class ProcessNotifications : public platform::NotificationCenter {
 public:
  void addObserver(const void* observer, std::string_view name, std::shared_ptr<platform::Object> sender,
                   std::function<void(const platform::Notification&)> handler) override;
  void removeObserver(const void* observer) override;
  void post(const platform::Notification& notification) override;

  std::size_t observerCount() const { return observers_.size(); }
  /// Ends all registrations, those of a process that ended.
  void processEnded();

 private:
  struct Observer {
    const void* identity;
    std::string name;
    std::shared_ptr<platform::Object> sender;
    std::function<void(const platform::Notification&)> handler;
    bool removed = false;
  };

  std::vector<std::shared_ptr<Observer>> observers_;
};

}  // namespace hushmode::devices
