// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/CalendarInfo.h"
#include "devices/shared/ICalSeries.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace hushmode::devices {

/// The occurrences of the spans that are asked for, remembered: the weeks around a query, from which the queries of the
/// following days are answered, and the days of the last query, from which it is answered again.
class CalendarWindows {
 public:
  struct Occurrence : ICalOccurrence {
    std::size_t calendar;
  };
  /// Appends all occurrences that overlap the span, in no order; false when some are left out for their number.
  using Expand = std::function<bool(std::int64_t from, std::int64_t to, std::vector<Occurrence>&)>;
  using Details = std::function<std::shared_ptr<const platform::EKEventDetails>(const Occurrence&)>;

  CalendarWindows(Expand expand, Details details) : expand_(std::move(expand)), details_(std::move(details)) {}

  /// The occurrences that overlap the span, and perhaps others on the same days, in the order of
  /// `CalendarFolder::occurrences`. Valid until the next call. `zone` names the zone that `expand` works in.
  const std::vector<CalendarOccurrence>& around(std::int64_t from, std::int64_t to, const std::string& zone);

  /// To be called when `expand` may answer differently.
  void forget();

 private:
  template <class Element>
  struct Window {
    std::int64_t from = 0, to = 0;  ///< Nothing is known when they are equal.
    std::vector<Element> occurrences;

    bool covers(std::int64_t first, std::int64_t last) const { return from < to && from <= first && last <= to; }
  };

  std::vector<Occurrence> collect(std::int64_t from, std::int64_t to);
  bool fillWeeks(std::int64_t from, std::int64_t to);

  Expand expand_;
  Details details_;
  std::string zone_;
  Window<Occurrence> weeks_;
  Window<CalendarOccurrence> days_;
  bool weeksAreTooMuch_ = false;  ///< So many occurrences that only those of the days asked for are looked for.
};

}  // namespace hushmode::devices
