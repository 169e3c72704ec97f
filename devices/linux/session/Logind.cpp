// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/Logind.h"

#include "devices/words/Text.h"

#include <cstdint>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr const char* serviceName = "sleep and lock";
const BusClient::Object manager{"/org/freedesktop/login1", "org.freedesktop.login1.Manager"};
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";

/// Id, user, name of the user, seat (empty for none), path.
using SessionEntry = std::tuple<Glib::ustring, std::uint32_t, Glib::ustring, Glib::ustring, Glib::DBusObjectPathString>;

/// The path of this user's session, one at a seat if there is one; empty for none.
std::string ownSession(const std::vector<SessionEntry>& sessions) {
  std::string path;
  for (const auto& [id, user, name, seat, sessionPath] : sessions) {
    if (user != getuid()) continue;
    if (!seat.empty()) return sessionPath;
    if (path.empty()) path = sessionPath;
  }
  return path;
}

}  // namespace

Logind::DelayLock::~DelayLock() { close(descriptor_); }

Logind::Logind(const Glib::RefPtr<Gio::DBus::Connection>& systemBus, Services& services, std::string sessionId,
               Callbacks callbacks, std::chrono::milliseconds limit)
    : services_(services),
      sessionId_(std::move(sessionId)),
      callbacks_(std::move(callbacks)),
      service_(
          systemBus, "org.freedesktop.login1", [this](BusClient& client) { listenTo(client); },
          [this] {
            delayLock_.reset();
            session_.reset();
            sessionPath_.clear();
            services_.report(serviceName, {false, tr("logind is not running")});
            setLocked(std::nullopt);
          },
          limit) {}

void Logind::listenTo(BusClient& client) {
  client.hear(manager, "PrepareForSleep", "(b)", [this](const std::string&, const Glib::VariantContainerBase& values) {
    setPreparingForSleep(valueAt<bool>(values, 0).value_or(false));
  });
  const auto look = [this](const std::string&, const Glib::VariantContainerBase&) { findSession(); };
  client.hear(manager, "SessionNew", "(so)", look);
  client.hear(manager, "SessionRemoved", "(so)", look);
  // Where a signal was missed: logind was started anew while the phone slept, or this process was.
  client.read(
      manager,
      [this](const Properties& properties) {
        services_.report(serviceName, {true, "logind"});
        setPreparingForSleep(valueOf<bool>(properties, "PreparingForSleep").value_or(false));
      },
      [this](const BusClient::Failure& failure) { notAnswered(failure); });
  delayLock_.reset();
  takeDelayLock();
  session_.reset();
  sessionPath_.clear();
  findSession();
}

void Logind::setPreparingForSleep(bool isPreparing) {
  if (isPreparing == isPreparingForSleep_) return;
  isPreparingForSleep_ = isPreparing;
  if (isPreparing) {
    callbacks_.aboutToSleep ? callbacks_.aboutToSleep() : readyToSleep();
  } else {
    takeDelayLock();
    if (callbacks_.resumed) callbacks_.resumed();
  }
}

void Logind::readyToSleep() {
  if (isPreparingForSleep_) delayLock_.reset();
}

void Logind::takeDelayLock() {
  if (isPreparingForSleep_ || delayLock_ || !service_.client()) return;
  service_.client()->call(
      manager, "Inhibit",
      argumentsOf(Glib::ustring("sleep"), Glib::ustring("Hush Mode"),
                  Glib::ustring(tr("A switch of profile is under way")), Glib::ustring("delay")),
      "(h)",
      [this](const BusClient::Reply& reply) {
        const int descriptor = reply.descriptors ? g_unix_fd_list_get(reply.descriptors->gobj(), 0, nullptr) : -1;
        if (descriptor < 0) return;
        auto lock = std::make_unique<DelayLock>(descriptor);
        // The phone may be about to sleep by now: then the lock that is late is let go at once.
        if (!isPreparingForSleep_) delayLock_ = std::move(lock);
      },
      // Not everybody may delay sleep. Then a switch that is under way goes on after the phone has slept.
      [this](const BusClient::Failure& failure) {
        if (!failure.refused) return notAnswered(failure);
        services_.report(serviceName, {true, tr("logind, but sleep cannot be delayed: {}", failure.reason)});
      });
}

void Logind::notAnswered(const BusClient::Failure& failure) {
  services_.report(serviceName, {false, tr("logind does not answer: {}", failure.reason)});
  service_.tryAgainLater();
}

void Logind::findSession() {
  if (!service_.client()) return;
  if (sessionId_.empty()) return findSessionInList();
  service_.client()->call(
      manager, "GetSession", argumentsOf(Glib::ustring(sessionId_)), "(o)",
      [this](const BusClient::Reply& reply) {
        followSession(valueAt<Glib::DBusObjectPathString>(reply.values, 0).value_or(""));
      },
      [this](const BusClient::Failure&) { findSessionInList(); });
}

void Logind::findSessionInList() {
  service_.client()->call(manager, "ListSessions", {}, "(a(susso))", [this](const BusClient::Reply& reply) {
    followSession(
        ownSession(valueAt<std::vector<SessionEntry>>(reply.values, 0).value_or(std::vector<SessionEntry>())));
  });
}

void Logind::followSession(const std::string& path) {
  if (path == sessionPath_) return;
  sessionPath_ = path;
  session_.reset();
  if (path.empty()) return setLocked(std::nullopt);
  session_ = service_.client()->another();
  session_->follow({path, sessionInterface}, [this](const Properties& properties) {
    if (const auto isLocked = valueOf<bool>(properties, "LockedHint")) setLocked(isLocked);
  });
}

void Logind::setLocked(std::optional<bool> isLocked) {
  if (isLocked == isLocked_) return;
  isLocked_ = isLocked;
  if (callbacks_.lockChanged) callbacks_.lockChanged();
}

}  // namespace hushmode::devices
