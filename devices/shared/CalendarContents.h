#pragma once

#include "devices/shared/CalendarLayout.h"
#include "devices/shared/CalendarSpans.h"
#include "devices/shared/ICalSeries.h"
#include "devices/shared/ICalZones.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// What the files of one calendar hold, kept up with them.
class CalendarContents {
 public:
  using Report = std::function<void(const std::string&)>;

  /// Reads the files that are new or changed and drops those that are gone. Answers whether anything changed.
  bool update(const std::vector<CalendarPlace::File>& files, ICalZones& zones, const Report& report);

  /// X-WR-CALNAME of the first file that has one; empty when none has.
  const std::string& name() const;

  /// Appends the occurrences that overlap the span, in no order. When a file has too much to expand, what it has too
  /// much of is left out, and the answer is false.
  bool expand(std::int64_t from, std::int64_t to, const TimeZone& local, std::vector<ICalOccurrence>& occurrences);
  /// Says in one line for each file of which something was left out, once per content of the file.
  void reportCuts(const Report& report);

  /// The series with this UID, null when there is none.
  const ICalSeries* find(std::string_view uid) const;
  /// Lets go of what the occurrences of entries share, so that it is made anew.
  void forgetDetails();

  /// What may be expanded of one file in one query: some 50 to 100 ms of work.
  static constexpr std::int64_t kWorkPerFile = 4'000'000;
  /// Files larger than this are not read.
  static constexpr std::uint64_t kLargestFile = 64U << 20;

 private:
  struct File {
    CalendarPlace::File place;
    ICalFile content;
    WorkBudget budget{kWorkPerFile};
    bool cut = false, cutReported = false;
  };
  struct Member {
    ICalSeries series;
    File* file;
  };

  void arrange();

  std::vector<std::unique_ptr<File>> files_;  ///< Ordered by path.
  std::vector<Member> members_;               ///< Ordered by hash of the UID, then by UID.
  CalendarSpans spans_;                       ///< Of the members.
};

}  // namespace hushmode::devices
