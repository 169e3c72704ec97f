// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/words/Text.h"

namespace hushmode::cli {

using hushmode::tr;
using hushmode::trCount;

}  // namespace hushmode::cli
