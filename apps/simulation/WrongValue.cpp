// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/simulation/WrongValue.h"

#include "devices/words/Text.h"

namespace hushmode::simulation {

InputError wrongValue(const std::string& given, const std::string& expected, const std::string& near) {
  return InputError(near.empty() ? tr("{0}: expected {1}", given, expected)
                                 : tr("{0}: expected {1}; did you mean \"{2}\"?", given, expected, near));
}

}  // namespace hushmode::simulation
