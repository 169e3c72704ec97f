#include "devices/linux/calendars/EvolutionCalendars.h"

#include "devices/linux/base/NameWatch.h"
#include "devices/linux/calendars/EvolutionCalendar.h"
#include "devices/shared/CalendarSetSource.h"
#include "devices/shared/ICalReader.h"

#include <algorithm>
#include <glibmm/main.h>
#include <map>
#include <optional>
#include <utility>

namespace hushmode::devices {

namespace {

/// Of the interface that libecal 2.0 speaks.
constexpr const char* kRegistryName = "org.gnome.evolution.dataserver.Sources5";
constexpr const char* kIdentifierPrefix = "evolution:";
constexpr std::chrono::milliseconds kFirstRetry(250), kLastRetry(300'000);
/// Calendars fail and return together.
constexpr unsigned kReportDelay = 200;

std::string textOr(const char* text, const std::string& other) {
  return text != nullptr && *text != '\0' ? std::string(text) : other;
}

/// Which calendars there are is the registry's to say; each of them is then followed by itself.
class EvolutionCalendars final : public CalendarSetSource {
 public:
  EvolutionCalendars(const Glib::RefPtr<Gio::DBus::Connection>& connection, Services& services,
                     CalendarSet::Diagnostics diagnostics, std::chrono::milliseconds answerLimit);
  ~EvolutionCalendars() override;

 private:
  struct Followed {
    std::shared_ptr<EvolutionCalendar> calendar;
    std::map<std::string, std::size_t> texts;  ///< What the texts were when they were last read, by UID.
    bool wasRead = false;
  };

  const CalendarSet& set() const override { return set_; }

  void open();
  void started(GAsyncResult* result);
  void opened(GAsyncResult* result);
  /// The last argument of a call whose result is for this object, unless it has gone or started over meanwhile.
  void* resultFor(std::function<void(EvolutionCalendars&, GAsyncResult*)> step);
  void close();
  enum class Retry { Soon, WhenItAppears };
  void failed(const std::string& reason, Retry retry = Retry::Soon);
  void syncSoon();
  void sync();
  bool describe(const std::string& uid, const Followed& followed);
  void take(const std::string& uid, const EvolutionCalendar::Objects& objects);
  void stateChanged(const std::string& uid);
  void report();
  void reportSoon();

  const Glib::RefPtr<Gio::DBus::Connection> connection_;
  Services& services_;
  const std::chrono::milliseconds answerLimit_;
  CalendarSet set_;
  GObjectPointer<GCancellable> cancellable_;
  GObjectPointer<ESourceRegistry> registry_;
  std::string obstacle_ = "not asked yet";  ///< Why the registry cannot be asked; empty when it can.
  std::vector<std::unique_ptr<SignalHandler<ESource*>>> registrySignals_;
  std::map<std::string, Followed> followed_;  ///< By the UID of its source.
  sigc::connection limit_, retry_, syncing_, reporting_;
  std::chrono::milliseconds delay_ = kFirstRetry;
  std::shared_ptr<bool> exists_ = std::make_shared<bool>(true);  ///< For what may be called back afterwards.
  std::optional<NameWatch> watch_;
};

EvolutionCalendars::EvolutionCalendars(const Glib::RefPtr<Gio::DBus::Connection>& connection, Services& services,
                                       CalendarSet::Diagnostics diagnostics, std::chrono::milliseconds answerLimit)
    : connection_(connection), services_(services), answerLimit_(answerLimit), set_(std::move(diagnostics)) {
  if (!connection) {
    obstacle_ = "there is no session bus";
    report();
    return;
  }
  open();
  watch_.emplace(
      connection, kRegistryName,
      [this](const std::string&) {
        if (!registry_ && !cancellable_) open();
      },
      [this] {
        // The first news, that nobody has the name yet, comes while it is being started.
        if (registry_) failed("its registry of calendars ended");
      });
}

EvolutionCalendars::~EvolutionCalendars() {
  watch_.reset();
  reporting_.disconnect();
  followed_.clear();
  close();
}

/// Starts the registry where it can be started. Its library would wait for one that is not installed for ever.
void EvolutionCalendars::open() {
  close();
  cancellable_.reset(g_cancellable_new());
  limit_ = Glib::signal_timeout().connect(
      [this] {
        limit_ = {};
        failed("its registry of calendars does not answer");
        return false;
      },
      static_cast<unsigned>(answerLimit_.count()));
  g_dbus_connection_call(connection_->gobj(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         "StartServiceByName", g_variant_new("(su)", kRegistryName, 0U), G_VARIANT_TYPE("(u)"),
                         G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(), runResultHandler,
                         resultFor(&EvolutionCalendars::started));
}

void* EvolutionCalendars::resultFor(std::function<void(EvolutionCalendars&, GAsyncResult*)> step) {
  return resultHandler([this, exists = std::weak_ptr<bool>(exists_), attempt = cancellable_.get(),
                        step = std::move(step)](GObject*, GAsyncResult* result) {
    if (!exists.expired() && cancellable_.get() == attempt) step(*this, result);
  });
}

void EvolutionCalendars::started(GAsyncResult* result) {
  CallError error;
  GVariant* answer = g_dbus_connection_call_finish(connection_->gobj(), result, error.place());
  if (answer == nullptr) {
    // Where it is not installed, trying again would only wake the phone.
    const bool isMissing = error.is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN);
    return failed(isMissing ? "not installed" : error.text(), isMissing ? Retry::WhenItAppears : Retry::Soon);
  }
  g_variant_unref(answer);
  e_source_registry_new(cancellable_.get(), runResultHandler, resultFor(&EvolutionCalendars::opened));
}

void EvolutionCalendars::opened(GAsyncResult* result) {
  limit_.disconnect();
  CallError error;
  registry_.reset(e_source_registry_new_finish(result, error.place()));
  if (!registry_) return failed(error.text());
  obstacle_.clear();
  delay_ = kFirstRetry;
  for (const char* signal : {"source-added", "source-removed", "source-enabled", "source-disabled", "source-changed"}) {
    registrySignals_.push_back(
        std::make_unique<SignalHandler<ESource*>>(registry_.get(), signal, [this](ESource*) { syncSoon(); }));
  }
  sync();
}

void EvolutionCalendars::close() {
  limit_.disconnect();
  retry_.disconnect();
  syncing_.disconnect();
  if (cancellable_) g_cancellable_cancel(cancellable_.get());
  cancellable_.reset();
  registrySignals_.clear();
  registry_.reset();
}

/// What is known stays, and calendars that can still be read go on.
void EvolutionCalendars::failed(const std::string& reason, Retry retry) {
  close();
  obstacle_ = reason;
  if (retry == Retry::Soon) {
    retry_ = Glib::signal_timeout().connect(
        [this] {
          retry_ = {};
          open();
          return false;
        },
        static_cast<unsigned>(delay_.count()));
    delay_ = std::min(delay_ * 2, kLastRetry);
  }
  report();
}

void EvolutionCalendars::syncSoon() {
  if (syncing_.connected()) return;
  syncing_ = Glib::signal_idle().connect([this] {
    syncing_ = {};
    sync();
    return false;
  });
}

/// Follows the calendars that are enabled now, and no others.
void EvolutionCalendars::sync() {
  std::map<std::string, Followed> before = std::exchange(followed_, {});
  bool changed = false;
  GList* sources = e_source_registry_list_enabled(registry_.get(), E_SOURCE_EXTENSION_CALENDAR);
  for (GList* each = sources; each != nullptr; each = each->next) {
    ESource* source = E_SOURCE(each->data);
    const std::string uid = textOr(e_source_get_uid(source), "");
    const auto known = before.find(uid);
    if (known != before.end()) {
      Followed& followed = followed_[uid] = std::move(known->second);
      followed.calendar->setSource(source);
      if (followed.wasRead) changed = describe(uid, followed) || changed;
      continue;
    }
    followed_[uid].calendar =
        EvolutionCalendar::follow(source,
                                  {[this, uid](const EvolutionCalendar::Objects& objects) { take(uid, objects); },
                                   [this, uid] { stateChanged(uid); }},
                                  answerLimit_);
  }
  g_list_free_full(sources, g_object_unref);
  changed = set_.removeIf([this](const std::string& identifier) {
    return !followed_.contains(identifier.substr(std::string_view(kIdentifierPrefix).size()));
  }) || changed;
  if (changed) {
    set_.arrange();
    tellChanged({{"step", "calendars changed"}});
  }
  reportSoon();
}

/// Answers whether something is called differently now.
bool EvolutionCalendars::describe(const std::string& uid, const Followed& followed) {
  ESource* source = followed.calendar->source();
  std::string account = "Evolution";
  const char* parentUid = e_source_get_parent(source);
  if (parentUid != nullptr && registry_) {
    const GObjectPointer<ESource> parent(e_source_registry_ref_source(registry_.get(), parentUid));
    if (parent) account = textOr(e_source_get_display_name(parent.get()), account);
  }
  return set_.describe(kIdentifierPrefix + uid, textOr(e_source_get_display_name(source), uid), account,
                       followed.calendar->isWritable());
}

void EvolutionCalendars::take(const std::string& uid, const EvolutionCalendar::Objects& objects) {
  Followed& followed = followed_.at(uid);
  const std::string identifier = kIdentifierPrefix + uid;
  CalendarContents& contents = set_.contentsOf(identifier);
  bool changed = !std::exchange(followed.wasRead, true);
  for (const auto& [object, text] : objects.texts) {
    const std::size_t hash = std::hash<std::string>()(text);
    const auto [known, isNew] = followed.texts.try_emplace(object, hash);
    if (!isNew && known->second == hash) continue;
    known->second = hash;
    changed = true;
    contents.put(object, readICalFile(text, object, set_.zones(), [&](std::string_view, const std::string& what) {
                   set_.report("\"" + object + "\" in " + identifier + ": " + what);
                 }));
  }
  const auto isGone = [&](const std::string& object) {
    return objects.areAll ? !objects.texts.contains(object) : objects.gone.contains(object);
  };
  changed = contents.removeIf(isGone) || changed;
  std::erase_if(followed.texts, [&](const auto& text) { return isGone(text.first); });
  changed = describe(uid, followed) || changed;
  if (!changed) return;
  set_.arrange();
  tellChanged({{"step", "calendar read again"}, {"calendar", identifier}});
}

void EvolutionCalendars::stateChanged(const std::string& uid) {
  const auto followed = followed_.find(uid);
  if (followed == followed_.end()) return;
  if (followed->second.wasRead && describe(uid, followed->second)) {
    set_.arrange();
    tellChanged({{"step", "calendars changed"}});
  }
  reportSoon();
}

void EvolutionCalendars::reportSoon() {
  if (reporting_.connected()) return;
  reporting_ = Glib::signal_timeout().connect(
      [this] {
        reporting_ = {};
        report();
        return false;
      },
      kReportDelay);
}

void EvolutionCalendars::report() {
  if (!obstacle_.empty()) {
    services_.report(kEvolutionServiceName, {false, "Evolution Data Server: " + obstacle_});
    return;
  }
  std::string failing;
  std::size_t read = 0;
  for (const auto& [uid, followed] : followed_) {
    const std::string& obstacle = followed.calendar->obstacle();
    if (obstacle.empty()) {
      if (!followed.wasRead) return;  // There is more to come.
      ++read;
      continue;
    }
    failing += "; not \"" + textOr(e_source_get_display_name(followed.calendar->source()), uid) + "\": " + obstacle;
  }
  services_.report(kEvolutionServiceName,
                   {read > 0 || failing.empty(), "Evolution Data Server, " + std::to_string(read) +
                                                     (read == 1 ? " calendar" : " calendars") + failing});
}

}  // namespace

std::unique_ptr<CalendarSource> makeEvolutionCalendars(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                                                       Services& services, CalendarSet::Diagnostics diagnostics,
                                                       std::chrono::milliseconds answerLimit) {
  return std::make_unique<EvolutionCalendars>(connection, services, std::move(diagnostics), answerLimit);
}

}  // namespace hushmode::devices
