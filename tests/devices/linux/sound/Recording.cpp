// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/devices/linux/sound/Recording.h"

#include "tests/devices/linux/sound/SoundTest.h"

#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <vector>

namespace hushmode::devices {

namespace {

constexpr int samplesPerSecond = 44'100;
constexpr std::size_t window = samplesPerSecond / 50;
constexpr double silence = 300;  // Of 32,767; tones reach 5,000 to 12,000.

std::vector<std::int16_t> samplesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  std::vector<std::int16_t> samples(static_cast<std::size_t>(file.tellg()) / sizeof(std::int16_t));
  file.seekg(0);
  file.read(reinterpret_cast<char*>(samples.data()),
            static_cast<std::streamsize>(samples.size() * sizeof(std::int16_t)));
  return samples;
}

}  // namespace

Recording::Recording() : path_(std::string(std::getenv("HUSHMODE_SESSION_FOLDER")) + "/recording.raw") {
  std::remove(path_.c_str());
  // Without the option, the recording of a null sink's monitor is silence.
  process_ =
      start({"sh", "-c",
             "exec parec --latency-msec=20 -d spk.monitor --format=s16le --rate=44100 --channels=1 --raw >" + path_});
  EXPECT_TRUE(runUntil([this] { return std::ifstream(path_).good() && seconds() > 0; }));
}

Recording::~Recording() { endProcess(process_, SIGTERM); }

double Recording::seconds() const { return static_cast<double>(samplesOf(path_).size()) / samplesPerSecond; }

double Recording::loudSeconds(double from) const {
  const std::vector<std::int16_t> samples = samplesOf(path_);
  std::size_t loud = 0;
  for (auto begin = static_cast<std::size_t>(from * samplesPerSecond); begin + window <= samples.size();
       begin += window) {
    double energy = 0;
    for (std::size_t i = begin; i < begin + window; ++i) energy += static_cast<double>(samples[i]) * samples[i];
    if (std::sqrt(energy / window) > silence) ++loud;
  }
  return static_cast<double>(loud * window) / samplesPerSecond;
}

}  // namespace hushmode::devices
