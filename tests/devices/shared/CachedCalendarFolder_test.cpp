// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CachedCalendarFolder.h"

#include "tests/devices/shared/CalendarSamples.h"

#include <algorithm>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>

namespace hushmode::devices {
namespace {

using namespace samples;
using platform::Date;

class CachedCalendarFolderTest : public testing::Test {
 protected:
  /// Writes a file that was last changed `age` seconds before now.
  void write(const std::string& name, const std::string& text, std::int64_t age = 3600) {
    files.write("calendars/" + name, text);
    const timespec times[2] = {{now - age, 0}, {now - age, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, (root() / name).c_str(), times, 0), 0);
  }
  void remove(const std::string& name) { std::filesystem::remove(root() / name); }

  std::filesystem::path root() const { return files.path() / "calendars"; }
  std::filesystem::path cache() const { return files.path() / "cache" / "calendars.cache"; }

  /// What it says of the day, line by line: calendars, occurrences, diagnostics.
  std::vector<std::string> answer(const std::string& day = "2026-03-30", const std::string& program = "1") {
    std::vector<std::string> diagnostics, lines;
    CachedCalendarFolder folder(
        {root(), cache(), "folder:", program},
        [&](const std::string& line) { diagnostics.push_back("problem " + line); }, Date(static_cast<double>(now)));
    const Date from = instant(day, *berlin);
    const auto contents = folder.read(from, from.addingSeconds(86'400), *berlin);
    filesRead = folder.filesRead();
    for (const auto& each : contents.calendars) {
      lines.push_back(each.identifier + ": " + each.title + " (" + each.accountTitle + ")" +
                      (each.writable ? "" : " read-only"));
    }
    for (const auto& each : contents.occurrences) {
      lines.push_back(localText(each.start, *berlin) + " to " + localText(each.end, *berlin) + " " +
                      each.title.value_or("(no title)") + " " + each.uid + " in " +
                      contents.calendars[each.calendar].identifier + (each.allDay ? " all day" : "") + " " +
                      std::to_string(static_cast<int>(each.status)));
    }
    std::sort(diagnostics.begin(), diagnostics.end());
    lines.insert(lines.end(), diagnostics.begin(), diagnostics.end());
    return lines;
  }
  /// What the whole folder, read anew, says.
  std::vector<std::string> truth(const std::string& day = "2026-03-30") {
    std::vector<std::string> diagnostics, lines;
    CalendarFolder folder(
        root(), [&](const std::string& line) { diagnostics.push_back("problem " + line); }, "folder:");
    folder.rescan();
    const Date from = instant(day, *berlin);
    for (const auto& each : folder.calendars()) {
      lines.push_back(each.identifier + ": " + each.title + " (" + each.accountTitle + ")" +
                      (each.writable ? "" : " read-only"));
    }
    for (const auto& each : folder.occurrences(from, from.addingSeconds(86'400), *berlin)) {
      lines.push_back(localText(each.start, *berlin) + " to " + localText(each.end, *berlin) + " " +
                      each.details->title.value_or("(no title)") + " " + each.details->uniqueId + " in " +
                      folder.calendars()[each.calendar].identifier + (each.details->allDay ? " all day" : "") + " " +
                      std::to_string(static_cast<int>(each.details->status)));
    }
    std::sort(diagnostics.begin(), diagnostics.end());
    lines.insert(lines.end(), diagnostics.begin(), diagnostics.end());
    return lines;
  }

  TemporaryFolder files;
  const std::int64_t now = 1'774'857'600;  // 2026-03-30 08:00 UTC.
  std::shared_ptr<const TimeZone> berlin = zone("Europe/Berlin");
  std::size_t filesRead = 0;
};

TEST_F(CachedCalendarFolderTest, ReadsNothingTheSecondTime) {
  write("work/a.ics", calendarText("a", "20260330T080000Z", "STATUS:TENTATIVE\r\n"));
  write("work/b.ics", calendarText("b", "20260101T080000Z", "RRULE:FREQ=DAILY\r\n"));
  write("home/c.ics", calendarText("c", "20260401T080000Z"));
  const auto expected = truth();
  ASSERT_EQ(expected.size(), 4U);
  EXPECT_EQ(answer(), expected);
  EXPECT_EQ(filesRead, 3U);
  EXPECT_EQ(answer(), expected);
  EXPECT_EQ(filesRead, 0U);
  EXPECT_EQ(answer("2026-04-01"), truth("2026-04-01"));
  EXPECT_EQ(filesRead, 0U) << "the days that follow are remembered, too";
}

TEST_F(CachedCalendarFolderTest, ReadsOnlyWhatChanged) {
  write("work/a.ics", calendarText("a"));
  write("work/b.ics", calendarText("b"));
  answer();
  write("work/b.ics", calendarText("b", "20260330T093000Z"), 1800);
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 1U);
  write("work/c.ics", calendarText("c"));
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 1U);
  remove("work/a.ics");
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 0U);
}

TEST_F(CachedCalendarFolderTest, ReadsAgainWhatSharesAnEntryWithAChangedFile) {
  write("work/series.ics", calendarText("s", "20260301T080000Z", "RRULE:FREQ=DAILY\r\n"));
  write("work/other.ics", calendarText("o"));
  answer();
  write("work/moved.ics", calendarText("s", "20260330T100000Z", "RECURRENCE-ID:20260330T080000Z\r\n"));
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 2U);
  remove("work/moved.ics");
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 1U) << "the series that it belonged to";
}

TEST_F(CachedCalendarFolderTest, DoubtsAFileThatWasJustWritten) {
  write("work/a.ics", calendarText("a"), 1);
  answer();
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 1U);
  write("work/a.ics", calendarText("a"), -3600);
  answer();
  answer();
  EXPECT_EQ(filesRead, 1U) << "a date in the future tells nothing";
}

