// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/StatusIcon.h"

#include "tests/contracts/StatusIconContract.h"
#include "tests/devices/linux/desktop/DesktopTest.h"
#include "tests/devices/linux/desktop/WatcherStandIn.h"

#include <cstdlib>
#include <optional>
#include <unistd.h>

namespace hushmode::devices {

namespace {

using Texts = std::vector<std::string>;
using Behaviour = WatcherStandIn::Behaviour;

const std::filesystem::path iconFolder = std::filesystem::path(HUSHMODE_SOURCE_FOLDER) / "packaging" / "icons";
constexpr const char* shown = "+a panel shows status icons";
constexpr const char* absent = "-there is no panel that shows status icons";

class StatusIconTest : public DesktopTest {
 protected:
  std::shared_ptr<platform::LSStatusBarItem> makeItem() {
    return dynamic_cast<platform::LSStatusBarItem::Class&>(*statusIcon.classNamed("LSStatusBarItem"))
        .initWithIdentifier("com.quorvel.hushmode", 2);
  }
  bool waitForReport(const std::string& report) {
    return waitUntil([&] { return reported("status icon") == report; });
  }
  bool waitForStatus(const WatcherStandIn& panel, const std::string& status) {
    return waitUntil([&] { return panel.shownStatus() == status; });
  }

