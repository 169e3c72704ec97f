// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/StatusIcon.h"

#include "devices/words/Text.h"

#include <utility>

namespace hushmode::devices {

using platform::LSStatusBarItem;

namespace {

constexpr const char* service = "status icon";
constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";

}  // namespace

/// Holds on to the icon weakly: it is the status bar's, and may have given way to another.
class StatusIcon::Item final : public LSStatusBarItem {
 public:
  Item(std::weak_ptr<StatusNotifierItem> icon, std::function<void()> released)
      : icon_(std::move(icon)), released_(std::move(released)) {}
  ~Item() override {
    if (!icon_.expired()) released_();
  }
  void setImageName(std::string_view) override {}
  void setVisible(bool visible) override {
    if (const auto icon = icon_.lock()) icon->setVisible(visible);
  }

 private:
  std::weak_ptr<StatusNotifierItem> icon_;
  std::function<void()> released_;
};

class StatusIcon::ItemClass final : public LSStatusBarItem::Class {
 public:
  explicit ItemClass(StatusIcon& bar) : bar_(bar) {}
  std::shared_ptr<LSStatusBarItem> initWithIdentifier(std::string_view, int) override { return bar_.makeItem(); }

 private:
  StatusIcon& bar_;
};

StatusIcon::StatusIcon(Glib::RefPtr<Gio::DBus::Connection> sessionBus, std::filesystem::path iconFolder,
                       Services& services, std::chrono::milliseconds timeLimit)
    : bus_(std::move(sessionBus)),
      iconFolder_(std::move(iconFolder)),
      services_(services),
      itemClass_(std::make_unique<ItemClass>(*this)),
      watcher_(
          bus_, watcherName, [this](BusClient&) { announce(); },
          [this] {
            services_.report(service, {false, tr("there is no panel that shows status icons")});
          },
          timeLimit) {}

StatusIcon::~StatusIcon() = default;

platform::Class* StatusIcon::classNamed(std::string_view name) const {
  return bus_ && name == LSStatusBarItem::className ? itemClass_.get() : nullptr;
}

std::shared_ptr<LSStatusBarItem> StatusIcon::makeItem() {
  shown_.reset();  // Two at a time do not fit on the connection.
  shown_ = std::make_shared<StatusNotifierItem>(bus_, iconFolder_);
  announce();
  return std::make_shared<Item>(shown_, [this] { shown_.reset(); });
}

/// Tells the watcher of the icon, when both are there.
void StatusIcon::announce() {
  if (!watcher_.client()) return;
  const ServiceState shown{true, tr("a panel shows status icons")};
  if (!shown_) return services_.report(service, shown);
  watcher_.client()->call(
      {"/StatusNotifierWatcher", watcherName}, "RegisterStatusNotifierItem",
      argumentsOf(Glib::ustring(shown_->busName())), "()",
      [this, shown](const BusClient::Reply&) { services_.report(service, shown); },
      [this](const BusClient::Failure& failure) {
        services_.report(service, {false, tr("the panel does not take the icon: {}", failure.reason)});
        if (!failure.refused) watcher_.tryAgainLater();
      });
}

}  // namespace hushmode::devices
