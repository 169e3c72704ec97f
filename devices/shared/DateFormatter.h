// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/shared/TimeZone.h"
#include "platform/Foundation.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace hushmode::devices {

/// A date formatter in English for the patterns that programs use: y, M, d, E, H, h, m, s, S and a of Unicode Technical
/// Standard #35, quoted texts, and everything that is not a letter. Other letters stand as they are.
class DateFormatter final : public platform::NSDateFormatter {
 public:
  /// `zone` answers the local zone at the moment of each call.
  explicit DateFormatter(std::function<std::shared_ptr<const TimeZone>()> zone) : zone_(std::move(zone)) {}

  void setDateFormat(std::optional<std::string> pattern) override { pattern_ = std::move(pattern); }
  std::optional<std::string> dateFormat() const override { return pattern_; }
  std::string stringFromDate(platform::Date date) const override;

 private:
  std::function<std::shared_ptr<const TimeZone>()> zone_;
  std::optional<std::string> pattern_;
};

}  // namespace hushmode::devices
