// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/EvolutionCalendars.h"

#include "devices/linux/calendars/EvolutionCalendar.h"
#include "devices/linux/calendars/EvolutionRegistry.h"
#include "devices/shared/CalendarSetSource.h"
#include "devices/shared/ICalReader.h"
#include "devices/words/Text.h"

#include <glibmm/main.h>
#include <map>
#include <optional>
#include <utility>

namespace hushmode::devices {

namespace {

const std::string kIdentifierPrefix = "evolution:";
/// Calendars fail and return together.
constexpr unsigned kReportDelay = 200;

/// Which calendars there are is the registry's to say; each of them is then followed by itself.
class EvolutionCalendars final : public CalendarSetSource {
 public:
  EvolutionCalendars(const Glib::RefPtr<Gio::DBus::Connection>& connection, Services& services,
                     CalendarSet::Diagnostics diagnostics, std::chrono::milliseconds answerLimit);
  /// The service's library runs the main context while it lets go of its registry: nothing may come back here then.
  ~EvolutionCalendars() override {
    setChangeHandler({});
    reporting_.disconnect();
    followed_.clear();
  }

 private:
  struct Followed {
    std::shared_ptr<EvolutionCalendar> calendar;
    std::string account;                       ///< As the registry last named it.
    std::map<std::string, std::size_t> texts;  ///< Hashes of the texts as they were last read, by UID.
    bool wasRead = false;
  };

  const CalendarSet& set() const override { return set_; }

  void registryChanged();
  bool describe(const std::string& uid, Followed& followed);
  void take(const std::string& uid, const EvolutionCalendar::Objects& objects);
  bool takeTexts(Followed& followed, const std::string& identifier, const EvolutionCalendar::Objects& objects);
  void stateChanged(const std::string& uid);
  void tell(const char* step);
  void report();
  void reportSoon();

