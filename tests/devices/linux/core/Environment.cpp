// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include <giomm/init.h>
#include <gtest/gtest.h>

namespace {

/// giomm's classes need it before the first of them is used.
class Giomm final : public ::testing::Environment {
 public:
  void SetUp() override { Gio::init(); }
};

[[maybe_unused]] const auto* const giomm = ::testing::AddGlobalTestEnvironment(new Giomm);

}  // namespace
