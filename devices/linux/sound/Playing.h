// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

namespace hushmode::devices {

/// Something that is being played: its end stops it.
class Playing {
 public:
  Playing() = default;
  virtual ~Playing() = default;
  Playing(const Playing&) = delete;
  Playing& operator=(const Playing&) = delete;
};

enum class Repeat { Once, UntilStopped };

}  // namespace hushmode::devices