  StatusIcon statusIcon{bus, iconFolder, services, std::chrono::milliseconds(200)};
};

std::string textOf(const Properties& properties, const char* name) {
  return valueOf<Glib::ustring>(properties, name).value_or("none");
}

}  // namespace

TEST_F(StatusIconTest, WithoutAPanelThereIsNoIconAndOneReport) {
  const auto item = makeItem();
  item->setVisible(false);
  item->setVisible(true);
  ASSERT_TRUE(waitForReport(absent));
  exchangeWith(bus);
  EXPECT_EQ(reports, Texts{"status icon -there is no panel that shows status icons"});
}

TEST_F(StatusIconTest, WithoutABusThereIsNoClass) {
  Services own;
  const StatusIcon alone(nullptr, iconFolder, own);
  EXPECT_FALSE(alone.classNamed("LSStatusBarItem"));
  EXPECT_FALSE(own.isAvailable("status icon"));
}

TEST_F(StatusIconTest, APanelLearnsWhatItNeedsToShow) {
  WatcherStandIn panel;
  const auto item = makeItem();
  ASSERT_TRUE(waitForStatus(panel, "Active"));
  const Properties properties = panel.itemProperties();
  EXPECT_EQ(textOf(properties, "Category"), "SystemServices");
  EXPECT_EQ(textOf(properties, "Id"), "hushmode");
  EXPECT_EQ(textOf(properties, "Title"), "Hush Mode");
  EXPECT_EQ(textOf(properties, "Status"), "Active");
  EXPECT_EQ(textOf(properties, "IconName"), "hushmode-symbolic");
  EXPECT_EQ(textOf(properties, "IconThemePath"), iconFolder.string());
  EXPECT_EQ(valueOf<bool>(properties, "ItemIsMenu"), false);
  EXPECT_EQ(valueOf<gint32>(properties, "WindowId"), 0);
  EXPECT_TRUE(std::filesystem::exists(iconFolder / "hicolor/symbolic/apps/hushmode-symbolic.svg"));
  EXPECT_TRUE(waitForReport(shown));
}

TEST_F(StatusIconTest, ItsNameOnTheBusTellsTheProcess) {
  WatcherStandIn panel;
  const auto item = makeItem();
  ASSERT_TRUE(waitUntil([&] { return panel.registrations().size() == 1; }));
  EXPECT_EQ(panel.registrations()[0].rfind("org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-", 0), 0u);
}

TEST_F(StatusIconTest, TheStatusIsToldOnceForEachChange) {
  WatcherStandIn panel;
  const auto item = makeItem();
  ASSERT_TRUE(waitForStatus(panel, "Active"));
  int notices = 0;
  BusClient listener(connectToSessionBus(), bus->get_unique_name());
  listener.hear({"/StatusNotifierItem", "org.kde.StatusNotifierItem"}, "NewStatus", "(s)",
                [&](const auto&, const auto&) { ++notices; });
  // Until the bus knows of the subscription: its answer comes on the same way.
  std::optional<bool> ready;
  listener.read({"/StatusNotifierItem", "org.kde.StatusNotifierItem"}, [&](const Properties&) { ready = true; });
  ASSERT_TRUE(waitUntil([&] { return ready.has_value(); }));
  item->setVisible(true);
  item->setVisible(false);
  item->setVisible(false);
  EXPECT_TRUE(waitForStatus(panel, "Passive"));
  item->setVisible(true);
  EXPECT_TRUE(waitForStatus(panel, "Active"));
  EXPECT_TRUE(waitUntil([&] { return notices == 2; }));
}

TEST_F(StatusIconTest, APanelThatReturnsGetsTheIconAgain) {
  auto panel = std::make_optional<WatcherStandIn>();
  const auto item = makeItem();
  item->setVisible(false);
  ASSERT_TRUE(waitForStatus(*panel, "Passive"));
  panel.reset();
  EXPECT_TRUE(waitForReport(absent));
  item->setVisible(true);
  panel.emplace();
  EXPECT_TRUE(waitForStatus(*panel, "Active"));
  EXPECT_EQ(panel->registrations().size(), 1u);
  EXPECT_TRUE(waitForReport(shown));
}

TEST_F(StatusIconTest, AnIconGoesWithItsItem) {
  WatcherStandIn panel;
  auto item = makeItem();
  ASSERT_TRUE(waitForStatus(panel, "Active"));
  item.reset();
  EXPECT_TRUE(waitForStatus(panel, ""));
}

TEST_F(StatusIconTest, AnItemThatGaveWayChangesNothingAnyMore) {
  WatcherStandIn panel;
  auto first = makeItem();
  const auto second = makeItem();
  ASSERT_TRUE(waitForStatus(panel, "Active"));
  first->setVisible(false);
  first.reset();
  exchangeWith(bus);
  EXPECT_EQ(textOf(panel.itemProperties(), "Status"), "Active");
}

TEST_F(StatusIconTest, ClicksDoNothing) {
  WatcherStandIn panel;
  const auto item = makeItem();
  ASSERT_TRUE(waitForStatus(panel, "Active"));
  for (const char* method : {"Activate", "SecondaryActivate", "ContextMenu", "Scroll"})
    EXPECT_TRUE(panel.click(method));
  EXPECT_EQ(panel.shownStatus(), "Active");
}

TEST_F(StatusIconTest, APanelThatRefusesIsReported) {
  WatcherStandIn panel(Behaviour::Refuses);
  const auto item = makeItem();
  EXPECT_TRUE(waitForReport("-the panel does not take the icon: no room"));
}

TEST_F(StatusIconTest, APanelThatNeverAnsweredIsAskedAgainLater) {
  WatcherStandIn panel(Behaviour::NeverAnswers);
  const auto item = makeItem();
  ASSERT_TRUE(waitUntil([&] { return panel.registrations().size() == 1; }));
  ASSERT_TRUE(waitUntil([&] { return reported("status icon").starts_with("-the panel does not take the icon: "); }));
  panel.setBehaviour(Behaviour::Good);
  EXPECT_TRUE(waitForReport(shown));
  EXPECT_TRUE(waitForStatus(panel, "Active"));
}

TEST_F(StatusIconTest, AnItemMayOutliveTheStatusBar) {
  std::optional<StatusIcon> other(std::in_place, connectToSessionBus(), iconFolder, services);
  const auto item = dynamic_cast<platform::LSStatusBarItem::Class&>(*other->classNamed("LSStatusBarItem"))
                        .initWithIdentifier("com.quorvel.hushmode", 2);
  other.reset();
  item->setVisible(false);
  exchangeWith(bus);
}

/// Among a real panel, on a screen of its own (the services xvfb and xfce4panel); a stand-in takes its place elsewhere.
class RealPanelTest : public DesktopTest {
 protected:
  void SetUp() override {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no panel here; devices/linux/panel runs it among one";
  }
  /// How many colours the panel's left end has: one or two when it is empty, more with an icon.
  static int coloursOfPanel() {
    return std::stoi(runCommand("import -silent -window root -crop 40x32+0+0 +repage png:- | identify -format %k -"));
  }
  static void keepPicture(const std::string& name) {
    if (const char* folder = std::getenv("HUSHMODE_PICTURES")) {
      runCommand(std::string("import -silent -window root ") + folder + "/" + name + ".png");
    }
  }
};

TEST_F(RealPanelTest, ShowsTheIconAndHidesIt) {
  StatusIcon statusIcon(bus, iconFolder, services);
  const auto item = dynamic_cast<platform::LSStatusBarItem::Class&>(*statusIcon.classNamed("LSStatusBarItem"))
                        .initWithIdentifier("com.quorvel.hushmode", 2);
  item->setVisible(false);
  ASSERT_TRUE(waitUntil([&] { return reported("status icon") == shown; }));
  const int empty = coloursOfPanel();
  for (int time = 0; time < 2; ++time) {
    item->setVisible(true);
    EXPECT_TRUE(waitUntil([&] { return coloursOfPanel() > empty + 8; }));
    keepPicture("status-icon-active");
    item->setVisible(false);
    EXPECT_TRUE(waitUntil([&] { return coloursOfPanel() <= empty + 1; }));
    keepPicture("status-icon-passive");
  }
}

}  // namespace hushmode::devices

namespace hushmode::contracts {

namespace {

class PanelWorld {
 public:
  PanelWorld() {
    EXPECT_TRUE(devices::waitUntil([&] { return services_.isAvailable("status icon"); }));
  }
  platform::Class* classNamed(std::string_view name) { return statusIcon_.classNamed(name); }
  bool isIconVisible() {
    // What the item said, and what the panel asked it for, has arrived on the other side after that.
    for (int way = 0; way < 2; ++way) devices::exchangeWith(bus_);
    if (panel_.registrations().empty()) return false;
    const auto status = devices::valueOf<Glib::ustring>(panel_.itemProperties(), "Status").value_or("none").raw();
    EXPECT_TRUE(devices::waitUntil([&] { return panel_.shownStatus() == status; }));
    return panel_.shownStatus() == "Active";
  }

 private:
  devices::WatcherStandIn panel_;
  Glib::RefPtr<Gio::DBus::Connection> bus_ = devices::connectToSessionBus();
  devices::Services services_;
  devices::StatusIcon statusIcon_{bus_, devices::iconFolder, services_};
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Panel, StatusIconContract, PanelWorld);

}  // namespace hushmode::contracts
