// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The system's version, which decides the way of several effects.

#include "tests/support/CoreTest.h"
#include "util/HMUtils.h"

namespace hushmode {
namespace {

class SystemVersion : public CoreTest {
 protected:
  /// How many of the five tests hold, and that they are the lowest ones: 0 below 9, 1 on 9, to 5 from 13 on.
  int passed(const char* version) {
    phone.uiKit().setSystemVersion(version);
    const bool tests[] = {HMUtils::isIOS9(), HMUtils::isIOS10(), HMUtils::isIOS11(), HMUtils::isIOS12(),
                          HMUtils::isIOS13()};
    const int count = static_cast<int>(std::count(std::begin(tests), std::end(tests), true));
    for (int i = 0; i < 5; ++i) EXPECT_EQ(tests[i], i < count) << version;
    return count;
  }
};

TEST_F(SystemVersion, PassesEveryTestUpToItself) {
  const struct {
    const char* version;
    int passed;
  } cases[] = {
      {"7.1.2", 0}, {"8.4.1", 0},      {"9.0", 1},        {"9.3.5", 1}, {"10.0", 2}, {"10", 2},        {"10.3.3", 2},
      {"11.0", 3},  {"11.4.1", 3},     {"12.4", 4},       {"12.99", 4}, {"13.0", 5}, {"13.1.2", 5},    {"14.0", 5},
      {"9", 1},     {"12.9999999", 5}, {"8.99999999", 1}, {"", 0},      {"beta", 0}, {"13 beta 2", 5},
  };
  for (const auto& each : cases) EXPECT_EQ(passed(each.version), each.passed) << each.version;
}

TEST_F(SystemVersion, IsReadAnewAtEveryQuestion) {
  phone.uiKit().setSystemVersion("12.4");
  EXPECT_FALSE(HMUtils::isIOS13());
  phone.uiKit().setSystemVersion("13.0");
  EXPECT_TRUE(HMUtils::isIOS13());
}

TEST(SystemVersionNumber, IsTheLeadingDecimalNumberInSinglePrecision) {
  EXPECT_EQ(systemVersionNumber("13.1.2"), 13.1F);
  EXPECT_EQ(systemVersionNumber("10.0"), 10.0F);
  EXPECT_EQ(systemVersionNumber("12.9999999"), 13.0F);
}

}  // namespace
}  // namespace hushmode
