// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/calendars/EvolutionTexts.h"
#include "devices/linux/calendars/GObjects.h"

#include <chrono>
#include <functional>
#include <libecal/libecal.h>
#include <map>
#include <memory>
#include <set>
#include <sigc++/connection.h>
#include <string>
#include <vector>

namespace hushmode::devices {

/// One calendar of Evolution Data Server, read and followed for as long as this object lives. A calendar that fails, or
/// does not answer in time, is tried again, at first soon and then every few minutes.
///
/// Everything is called back from the main loop, nothing once the object is gone.
class EvolutionCalendar : public std::enable_shared_from_this<EvolutionCalendar> {
 public:
  /// What has been read: iCalendar texts by UID, each with all that has this UID and the time zones it needs.
  struct Objects {
    std::map<std::string, std::string> texts;
    std::set<std::string> gone;  ///< UIDs that the calendar has no longer.
    bool areAll = false;         ///< There are no others.
  };
  struct Listener {
    std::function<void(const Objects&)> read;
    /// `isWritable` or `obstacle` may have changed.
    std::function<void()> stateChanged;
  };

  static std::shared_ptr<EvolutionCalendar> follow(ESource* source, Listener listener,
                                                   std::chrono::milliseconds answerLimit);
  EvolutionCalendar(ESource* source, Listener listener, std::chrono::milliseconds answerLimit);
  ~EvolutionCalendar();
  EvolutionCalendar(const EvolutionCalendar&) = delete;
  EvolutionCalendar& operator=(const EvolutionCalendar&) = delete;

  ESource* source() const { return source_.get(); }
  /// The same source, as a new registry knows it.
  void setSource(ESource* source) { source_ = referenceTo(source); }
  /// As the service last said; false before.
  bool isWritable() const { return isWritable_; }
  /// Why it cannot be read at present; empty when it can, or when that is not known yet.
  const std::string& obstacle() const { return obstacle_; }

 private:
  /// Objects that have been read, and the zones that are still to be asked for.
  struct Reading {
    EvolutionTexts texts;
    std::set<std::string> gone;
    bool isOfAll = false;
    std::size_t awaited = 0;  ///< Answers that have not come yet.
  };

  void connect();
  void connected(GAsyncResult* result);
  void viewMade(GAsyncResult* result);
  void viewStarted(GAsyncResult* result);
  void viewComplete();
  void noteChanged(const std::string& uid);
  void readSoon();
  void readChanged();
  void readAll();
  void allRead(GAsyncResult* result);
  void oneRead(const std::string& uid, GAsyncResult* result);
  void askForZones();
  void zoneRead(const std::string& identifier, GAsyncResult* result);
  void finishReading();
  void awaitAnswer();
  void fail(const std::string& reason);
  void disconnect();
  void noteWritable();
  void noteWritableSoon();

  /// The last argument of a call whose result is for this object, unless it has gone or started over meanwhile.
  void* resultFor(std::function<void(EvolutionCalendar&, GAsyncResult*)> step);

  GObjectPointer<ESource> source_;
  Listener listener_;
  const std::chrono::milliseconds answerLimit_;
  bool isWritable_ = false;
  std::string obstacle_;

  unsigned attempt_ = 0;  ///< Counts the connections, so that what belongs to a former one is known.
  GObjectPointer<GCancellable> cancellable_;
  GObjectPointer<ECalClient> client_;
  GObjectPointer<ECalClientView> view_;
  std::unique_ptr<SignalHandler<>> backendDied_;
  std::unique_ptr<SignalHandler<GParamSpec*>> readOnlyChanged_;
  std::unique_ptr<SignalHandler<GError*>> viewCompleted_;
  std::vector<std::unique_ptr<SignalHandler<GSList*>>> viewSignals_;

  std::set<std::string> changed_;  ///< UIDs that are to be read again.
  std::unique_ptr<Reading> reading_;
  bool wasRead_ = false;         ///< By this connection.
  EvolutionTexts::Zones zones_;  ///< That the service has described.

  sigc::connection limit_, retry_, completing_, readingSoon_, writableSoon_;
  std::chrono::milliseconds delay_;
};

}  // namespace hushmode::devices
