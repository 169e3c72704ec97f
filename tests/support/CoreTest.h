// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Date.h"
#include "tests/support/PhoneFixture.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

using Texts = std::vector<std::string>;

/// An instant given as local time in Berlin on a day in the summer of 2024.
inline platform::Date berlinSummer(int month, int day, int hour = 0, int minute = 0, double second = 0) {
  using namespace std::chrono;
  const sys_days midnight = year(2024) / month / day;
  return platform::Date(static_cast<double>(midnight.time_since_epoch() / 1s) + (hour - 2) * 3600.0 + minute * 60.0 +
                        second);
}

/// The same on 14 May 2024, the day on which the tests begin.
inline platform::Date today(int hour, int minute = 0, double second = 0) {
  return berlinSummer(5, 14, hour, minute, second);
}

/// A phone in Berlin, on 14 May 2024 at ten in the morning: two hours ahead of UTC, so that a mix-up of local time and
/// UTC shows.
class CoreTest : public PhoneFixture {
 protected:
  CoreTest() { phone.foundation().setTimeZone(devices::TimeZone::named("Europe/Berlin")); }

  /// The log lines in the record, as "information 286 method: message", with the levels' names in the record.
  Texts logged() const {
    Texts lines;
    for (const devices::RecordEntry& entry : phone.record().entries()) {
      if (entry.kind != devices::kind::log) continue;
      const auto text = [&](std::string_view key) { return *entry.fields.find(key)->as<std::string>(); };
      lines.push_back(text("level") + " " + std::to_string(*entry.fields.find("line")->as<std::int64_t>()) + " " +
                      text("method") + " " + text("message"));
    }
    return lines;
  }
};

}  // namespace hushmode
