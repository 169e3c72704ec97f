// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

/// Marks what the shared library exports; everything else is hidden.
#define HUSHMODE_API __attribute__((visibility("default")))
