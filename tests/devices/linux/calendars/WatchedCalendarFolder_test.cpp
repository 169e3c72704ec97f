// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/calendars/WatchedCalendarFolder.h"

#include "tests/devices/linux/calendars/MainLoop.h"
#include "tests/devices/linux/calendars/TemporaryFolder.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;
namespace fs = std::filesystem;

std::string event(const std::string& title) {
  return "BEGIN:VEVENT\r\nUID:" + title + "\r\nSUMMARY:" + title +
         "\r\nDTSTART:20260330T080000Z\r\nDURATION:PT1H\r\nEND:VEVENT\r\n";
}
std::string calendar(const std::string& title) {
  return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + event(title) + "END:VCALENDAR\r\n";
}

class WatchedCalendarFolderTest : public testing::Test {
 protected:
  void open(const std::string& name = "calendars") {
    source.emplace(folder.path() / name, services, [this](const std::string& line) { lines.push_back(line); });
    source->setChangeHandler([this](const platform::Dictionary&) { ++changes; });
  }
  Texts titles() const {
    Texts list;
    for (const CalendarOccurrence& each :
         source->occurrences(platform::Date(1774828800), platform::Date(1774915200), *TimeZone::utc())) {
      list.push_back(each.details->title.value_or("-"));
    }
    std::sort(list.begin(), list.end());
    return list;
  }
  void waitFor(const Texts& expected) {
    try {
      runMainLoopUntil([&] { return titles() == expected; });
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(titles(), expected) << error.what();
    }
  }
  /// Sees a change made now, which shows that all changes before it have been seen.
  void waitForMarker() {
    folder.replace("calendars/marker.ics", calendar("marker" + std::to_string(++markers)));
    runMainLoopUntil(
        [&] { return source->withUniqueId("marker" + std::to_string(markers), *TimeZone::utc()).has_value(); });
  }

  TemporaryFolder folder;
  Services services;
  Texts lines;
  int changes = 0, markers = 0;
  std::optional<WatchedCalendarFolder> source;
};

TEST_F(WatchedCalendarFolderTest, NoticesEveryWayToChangeAFile) {
  folder.write("calendars/work/a.ics", calendar("a"));
  open();
  EXPECT_EQ(titles(), Texts{"a"});
  folder.write("calendars/work/b.ics", calendar("b"));
  waitFor({"a", "b"});
  folder.write("calendars/work/b.ics", calendar("longer"));
  waitFor({"a", "longer"});
  folder.replace("calendars/work/b.ics", calendar("c"));
  waitFor({"a", "c"});
  folder.write("elsewhere.ics", calendar("d"));
  fs::rename(folder.path() / "elsewhere.ics", folder.path() / "calendars/work/d.ics");
  waitFor({"a", "c", "d"});
  fs::create_hard_link(folder.path() / "calendars/work/d.ics", folder.path() / "linked.ics");
  fs::remove(folder.path() / "calendars/work/d.ics");
  waitFor({"a", "c"});
  fs::create_hard_link(folder.path() / "linked.ics", folder.path() / "calendars/work/e.ics");
  waitFor({"a", "c", "d"});
  fs::rename(folder.path() / "calendars/work/e.ics", folder.path() / "calendars/work/e.txt");
  waitFor({"a", "c"});
  fs::rename(folder.path() / "calendars/work/b.ics", folder.path() / "away.ics");
  waitFor({"a"});
}

TEST_F(WatchedCalendarFolderTest, NoticesFoldersThatComeAndGoAtEveryDepth) {
  fs::create_directories(folder.path() / "calendars");
  open();
  folder.write("calendars/account/work/a.ics", calendar("a"));
  waitFor({"a"});
  folder.write("calendars/account/work/b.ics", calendar("b"));
  waitFor({"a", "b"});
  fs::rename(folder.path() / "calendars/account", folder.path() / "account");
  waitFor({});
  folder.write("account/work/c.ics", calendar("c"));
  fs::rename(folder.path() / "account", folder.path() / "calendars/other");
  waitFor({"a", "b", "c"});
  folder.write("calendars/other/work/d.ics", calendar("d"));
  waitFor({"a", "b", "c", "d"});
  fs::remove_all(folder.path() / "calendars/other");
  waitFor({});
}

