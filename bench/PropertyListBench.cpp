// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListCodec.h"
#include "devices/shared/PropertyListFile.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using namespace hushmode;
using namespace hushmode::devices;
using platform::Array;
using platform::Date;
using platform::Dictionary;

/// A dictionary of 23 keys: 2 arrays, 3 reals, texts, booleans, integers, a date.
Dictionary profile(int number) {
  const std::string name = "Profile number " + std::to_string(number);
  return Dictionary{
      {"identifier", "6F9619FF-8B86-D011-B42D-00CF4FC964FF"},
      {"title", name + " <& friends>"},
      {"enabled", number % 2 == 0},
      {"allDay", false},
      {"startTime", "8:00 AM"},
      {"endTime", "5:00 PM"},
      {"calendars", Array{"Home", "Work", "8D8AC610-566D-4EF0-9C22-186B2A5ED793"}},
      {"networks", Array{"office-" + std::to_string(number), "caf\u00e9"}},
      {"ringerVolume", 0.3125 + number / 7.0},
      {"mediaVolume", 0.1},
      {"brightness", 1.0 / 3},
      {"silent", true},
      {"vibrate", true},
      {"vibrateOnRing", false},
      {"hideIcon", false},
      {"doNotDisturb", true},
      {"eventStatus", number % 4},
      {"priority", number},
      {"tone", "system:note"},
      {"message", "Quiet until the meeting is over"},
      {"createdDate", Date(1'715'677'200.0 + number)},
      {"alerts", true},
      {"order", number},
  };
}

Array profiles() {
  Array list;
  for (int i = 0; i < 1000; ++i) list.push_back(profile(i));
  return list;
}

/// A file name in a new folder that goes with it.
class ScratchFile {
 public:
  ScratchFile() {
    std::string folder = (std::filesystem::temp_directory_path() / "property-list-bench-XXXXXX").string();
    folder_ = mkdtemp(folder.data());
  }
  ~ScratchFile() { std::filesystem::remove_all(folder_); }
  std::string path() const { return folder_ / "profiles.plist"; }

 private:
  std::filesystem::path folder_;
};

/// File bytes to value, as at each start.
void loadThousandProfiles(benchmark::State& state) {
  const ScratchFile scratch;
  PropertyListFile file(scratch.path());
  if (const auto failure = file.write(profiles())) state.SkipWithError(failure->c_str());
  for (auto _ : state) benchmark::DoNotOptimize(file.read());
  state.SetBytesProcessed(static_cast<std::int64_t>(std::filesystem::file_size(scratch.path())) * state.iterations());
}
BENCHMARK(loadThousandProfiles)->Unit(benchmark::kMillisecond);

/// Value to file, but for what the disk takes to sync.
void saveThousandProfiles(benchmark::State& state) {
  struct : FileCalls {
    int fsync(int) override { return 0; }
  } withoutSync;
  const ScratchFile scratch;
  PropertyListFile file(scratch.path(), withoutSync);
  const platform::Value list = profiles();
  for (auto _ : state) {
    if (const auto failure = file.write(list)) state.SkipWithError(failure->c_str());
  }
}
BENCHMARK(saveThousandProfiles)->Unit(benchmark::kMillisecond);

}  // namespace