  Services& services_;
  const std::chrono::milliseconds answerLimit_;
  CalendarSet set_;
  std::map<std::string, Followed> followed_;  ///< By the UID of its source.
  sigc::connection reporting_;
  std::optional<EvolutionRegistry> registry_;  ///< Last, since it calls back.
};

std::string titleOf(ESource* source) {
  const char* title = e_source_get_display_name(source);
  return title != nullptr && *title != '\0' ? title : "Calendar";
}

EvolutionCalendars::EvolutionCalendars(const Glib::RefPtr<Gio::DBus::Connection>& connection, Services& services,
                                       CalendarSet::Diagnostics diagnostics, std::chrono::milliseconds answerLimit)
    : services_(services), answerLimit_(answerLimit), set_(std::move(diagnostics)) {
  if (connection) {
    registry_.emplace(connection, answerLimit, [this] { registryChanged(); });
  } else {
    report();
  }
}

/// Follows the calendars that are enabled now, and no others. While that is not known, what is known stays, and
/// calendars that can be read go on.
void EvolutionCalendars::registryChanged() {
  if (!registry_->isOpen()) return report();
  std::map<std::string, Followed> before = std::exchange(followed_, {});
  bool changed = false;
  for (const GObjectPointer<ESource>& source : registry_->enabledCalendars()) {
    const std::string uid = e_source_get_uid(source.get());
    Followed& followed = followed_[uid];
    const auto known = before.find(uid);
    if (known == before.end()) {
      followed.calendar =
          EvolutionCalendar::follow(source.get(),
                                    {[this, uid](const EvolutionCalendar::Objects& objects) { take(uid, objects); },
                                     [this, uid] { stateChanged(uid); }},
                                    answerLimit_);
      continue;
    }
    followed = std::move(known->second);
    followed.calendar->setSource(source.get());
    if (followed.wasRead) changed = describe(uid, followed) || changed;
  }
  const bool removed = set_.removeIf([this](const std::string& identifier) {
    return !followed_.contains(identifier.substr(kIdentifierPrefix.size()));
  });
  if (changed || removed) tell("calendars changed");
  reportSoon();
}

/// Answers whether something is called differently now.
bool EvolutionCalendars::describe(const std::string& uid, Followed& followed) {
  ESource* source = followed.calendar->source();
  if (registry_->isOpen()) followed.account = registry_->accountOf(source);
  return set_.describe(kIdentifierPrefix + uid, titleOf(source),
                       followed.account.empty() ? "Evolution" : followed.account, followed.calendar->isWritable());
}

void EvolutionCalendars::take(const std::string& uid, const EvolutionCalendar::Objects& objects) {
  Followed& followed = followed_.at(uid);
  const std::string identifier = kIdentifierPrefix + uid;
  const bool isNew = !std::exchange(followed.wasRead, true);
  const bool textsChanged = takeTexts(followed, identifier, objects);
  const bool nameChanged = describe(uid, followed);
  if (isNew || textsChanged || nameChanged) tell("calendar read again");
}

bool EvolutionCalendars::takeTexts(Followed& followed, const std::string& identifier,
                                   const EvolutionCalendar::Objects& objects) {
  CalendarContents& contents = set_.contentsOf(identifier);
  bool changed = false;
  for (const auto& [object, text] : objects.texts) {
    const std::size_t hash = std::hash<std::string>()(text);
    const auto [known, isNew] = followed.texts.try_emplace(object, hash);
    if (!isNew && std::exchange(known->second, hash) == hash) continue;
    changed = true;
    const auto problem = [&, &uid = object](std::string_view, const std::string& what) {
      set_.report(tr("\"{0}\" in {1}: {2}", uid, identifier, what));
    };
    contents.put(object, readICalFile(text, object, set_.zones(), problem));
  }
  const auto isGone = [&](const std::string& object) {
    return objects.areAll ? !objects.texts.contains(object) : objects.gone.contains(object);
  };
  std::erase_if(followed.texts, [&](const auto& text) { return isGone(text.first); });
  return contents.removeIf(isGone) || changed;
}

void EvolutionCalendars::stateChanged(const std::string& uid) {
  const auto followed = followed_.find(uid);
  if (followed == followed_.end()) return;
  if (followed->second.wasRead && describe(uid, followed->second)) tell("calendars changed");
  reportSoon();
}

void EvolutionCalendars::tell(const char* step) {
  set_.arrange();
  tellChanged({{"step", step}});
}

void EvolutionCalendars::reportSoon() {
  if (reporting_.connected()) return;
  // The first news is waited for: without it nobody knows what the calendars hold.
  const bool isFirst = !services_.states().contains(kEvolutionServiceName);
  reporting_ = Glib::signal_timeout().connect(
      [this] {
        reporting_ = {};
        report();
        return false;
      },
      isFirst ? 0 : kReportDelay);
}

void EvolutionCalendars::report() {
  const std::string obstacle = registry_ ? registry_->obstacle() : tr("there is no session bus");
  if (!obstacle.empty()) {
    services_.report(kEvolutionServiceName, {false, tr("Evolution Data Server: {}", obstacle)});
    return;
  }
  std::string failing;
  std::size_t read = 0;
  for (const auto& [uid, followed] : followed_) {
    const std::string& reason = followed.calendar->obstacle();
    if (reason.empty() && !followed.wasRead) return;  // There is more to come.
    if (reason.empty()) {
      ++read;
    } else {
      failing = tr("{0}; not \"{1}\": {2}", failing, titleOf(followed.calendar->source()), reason);
    }
  }
  services_.report(kEvolutionServiceName,
                   {read > 0 || failing.empty(), trCount("Evolution Data Server, {0} calendar{1}",
                                                         "Evolution Data Server, {0} calendars{1}", read, failing)});
}

}  // namespace

std::unique_ptr<CalendarSource> makeEvolutionCalendars(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                                                       Services& services, CalendarSet::Diagnostics diagnostics,
                                                       std::chrono::milliseconds answerLimit) {
  return std::make_unique<EvolutionCalendars>(connection, services, std::move(diagnostics), answerLimit);
}

}  // namespace hushmode::devices
