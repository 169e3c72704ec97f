// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/FeedbackDaemon.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr const char* busName = "org.sigxcpu.Feedback";
const BusClient::Object feedback{"/org/sigxcpu/Feedback", "org.sigxcpu.Feedback"};
const Glib::ustring applicationId = "hushmode";

// In place of a number of seconds.
constexpr std::int32_t once = -1;
constexpr std::int32_t endlessly = 0;

}  // namespace

/// A feedback that was asked for, known to whoever holds it and to the call that is under way. It may be stopped before
/// the daemon said what its number is.
class FeedbackDaemon::Feedback {
 public:
  Feedback(FeedbackDaemon& daemon, std::string owner) : daemon_(&daemon), owner_(std::move(owner)) {}

  void begun(std::optional<std::uint32_t> number) {
    number_ = number;
    if (isStopped_) end();
    if (daemon_) daemon_->handlers_.works();
  }
  void failed(const std::string& why) {
    if (daemon_) daemon_->handlers_.failed("feedbackd: " + why);
  }
  void stop() {
    isStopped_ = true;
    end();
  }
  void leaveDaemon() { daemon_ = nullptr; }

 private:
  void end() {
    BusClient* client = daemon_ ? daemon_->service_.client() : nullptr;
    // To another daemon the number means somebody else's feedback.
    if (!number_ || !client || client->owner() != owner_) return;
    client->call(feedback, "EndFeedback", argumentsOf(*std::exchange(number_, std::nullopt)), "()", {});
  }

  FeedbackDaemon* daemon_;
  std::string owner_;
  std::optional<std::uint32_t> number_;
  bool isStopped_ = false;
};

class FeedbackDaemon::Handle final : public Playing {
 public:
  explicit Handle(std::shared_ptr<Feedback> held) : feedback_(std::move(held)) {}
  ~Handle() override { feedback_->stop(); }

 private:
  std::shared_ptr<Feedback> feedback_;
};

FeedbackDaemon::FeedbackDaemon(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Handlers handlers)
    : handlers_(std::move(handlers)),
      service_(
          sessionBus, busName, [this](BusClient&) { handlers_.works(); }, [this] { handlers_.went(); }) {}

FeedbackDaemon::~FeedbackDaemon() {
  for (const auto& each : given_) {
    const auto held = each.lock();
    if (!held) continue;
    held->stop();
    held->leaveDaemon();
  }
}

std::unique_ptr<Playing> FeedbackDaemon::give(const std::string& event, const std::string& loudest, Repeat repeat) {
  BusClient* client = service_.client();
  if (!client) return nullptr;
  const auto asked = std::make_shared<Feedback>(*this, client->owner());
  std::erase_if(given_, [](const auto& each) { return each.expired(); });
  given_.push_back(asked);
  const Properties hints{{"profile", Glib::Variant<Glib::ustring>::create(loudest)}};
  client->call(
      feedback, "TriggerFeedback",
      argumentsOf(applicationId, Glib::ustring(event), hints, repeat == Repeat::Once ? once : endlessly), "(u)",
      [asked](const BusClient::Reply& reply) { asked->begun(valueAt<std::uint32_t>(reply.values, 0)); },
      [asked](const BusClient::Failure& failure) { asked->failed(failure.reason); });
  return std::make_unique<Handle>(asked);
}

}  // namespace hushmode::devices
