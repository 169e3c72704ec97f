// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"
#include "platform/Export.h"
#include "platform/Object.h"
#include "platform/PropertyList.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Foundation: values, property-list files, user defaults, in-process notifications, calendars, bundles, timers, log.
namespace hushmode::platform {

/// One line of the system log, in its pieces. The whole line is put together by the log's writer.
struct LogLine {
  enum class Level {
    Information,
    Warning,
    Error,
    Bare
  };  ///< Bare: the message alone, without prefix, method and line.
  Level level;
  std::string_view method;  ///< The selector that logs, as in `scheduleEvents:shouldProceedAnyCase:`.
  int line;                 ///< Source line; for some lines a fixed number.
  std::string message;
};

/// The system log.
class HUSHMODE_API SystemLog {
 public:
  virtual ~SystemLog();
  /// Whether anybody listens at this level. Nothing is formatted, and `write` is not called, when nobody does.
  virtual bool isListening(LogLine::Level level) const = 0;
  virtual void write(const LogLine& line) = 0;
};

/// Calendar components of an instant, in local time. Absent ones were not asked for, or are to be zero.
struct DateComponents {
  int year = 1970;
  int month = 1;  ///< 1 to 12
  int day = 1;    ///< 1 to 31
  std::optional<std::int64_t> hour, minute, second;
};

/// A calendar in the device's local time zone, as it is at the moment of each call; its dates are Gregorian.
class HUSHMODE_API Calendar {
 public:
  virtual ~Calendar();
  /// The local date and clock time of `date`, all components present; seconds are whole, rounded down.
  virtual DateComponents componentsOfDate(Date date) const = 0;
  /// The instant with these components. Hours and minutes out of range carry over (26:00 is 02:00 tomorrow). With no
  /// clock component present: the first instant of that day. A clock time that does not exist takes the offset before
  /// the jump (02:30 becomes 03:30); one that exists twice is the first.
  virtual Date dateFromComponents(const DateComponents& components) const = 0;
  /// The instant `days` calendar days later at the same local time (a day is not always 86,400 seconds). The first
  /// instant of a day leads to the first instant of the other, also where one of them has no midnight.
  virtual Date dateByAddingDays(Date date, int days) const = 0;
};

/// Property-list files, named by the device's own paths.
class HUSHMODE_API PropertyListFiles {
 public:
  virtual ~PropertyListFiles();
  virtual bool fileExists(std::string_view path) const = 0;
  /// The array at the file's top level; none when the file is missing, unreadable, or holds something else.
  virtual std::optional<Array> arrayWithContentsOfFile(std::string_view path) const = 0;
  /// The same for a dictionary.
  virtual std::optional<Dictionary> dictionaryWithContentsOfFile(std::string_view path) const = 0;
  /// Replaces the file whole: afterwards it holds either the old content or `array`. False when it could not.
  virtual bool writeArrayToFileAtomically(const Array& array, std::string_view path) = 0;
};

/// The process's standard user defaults, and the domains of other applications.
class HUSHMODE_API UserDefaults {
 public:
  virtual ~UserDefaults();
  virtual std::optional<Value> valueForKey(std::string_view key) const = 0;
  virtual float floatForKey(std::string_view key) const = 0;  ///< 0 when absent.
  virtual bool boolForKey(std::string_view key) const = 0;    ///< False when absent.
  virtual void setFloat(float value, std::string_view key) = 0;
  virtual void setBool(bool value, std::string_view key) = 0;
  virtual void removeObjectForKey(std::string_view key) = 0;
  virtual void synchronize() = 0;
  /// Another application's whole domain; none when it has none.
  virtual std::optional<Dictionary> persistentDomainForName(std::string_view name) const = 0;
  virtual void setPersistentDomain(const Dictionary& domain, std::string_view name) = 0;
};

using NotificationValue = std::variant<Value, std::shared_ptr<Object>>;

/// An in-process notification.
struct Notification {
  std::string name;
  std::shared_ptr<Object> sender;  ///< May be null.
  std::map<std::string, NotificationValue, std::less<>> userInfo;
};

/// The in-process notification centre. Observers run inside `post`, in the order of their registration.
class HUSHMODE_API NotificationCenter {
 public:
  virtual ~NotificationCenter();
  /// `observer` only names the registration for its removal. Null `sender` means any sender.
  virtual void addObserver(const void* observer, std::string_view name, std::shared_ptr<Object> sender,
                           std::function<void(const Notification&)> handler) = 0;
  /// Ends all registrations of `observer`.
  virtual void removeObserver(const void* observer) = 0;
  virtual void post(const Notification& notification) = 0;
};

/// Localised texts: string tables of a folder on the device.
class HUSHMODE_API Bundle {
 public:
  virtual ~Bundle();
  /// The default table's text for `key`; `value` when that is missing and not empty, else the key itself.
  virtual std::string localizedStringForKey(std::string_view key, std::optional<std::string_view> value) const = 0;
  virtual std::string bundleIdentifier() const = 0;
};

/// A one-shot timer of the main run loop, not power-aware.
class HUSHMODE_API NSTimer : public Object {
 public:
  ~NSTimer() override;
  /// Disarms it for good.
  virtual void invalidate() = 0;
};

/// Writes dates as texts. One that was just made has no format, locale or time zone of its own: it writes nothing until
/// a format is set, in the local zone.
class HUSHMODE_API NSDateFormatter : public Object {
 public:
  ~NSDateFormatter() override;
  /// A pattern of Unicode Technical Standard #35, such as "yyyy-MM-dd HH:mm".
  virtual void setDateFormat(std::optional<std::string> pattern) = 0;
  virtual std::optional<std::string> dateFormat() const = 0;
  virtual std::string stringFromDate(Date date) const = 0;
};

/// What Foundation offers a process.
class HUSHMODE_API Foundation {
 public:
  virtual ~Foundation();
  virtual Date now() const = 0;
  /// The user's current calendar.
  virtual const Calendar& currentCalendar() const = 0;
  /// A Gregorian calendar in the local time zone, whatever calendar the user prefers.
  virtual const Calendar& gregorianCalendar() const = 0;
  virtual PropertyListFiles& files() = 0;
  virtual UserDefaults& standardUserDefaults() = 0;
  virtual NotificationCenter& defaultNotificationCenter() = 0;
  /// The bundle in the folder `path`; null when it cannot be opened.
  virtual std::shared_ptr<Bundle> bundleWithPath(std::string_view path) = 0;
  /// The host process's own bundle; never null.
  virtual std::shared_ptr<Bundle> mainBundle() = 0;
  /// A one-shot timer that is not yet in a run loop.
  virtual std::shared_ptr<NSTimer> timerWithTimeInterval(
      double seconds, std::function<void(const std::shared_ptr<NSTimer>&)> action) = 0;
  virtual SystemLog& systemLog() = 0;
  /// A date formatter with its defaults.
  virtual std::shared_ptr<NSDateFormatter> makeDateFormatter() = 0;
};

}  // namespace hushmode::platform
