// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/session/NotificationAlerts.h"

#include "tests/devices/linux/session/MockedNotifications.h"
#include "tests/support/ServiceReports.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
using namespace std::chrono_literals;

const std::string isThere = "questions: there, the notification server",
                  isAway = "questions: away, no notification server is running";

class NotificationAlertsTest : public ::testing::Test {
 protected:
  void begin(std::chrono::milliseconds limit = BusClient::answerLimit) {
    alerts.emplace(connectTo("session"), reports.services,
                   NotificationAlerts::Program{"Hush Mode", "hushmode", "com.quorvel.Hushmode"}, limit);
  }
  void ask(const std::string& title, const std::string& message = "Sure?") {
    alerts
        ->makeAlertView(
            {title,
             message,
             std::nullopt,
             {"Yes", "No"},
             [this, title](const auto&, int button) { answers.push_back(title + ": " + std::to_string(button)); }})
        ->show();
  }
  bool untilReported(const std::string& line) {
    return runUntil([&] { return !reports.lines.empty() && reports.lines.back() == line; });
  }
  bool untilShown(MockedNotifications& server, const Texts& titles) {
    return runUntil([&] { return titlesOn(server) == titles; });
  }
  static Texts titlesOn(MockedNotifications& server) {
    Texts titles;
    for (const auto& shown : server.shown()) titles.push_back(shown.summary);
    return titles;
  }
  /// Until the answer to a question that is pressed after all that happened so far.
  bool untilLaterAnswer(MockedNotifications& server) {
    ask("later");
    if (!runUntil([&] { return !titlesOn(server).empty() && titlesOn(server).back() == "later"; })) return false;
    server.press(server.shown().back().id, "0");
    return runUntil([&] { return !answers.empty() && answers.back() == "later: 0"; });
  }

  ServiceReports reports;
  Texts answers;
  std::optional<NotificationAlerts> alerts;
};

TEST_F(NotificationAlertsTest, AreUrgentQuietAndStay) {
  MockedNotifications server;
  begin();
  ASSERT_TRUE(untilReported(isThere));
  ask("Keep it?", "While '<Work>' & so on");
  ASSERT_TRUE(untilShown(server, {"Keep it?"}));
  const auto shown = server.shown().front();
  EXPECT_EQ(shown.body, "While &apos;&lt;Work&gt;&apos; &amp; so on");
  EXPECT_EQ(shown.actions, (Texts{"0", "Yes", "1", "No"}));
  EXPECT_EQ(shown.expires, 0) << "never";
  const auto hints = valueOf<Properties>(shown.hints).value();
  EXPECT_EQ(valueOf<std::uint8_t>(hints, "urgency"), 2);
  EXPECT_FALSE(hints.contains("resident")) << "it would outlive its answer on some servers";
  EXPECT_EQ(valueOf<bool>(hints, "suppress-sound"), true);
  EXPECT_EQ(valueOf<Glib::ustring>(hints, "desktop-entry"), "com.quorvel.Hushmode");
}

TEST_F(NotificationAlertsTest, AreWrittenAsTheyAreForAServerWithoutMarkup) {
  MockedNotifications server("['body', 'actions']");
  begin();
  ask("Keep it?", "1 & 2");
  ASSERT_TRUE(untilShown(server, {"Keep it?"}));
  EXPECT_EQ(server.shown().front().body, "1 & 2");
}

TEST_F(NotificationAlertsTest, AreNotAnsweredWhenTheyAreClosed) {
  MockedNotifications server;
  begin();
  ask("Expires");
  ask("Is dismissed");
  ASSERT_TRUE(untilShown(server, {"Expires", "Is dismissed"}));
  for (const auto& shown : server.shown()) server.close(shown.id, shown.summary == "Expires" ? 1 : 2);
  server.press(1, "0");
  ASSERT_TRUE(untilLaterAnswer(server));
  EXPECT_EQ(answers, Texts{"later: 0"});
}

TEST_F(NotificationAlertsTest, TakeNoNonsenseForAnAnswer) {
  MockedNotifications server;
  begin();
  ask("Keep it?");
  ASSERT_TRUE(untilShown(server, {"Keep it?"}));
  for (const char* action : {"default", "", "2", "-1", "0x", " 1", "99999999999999999999"}) server.press(1, action);
  server.press(77, "0");
  server.close(77, 2);
  server.service().control(MockedNotifications::path, "EmitSignal",
                           "('org.freedesktop.Notifications', 'ActionInvoked', 'ss', [<'1'>, <'0'>])");
  ASSERT_TRUE(untilLaterAnswer(server));
  EXPECT_EQ(answers, Texts{"later: 0"});
  server.press(1, "1");
  EXPECT_TRUE(runUntil([&] { return answers.back() == "Keep it?: 1"; }));
}

