// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

namespace hushmode::devices {

/// Gives back to the system what has been freed; done after large calendars were read, whose texts and lists leave a
/// sixth of the heap unused for as long as the process runs. Does nothing where the C library has no such call.
void giveBackFreedMemory();

}  // namespace hushmode::devices
