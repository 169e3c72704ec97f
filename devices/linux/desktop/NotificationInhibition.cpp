// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/NotificationInhibition.h"

#include "devices/words/Text.h"

#include <utility>

namespace hushmode::devices {

namespace {

constexpr const char* name = "org.freedesktop.Notifications";
const BusClient::Object notifications{"/org/freedesktop/Notifications", name};
const BusClient::Object itsProperties{notifications.path, "org.freedesktop.DBus.Properties"};

}  // namespace

NotificationInhibition::NotificationInhibition(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus,
                                               std::chrono::milliseconds timeLimit, std::function<void()> changed)
    : changed_(std::move(changed)) {
  service_.emplace(
      sessionBus, name, [this](BusClient& client) { appeared(client); }, [this] { vanished(); }, timeLimit);
}

void NotificationInhibition::appeared(BusClient& client) {
  state_ = State::Asking;
  client.hear(itsProperties, "PropertiesChanged", "(sa{sv}as)",
              [this](const std::string&, const Glib::VariantContainerBase& values) {
                if (valueAt<Glib::ustring>(values, 0) != Glib::ustring(name)) return;
                const auto inhibited =
                    valueOf<bool>(valueAt<Properties>(values, 1).value_or(Properties()), "Inhibited");
                if (inhibited) changedTo(*inhibited);
              });
  client.read(
      notifications, [this](const Properties& properties) { learned(valueOf<bool>(properties, "Inhibited")); },
      [this](const BusClient::Failure& failure) {
        learned(std::nullopt);
        // One that has no properties at all says so; one that says nothing may only be slow.
        if (!failure.refused) service_->tryAgainLater();
      });
}

void NotificationInhibition::vanished() {
  state_ = State::Away;
  // What it knew of, and what it was asked, went with it.
  requesting_ = false;
  cookie_.reset();
  inhibited_ = false;
  if (service_) changed_();  // Else this is the constructor.
}

/// What a service that has just appeared says of itself; none when it has no inhibitions.
void NotificationInhibition::learned(std::optional<bool> inhibited) {
  state_ = State::Ready;
  offered_ = inhibited.has_value();
  inhibited_ = inhibited.value_or(false);
  wanted_ = wanted_ && offered_;
  trouble_.clear();
  pursue();
  changed_();
}

void NotificationInhibition::setInhibited(bool wanted) {
  wanted_ = wanted && offered_;
  if (state_ == State::Ready) pursue();
}

/// Makes what is held agree with what is wanted, one request at a time.
void NotificationInhibition::pursue() {
  if (requesting_ || wanted_ == cookie_.has_value()) return;
  requesting_ = true;
  requested_ = wanted_;
  stuck_ = false;
  wanted_ ? inhibit() : endInhibition();
}

void NotificationInhibition::inhibit() {
  service_->client()->call(
      notifications, "Inhibit",
      argumentsOf(Glib::ustring("hushmode"), Glib::ustring(tr("A Hush Mode profile is applied")), Properties()), "(u)",
      [this](const BusClient::Reply& reply) {
        cookie_ = valueAt<guint32>(reply.values, 0);
        trouble_.clear();
        readBack();
      },
      [this](const BusClient::Failure& failure) { failed(failure); });
}

void NotificationInhibition::endInhibition() {
  service_->client()->call(
      notifications, "UnInhibit", argumentsOf(static_cast<guint32>(*cookie_)), "()",
      [this](const BusClient::Reply&) {
        cookie_.reset();
        trouble_.clear();
        readBack();
      },
      [this](const BusClient::Failure& failure) { failed(failure); });
}

void NotificationInhibition::failed(const BusClient::Failure& failure) {
  trouble_ = failure.reason;
  if (requested_) {
    // Not tried again by itself: a phone that falls silent long after it was asked to would surprise.
    wanted_ = false;
  } else if (failure.refused) {
    cookie_.reset();  // The service knows it no more.
  } else {
    stuck_ = true;  // The service may still have it: the cookie is kept for the next time that its end is asked for.
  }
  readBack();
}

/// After a request, asks how things stand: the notice of its change may be yet to come, or never come.
void NotificationInhibition::readBack() {
  const auto settleWith = [this](std::optional<bool> inhibited) { settle(inhibited.value_or(cookie_.has_value())); };
  service_->client()->read(
      notifications, [settleWith](const Properties& properties) { settleWith(valueOf<bool>(properties, "Inhibited")); },
      [settleWith](const BusClient::Failure&) { settleWith(std::nullopt); });
}

void NotificationInhibition::settle(bool inhibited) {
  inhibited_ = inhibited;
  requesting_ = false;
  if (!inhibited_ && cookie_) endedByUser();
  if (!stuck_) pursue();  // It may have been asked otherwise meanwhile.
  changed_();
}

void NotificationInhibition::changedTo(bool inhibited) {
  if (state_ != State::Ready || !offered_) return;
  inhibited_ = inhibited;
  if (!inhibited_ && cookie_) endedByUser();
  changed_();
}

/// The user ended all inhibitions, the own one with them.
void NotificationInhibition::endedByUser() {
  cookie_.reset();
  if (requested_) wanted_ = false;
}

}  // namespace hushmode::devices
