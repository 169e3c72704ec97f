// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarFolder.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <libical/ical.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// How fast calendars open and answer. With --ratios: opening compared with nothing but libical's parsing of the same
// files, and the most memory that was in use.

namespace {

namespace fs = std::filesystem;
using hushmode::devices::CalendarFolder;
using hushmode::devices::TimeZone;
using hushmode::platform::Date;

constexpr double kDay = 86'400;
constexpr double kToday = 1'774'828'800;  // 2026-03-30 00:00 UTC

constexpr const char* kBegin =
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//Calendar//EN\r\n"
    "BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\n"
    "BEGIN:DAYLIGHT\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\nTZNAME:CEST\r\nDTSTART:19700329T020000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:DAYLIGHT\r\n"
    "BEGIN:STANDARD\r\nTZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nTZNAME:CET\r\nDTSTART:19701025T030000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";
constexpr const char* kEnd = "END:VCALENDAR\r\n";

/// An event of an ordinary calendar, spread over the years around today. One in ten repeats; of those, one in five by
/// a COUNT.
std::string eventText(int number) {
  const int month = number % 12 + 1, day = number / 12 % 28 + 1, hour = number % 9 + 8, year = 2018 + number / 336 % 12;
  char text[1024];
  const char* rule = number % 50 == 0   ? "RRULE:FREQ=DAILY;COUNT=30\r\n"
                     : number % 10 == 0 ? "RRULE:FREQ=WEEKLY;INTERVAL=2\r\n"
                                        : "";
  std::snprintf(text, sizeof text,
                "BEGIN:VEVENT\r\nUID:%08d-5d4c-6843-9300-4f918d8e6094@example.org\r\nDTSTAMP:20260101T000000Z\r\n"
                "CREATED:20260101T000000Z\r\nSUMMARY:Meeting number %d\r\n"
                "DTSTART;TZID=Europe/Berlin:%04d%02d%02dT%02d0000\r\nDTEND;TZID=Europe/Berlin:%04d%02d%02dT%02d3000\r\n"
                "%sSTATUS:CONFIRMED\r\nTRANSP:OPAQUE\r\nEND:VEVENT\r\n",
                number, number, year, month, day, hour, year, month, day, hour, rule);
  return text;
}

void write(const fs::path& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
}

/// A folder of calendars that is removed at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "hushmode-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
    path_ = pattern;
    fs::create_directory(calendar());
  }
  ~TemporaryFolder() { fs::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const fs::path& path() const { return path_; }
  fs::path calendar() const { return path_ / "calendar"; }

  void addOneFileEach(int events) const {
    for (int number = 0; number < events; ++number) {
      write(calendar() / (std::to_string(number) + ".ics"), kBegin + eventText(number) + kEnd);
    }
  }
  void addInOneFile(int events) const {
    std::string text = kBegin;
    for (int number = 0; number < events; ++number) text += eventText(number);
    write(calendar() / "all.ics", text + kEnd);
  }

 private:
  fs::path path_;
};

/// Nothing but reading and parsing the files, and freeing what was parsed.
std::size_t parseOnly(const fs::path& folder) {
  std::size_t events = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    std::string text(entry.file_size(), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    icalcomponent* component = icalparser_parse_string(text.c_str());
    events += static_cast<std::size_t>(icalcomponent_count_components(component, ICAL_VEVENT_COMPONENT));
    icalcomponent_free(component);
  }
  return events;
}

double secondsOf(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Runs the work in a process of its own: its time, and the most memory it used in megabytes.
struct Measured {
  double seconds, megabytes;
};
Measured measuredApart(const std::function<double()>& work) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe can be made");
  const pid_t child = fork();
  if (child == 0) {
    const double seconds = work();
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const Measured measured{seconds, static_cast<double>(usage.ru_maxrss) / 1024};
    _exit(::write(ends[1], &measured, sizeof measured) == sizeof measured ? 0 : 1);
  }
  Measured measured{};
  if (read(ends[0], &measured, sizeof measured) != sizeof measured) throw std::runtime_error("the measurement failed");
  waitpid(child, nullptr, 0);
  close(ends[0]);
  close(ends[1]);
  return measured;
}