TEST_F(NotificationAlertsTest, AreShownAgainByAServerThatComesAnew) {
  MockedNotifications server;
  begin(200ms);  // A stand-in that has just been started must be asked twice.
  ask("Open");
  ask("Answered");
  ASSERT_TRUE(untilShown(server, {"Open", "Answered"}));
  server.press(2, "0");
  ASSERT_TRUE(runUntil([&] { return answers == Texts{"Answered: 0"}; }));
  server.restart();
  ASSERT_TRUE(untilShown(server, {"Open"}));
  EXPECT_NE(std::find(reports.lines.begin(), reports.lines.end(), isAway), reports.lines.end());
  server.press(1, "1");
  EXPECT_TRUE(runUntil([&] { return answers.back() == "Open: 1"; }));
  EXPECT_EQ(reports.lines.back(), isThere);
}

TEST_F(NotificationAlertsTest, WaitForAServer) {
  begin(200ms);
  ASSERT_TRUE(untilReported(isAway));
  ask("Keep it?");
  MockedNotifications server;
  ASSERT_TRUE(untilShown(server, {"Keep it?"}));
  server.press(1, "1");
  EXPECT_TRUE(runUntil([&] { return answers == Texts{"Keep it?: 1"}; }));
}

TEST_F(NotificationAlertsTest, AreNotGivenToAServerThatShowsNoButtons) {
  MockedNotifications server("['body']");
  begin();
  ASSERT_TRUE(untilReported("questions: away, the notification server shows no buttons"));
  ask("Keep it?");
  alerts->processEnded();
  EXPECT_EQ(server.service().callsOf(MockedNotifications::path, "Notify"), 0U);
}

TEST_F(NotificationAlertsTest, AreGivenOnceToAServerThatWasSlowToAnswer) {
  MockedNotifications server;
  begin(200ms);
  ask("First");
  ASSERT_TRUE(untilShown(server, {"First"}));
  ASSERT_TRUE(runUntil([&] { return reports.lines == Texts{isThere}; }));
  server.service().hang();
  ask("Second");
  ASSERT_TRUE(runUntil([&] { return reports.lines.size() == 2; }));
  EXPECT_EQ(reports.lines.back().rfind("questions: away, the notification server does not answer", 0), 0U)
      << reports.lines.back();
  server.service().goOn();
  ASSERT_TRUE(untilReported(isThere));
  ASSERT_TRUE(runUntil([&] { return titlesOn(server).size() >= 2; }));
  EXPECT_EQ(titlesOn(server).front(), "First");
  const Texts titles = titlesOn(server);
  EXPECT_EQ(std::count(titles.begin(), titles.end(), "First"), 1);
}

TEST_F(NotificationAlertsTest, AreGivenUpWhenTheyAreRefused) {
  MockedNotifications server;
  begin();
  ASSERT_TRUE(untilReported(isThere));
  server.service().answer(MockedNotifications::path, MockedNotifications::name, "Notify", "susssasa{sv}i", "u",
                          "raise dbus.exceptions.DBusException('too many', name='org.example.TooMany')");
  ask("Keep it?");
  EXPECT_TRUE(untilReported("questions: there, the notification server, which refused a question: too many"));
}

TEST_F(NotificationAlertsTest, AreBoundedInNumber) {
  MockedNotifications server;
  begin();
  ASSERT_TRUE(untilReported(isThere));
  Texts expected;
  for (std::size_t i = 0; i <= NotificationAlerts::mostQuestions; ++i) {
    ask(std::to_string(i));
    if (i > 0) expected.push_back(std::to_string(i));
    if (i == 0) {
      ASSERT_TRUE(untilShown(server, {"0"}));
    }
  }
  EXPECT_TRUE(untilShown(server, expected));
}

TEST_F(NotificationAlertsTest, AreTakenBackThoughTheServerHasNotYetAnswered) {
  MockedNotifications server;
  begin();
  ASSERT_TRUE(untilReported(isThere));
  ask("Keep it?");
  alerts->processEnded();
  EXPECT_TRUE(untilLaterAnswer(server));
  EXPECT_TRUE(untilShown(server, {}));
}

TEST_F(NotificationAlertsTest, MayOutliveWhatShowsThem) {
  begin();
  const auto alert = alerts->makeAlertView({"Keep it?", "", std::nullopt, {"Yes"}, {}});
  alerts.reset();
  alert->show();
  EXPECT_EQ(alert->tag(), 0);
}

TEST_F(NotificationAlertsTest, RestWithoutABus) {
  alerts.emplace(Glib::RefPtr<Gio::DBus::Connection>(), reports.services,
                 NotificationAlerts::Program{"Hush Mode", "hushmode", "com.quorvel.Hushmode"});
  ask("Keep it?");
  EXPECT_EQ(reports.lines, Texts{isAway});
}

}  // namespace
}  // namespace hushmode::devices
