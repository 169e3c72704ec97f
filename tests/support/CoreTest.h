#pragma once

#include "devices/simulated/SimulatedPhone.h"
#include "model/HMProfile.h"
#include "platform/Process.h"

#include <chrono>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

using Texts = std::vector<std::string>;

/// An instant given as local time in Berlin on a day in summer, two hours ahead of UTC: a mix-up of local time and UTC
/// shows.
inline platform::Date berlinSummer(int month, int day, int hour = 0, int minute = 0, double second = 0) {
  using namespace std::chrono;
  const sys_days midnight = year(2024) / month / day;
  return platform::Date(static_cast<double>(midnight.time_since_epoch() / 1s) + (hour - 2) * 3600.0 + minute * 60.0 +
                        second);
}

/// The same on 14 May 2024, the day on which every test begins.
inline platform::Date today(int hour, int minute = 0, double second = 0) {
  return berlinSummer(5, 14, hour, minute, second);
}

/// A simulated phone in Berlin, at half past eight in the morning of 14 May 2024, and a host process on it.
class CoreTest : public testing::Test {
 protected:
  CoreTest() : phone(today(8, 30), devices::TimeZone::named("Europe/Berlin")), process(std::in_place, phone) {}

  /// The record's lines since the last `forget`, of the given kinds; of all kinds when none is given.
  Texts recorded(std::initializer_list<std::string_view> kinds = {}) {
    Texts texts;
    for (const devices::RecordEntry& entry : phone.record().entries()) {
      if (kinds.size() == 0 || std::find(kinds.begin(), kinds.end(), entry.kind) != kinds.end()) {
        texts.push_back(entry.text());
      }
    }
    return texts;
  }
  void forget() { phone.record().clear(); }

  /// The log lines since the last `forget`, as "Information 286 method message".
  Texts logged() {
    Texts lines;
    for (const devices::RecordEntry& entry : phone.record().entries()) {
      if (entry.kind != devices::kind::log) continue;
      const auto field = [&](std::string_view key) { return *entry.fields.find(key); };
      lines.push_back(*field("level").as<std::string>() + " " + std::to_string(*field("line").as<std::int64_t>()) +
                      " " + *field("method").as<std::string>() + " " + *field("message").as<std::string>());
    }
    return lines;
  }

  /// The host dies and is started again, on the same phone.
  void restartProcess() {
    process.reset();
    process.emplace(phone);
  }

  devices::SimulatedPhone phone;
  std::optional<platform::Process> process;
};

}  // namespace hushmode
