// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarFolder.h"

#include "tests/devices/shared/CalendarSamples.h"

#include <algorithm>
#include <sys/stat.h>
#include <utime.h>

namespace hushmode::devices {
namespace {

using namespace samples;
using platform::Date;

class CalendarFolderTest : public testing::Test {
 protected:
  /// "identifier: title (account)", with "read-only" where it is.
  std::vector<std::string> calendarLines() {
    std::vector<std::string> lines;
    for (const CalendarInfo& info : folder.calendars()) {
      lines.push_back(info.identifier + ": " + info.title + " (" + info.accountTitle + ")" +
                      (info.writable ? "" : " read-only"));
    }
    return lines;
  }
  /// Titles of the occurrences of 2026-03-30, in the order of the answer.
  std::vector<std::string> titles() {
    std::vector<std::string> titles;
    for (const CalendarOccurrence& occurrence :
         folder.occurrences(instant("2026-03-30", *utc), instant("2026-03-31", *utc), *utc)) {
      titles.push_back(occurrence.details->title.value_or("(no title)"));
    }
    return titles;
  }
  std::string rootName() const { return files.path().filename().string(); }

  TemporaryFolder files;
  std::vector<std::string> diagnostics;
  std::shared_ptr<const TimeZone> utc = TimeZone::utc();
  CalendarFolder folder{files.path(), [this](const std::string& line) { diagnostics.push_back(line); }};
};

TEST_F(CalendarFolderTest, FindsCalendarsInTheRootInAccountsAndInSingleFiles) {
  files.write("home/a.ics", calendarText("a"));
  files.write("Personal/meetings/b.ics", calendarText("b"));
  files.write("Personal/shared.ics", calendarText("c"));
  files.write("holidays.ics", calendarText("d"));
  files.write("notes/readme.txt", "not a calendar");
  files.write(".hidden/e.ics", calendarText("e"));
  files.write("home/.tmp.ics", calendarText("f"));
  files.write("home/g.ics.tmp", calendarText("g"));
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(calendarLines(), (std::vector<std::string>{
                                 "Personal/meetings: meetings (Personal)", "Personal/shared.ics: shared (Personal)",
                                 "holidays.ics: holidays (" + rootName() + ")", "home: home (" + rootName() + ")"}));
  EXPECT_EQ(titles(), (std::vector<std::string>{"b", "c", "d", "a"}));
  EXPECT_EQ(diagnostics, std::vector<std::string>());
}

TEST_F(CalendarFolderTest, NamesACalendarByItsDisplayNameThenByItsFilesThenByItsFolder) {
  files.write("a/displayname", " Work\n");
  files.write("a/x.ics", "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Not this\r\nEND:VCALENDAR\r\n");
  files.write("b/1.ics", calendarText("1"));
  files.write("b/2.ics", "BEGIN:VCALENDAR\r\nX-WR-CALNAME;VALUE=TEXT:Sports\\, and more\r\nEND:VCALENDAR\r\n");
  files.write("empty/displayname", "Nothing yet");
  folder.rescan();
  const std::string root = " (" + rootName() + ")";
  EXPECT_EQ(calendarLines(),
            (std::vector<std::string>{"a: Work" + root, "b: Sports, and more" + root, "empty: Nothing yet" + root}));
}

TEST_F(CalendarFolderTest, TakesWhatHasNoWritePermissionForReadOnly) {
  files.write("a/1.ics", calendarText("1"));
  files.write("b.ics", calendarText("2"));
  ASSERT_EQ(chmod((files.path() / "a").c_str(), 0555), 0);
  ASSERT_EQ(chmod((files.path() / "b.ics").c_str(), 0444), 0);
  folder.rescan();
  const std::string root = " (" + rootName() + ")";
  EXPECT_EQ(calendarLines(),
            (std::vector<std::string>{"a: a" + root + " read-only", "b.ics: b" + root + " read-only"}));
  EXPECT_FALSE(folder.calendars()[0].calendar->allowsContentModifications());
  ASSERT_EQ(chmod((files.path() / "a").c_str(), 0755), 0);
  EXPECT_TRUE(folder.rescan());
  EXPECT_TRUE(folder.calendars()[0].calendar->allowsContentModifications());
}

TEST_F(CalendarFolderTest, IsEmptyWithoutItsRoot) {
  CalendarFolder missing(files.path() / "nowhere", [&](const std::string& line) { diagnostics.push_back(line); });
  EXPECT_FALSE(missing.rescan());
  EXPECT_TRUE(missing.calendars().empty());
  EXPECT_TRUE(diagnostics.empty());
}

TEST_F(CalendarFolderTest, LeavesOutLoopsOfLinksAndSaysSoOnce) {
  files.write("a/1.ics", calendarText("1"));
  std::filesystem::create_directory_symlink(files.path(), files.path() / "up");
  std::filesystem::create_symlink("self.ics", files.path() / "self.ics");
  std::filesystem::create_symlink("nowhere", files.path() / "dangling.ics");
  folder.rescan();
  EXPECT_EQ(folder.calendars().size(), 1U);
  EXPECT_EQ(diagnostics.size(), 2U);
  EXPECT_FALSE(folder.rescan());
  EXPECT_EQ(diagnostics.size(), 2U);
}

TEST_F(CalendarFolderTest, ReadsWhatChangedAndDropsWhatIsGone) {
  files.write("a/1.ics", calendarText("one"));
  files.write("a/2.ics", calendarText("two"));
  EXPECT_TRUE(folder.rescan());
  EXPECT_FALSE(folder.rescan());
  const auto before = folder.occurrences(instant("2026-03-30", *utc), instant("2026-03-31", *utc), *utc);

  // Another size tells of the change, whatever the clock of the file system.
  files.write("a/2.ics", calendarText("second"));
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), (std::vector<std::string>{"one", "second"}));
  std::filesystem::remove(files.path() / "a/1.ics");
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), (std::vector<std::string>{"second"}));
  std::filesystem::remove_all(files.path() / "a");
  EXPECT_TRUE(folder.rescan());
  EXPECT_TRUE(folder.calendars().empty());
  EXPECT_EQ(titles(), std::vector<std::string>());

  // What was answered before stays as it was.
  ASSERT_EQ(before.size(), 2U);
  EXPECT_EQ(before[1].details->title, "two");
  EXPECT_EQ(before[1].details->calendar->calendarIdentifier(), "a");
}