void printRatio(const char* title, const TemporaryFolder& folder) {
  Measured parsing{1e9, 0}, opening{1e9, 0};
  // The best of three: what else the machine does only adds.
  for (int round = 0; round < 3; ++round) {
    const Measured parse = measuredApart([&] { return secondsOf([&] { parseOnly(folder.calendar()); }); });
    const Measured open = measuredApart([&] {
      CalendarFolder calendars(folder.path());
      return secondsOf([&] { calendars.rescan(); });
    });
    parsing = {std::min(parsing.seconds, parse.seconds), std::max(parsing.megabytes, parse.megabytes)};
    opening = {std::min(opening.seconds, open.seconds), std::max(opening.megabytes, open.megabytes)};
  }
  std::printf("%-32s parsing %6.3f s %5.0f MB   opening %6.3f s %5.0f MB   ratio %.2f\n", title, parsing.seconds,
              parsing.megabytes, opening.seconds, opening.megabytes, opening.seconds / parsing.seconds);
}

int printRatios() {
  {
    const TemporaryFolder folder;
    folder.addOneFileEach(10'000);
    printRatio("10,000 events in 10,000 files", folder);
  }
  {
    const TemporaryFolder folder;
    folder.addInOneFile(100'000);
    printRatio("100,000 events in one file", folder);
  }
  return 0;
}

enum Form { OneFileEach, InOneFile };

/// A folder with `state.range(0)` events in the form `state.range(1)`, opened.
class Opened : public benchmark::Fixture {
 public:
  void SetUp(const benchmark::State& state) override {
    files = std::make_unique<TemporaryFolder>();
    const int events = static_cast<int>(state.range(0));
    state.range(1) == OneFileEach ? files->addOneFileEach(events) : files->addInOneFile(events);
    zone = TimeZone::named("Europe/Berlin");
    calendars = std::make_unique<CalendarFolder>(files->path());
    calendars->rescan();
  }
  void TearDown(const benchmark::State&) override {
    calendars.reset();
    files.reset();
  }

  std::unique_ptr<TemporaryFolder> files;
  std::unique_ptr<CalendarFolder> calendars;
  std::shared_ptr<const TimeZone> zone;
};

BENCHMARK_DEFINE_F(Opened, SameDayAgain)(benchmark::State& state) {
  std::size_t events = 0;
  for (auto _ : state) events = calendars->occurrences(Date(kToday), Date(kToday + kDay - 1), *zone).size();
  state.counters["events"] = static_cast<double>(events);
}

BENCHMARK_DEFINE_F(Opened, AnotherDayOfTheSameWeeks)(benchmark::State& state) {
  double day = 0;
  calendars->occurrences(Date(kToday), Date(kToday + kDay - 1), *zone);
  for (auto _ : state) {
    day = day < 20 ? day + 1 : 1;
    const double begin = kToday + day * kDay;
    benchmark::DoNotOptimize(calendars->occurrences(Date(begin), Date(begin + kDay - 1), *zone));
  }
}

BENCHMARK_DEFINE_F(Opened, DayOfAnotherYear)(benchmark::State& state) {
  double year = 0;
  for (auto _ : state) {
    year = year < 5 ? year + 1 : -5;
    const double begin = kToday + year * 365 * kDay;
    benchmark::DoNotOptimize(calendars->occurrences(Date(begin), Date(begin + kDay - 1), *zone));
  }
}

BENCHMARK_DEFINE_F(Opened, RescanOfNothingNew)(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(calendars->rescan());
}

BENCHMARK_DEFINE_F(Opened, RescanOfOneChangedFile)(benchmark::State& state) {
  int edits = 0;
  for (auto _ : state) {
    state.PauseTiming();
    write(files->calendar() / "edited.ics", kBegin + eventText(++edits) + kEnd);
    state.ResumeTiming();
    benchmark::DoNotOptimize(calendars->rescan());
  }
}

constexpr int kFew = 10'000, kMany = 100'000;
BENCHMARK_REGISTER_F(Opened, SameDayAgain)->Args({kFew, OneFileEach})->Args({kMany, InOneFile});
BENCHMARK_REGISTER_F(Opened, AnotherDayOfTheSameWeeks)->Args({kFew, OneFileEach})->Args({kMany, InOneFile});
BENCHMARK_REGISTER_F(Opened, DayOfAnotherYear)
    ->Args({kFew, OneFileEach})
    ->Args({kMany, InOneFile})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_REGISTER_F(Opened, RescanOfNothingNew)->Args({kFew, OneFileEach})->Unit(benchmark::kMillisecond);
BENCHMARK_REGISTER_F(Opened, RescanOfOneChangedFile)->Args({kFew, OneFileEach})->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--ratios") == 0) return printRatios();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
}