TEST_F(WatchedCalendarFolderTest, NoticesARootThatComesLaterAndGoesAndReturns) {
  open("not/yet/calendars");
  EXPECT_FALSE(services.isAvailable(WatchedCalendarFolder::serviceName));
  for (int round = 0; round < 3; ++round) {
    folder.write("not/yet/calendars/work/a.ics", calendar("a"));
    waitFor({"a"});
    EXPECT_TRUE(services.isAvailable(WatchedCalendarFolder::serviceName));
    folder.write("not/yet/calendars/work/b.ics", calendar("b"));
    waitFor({"a", "b"});
    if (round == 1) {
      fs::rename(folder.path() / "not/yet/calendars", folder.path() / "kept");
    } else {
      fs::remove_all(folder.path() / "not");
    }
    waitFor({});
    EXPECT_FALSE(services.isAvailable(WatchedCalendarFolder::serviceName));
  }
  EXPECT_EQ(lines, Texts());
}

TEST_F(WatchedCalendarFolderTest, NoticesAFolderThatIsReplacedAtOnce) {
  for (int round = 0; round < 5; ++round) {
    folder.write("calendars/work/a.ics", calendar("a" + std::to_string(round)));
    if (!source) open();
    waitFor({"a" + std::to_string(round)});
    fs::remove_all(folder.path() / "calendars");
    folder.write("calendars/work/b.ics", calendar("b" + std::to_string(round)));
    waitFor({"b" + std::to_string(round)});
    folder.write("calendars/work/c.ics", calendar("c"));
    waitFor({"b" + std::to_string(round), "c"});
    fs::remove_all(folder.path() / "calendars/work");
  }
}

TEST_F(WatchedCalendarFolderTest, NoticesWhatChangesBehindALink) {
  folder.write("elsewhere/one/a.ics", calendar("a"));
  folder.write("single/b.ics", calendar("b"));
  fs::create_directories(folder.path() / "calendars");
  fs::create_directory_symlink(folder.path() / "elsewhere", folder.path() / "calendars/account");
  fs::create_symlink(folder.path() / "single/b.ics", folder.path() / "calendars/b.ics");
  open();
  EXPECT_EQ(titles(), (Texts{"a", "b"}));
  folder.write("elsewhere/one/c.ics", calendar("c"));
  waitFor({"a", "b", "c"});
  folder.replace("single/b.ics", calendar("new"));
  waitFor({"a", "c", "new"});
}

TEST_F(WatchedCalendarFolderTest, LeavesOutALoopOfLinksAndSaysSoOnce) {
  folder.write("calendars/work/a.ics", calendar("a"));
  fs::create_directory_symlink(folder.path() / "calendars", folder.path() / "calendars/loop");
  fs::create_directory_symlink("self", folder.path() / "calendars/self");
  open();
  EXPECT_EQ(titles(), Texts{"a"});
  waitForMarker();
  waitForMarker();
  EXPECT_EQ(lines.size(), 2U);
}

TEST_F(WatchedCalendarFolderTest, ReadsABurstOnce) {
  fs::create_directories(folder.path() / "calendars/work");
  open();
  Texts expected;
  for (int number = 100; number < 300; ++number) {
    const std::string name = "e" + std::to_string(number);
    folder.write("burst/" + name + ".ics", calendar(name));
    expected.push_back(name);
  }
  for (const std::string& name : expected) {
    fs::rename(folder.path() / "burst" / (name + ".ics"), folder.path() / "calendars/work" / (name + ".ics"));
  }
  waitFor(expected);
  EXPECT_EQ(changes, 1);
}

