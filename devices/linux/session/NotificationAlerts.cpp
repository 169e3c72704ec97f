// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/NotificationAlerts.h"

#include "devices/linux/session/NotificationText.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace hushmode::devices {

using platform::UIAlertDescription;
using platform::UIAlertView;

namespace {

constexpr const char* serviceName = "questions";
const BusClient::Object notifications{"/org/freedesktop/Notifications", "org.freedesktop.Notifications"};
const BusClient::Object bus{"/org/freedesktop/DBus", "org.freedesktop.DBus"};
constexpr std::uint8_t critical = 2;  // Servers keep such a one on the screen, also while they show no others.
constexpr std::int32_t neverExpires = 0;

std::optional<int> buttonFrom(const std::string& action, std::size_t buttons) {
  int index = -1;
  const char* end = action.data() + action.size();
  const auto [rest, error] = std::from_chars(action.data(), end, index);
  if (error != std::errc() || rest != end || index < 0) return std::nullopt;
  return static_cast<std::size_t>(index) < buttons ? std::optional(index) : std::nullopt;
}

}  // namespace

class NotificationAlerts::AlertView final : public UIAlertView {
 public:
  AlertView(std::weak_ptr<NotificationAlerts*> alerts, UIAlertDescription description)
      : alerts_(std::move(alerts)), description_(std::move(description)) {}

  std::string description() const override { return "<UIAlertView \"" + description_.title + "\">"; }
  void setTag(int tag) override { tag_ = tag; }
  int tag() const override { return tag_; }
  void show() override {
    if (const auto alerts = alerts_.lock()) (*alerts)->show(own());
  }

  const UIAlertDescription& content() const { return description_; }
  std::vector<std::string> buttons() const {
    std::vector<std::string> titles;
    if (description_.cancelButtonTitle) titles.push_back(*description_.cancelButtonTitle);
    titles.insert(titles.end(), description_.otherButtonTitles.begin(), description_.otherButtonTitles.end());
    return titles;
  }
  void tellDelegate(int buttonIndex) {
    if (description_.clickedButtonAtIndex) description_.clickedButtonAtIndex(own(), buttonIndex);
  }

 private:
  std::shared_ptr<AlertView> own() { return std::static_pointer_cast<AlertView>(shared_from_this()); }

  std::weak_ptr<NotificationAlerts*> alerts_;
  UIAlertDescription description_;
  int tag_ = 0;
};

NotificationAlerts::NotificationAlerts(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services,
                                       Program program, std::chrono::milliseconds limit)
    : services_(services),
      program_(std::move(program)),
      bus_(sessionBus ? std::make_unique<BusClient>(sessionBus, bus.interface) : nullptr),
      service_(
          sessionBus, notifications.interface, [this](BusClient& client) { listenTo(client); },
          [this] {
            showsButtons_ = false;
            services_.report(serviceName, {false, tr("no notification server is running")});
          },
          limit) {}

NotificationAlerts::~NotificationAlerts() { processEnded(); }

std::shared_ptr<UIAlertView> NotificationAlerts::makeAlertView(UIAlertDescription description) {
  return std::make_shared<AlertView>(self_, std::move(description));
}

void NotificationAlerts::processEnded() {
  const Questions open = std::exchange(questions_, {});
  for (const Question& question : open) {
    if (question.id) takeBack(*question.id);
  }
}

void NotificationAlerts::listenTo(BusClient& client) {
  // A new server knows nothing of the questions; one that was only slow to answer still has those that it numbered.
  for (Question& question : questions_) {
    if (client.owner() != server_) question.id.reset();
    question.isSent = question.id.has_value();
  }
  server_ = client.owner();
  showsButtons_ = false;
  client.hear(notifications, "ActionInvoked", "(us)",
              [this](const std::string&, const Glib::VariantContainerBase& values) {
                answer(valueAt<std::uint32_t>(values, 0).value_or(0), textAt(values, 1).value_or(""));
              });
  client.hear(notifications, "NotificationClosed", "(uu)",
              [this](const std::string&, const Glib::VariantContainerBase& values) {
                const auto closed = find(valueAt<std::uint32_t>(values, 0).value_or(0));
                if (closed != questions_.end()) questions_.erase(closed);
              });
  client.call(
      notifications, "GetCapabilities", {}, "(as)",
      [this](const BusClient::Reply& reply) {
        readCapabilities(valueAt<std::vector<Glib::ustring>>(reply.values, 0).value_or(std::vector<Glib::ustring>()));
      },
      [this](const BusClient::Failure& failure) { notAnswered(failure); });
}

