// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Services.h"
#include "platform/Foundation.h"
#include "tests/support/MainLoopWait.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace hushmode::devices {

/// Runs a program to its end, while the main loop goes on; answers its output. Fails the test when it fails.
std::string run(const std::vector<std::string>& arguments);

/// The process that listens on a socket of the session, which is the sound server, or that owns a name on its bus.
int pulseAudioProcess();
int ownerOfName(const std::string& name);
/// Ends the sound server as a crash would, and waits for its end. Answers how to start the same one again.
std::vector<std::string> killPulseAudio();
/// Starts a program that ends with the test program at the latest; answers its process.
int start(const std::vector<std::string>& arguments);
void endProcess(int process, int signal);

/// What services reported: each change a line.
struct ReportedServices : Services {
  ReportedServices() {
    setListener([this](const std::string& name, const ServiceState& now, const ServiceState*) {
      lines.push_back(name + (now.available ? ": " : " rest: ") + now.detail);
    });
  }
  std::vector<std::string> lines;
};

/// A notification centre that keeps what is posted.
class KeptNotifications final : public platform::NotificationCenter {
 public:
  void addObserver(const void*, std::string_view, std::shared_ptr<platform::Object>,
                   std::function<void(const platform::Notification&)> handler) override {
    handlers_.push_back(std::move(handler));
  }
  void removeObserver(const void*) override { handlers_.clear(); }
  void post(const platform::Notification& notification) override {
    posted.push_back(notification);
    for (const auto& handler : handlers_) handler(notification);
  }
  std::vector<platform::Notification> posted;

 private:
  std::vector<std::function<void(const platform::Notification&)>> handlers_;
};

}  // namespace hushmode::devices
