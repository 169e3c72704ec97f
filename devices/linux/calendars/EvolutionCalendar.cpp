// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionCalendar.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <glibmm/main.h>
#include <utility>

namespace hushmode::devices {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstRetry(250), kLastRetry(300'000);
/// Changes of one edit come one by one.
constexpr milliseconds kCoalescing(20);
constexpr milliseconds kSettling(300);
/// For a view that never says that it is complete.
constexpr milliseconds kCompletionLimit(5'000);
/// To read everything is then quicker than one by one.
constexpr std::size_t kMostReadSingly = 50;
constexpr const char* kEverything = "#t";

struct ObjectList {
  GSList* first = nullptr;
  ObjectList() = default;
  ObjectList(const ObjectList&) = delete;
  ObjectList& operator=(const ObjectList&) = delete;
  ~ObjectList() { e_client_util_free_object_slist(first); }
};

/// Starting a view waits for the service, so another thread does it.
void startView(GTask* task, void* view, void*, GCancellable*) {
  GError* error = nullptr;
  e_cal_client_view_set_flags(E_CAL_CLIENT_VIEW(view), E_CAL_CLIENT_VIEW_FLAGS_NONE, &error);
  if (error == nullptr) e_cal_client_view_start(E_CAL_CLIENT_VIEW(view), &error);
  if (error != nullptr) {
    g_task_return_error(task, error);
  } else {
    g_task_return_boolean(task, TRUE);
  }
}

}  // namespace

std::shared_ptr<EvolutionCalendar> EvolutionCalendar::follow(ESource* source, Listener listener,
                                                             milliseconds answerLimit) {
  auto calendar = std::make_shared<EvolutionCalendar>(source, std::move(listener), answerLimit);
  calendar->connect();
  return calendar;
}

EvolutionCalendar::EvolutionCalendar(ESource* source, Listener listener, milliseconds answerLimit)
    : source_(referenceTo(source)), listener_(std::move(listener)), answerLimit_(answerLimit), delay_(kFirstRetry) {}

EvolutionCalendar::~EvolutionCalendar() {
  retry_.disconnect();
  disconnect();
}

void* EvolutionCalendar::resultFor(std::function<void(EvolutionCalendar&, GAsyncResult*)> step) {
  awaitAnswer();
  return resultHandler(
      [weak = weak_from_this(), attempt = attempt_, step = std::move(step)](GObject*, GAsyncResult* result) {
        const auto calendar = weak.lock();
        if (calendar && calendar->attempt_ == attempt) step(*calendar, result);
      });
}

/// From here on, the service has some time to answer.
void EvolutionCalendar::awaitAnswer() {
  limit_.disconnect();
  limit_ = Glib::signal_timeout().connect(
      [this] {
        limit_ = {};
        fail(tr("it does not answer"));
        return false;
      },
      static_cast<unsigned>(answerLimit_.count()));
}

void EvolutionCalendar::connect() {
  cancellable_.reset(g_cancellable_new());
  e_cal_client_connect(source_.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS, static_cast<guint32>(-1), cancellable_.get(),
                       runResultHandler, resultFor(&EvolutionCalendar::connected));
}

void EvolutionCalendar::connected(GAsyncResult* result) {
  CallError error;
  EClient* client = e_cal_client_connect_finish(result, error.place());
  if (client == nullptr) return fail(error.text());
  client_.reset(E_CAL_CLIENT(client));
  backendDied_ = std::make_unique<SignalHandler<>>(client, "backend-died", [this] { fail(tr("its process ended")); });
  readOnlyChanged_ = std::make_unique<SignalHandler<GParamSpec*>>(client, "notify::readonly",
                                                                  [this](GParamSpec*) { noteWritableSoon(); });
  e_cal_client_get_view(client_.get(), kEverything, cancellable_.get(), runResultHandler,
                        resultFor(&EvolutionCalendar::viewMade));
}

void EvolutionCalendar::noteWritable() { isWritable_ = e_client_is_readonly(E_CLIENT(client_.get())) == FALSE; }

/// A calendar whose process dies calls itself read-only shortly before.
void EvolutionCalendar::noteWritableSoon() {
  if (!wasRead_ || writableSoon_.connected()) return;
  writableSoon_ = Glib::signal_timeout().connect(
      [this] {
        writableSoon_ = {};
        noteWritable();
        listener_.stateChanged();
        return false;
      },
      static_cast<unsigned>(kSettling.count()));
}

void EvolutionCalendar::viewMade(GAsyncResult* result) {
  CallError error;
  ECalClientView* view = nullptr;
  if (e_cal_client_get_view_finish(client_.get(), result, &view, error.place()) == FALSE) return fail(error.text());
  view_.reset(view);
  for (const char* signal : {"objects-added", "objects-modified"}) {
    viewSignals_.push_back(std::make_unique<SignalHandler<GSList*>>(view, signal, [this](GSList* components) {
      for (GSList* each = components; each != nullptr; each = each->next) {
        const char* uid = i_cal_component_get_uid(static_cast<ICalComponent*>(each->data));
        if (uid != nullptr) noteChanged(uid);
      }
    }));
  }
  viewSignals_.push_back(std::make_unique<SignalHandler<GSList*>>(view, "objects-removed", [this](GSList* identifiers) {
    for (GSList* each = identifiers; each != nullptr; each = each->next) {
      const char* uid = e_cal_component_id_get_uid(static_cast<ECalComponentId*>(each->data));
      if (uid != nullptr) noteChanged(uid);
    }
  }));
  viewCompleted_ = std::make_unique<SignalHandler<GError*>>(view, "complete", [this](GError*) { viewComplete(); });
  const GObjectPointer<GTask> task(
      g_task_new(view, cancellable_.get(), runResultHandler, resultFor(&EvolutionCalendar::viewStarted)));
  g_task_run_in_thread(task.get(), startView);
}

void EvolutionCalendar::viewStarted(GAsyncResult* result) {
  CallError error;
  if (g_task_propagate_boolean(G_TASK(result), error.place()) == FALSE) return fail(error.text());
  if (wasRead_ || reading_) return;
  completing_ = Glib::signal_timeout().connect(
      [this] {
        completing_ = {};
        viewComplete();
        return false;
      },
      static_cast<unsigned>(kCompletionLimit.count()));
}

/// Only now is everything read: what is added while the view looks for its first objects is told to nobody, what
/// changes from here on is.
void EvolutionCalendar::viewComplete() {
  completing_.disconnect();
  if (!wasRead_ && !reading_) readAll();
}

void EvolutionCalendar::noteChanged(const std::string& uid) {
  changed_.insert(uid);
  if (wasRead_ && !reading_) readSoon();
}

void EvolutionCalendar::readSoon() {
  if (readingSoon_.connected()) return;
  readingSoon_ = Glib::signal_timeout().connect(
      [this] {
        readingSoon_ = {};
        readChanged();
        return false;
      },
      static_cast<unsigned>(kCoalescing.count()));
}

void EvolutionCalendar::readChanged() {
  if (changed_.size() > kMostReadSingly) return readAll();
  reading_ = std::make_unique<Reading>();
  reading_->awaited = changed_.size();
  for (const std::string& uid : std::exchange(changed_, {})) {
    e_cal_client_get_objects_for_uid(
        client_.get(), uid.c_str(), cancellable_.get(), runResultHandler,
        resultFor([uid](EvolutionCalendar& self, GAsyncResult* result) { self.oneRead(uid, result); }));
  }
}

void EvolutionCalendar::oneRead(const std::string& uid, GAsyncResult* result) {
  CallError error;
  ObjectList components;
  if (e_cal_client_get_objects_for_uid_finish(client_.get(), result, &components.first, error.place()) == FALSE) {
    if (!error.is(E_CAL_CLIENT_ERROR, E_CAL_CLIENT_ERROR_OBJECT_NOT_FOUND)) return fail(error.text());
    reading_->gone.insert(uid);
  }
  for (GSList* each = components.first; each != nullptr; each = each->next) {
    reading_->texts.add(e_cal_component_get_icalcomponent(static_cast<ECalComponent*>(each->data)));
  }
  if (--reading_->awaited == 0) askForZones();
}

void EvolutionCalendar::readAll() {
  changed_.clear();
  reading_ = std::make_unique<Reading>();
  reading_->isOfAll = true;
  e_cal_client_get_object_list(client_.get(), kEverything, cancellable_.get(), runResultHandler,
                               resultFor(&EvolutionCalendar::allRead));
}

void EvolutionCalendar::allRead(GAsyncResult* result) {
  CallError error;
  ObjectList components;
  if (e_cal_client_get_object_list_finish(client_.get(), result, &components.first, error.place()) == FALSE) {
    return fail(error.text());
  }
  for (GSList* each = components.first; each != nullptr; each = each->next) {
    reading_->texts.add(static_cast<ICalComponent*>(each->data));
  }
  askForZones();
}

/// The reader of the texts knows the zones of the world itself; others the service has to describe.
void EvolutionCalendar::askForZones() {
  const std::set<std::string> missing = reading_->texts.missingZones(zones_);
  reading_->awaited = missing.size();
  if (missing.empty()) return finishReading();
  for (const std::string& identifier : missing) {
    e_cal_client_get_timezone(
        client_.get(), identifier.c_str(), cancellable_.get(), runResultHandler,
        resultFor([identifier](EvolutionCalendar& self, GAsyncResult* result) { self.zoneRead(identifier, result); }));
  }
}

void EvolutionCalendar::zoneRead(const std::string& identifier, GAsyncResult* result) {
  CallError error;
  ICalTimezone* zone = nullptr;
  // Where the service knows none either, the reader says so.
  if (e_cal_client_get_timezone_finish(client_.get(), result, &zone, error.place()) != FALSE && zone != nullptr) {
    const GObjectPointer<ICalComponent> component(i_cal_timezone_get_component(zone));
    if (component) zones_[identifier] = textOfComponent(component.get());
  }
  if (--reading_->awaited == 0) finishReading();
}

void EvolutionCalendar::finishReading() {
  limit_.disconnect();
  const std::unique_ptr<Reading> reading = std::move(reading_);
  wasRead_ = true;
  delay_ = kFirstRetry;
  obstacle_.clear();
  noteWritable();
  if (!changed_.empty()) readSoon();
  const auto self = shared_from_this();  // Whoever listens may let go of it.
  listener_.read({reading->texts.finished(zones_), reading->gone, reading->isOfAll});
  listener_.stateChanged();
}

void EvolutionCalendar::fail(const std::string& reason) {
  disconnect();
  obstacle_ = reason;
  retry_ = Glib::signal_timeout().connect(
      [this] {
        retry_ = {};
        connect();
        return false;
      },
      static_cast<unsigned>(delay_.count()));
  delay_ = std::min(delay_ * 2, kLastRetry);
  listener_.stateChanged();
}

void EvolutionCalendar::disconnect() {
  ++attempt_;
  limit_.disconnect();
  readingSoon_.disconnect();
  writableSoon_.disconnect();
  if (cancellable_) g_cancellable_cancel(cancellable_.get());  // Results may come meanwhile, of a former attempt.
  completing_.disconnect();
  viewCompleted_.reset();
  viewSignals_.clear();
  readOnlyChanged_.reset();
  backendDied_.reset();
  view_.reset();
  client_.reset();
  reading_.reset();
  changed_.clear();
  wasRead_ = false;
}

}  // namespace hushmode::devices
