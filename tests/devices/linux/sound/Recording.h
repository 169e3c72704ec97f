// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <string>

namespace hushmode::devices {

/// What the output "spk" plays, recorded for as long as this lives.
class Recording {
 public:
  /// Comes back when the recording runs.
  Recording();
  ~Recording();
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  /// How long it has been recording, and how much of that, from a moment on, was well above silence.
  double seconds() const;
  double loudSeconds(double from = 0) const;

 private:
  std::string path_;
  int process_;
};

}  // namespace hushmode::devices
