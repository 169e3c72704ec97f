// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "apps/simulation/Simulation.h"
#include "tests/properties/HostDayModel.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::properties {

class HostDayPlay;

/// Something that happens on a day, some time after what came before.
struct Deed {
  double delay = 0;
  std::string text;
  std::function<void(HostDayPlay&)> perform;
  double clockJump = 0;  ///< The wall clock is this much further afterwards.
};

/// A day or two of a phone with the real host, made by a seed: its first state, profiles and calendars, what happens,
/// and at which entry of the record the host dies.
struct HostDay {
  explicit HostDay(std::uint64_t seed);

  simulation::Scenario first;  ///< Without steps.
  std::vector<Deed> deeds;
  std::optional<std::size_t> deathAt;
};

/// Plays a day, in the end of which everything is taken away that could keep the phone quiet. What was not as it should
/// be, in lines: while no profile is applied, and above all in the end, the phone is as its user left it; and now and
/// then that the profiles are applied that the calendars and networks ask for.
/// `record`, where given, gets the phone's record as text.
std::vector<std::string> faultsOf(const HostDay& day, std::vector<std::string>* record = nullptr);

/// A day that still has a fault, with as few deeds as can be found.
HostDay shrunk(HostDay day);

std::string textOf(const HostDay& day);

}  // namespace hushmode::properties