TEST_F(CachedCalendarFolderTest, SaysAgainWhatCannotBeUsed) {
  write("work/a.ics", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:x\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
  write("work: old/b.ics", calendarText("b", "20260330T080000Z", "RRULE:FREQ=NEVER\r\n"));
  const auto expected = truth();
  ASSERT_EQ(
      std::count_if(expected.begin(), expected.end(), [](const auto& line) { return line.starts_with("problem"); }), 2);
  EXPECT_EQ(answer(), expected);
  EXPECT_EQ(answer(), expected);
  EXPECT_EQ(filesRead, 0U);
}

TEST_F(CachedCalendarFolderTest, FollowsNamesAndPermissions) {
  write("work/a.ics", "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Office\r\nEND:VCALENDAR\r\n");
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(answer(), truth());
  files.write("calendars/work/displayname", "Büro");
  chmod((root() / "work").c_str(), 0555);
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(answer().front(), "folder:work: Büro (calendars) read-only");
  EXPECT_EQ(filesRead, 0U);
  chmod((root() / "work").c_str(), 0755);
}

TEST_F(CachedCalendarFolderTest, ReadsAnewForAnotherProgramZoneOrTime) {
  write("work/a.ics", calendarText("a", "20260330T080000"));
  answer();
  answer("2026-03-30", "2");
  EXPECT_EQ(filesRead, 1U);
  answer("2027-03-30", "2");
  EXPECT_EQ(filesRead, 1U);
  berlin = zone("Asia/Tokyo");
  EXPECT_EQ(answer("2027-03-30", "2"), truth("2027-03-30"));
  EXPECT_EQ(filesRead, 1U);
}

TEST_F(CachedCalendarFolderTest, WorksWithoutAPlaceForItsCache) {
  write("work/a.ics", calendarText("a"));
  files.write("cache", "a file where the folder should be");
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 1U);
}

TEST_F(CachedCalendarFolderTest, KeepsItsCacheFromOthersEyes) {
  write("work/a.ics", calendarText("a"));
  answer();
  struct stat status {};
  ASSERT_EQ(stat(cache().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(cache().parent_path()), {}), 1) << "no temporary file";
}

TEST_F(CachedCalendarFolderTest, WritesOverWhatAnInterruptedWriterLeft) {
  write("work/a.ics", calendarText("a"));
  files.write("cache/calendars.cache.new", std::string(100'000, 'x'));
  answer();
  EXPECT_EQ(answer(), truth());
  EXPECT_EQ(filesRead, 0U);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(cache().parent_path()), {}), 1);
}

TEST_F(CachedCalendarFolderTest, TakesADamagedCacheForNone) {
  for (int number = 0; number < 20; ++number) {
    write("work/" + std::to_string(number) + ".ics", calendarText(std::to_string(number)));
  }
  const auto expected = answer();
  std::string whole;
  {
    std::ifstream file(cache(), std::ios::binary);
    whole.assign(std::istreambuf_iterator<char>(file), {});
  }
  ASSERT_GT(whole.size(), 1000U);
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::string damaged = whole;
    if (round % 3 == 0) {
      damaged.resize(random() % whole.size());
    } else if (round % 3 == 1) {
      damaged[random() % whole.size()] ^= static_cast<char>(1U << random() % 8);
    } else {
      damaged += "more";
    }
    std::ofstream(cache(), std::ios::binary) << damaged;
    EXPECT_EQ(answer(), expected) << round;
    EXPECT_EQ(filesRead, 20U) << round;
  }
}

TEST_F(CachedCalendarFolderTest, LeavesOutOfTheCacheWhatIsTooMuchForAQuery) {
  // Every second of a year: no query follows that to its end.
  write("work/a.ics", calendarText("a", "20260101T000000Z", "RRULE:FREQ=SECONDLY\r\n"));
  write("work/b.ics", calendarText("b"));
  write("home/c.ics", calendarText("c"));
  answer();
  answer();
  EXPECT_EQ(filesRead, 2U) << "the files of that calendar, each time";
  const auto lines = answer();
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](const auto& line) { return line.starts_with("problem"); }), 1);
}

TEST_F(CachedCalendarFolderTest, AnswersLikeAWholeReadingAfterAnyChanges) {
  std::mt19937 random(20261121);
  const auto below = [&](unsigned limit) { return random() % limit; };
  for (int round = 0; round < 150; ++round) {
    for (unsigned change = below(3); change > 0; --change) {
      const std::string name = std::string(below(2) ? "work" : "home") + "/" + std::to_string(below(6)) + ".ics";
      if (below(4) == 0) {
        std::error_code none;
        std::filesystem::remove(root() / name, none);
        continue;
      }
      const std::string uid = "uid" + std::to_string(below(5));
      const std::string day = std::to_string(20260328 + below(3)), hour = std::to_string(10 + below(10));
      const char* const more[] = {"",
                                  "RRULE:FREQ=DAILY\r\n",
                                  "RECURRENCE-ID:20260329T100000Z\r\n",
                                  "STATUS:CANCELLED\r\n",
                                  "RRULE:FREQ=NEVER\r\n",
                                  "DURATION:P2D\r\n"};
      write(name, calendarText(uid, day + "T" + hour + "0000Z", more[below(6)]), 10 + below(100'000));
    }
    const std::string day = below(8) == 0 ? "2026-05-20" : "2026-03-30";
    ASSERT_EQ(answer(day), truth(day)) << round;
  }
}

}  // namespace
}  // namespace hushmode::devices
