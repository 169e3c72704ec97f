// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/RemoteService.h"
#include "devices/linux/base/Services.h"
#include "platform/UIKit.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::devices {

/// Questions to the user as desktop notifications with a button for each answer: org.freedesktop.Notifications, on the
/// session bus. As the service "questions".
///
/// A question stays until it is answered or closed; closed without an answer it tells its delegate nothing. A server
/// that comes, or comes anew, is given all questions without an answer. One that shows no buttons is given none.
class NotificationAlerts {
 public:
  /// How the notifications present this program.
  struct Program {
    std::string name;
    std::string icon;          ///< A name of the icon theme.
    std::string desktopEntry;  ///< The name of its .desktop file, without the ending.
  };

  NotificationAlerts(const Glib::RefPtr<Gio::DBus::Connection>& sessionBus, Services& services, Program program,
                     std::chrono::milliseconds limit = BusClient::answerLimit);
  ~NotificationAlerts();
  NotificationAlerts(const NotificationAlerts&) = delete;
  NotificationAlerts& operator=(const NotificationAlerts&) = delete;

  std::shared_ptr<platform::UIAlertView> makeAlertView(platform::UIAlertDescription description);

  /// Takes all questions back, unanswered.
  void processEnded();

  /// So many questions can be open; one more takes the oldest back.
  static constexpr std::size_t mostQuestions = 8;

 private:
  class AlertView;
  struct Question {
    std::shared_ptr<AlertView> view;
    std::optional<std::uint32_t> id;  ///< As the server numbers it; none until it has answered.
    bool isSent = false;
  };
  using Questions = std::vector<Question>;

  void listenTo(BusClient& client);
  void readCapabilities(const std::vector<Glib::ustring>& capabilities);
  void show(const std::shared_ptr<AlertView>& view);
  void startServer();
  void send(Question& question);
  void sent(const std::shared_ptr<AlertView>& view, std::uint32_t id);
  void answer(std::uint32_t id, const std::string& action);
  void takeBack(std::uint32_t id);
  void notAnswered(const BusClient::Failure& failure);
  Questions::iterator find(const std::shared_ptr<AlertView>& view);
  Questions::iterator find(std::uint32_t id);

  Services& services_;
  const Program program_;
  Questions questions_;
  std::string server_;  ///< The owner that numbered the questions.
  bool showsButtons_ = false, readsMarkup_ = false;
  std::shared_ptr<NotificationAlerts*> self_ = std::make_shared<NotificationAlerts*>(this);
  std::unique_ptr<BusClient> bus_;  ///< The bus itself; null without one.
  RemoteService service_;           ///< The last: nothing comes after it.
};

}  // namespace hushmode::devices