TEST_F(CalendarFolderTest, NoticesAReplacementOfTheSameSizeAndTime) {
  files.write("a/1.ics", calendarText("one"));
  files.write("a/1.new", calendarText("two"));
  const auto modified = std::filesystem::last_write_time(files.path() / "a/1.ics");
  folder.rescan();
  std::filesystem::last_write_time(files.path() / "a/1.new", modified);
  std::filesystem::rename(files.path() / "a/1.new", files.path() / "a/1.ics");
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), (std::vector<std::string>{"two"}));
}

TEST_F(CalendarFolderTest, KeepsAnObjectForACalendarUntilItsPropertiesChange) {
  files.write("a/1.ics", calendarText("one"));
  folder.rescan();
  const auto calendar = folder.calendars()[0].calendar;
  files.write("a/2.ics", calendarText("two"));
  folder.rescan();
  EXPECT_EQ(folder.calendars()[0].calendar, calendar);
  files.write("a/displayname", "Renamed");
  EXPECT_TRUE(folder.rescan());
  EXPECT_NE(folder.calendars()[0].calendar, calendar);
  const auto found = folder.withUniqueId("one", *utc);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->details->calendar->title(), "Renamed");
  EXPECT_EQ(found->details->calendar->source()->title(), rootName());
}

TEST_F(CalendarFolderTest, AnswersForTheCalendarsThatAreAskedFor) {
  files.write("a/1.ics", calendarText("one"));
  files.write("b/2.ics", calendarText("two"));
  folder.rescan();
  const auto ask = [&](const std::vector<std::string>& identifiers) {
    return texts(folder.occurrences(instant("2026-03-30", *utc), instant("2026-03-31", *utc), *utc, identifiers), *utc)
        .size();
  };
  EXPECT_EQ(ask({"a"}), 1U);
  EXPECT_EQ(ask({"b", "a"}), 2U);
  EXPECT_EQ(ask({}), 0U);
  EXPECT_EQ(ask({"c"}), 0U);
}

TEST_F(CalendarFolderTest, OrdersByStartEndCalendarAndUid) {
  const std::string hour = "DURATION:PT1H\r\n";
  files.write("b/1.ics", calendarText("y", "20260330T080000Z", hour) + calendarText("x", "20260330T080000Z", hour));
  files.write("a/1.ics", calendarText("z", "20260330T080000Z", hour) +
                             calendarText("long", "20260330T080000Z", "DURATION:PT2H\r\n") +
                             calendarText("early", "20260330T070000Z", "DURATION:PT5H\r\n"));
  folder.rescan();
  EXPECT_EQ(titles(), (std::vector<std::string>{"early", "z", "x", "y", "long"}));
}