void NotificationAlerts::readCapabilities(const std::vector<Glib::ustring>& capabilities) {
  const auto has = [&](const char* capability) {
    return std::find(capabilities.begin(), capabilities.end(), capability) != capabilities.end();
  };
  showsButtons_ = has("actions");
  readsMarkup_ = has("body-markup");
  services_.report(serviceName, showsButtons_ ? ServiceState{true, tr("the notification server")}
                                              : ServiceState{false, tr("the notification server shows no buttons")});
  if (!showsButtons_) return;
  for (Question& question : questions_) {
    if (!question.isSent) send(question);
  }
}

void NotificationAlerts::show(const std::shared_ptr<AlertView>& view) {
  if (find(view) != questions_.end()) return;
  if (questions_.size() >= mostQuestions) {
    if (questions_.front().id) takeBack(*questions_.front().id);
    questions_.erase(questions_.begin());
  }
  questions_.push_back({view, std::nullopt, false});
  if (showsButtons_) {
    send(questions_.back());
  } else if (!service_.client()) {
    startServer();
  }
}

void NotificationAlerts::startServer() {
  // Some desktops start their server with the first notification. Where none can be started, the question waits.
  if (bus_)
    bus_->call(bus, "StartServiceByName", argumentsOf(Glib::ustring(notifications.interface), guint32(0)), "(u)", {});
}

void NotificationAlerts::send(Question& question) {
  question.isSent = true;
  const UIAlertDescription& content = question.view->content();
  std::vector<Glib::ustring> actions;
  for (const std::string& title : question.view->buttons()) {
    actions.push_back(Glib::ustring(std::to_string(actions.size() / 2)));
    actions.push_back(notificationText(title, false));
  }
  // Not "resident": such a one stays on the screen of some servers after its answer, whoever closes it.
  const Properties hints{{"urgency", Glib::Variant<std::uint8_t>::create(critical)},
                         {"suppress-sound", Glib::Variant<bool>::create(true)},
                         {"desktop-entry", Glib::Variant<Glib::ustring>::create(program_.desktopEntry)}};
  service_.client()->call(
      notifications, "Notify",
      argumentsOf(Glib::ustring(program_.name), std::uint32_t(0), Glib::ustring(program_.icon),
                  notificationText(content.title, false), notificationText(content.message, readsMarkup_), actions,
                  hints, neverExpires),
      "(u)",
      [this, view = question.view](const BusClient::Reply& reply) {
        sent(view, valueAt<std::uint32_t>(reply.values, 0).value_or(0));
      },
      [this, view = question.view](const BusClient::Failure& failure) {
        const auto place = find(view);
        if (place == questions_.end()) return;
        if (failure.refused) {
          questions_.erase(place);
          services_.report(serviceName,
                           {true, tr("the notification server, which refused a question: {}", failure.reason)});
        } else {
          notAnswered(failure);
        }
      });
}

void NotificationAlerts::sent(const std::shared_ptr<AlertView>& view, std::uint32_t id) {
  const auto place = find(view);
  if (place == questions_.end()) return takeBack(id);
  place->id = id;
}

void NotificationAlerts::answer(std::uint32_t id, const std::string& action) {
  const auto place = find(id);
  if (place == questions_.end()) return;
  const std::shared_ptr<AlertView> view = place->view;
  const auto button = buttonFrom(action, view->buttons().size());
  if (!button) return;
  questions_.erase(place);
  takeBack(id);
  view->tellDelegate(*button);
}

void NotificationAlerts::takeBack(std::uint32_t id) {
  if (service_.client()) service_.client()->call(notifications, "CloseNotification", argumentsOf(id), "()", {});
}

void NotificationAlerts::notAnswered(const BusClient::Failure& failure) {
  showsButtons_ = false;
  services_.report(serviceName, {false, tr("the notification server does not answer: {}", failure.reason)});
  service_.tryAgainLater();
}

NotificationAlerts::Questions::iterator NotificationAlerts::find(const std::shared_ptr<AlertView>& view) {
  return std::find_if(questions_.begin(), questions_.end(), [&](const Question& each) { return each.view == view; });
}

NotificationAlerts::Questions::iterator NotificationAlerts::find(std::uint32_t id) {
  return std::find_if(questions_.begin(), questions_.end(), [&](const Question& each) { return each.id == id; });
}

}  // namespace hushmode::devices
