// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/TimeZone.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <map>
#include <mutex>
#include <vector>

namespace hushmode::devices {

namespace {

constexpr std::int64_t kDay = 86'400;
/// No zone has ever been further than this from UTC.
constexpr std::int64_t kLargestOffset = 16 * 3600;
/// Instants beyond this are taken for it, so that sums stay inside 64 bits.
constexpr std::int64_t kFarthest = std::int64_t{1} << 61;

/// The instants whose offsets are looked up in a table; the few outside are asked of GLib, which searches linearly. The
/// table is made anew in each process, of which some live for a moment only.
constexpr std::int64_t kTableBegin = 0;            // 1970-01-01
constexpr std::int64_t kTableEnd = 2'240'524'800;  // 2041-01-01

/// A zone as GLib reads it from the system's database, transitions by rule included.
class GlibZone {
 public:
  /// `name` must be known to exist.
  explicit GlibZone(const std::string& name) : zone_(g_time_zone_new_identifier(name.c_str()), g_time_zone_unref) {
    // From the end of its file's table on, GLib (2.74) puts the winter of Dublin, which the file describes as a
    // negative daylight saving, two hours ahead of UTC. Its clock has been that of London since 1971.
    if (name == "Europe/Dublin" || name == "Eire") {
      lateZone_ = {g_time_zone_new_identifier("Europe/London"), g_time_zone_unref};
    }
  }

  explicit operator bool() const { return zone_ != nullptr; }

  /// The time between two transitions that an instant lies in.
  struct Interval {
    GTimeZone* zone;
    int number;
    bool operator==(const Interval&) const = default;
  };
  /// Where two instants lie in the same interval, so do all between them.
  Interval intervalAt(std::int64_t utc) const {
    GTimeZone* zone = lateZone_ && utc >= kLate ? lateZone_.get() : zone_.get();
    return {zone, g_time_zone_find_interval(zone, G_TIME_TYPE_UNIVERSAL, utc)};
  }
  std::int64_t offsetAt(std::int64_t utc) const {
    const Interval interval = intervalAt(utc);
    return g_time_zone_get_offset(interval.zone, interval.number);
  }

 private:
  static constexpr std::int64_t kLate = 2'140'732'800;  // 2037-11-02

  std::shared_ptr<GTimeZone> zone_, lateZone_;
};

/// From `begin` (UTC) until the next span the clock is `offset` seconds ahead of UTC.
struct Span {
  std::int64_t begin;
  std::int64_t offset;
};

/// An instant, and the interval that it lies in.
struct Probe {
  std::int64_t instant;
  GlibZone::Interval interval;
};

/// Appends the spans that begin in (`first`, `last`], found by halving wherever the two ends lie in different
/// intervals.
void appendSpans(const GlibZone& zone, const Probe& first, const Probe& last, std::vector<Span>& spans) {
  if (first.interval == last.interval) return;
  if (last.instant - first.instant == 1) {
    spans.push_back({last.instant, zone.offsetAt(last.instant)});
    return;
  }
  const std::int64_t instant = first.instant + (last.instant - first.instant) / 2;
  const Probe middle{instant, zone.intervalAt(instant)};
  appendSpans(zone, first, middle, spans);
  appendSpans(zone, middle, last, spans);
}

class DatabaseZone : public TimeZone {
 public:
  DatabaseZone(std::string name, GlibZone zone) : name_(std::move(name)), zone_(std::move(zone)) {
    spans_.push_back({kTableBegin, zone_.offsetAt(kTableBegin)});
    appendSpans(zone_, {kTableBegin, zone_.intervalAt(kTableBegin)}, {kTableEnd, zone_.intervalAt(kTableEnd)}, spans_);
  }

  const std::string& name() const override { return name_; }

  std::int64_t offsetAt(std::int64_t utc) const override {
    if (utc < kTableBegin || utc >= kTableEnd) return zone_.offsetAt(std::clamp(utc, -kFarthest, kFarthest));
    const auto next = std::upper_bound(spans_.begin(), spans_.end(), utc,
                                       [](std::int64_t instant, const Span& span) { return instant < span.begin; });
    return std::prev(next)->offset;
  }

  std::int64_t utcFromLocal(std::int64_t localTime) const override {
    const std::int64_t local = std::clamp(localTime, -kFarthest, kFarthest);
    const std::int64_t before = offsetAt(local - kLargestOffset);
    const std::int64_t after = offsetAt(local + kLargestOffset);
    // A jump is near. The offset before it holds until it; where that leaves two answers (the clock was set back) the
    // first is wanted, where it leaves none (set forward) the offset before is wanted too.
    if (before > after) return offsetAt(local - before) == before ? local - before : local - after;
    if (before < after) return offsetAt(local - after) == after ? local - after : local - before;
    return local - before;
  }

  std::int64_t startOfDay(std::int64_t localMidnight) const override {
    const std::int64_t midnight = std::clamp(localMidnight, -kFarthest, kFarthest);
    std::int64_t atOrAfter = utcFromLocal(midnight);
    if (localFromUtc(atOrAfter) == midnight) return atOrAfter;
    // The clock jumped over midnight: the day begins with the jump, somewhere before.
    std::int64_t before = atOrAfter - kDay;
    while (atOrAfter - before > 1) {
      const std::int64_t middle = before + (atOrAfter - before) / 2;
      (localFromUtc(middle) < midnight ? before : atOrAfter) = middle;
    }
    return atOrAfter;
  }

 private:
  std::string name_;
  GlibZone zone_;
  std::vector<Span> spans_;
};

class UtcZone : public TimeZone {
 public:
  const std::string& name() const override { return name_; }
  std::int64_t offsetAt(std::int64_t) const override { return 0; }
  std::int64_t utcFromLocal(std::int64_t local) const override { return local; }
  std::int64_t startOfDay(std::int64_t localMidnight) const override { return localMidnight; }

 private:
  std::string name_ = "UTC";
};

/// Whether the database has a zone of that name. GLib alone would also take offsets, rules and paths for names, and
/// complain on standard error about files that are not zones.
bool isInDatabase(std::string_view name) {
  const auto isNameCharacter = [](char c) {
    return g_ascii_isalnum(c) || c == '_' || c == '+' || c == '-' || c == '/';
  };
  if (name.empty() || !g_ascii_isalpha(name.front()) || !std::all_of(name.begin(), name.end(), isNameCharacter)) {
    return false;
  }
  const char* folder = std::getenv("TZDIR");
  std::ifstream file(std::string(folder ? folder : "/usr/share/zoneinfo") + "/" + std::string(name), std::ios::binary);
  char magic[4] = {};
  return file.read(magic, sizeof magic) && std::string_view(magic, sizeof magic) == "TZif";
}

}  // namespace

std::shared_ptr<const TimeZone> TimeZone::utc() {
  static const std::shared_ptr<const TimeZone> zone = std::make_shared<UtcZone>();
  return zone;
}

std::shared_ptr<const TimeZone> TimeZone::named(std::string_view name) {
  if (name == "UTC") return utc();

  static std::mutex mutex;
  static std::map<std::string, std::shared_ptr<const TimeZone>, std::less<>> zones;
  const std::lock_guard lock(mutex);
  if (const auto known = zones.find(name); known != zones.end()) return known->second;
  if (!isInDatabase(name)) return nullptr;
  GlibZone zone{std::string(name)};
  if (!zone) return nullptr;
  return zones.emplace(name, std::make_shared<DatabaseZone>(std::string(name), std::move(zone))).first->second;
}

}  // namespace hushmode::devices
