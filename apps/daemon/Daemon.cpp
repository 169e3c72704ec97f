// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/daemon/Daemon.h"

#include "apps/words/Words.h"
#include "calendar/HMEventManager.h"
#include "devices/shared/PropertyListFile.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <cstdlib>
#include <gio/gio.h>
#include <stdexcept>

namespace hushmode::daemon {

using devices::LogSink;
using devices::Priority;
using devices::ServiceState;
using platform::Array;
using platform::Dictionary;

namespace {

constexpr std::string_view enabledKey = "com.quorvel.hushmode.enabled";
constexpr int busLost = 1;

/// What the services are expected to speak up about before the first plan.
constexpr const char* awaited[] = {"volumes", "do not disturb", "networks",
                                   "tones",   "sleep and lock", "calendar service"};

Glib::RefPtr<Gio::DBus::Connection> busOrNone(Gio::DBus::BusType type, std::string& why) {
  try {
    auto connection = Gio::DBus::Connection::get_sync(type);
    // GLib would end the process when the bus goes; the daemon puts things back first.
    g_dbus_connection_set_exit_on_close(connection->gobj(), FALSE);
    return connection;
  } catch (const Glib::Error& error) {
    why = error.what();
    return {};
  }
}

/// The profiles without what a file keeps less precisely than memory does.
Array comparable(Array profiles) {
  for (auto& each : profiles) {
    if (auto* profile = each.as<Dictionary>()) profile->remove("updatedDate");
  }
  return profiles;
}

}  // namespace

Daemon::Daemon(const Options& options, LogSink sink, std::function<void(int)> quit)
    : options_(options), sink_(std::move(sink)), quit_(std::move(quit)), folders_(devices::Folders::ofUser()) {
  folders_.data = options_.dataFolder;
}

Daemon::~Daemon() {
  for (sigc::connection* each : {&startLimit_, &stopLimit_, &stopLook_, &sleepLook_}) each->disconnect();
  if (name_ != 0) g_bus_unown_name(name_);
  interface_.reset();
  host_.reset();
  services_.setListener({});
  phone_.reset();
  g_settings_sync();  // What was put back last, such as Do Not Disturb.
  try {
    // What was sent last, such as taking an open question back.
    if (session_ && !session_->is_closed()) session_->flush_sync();
  } catch (const Glib::Error&) {
    // The bus went away meanwhile.
  }
}

void Daemon::start() {
  devices::makePrivateFolder(folders_.config);
  devices::makePrivateFolder(options_.calendarFolder);
  takeLock();
  makeFirstSettings();
  connect();

  services_.setListener([this](const std::string& name, const ServiceState& now, const ServiceState* before) {
    serviceChanged(name, now, before);
  });
  devices::LinuxPhoneEvents events;
  events.networkChanged = [this] { host_->networkChanged(); };
  events.clockChanged = [this] { host_->clockChanged(); };
  events.aboutToSleep = [this] { aboutToSleep(); };
  events.resumed = [this] { host_->resumed(); };
  events.effectsChanged = [this] { host_->phoneChanged(); };
  events.volumeIsChanging = [this](bool byUser) { host_->volumeIsChanging(byUser); };
  devices::LinuxPhone::Options phone;
  phone.foundation.folders = folders_;
  phone.foundation.logsLibrary = options_.verbose;
  phone.sessionBus = session_;
  phone.systemBus = system_;
  phone.calendarFolder = options_.calendarFolder;
  phone.iconFolder = options_.dataFolder.parent_path() / "icons";
  if (const char* id = std::getenv("XDG_SESSION_ID")) phone.sessionId = id;
  phone_ = std::make_unique<devices::LinuxPhone>(phone, services_, std::move(events), sink_);
  host_ = std::make_unique<host::Host>(
      *phone_, [this](const host::Message& message) { sink_(Priority::Warning, inWords(message)); });
  startLimit_ = Glib::signal_timeout().connect_seconds(
      [this] {
        startHost();
        return false;
      },
      answersSeconds);
  serviceChanged({}, {}, nullptr);
}

void Daemon::takeLock() {
  try {
    lock_ = std::make_unique<devices::WriterLock>(folders_.state);
  } catch (const devices::WriterLock::Held& held) {
    throw AlreadyRunning(tr("another hushmoded runs for this user (it holds {})", std::string(held.what())));
  }
}

void Daemon::connect() {
  std::string why;
  session_ = busOrNone(Gio::DBus::BusType::SESSION, why);
  if (!session_) throw std::runtime_error(tr("there is no session bus: {}", why));
  session_->signal_closed().connect([this](bool, const Glib::Error&) {
    sink_(Priority::Error, tr("the session bus is gone"));
    stop(busLost);
  });
  system_ = busOrNone(Gio::DBus::BusType::SYSTEM, why);
  if (!system_)
    sink_(Priority::Warning, tr("there is no system bus: networks, sleep and the lock are not known: {}", why));
}

/// Somebody who has just installed Hush Mode wants it to work: on, with one profile that is quiet in every meeting.
void Daemon::makeFirstSettings() {
  const auto settings = folders_.config / "com.quorvel.hushmode.plist";
  if (!std::filesystem::exists(settings)) setEnabled(true);
}

/// Once there are calendars: a profile is given those that there are when it is made, and keeps them.
void Daemon::makeFirstProfile() {
  if (!host_->isRunning() || phone_->foundation().files().fileExists(HMProfilesManager::profilesPath)) return;
  const auto calendars = HMEventManager::sharedManager()->calendars();
  const bool any = std::any_of(calendars.begin(), calendars.end(),
                               [](const auto& each) { return each->allowsContentModifications(); });
  if (!any) return;
  HMProfilesManager::createAndSaveDefaultProfile();
  sink_(Priority::Notice, tr("made a first profile, which is quiet in every event of the calendars that there are"));
  host_->profilesFileChanged();
}

void Daemon::startHost() {
  if (started_ || stopping_) return;
  started_ = true;
  startLimit_.disconnect();
  host_->start();
  makeFirstProfile();
  interface_ = std::make_unique<BusInterface>(session_, *host_, services_, options_.calendarFolder,
                                              [this](bool enabled) { return setEnabled(enabled); });
  host_->setOnChange([this] {
    makeFirstProfile();
    if (interface_) interface_->refresh();
  });
  host_->setOnSwitch([this](const host::Switch& each) {
    tell(each);
    interface_->tellSwitch(each);
  });
  watchFiles();
  ownName();
  const std::size_t count = host_->profiles().size();
  sink_(Priority::Information,
        host_->isEnabled()
            ? trCount("ready: {} profile, master switch on", "ready: {} profiles, master switch on", count)
            : trCount("ready: {} profile, master switch off", "ready: {} profiles, master switch off", count));
}

void Daemon::ownName() {
  const auto lost = [](GDBusConnection*, const char*, gpointer daemon) { static_cast<Daemon*>(daemon)->nameLost(); };
  name_ = g_bus_own_name_on_connection(session_->gobj(), BusInterface::busName, G_BUS_NAME_OWNER_FLAGS_NONE, nullptr,
                                       lost, this, nullptr);
}

void Daemon::nameLost() {
  if (stopping_) return;
  sink_(Priority::Error, tr("another program has the name com.quorvel.Hushmode on the session bus"));
  stop(busLost);
}

void Daemon::watchFiles() {
  profilesWatch_ = std::make_unique<FileWatch>(folders_.config / "com.quorvel.hushmode.profiles.plist",
                                               [this] { profilesChanged(); });
  settingsWatch_ =
      std::make_unique<FileWatch>(folders_.config / "com.quorvel.hushmode.plist", [this] { host_->settingsChanged(); });
}

void Daemon::profilesChanged() {
  const auto content = phone_->foundation().files().arrayWithContentsOfFile(HMProfilesManager::profilesPath);
  Array known;
  for (const Dictionary& each : host_->profiles()) known.emplace_back(each);
  // Our own writes are changes of the file, too.
  if (content && comparable(*content) == comparable(known)) return;
  sink_(Priority::Notice, tr("the profiles file was changed by another program"));
  host_->profilesFileChanged();
}

void Daemon::serviceChanged(const std::string& name, const ServiceState& now, const ServiceState* before) {
  if (!name.empty()) {
    const bool isUsual = now.available && (!before || before->available);
    sink_(isUsual ? Priority::Information : Priority::Warning,
          now.available ? tr("{0}: {1}", serviceText(name), now.detail)
                        : tr("{0}: rests: {1}", serviceText(name), now.detail));
  }
  if (!started_) {
    const bool all = std::all_of(std::begin(awaited), std::end(awaited),
                                 [&](const char* each) { return services_.states().contains(std::string_view(each)); });
    // From the loop: a service may speak up while the phone is still being made.
    if (all && phone_) Glib::signal_idle().connect_once([this] { startHost(); });
    return;
  }
  if (stopping_) return;
  if (now.available && before && !before->available) host_->serviceReturned();
  if (interface_) interface_->refresh();
}

void Daemon::aboutToSleep() {
  // A switch in progress ends before the phone sleeps: its tone, its volumes.
  if (host_->isAtRest()) return phone_->readyToSleep();
  sleepLook_ = Glib::signal_timeout().connect(
      [this] {
        if (!host_->isAtRest()) return true;
        phone_->readyToSleep();
        return false;
      },
      100);
}

void Daemon::tell(const host::Switch& each) {
  const std::string change = inWords(host::difference(each.before, each.after));
  // Without the reason, which names an event.
  sink_(Priority::Information, each.withNext ? (each.on ? tr("profile \"{0}\" on: with the next", each.profile)
                                                        : tr("profile \"{0}\" off: with the next", each.profile))
                                             : (each.on ? tr("profile \"{0}\" on: {1}", each.profile, change)
                                                        : tr("profile \"{0}\" off: {1}", each.profile, change)));
  sink_(Priority::Debug, tr("for {}", inWords(each.reason)));
}

bool Daemon::setEnabled(bool enabled) {
  devices::PropertyListFile file((folders_.config / "com.quorvel.hushmode.plist").string());
  const auto content = file.read();
  Dictionary settings;
  if (content.value) {
    if (const auto* present = content.value->as<Dictionary>()) settings = *present;
  }
  settings.set(enabledKey, enabled);
  const auto problem = file.write(settings);
  if (problem) sink_(Priority::Error, *problem);
  return !problem;
}

void Daemon::stop(int code) {
  if (stopping_) return;
  stopping_ = true;
  startLimit_.disconnect();
  profilesWatch_.reset();
  settingsWatch_.reset();
  if (host_) host_->stop();
  interface_.reset();
  const auto look = [this, code] {
    if (phone_ && phone_->pending()) return true;
    quit_(code);
    return false;
  };
  if (!look()) return;
  stopLook_ = Glib::signal_timeout().connect(look, 10);
  stopLimit_ = Glib::signal_timeout().connect_seconds(
      [this, code] {
        sink_(Priority::Error, tr("a service has not taken what it was sent at the end"));
        quit_(code);
        return false;
      },
      writesSeconds);
}

}  // namespace hushmode::daemon