TEST_F(CalendarFolderTest, FindsEntriesByTheirKeys) {
  files.write("a/1.ics", calendarText("weekly", "20260302T080000Z", "RRULE:FREQ=WEEKLY\r\n"));
  files.write("b/1.ics",
              calendarText("weekly", "20260305T080000Z") +
                  calendarText("rare", "20260302T080000Z", "RRULE:FREQ=YEARLY\r\nEXDATE:20260302T080000Z\r\n"));
  folder.rescan();
  const auto startOf = [&](const std::optional<CalendarOccurrence>& found) {
    return found ? localText(found->start, *utc) : "none";
  };
  EXPECT_EQ(startOf(folder.withUniqueId("weekly", *utc)), "2026-03-02 08:00");
  EXPECT_EQ(startOf(folder.withUUID("weekly", *utc)), "2026-03-02 08:00");
  EXPECT_EQ(startOf(folder.withIdentifier("b:weekly", *utc)), "2026-03-05 08:00");
  EXPECT_EQ(startOf(folder.withUniqueId("rare", *utc)), "2027-03-02 08:00");
  EXPECT_EQ(startOf(folder.withUniqueId("weekly", instant("2026-03-16 08:00", *utc), *utc)), "2026-03-16 08:00");
  EXPECT_EQ(startOf(folder.withUniqueId("weekly", instant("2026-03-16 08:01", *utc), *utc)), "none");
  EXPECT_EQ(startOf(folder.withUniqueId("weekly", instant("2026-03-05 08:00", *utc), *utc)), "2026-03-05 08:00");
  EXPECT_EQ(startOf(folder.withUniqueId("unknown", *utc)), "none");
  EXPECT_EQ(startOf(folder.withIdentifier("weekly", *utc)), "none");
  EXPECT_EQ(startOf(folder.withUUID("", *utc)), "none");
}

TEST_F(CalendarFolderTest, SharesDetailsBetweenTheOccurrencesOfAnEntry) {
  files.write("a/1.ics", calendarText("daily", "20260302T080000Z", "RRULE:FREQ=DAILY\r\nSTATUS:TENTATIVE\r\n"));
  folder.rescan();
  const auto occurrences = folder.occurrences(instant("2026-03-30", *utc), instant("2026-04-01", *utc), *utc);
  ASSERT_EQ(occurrences.size(), 2U);
  EXPECT_EQ(occurrences[0].details, occurrences[1].details);
  EXPECT_EQ(occurrences[0].details->UUID, "daily");
  EXPECT_EQ(occurrences[0].details->uniqueId, "daily");
  EXPECT_EQ(occurrences[0].details->eventIdentifier, "a:daily");
  EXPECT_EQ(occurrences[0].details->calendar, folder.calendars()[0].calendar);
}

TEST_F(CalendarFolderTest, AnswersAnewInAnotherZone) {
  files.write("a/1.ics", calendarText("floating", "20260330T080000"));
  folder.rescan();
  for (const char* name : {"Europe/Berlin", "Asia/Tokyo", "UTC", "Europe/Berlin"}) {
    const auto local = zone(name);
    EXPECT_EQ(texts(folder.occurrences(instant("2026-03-30", *local), instant("2026-03-31", *local), *local), *local),
              (std::vector<std::string>{"2026-03-30 08:00 to 2026-03-30 08:00 floating"}));
  }
}

