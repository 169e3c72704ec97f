// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/ProfilesFixture.h"

#include <string>
#include <string_view>
#include <vector>

namespace hushmode {

/// A phone whose scheduler tells its story: what it logged, recorded, armed and switched, in order and nothing else.
class SchedulerFixture : public ProfilesFixture {
 protected:
  void SetUp() override;

  static void plan(const Profile& profile, bool shouldProceedAnyCase = false) {
    manager().scheduleEvents(profile, shouldProceedAnyCase);
  }

  /// What has happened since the last call, a line each, with a line break before and after each line:
  ///  - the scheduler's and the event list's log lines, with their level first ("I", "W", "E", "bare");
  ///  - timers ("timer arm t1 at 09:00:00", without its user info) and entries of the scheduled-events table;
  ///  - "<apply>", "<revert>", "<revert quietly>" and "<refresh>" in the place of all that these do to the phone.
  /// Of today's dates only the clock times.
  std::string story();
  /// How many of the lines since the last `story()`, in the story or left out of it, contain `text`.
  int count(std::string_view text) const;
  /// The armed wake timers: "t1 at 09:00:00, t2 at 10:00:00" in the order of arming.
  std::string armed() const;
  /// `text` without the date of the phone's day and without the "+0000" behind it.
  std::string withoutToday(std::string text) const;

 private:
  std::string storyLine(const devices::RecordEntry& entry) const;
};

}  // namespace hushmode
