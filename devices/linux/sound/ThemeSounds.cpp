// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/ThemeSounds.h"

#include "devices/words/Text.h"

#include <canberra.h>
#include <chrono>
#include <condition_variable>
#include <glibmm/main.h>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr std::chrono::seconds patienceAtTheEnd(1);
constexpr std::size_t mostAtOnce = 4;     // More hang in a sound server that does not answer.
constexpr std::uint32_t soundNumber = 1;  // One sound per context.

struct Free {
  void operator()(ca_context* context) const { ca_context_destroy(context); }
};
using Context = std::unique_ptr<ca_context, Free>;

}  // namespace

/// The work of one tone's thread, shared with whoever may stop it.
class ThemeSounds::Player : public std::enable_shared_from_this<Player> {
 public:
  Player(std::string sound, Repeat repeat, std::weak_ptr<Started> started)
      : sound_(std::move(sound)), repeat_(repeat), started_(std::move(started)) {}

  void run() {
    const int error = play();
    if (error != CA_SUCCESS) tell(std::string("libcanberra: ") + ca_strerror(error));
    const std::lock_guard lock(mutex_);
    isOver_ = true;
    changed_.notify_all();
  }
  void stop() {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
    changed_.notify_all();
  }
  void waitForEnd() {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, patienceAtTheEnd, [this] { return isOver_; });
  }

 private:
  int play() {
    ca_context* made = nullptr;
    if (const int error = ca_context_create(&made); error != CA_SUCCESS) return error;
    const Context context(made);  // Its end stops the sound.
    ca_context_change_props(made, CA_PROP_APPLICATION_NAME, "Hush Mode", CA_PROP_APPLICATION_ID, "hushmode", nullptr);
    bool isFirst = true;
    do {
      if (const int error = ca_context_play_full(made, soundNumber, properties().get(), &ended, this);
          error != CA_SUCCESS) {
        return error;
      }
      if (std::exchange(isFirst, false)) tell("");
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return isStopped_ || result_; });
      if (isStopped_) return CA_SUCCESS;
      if (const int result = *std::exchange(result_, std::nullopt); result != CA_SUCCESS) return result;
    } while (repeat_ == Repeat::UntilStopped);
    return CA_SUCCESS;
  }

  std::unique_ptr<ca_proplist, int (*)(ca_proplist*)> properties() const {
    ca_proplist* list = nullptr;
    ca_proplist_create(&list);
    ca_proplist_sets(list, CA_PROP_EVENT_ID, sound_.c_str());
    ca_proplist_sets(list, CA_PROP_EVENT_DESCRIPTION, tr("Alert tone").c_str());
    ca_proplist_sets(list, CA_PROP_MEDIA_ROLE, "event");
    return {list, ca_proplist_destroy};
  }

  /// On a thread of libcanberra's.
  static void ended(ca_context*, std::uint32_t, int result, void* player) {
    auto& self = *static_cast<Player*>(player);
    const std::lock_guard lock(self.mutex_);
    self.result_ = result;
    self.changed_.notify_all();
  }

  void tell(std::string error) {
    // This one may be called on any thread; what it is called for is the main loop's.
    Glib::signal_idle().connect_once([started = started_, error = std::move(error)] {
      if (const auto listener = started.lock()) (*listener)(error);
    });
  }

  const std::string sound_;
  const Repeat repeat_;
  const std::weak_ptr<Started> started_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isStopped_ = false, isOver_ = false;
  std::optional<int> result_;  ///< Of the sound that just ended.
};

class ThemeSounds::Handle final : public Playing {
 public:
  explicit Handle(std::shared_ptr<Player> player) : player_(std::move(player)) {}
  ~Handle() override { player_->stop(); }

 private:
  std::shared_ptr<Player> player_;
};

ThemeSounds::ThemeSounds(Started started) : started_(std::make_shared<Started>(std::move(started))) {}

ThemeSounds::~ThemeSounds() {
  started_.reset();
  for (const auto& each : players_) {
    const auto player = each.lock();
    if (!player) continue;
    player->stop();
    player->waitForEnd();
  }
}

std::unique_ptr<Playing> ThemeSounds::play(const std::string& sound, Repeat repeat) {
  std::erase_if(players_, [](const auto& player) { return player.expired(); });
  if (players_.size() == mostAtOnce) {
    (*started_)(tr("libcanberra does not answer"));
    return nullptr;
  }
  const auto player = std::make_shared<Player>(sound, repeat, started_);
  std::thread([player] { player->run(); }).detach();
  players_.push_back(player);
  return std::make_unique<Handle>(player);
}

}  // namespace hushmode::devices