TEST_F(CalendarFolderTest, TakesAnySpan) {
  files.write("a/1.ics", calendarText("daily", "20260302T080000Z", "DURATION:PT1H\r\nRRULE:FREQ=DAILY\r\n"));
  folder.rescan();
  const double start = instant("2026-03-30 08:00", *utc).secondsSince1970();
  const auto count = [&](double from, double to) { return folder.occurrences(Date(from), Date(to), *utc).size(); };
  EXPECT_EQ(count(start + 3599.5, start + 3600), 1U);
  EXPECT_EQ(count(start + 3600, start + 3601), 0U);
  EXPECT_EQ(count(start - 1, start + 0.5), 1U);
  EXPECT_EQ(count(start - 1, start), 0U);
  EXPECT_EQ(count(start + 1, start), 0U);
  EXPECT_EQ(count(start, start + 40 * 86'400), 40U);
  // Four years at most, here the first four from the beginning of the calendar.
  EXPECT_EQ(count(start, 1e300), 4U * 365 + 1);
  EXPECT_EQ(count(-1e300, 1e300), 0U);
  EXPECT_EQ(count(std::numeric_limits<double>::quiet_NaN(), start), 0U);
}

TEST_F(CalendarFolderTest, NamesFileAndLineOfWhatItLeavesOut) {
  files.write("a/1.ics", calendarText("good") + "BEGIN:VEVENT\r\nUID:bad\r\nEND:VEVENT\r\n");
  files.write("a/2.ics", "");
  files.write("a/3.ics", std::string("\0\xFF\x01 noise", 9));
  folder.rescan();
  ASSERT_EQ(diagnostics.size(), 1U);
  EXPECT_EQ(diagnostics[0], (files.path() / "a/1.ics").string() +
                                ":8: the event has no DTSTART that can be understood and is left out");
  EXPECT_EQ(titles(), (std::vector<std::string>{"good"}));
  EXPECT_FALSE(folder.rescan());
  EXPECT_EQ(diagnostics.size(), 1U);
}

TEST_F(CalendarFolderTest, LeavesOutFilesThatAreTooLarge) {
  files.write("a/1.ics", calendarText("good"));
  files.write("a/huge.ics", "BEGIN:VCALENDAR\r\n");
  std::filesystem::resize_file(files.path() / "a/huge.ics", 100U << 20);
  folder.rescan();
  ASSERT_EQ(diagnostics.size(), 1U);
  EXPECT_NE(diagnostics[0].find("huge.ics: has 104857600 bytes and is left out: at most 67108864"), std::string::npos)
      << diagnostics[0];
  EXPECT_EQ(titles(), (std::vector<std::string>{"good"}));
}

TEST_F(CalendarFolderTest, KeepsWhatAFileHeldWhileItIsHalfWritten) {
  const std::string end = "END:VCALENDAR\r\n", two = calendarText("two");
  std::string whole = calendarText("one");
  whole.replace(whole.find(end), end.size(), two.substr(two.find("BEGIN:VEVENT")));
  files.write("a/1.ics", whole);
  folder.rescan();
  const std::vector<std::string> both{"one", "two"};
  EXPECT_EQ(titles(), both);
  for (const std::size_t length : {std::size_t{0}, std::size_t{20}, whole.size() / 2, whole.size() - 4}) {
    files.write("a/1.ics", whole.substr(0, length));
    EXPECT_FALSE(folder.rescan()) << length;
    EXPECT_EQ(titles(), both) << length;
  }
  ASSERT_EQ(diagnostics.size(), 1U) << "one line, until it can be read again";
  EXPECT_EQ(diagnostics[0], (files.path() / "a/1.ics").string() +
                                ": is not a whole calendar, but perhaps half-written; what it held before is kept");
  files.write("a/1.ics", calendarText("three"));
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), std::vector<std::string>{"three"});
  files.write("a/1.ics", "");
  folder.rescan();
  EXPECT_EQ(diagnostics.size(), 2U);
}

TEST_F(CalendarFolderTest, TakesWhatIsThereOfAFileThatNeverWasWhole) {
  const std::string whole = calendarText("one") + calendarText("two") + calendarText("three");
  files.write("a/1.ics", whole.substr(0, calendarText("one").size() + calendarText("two").size() - 5));
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), (std::vector<std::string>{"one", "two"}));
  files.write("a/1.ics", whole.substr(0, whole.size() - 5));
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), (std::vector<std::string>{"one", "three", "two"}));
}

TEST_F(CalendarFolderTest, KeepsWhatAFileHeldWhileItCannotBeRead) {
  files.write("a/1.ics", calendarText("one"));
  folder.rescan();
  // Too large, since the tests' user may read whatever has no permissions.
  std::filesystem::resize_file(files.path() / "a/1.ics", 100U << 20);
  EXPECT_FALSE(folder.rescan());
  EXPECT_FALSE(folder.rescan());
  EXPECT_EQ(titles(), std::vector<std::string>{"one"});
  ASSERT_EQ(diagnostics.size(), 1U);
  EXPECT_TRUE(diagnostics[0].ends_with("; what it held before is kept")) << diagnostics[0];
  files.write("a/1.ics", calendarText("two"));
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), std::vector<std::string>{"two"});
  std::filesystem::remove(files.path() / "a/1.ics");
  EXPECT_TRUE(folder.rescan());
  EXPECT_EQ(titles(), std::vector<std::string>()) << "a file that is gone has gone";
}

TEST_F(CalendarFolderTest, PutsAPrefixBeforeItsIdentifiers) {
  files.write("a/1.ics", calendarText("one"));
  CalendarFolder prefixed(files.path(), {}, "files:");
  prefixed.rescan();
  ASSERT_EQ(prefixed.calendars().size(), 1U);
  EXPECT_EQ(prefixed.calendars()[0].calendar->calendarIdentifier(), "files:a");
  const auto found = prefixed.withIdentifier("files:a:one", *utc);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->details->eventIdentifier, "files:a:one");
  EXPECT_FALSE(prefixed.rescan());
}

}  // namespace
}  // namespace hushmode::devices