TEST_F(WatchedCalendarFolderTest, TellsNothingWhereNothingChanged) {
  folder.write("calendars/work/a.ics", calendar("a"));
  open();
  folder.write("calendars/work/notes.txt", "no calendar");
  folder.write("calendars/.hidden/b.ics", calendar("b"));
  folder.write("calendars/work/.c.ics", calendar("c"));
  folder.write("beside.ics", calendar("d"));
  waitForMarker();
  EXPECT_EQ(titles(), (Texts{"a", "marker1"}));
  EXPECT_EQ(changes, 1) << "that of the marker";
}

TEST_F(WatchedCalendarFolderTest, ASlowWriterLosesNothing) {
  folder.write("calendars/work/a.ics", "BEGIN:VCALENDAR\r\n" + event("a") + event("b") + "END:VCALENDAR\r\n");
  open();
  EXPECT_EQ(titles(), (Texts{"a", "b"}));
  {
    std::ofstream slow(folder.path() / "calendars/work/a.ics", std::ios::binary);
    slow << "BEGIN:VCALENDAR\r\n" << event("a") << std::flush;
    waitForMarker();
    EXPECT_EQ(titles(), (Texts{"a", "b", "marker1"}));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NE(lines[0].find("half-written; what it held before is kept"), std::string::npos) << lines[0];
    slow << event("c") << "END:VCALENDAR\r\n";
  }
  waitFor({"a", "c", "marker1"});
  EXPECT_EQ(lines.size(), 1U);
}

TEST_F(WatchedCalendarFolderTest, AChangeOfPermissionsIsAChangeOfTheCalendar) {
  folder.write("calendars/work/a.ics", calendar("a"));
  open();
  EXPECT_TRUE(source->calendars()[0].writable);
  ASSERT_EQ(chmod((folder.path() / "calendars/work").c_str(), 0555), 0);
  runMainLoopUntil([&] { return !source->calendars()[0].writable; });
  ASSERT_EQ(chmod((folder.path() / "calendars/work").c_str(), 0755), 0);
  runMainLoopUntil([&] { return source->calendars()[0].writable; });
}

TEST_F(WatchedCalendarFolderTest, IdentifiersAreTheSameAfterARestart) {
  folder.write("calendars/work/a.ics", calendar("a"));
  open();
  EXPECT_EQ(source->calendars()[0].identifier, "folder:work");
  open();
  EXPECT_EQ(source->calendars()[0].identifier, "folder:work");
  EXPECT_EQ(source->withUniqueId("a", *TimeZone::utc())->details->eventIdentifier, "folder:work:a");
}

TEST_F(WatchedCalendarFolderTest, NothingComesOnceItIsGone) {
  folder.write("calendars/work/a.ics", calendar("a"));
  // Also when a change has been noticed that has not been read yet.
  for (int time = 0; time < 20; time += 2) {
    open();
    folder.write("calendars/work/b.ics", calendar("b" + std::to_string(time)));
    runMainLoopFor(std::chrono::milliseconds(time));
    source.reset();
    const int before = changes;
    runMainLoopFor(std::chrono::milliseconds(60));
    EXPECT_EQ(changes, before);
  }
}

/// How long a person waits for a saved file to count. It is measured rather than checked: machines are loaded.
TEST_F(WatchedCalendarFolderTest, SavedFilesCountSoon) {
  fs::create_directories(folder.path() / "calendars/work");
  open();
  std::vector<double> waits;
  for (int number = 0; number < 30; ++number) {
    const std::string title = "e" + std::to_string(number);
    folder.replace("calendars/work/a.ics", calendar(title));
    const auto saved = std::chrono::steady_clock::now();
    runMainLoopUntil([&] { return changes == number + 1; });
    waits.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - saved).count());
    EXPECT_EQ(titles(), Texts{title});
  }
  std::sort(waits.begin(), waits.end());
  RecordProperty("median_ms", std::to_string(waits[waits.size() / 2]));
  RecordProperty("longest_ms", std::to_string(waits.back()));
  EXPECT_LT(waits[waits.size() / 2], 250);
}

}  // namespace
}  // namespace hushmode::devices
