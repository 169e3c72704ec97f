// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Texts for people, in their language.

#include "util/Localization.h"

#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

using devices::SimulatedBundle;

class Localization : public CoreTest {
 protected:
  void setPreferenceBundle(SimulatedBundle::StringTable table) {
    phone.foundation().setBundle("/Library/PreferenceBundles/HushmodePreferences.bundle",
                                 std::make_shared<SimulatedBundle>("com.example.preferences", std::move(table)));
  }
};

TEST_F(Localization, YieldsTheEnglishTextWithoutATranslation) {
  EXPECT_EQ(localized("All"), "All");
  setPreferenceBundle({});
  EXPECT_EQ(localized("All"), "All");
}

TEST_F(Localization, PrefersThePreferenceBundleAndDoesNotMixTheTwo) {
  phone.foundation().hostBundle().setTable({{"All", "host's"}, {"Accepted", "host's"}});
  EXPECT_EQ(localized("All"), "host's");
  setPreferenceBundle({{"All", "Alle"}});
  EXPECT_EQ(localized("All"), "Alle");
  EXPECT_EQ(localized("Accepted"), "Accepted");
}

}  // namespace
}  // namespace hushmode
