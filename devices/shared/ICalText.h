// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace hushmode::devices {

/// Takes what is wrong at `place`, a view into the text that is being read.
using ICalProblem = std::function<void(std::string_view place, const std::string& what)>;

/// One VCALENDAR of a text, cut into its parts. The views are into the text and include the BEGIN and END lines.
struct ICalObject {
  std::string name;          ///< X-WR-CALNAME
  std::string timeZoneName;  ///< X-WR-TIMEZONE
  std::vector<std::string_view> timeZones, events;
};

struct ICalObjects {
  std::vector<ICalObject> objects;
  bool whole = false;  ///< Whether there is one, and the last one ends. Half-written texts are not whole.
};

/// Cuts a text into its VCALENDARs, of which there may be several (RFC 5545, 3.4). A byte-order mark, either kind of
/// line end, small letters and components that are not closed are taken as they come. An event without its END, as a
/// half-written file has it, is left out.
ICalObjects splitICalText(std::string_view text, const ICalProblem& problem);

/// Reads the content lines of a component, unfolded, without those of the components nested in it (alarms).
class ICalLineReader {
 public:
  explicit ICalLineReader(std::string_view component) : rest_(component) {}

  /// Reads on to the next line; false at the end.
  bool next();
  /// The line, without its end. Valid until `next`.
  std::string_view line() const { return line_; }
  /// Its part before the parameters and the value, as written.
  std::string_view name() const;

 private:
  bool nextUnfolded();

  std::string_view rest_, line_;
  std::string unfolded_;
  int depth_ = 0;
};

/// Where the value of a content line begins: behind the first colon that is not in a quoted parameter.
std::size_t valueBegin(std::string_view line);

/// Equality but for the case of ASCII letters.
bool equalsIgnoringCase(std::string_view text, std::string_view other);

}  // namespace hushmode::devices
