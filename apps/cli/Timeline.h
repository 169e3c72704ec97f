// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/terminal/Terminal.h"
#include "devices/shared/TimeZone.h"
#include "devices/simulated/Record.h"
#include "host/Switches.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace hushmode::cli {

/// Prints switches for people: day by day, one line per switch, columns aligned within a day.
class Timeline {
 public:
  /// What a switch changes, in words.
  using Change = std::function<std::string(const host::Switch&)>;
  Timeline(std::ostream& out, Terminal terminal, std::shared_ptr<const devices::TimeZone> zone, Change change);

  void add(const host::Switch& each);
  void add(const devices::RecordEntry& entry);
  /// Prints what has not been printed yet, and a closing line that says how many switches there were.
  void finish();

 private:
  struct Line {
    platform::Date at;
    bool isSwitch;
    host::Switch each;
    std::string text;
  };
  void insert(Line line);
  void printDay();
  void print(const Line& line, std::size_t profileColumns, std::size_t reasonColumns);

  std::ostream& out_;
  Terminal terminal_;
  std::shared_ptr<const devices::TimeZone> zone_;
  Change change_;
  std::string day_;
  std::vector<Line> lines_;
  std::size_t switches_ = 0;
};

}  // namespace hushmode::cli
