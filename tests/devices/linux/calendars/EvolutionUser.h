// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <giomm/dbusconnection.h>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace hushmode::devices {

/// Somebody who edits the calendars of Evolution Data Server with another program. Every call waits until the service
/// has done it, and throws where it cannot.
class EvolutionUser {
 public:
  EvolutionUser();

  /// Makes a calendar on this computer.
  void addCalendar(const std::string& uid, const std::string& title);
  void removeCalendar(const std::string& uid);
  /// Changes what the calendar's settings say, such as "DisplayName" or "Enabled".
  void set(const std::string& uid, const std::string& key, const std::string& value);

  /// The components are VEVENTs, as texts; those of one UID go together.
  void create(const std::string& calendar, const std::vector<std::string>& components);
  /// Changes one occurrence ("this") or the whole of an entry ("all").
  void modify(const std::string& calendar, const std::string& component, const std::string& what = "all");
  void remove(const std::string& calendar, const std::string& uid);
  /// Takes in a VCALENDAR with its zones, as a synchroniser does.
  void receive(const std::string& calendar, const std::string& text);

  /// The process that owns a name, or that holds a calendar; 0 for none.
  pid_t processOf(const std::string& name) const;
  pid_t processOfCalendar(const std::string& uid);
  static constexpr const char* registryName = "org.gnome.evolution.dataserver.Sources5";
  static constexpr const char* factoryName = "org.gnome.evolution.dataserver.Calendar8";

 private:
  struct Place {
    std::string busName, path;
  };

  Place open(const std::string& calendar) const;
  Place openNow(const std::string& calendar) const;
  Glib::VariantContainerBase call(const Place& place, const std::string& interface, const std::string& method,
                                  const Glib::VariantContainerBase& arguments) const;
  Place sourceOf(const std::string& uid) const;

  Glib::RefPtr<Gio::DBus::Connection> connection_;
};

}  // namespace hushmode::devices
