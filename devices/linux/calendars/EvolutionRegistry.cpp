// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionRegistry.h"

#include "devices/linux/calendars/EvolutionCalendars.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <glibmm/main.h>
#include <utility>

namespace hushmode::devices {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstRetry(250), kLastRetry(300'000);

/// Keeps the library's registry, of which there is one in a process, for good: while that ends it runs the main
/// context, and with it whatever waits there, in the middle of what we do.
void keepForGood(ESourceRegistry* registry) {
  static ESourceRegistry* kept = nullptr;
  if (kept == nullptr) kept = static_cast<ESourceRegistry*>(g_object_ref(registry));
}

std::string textOf(const char* text) { return text != nullptr ? text : ""; }

}  // namespace

EvolutionRegistry::EvolutionRegistry(Glib::RefPtr<Gio::DBus::Connection> connection, milliseconds answerLimit,
                                     std::function<void()> changed)
    : connection_(std::move(connection)), answerLimit_(answerLimit), changed_(std::move(changed)), delay_(kFirstRetry) {
  open();
  watch_.emplace(
      connection_, kEvolutionRegistryName,
      [this](const std::string&) {
        if (!registry_ && !cancellable_) open();
      },
      [this] {
        // The first news, that nobody has the name yet, comes while it is being started.
        if (registry_) failed(tr("its registry of calendars ended"));
      });
}

EvolutionRegistry::~EvolutionRegistry() {
  watch_.reset();
  exists_.reset();
  close();
}

/// The registry's library would wait for ever for one that is not installed, and tell nobody.
void EvolutionRegistry::open() {
  close();
  cancellable_.reset(g_cancellable_new());
  limit_ = Glib::signal_timeout().connect(
      [this] {
        limit_ = {};
        failed(tr("its registry of calendars does not answer"));
        return false;
      },
      static_cast<unsigned>(answerLimit_.count()));
  g_dbus_connection_call(
      connection_->gobj(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "StartServiceByName", g_variant_new("(su)", kEvolutionRegistryName, 0U), G_VARIANT_TYPE("(u)"),
      G_DBUS_CALL_FLAGS_NONE, -1, cancellable_.get(), runResultHandler,
      resultHandler([this, exists = std::weak_ptr<bool>(exists_), attempt = attempt_](GObject*, GAsyncResult* result) {
        if (!exists.expired() && attempt_ == attempt) started(result);
      }));
}

void EvolutionRegistry::started(GAsyncResult* result) {
  CallError error;
  GVariant* answer = g_dbus_connection_call_finish(connection_->gobj(), result, error.place());
  if (answer == nullptr) {
    // Where it is not installed, trying again would only wake the phone.
    const bool isMissing = error.is(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN);
    return failed(isMissing ? tr("not installed") : error.text(), isMissing ? Retry::WhenItAppears : Retry::Soon);
  }
  g_variant_unref(answer);
  // Not to be cancelled: whoever waits for it, the registry that comes of it is kept.
  e_source_registry_new(
      nullptr, runResultHandler,
      resultHandler([this, exists = std::weak_ptr<bool>(exists_), attempt = attempt_](GObject*, GAsyncResult* result) {
        CallError error;
        GObjectPointer<ESourceRegistry> registry(e_source_registry_new_finish(result, error.place()));
        if (registry) keepForGood(registry.get());
        if (exists.expired() || attempt_ != attempt) return;
        if (registry) {
          opened(std::move(registry));
        } else {
          failed(error.text());
        }
      }));
}

void EvolutionRegistry::opened(GObjectPointer<ESourceRegistry> registry) {
  limit_.disconnect();
  registry_ = std::move(registry);
  obstacle_.clear();
  delay_ = kFirstRetry;
  for (const char* signal : {"source-added", "source-removed", "source-enabled", "source-disabled", "source-changed"}) {
    signals_.push_back(
        std::make_unique<SignalHandler<ESource*>>(registry_.get(), signal, [this](ESource*) { changedSoon(); }));
  }
  changed_();
}

void EvolutionRegistry::close() {
  limit_.disconnect();
  retry_.disconnect();
  telling_.disconnect();
  signals_.clear();
  registry_.reset();
  ++attempt_;
  const GObjectPointer<GCancellable> cancelled = std::move(cancellable_);
  if (cancelled) g_cancellable_cancel(cancelled.get());
}

void EvolutionRegistry::failed(const std::string& reason, Retry retry) {
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
  changed_();
}

void EvolutionRegistry::changedSoon() {
  if (telling_.connected()) return;
  telling_ = Glib::signal_idle().connect([this] {
    telling_ = {};
    changed_();
    return false;
  });
}

std::vector<GObjectPointer<ESource>> EvolutionRegistry::enabledCalendars() const {
  std::vector<GObjectPointer<ESource>> calendars;
  if (!registry_) return calendars;
  GList* sources = e_source_registry_list_enabled(registry_.get(), E_SOURCE_EXTENSION_CALENDAR);
  for (GList* each = sources; each != nullptr; each = each->next) calendars.emplace_back(E_SOURCE(each->data));
  g_list_free(sources);
  return calendars;
}

std::string EvolutionRegistry::accountOf(ESource* calendar) const {
  const char* parent = e_source_get_parent(calendar);
  if (parent == nullptr || !registry_) return {};
  const GObjectPointer<ESource> account(e_source_registry_ref_source(registry_.get(), parent));
  return account ? textOf(e_source_get_display_name(account.get())) : "";
}

}  // namespace hushmode::devices
