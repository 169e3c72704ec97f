// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListCodec.h"
#include "tests/devices/shared/PropertyListSamples.h"

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace hushmode::devices {
namespace {

using platform::Value;

/// While it lives, the process is in Germany. The locale is made for the occasion, since few machines have one with a
/// decimal comma.
class GermanProcess : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(mkdtemp(folder_.data()), nullptr);
    const std::string make = "localedef -i de_DE -f ISO-8859-1 " + folder_ + "/de_DE";
    ASSERT_EQ(std::system(make.c_str()), 0) << "needs the package locales";
    setenv("LOCPATH", folder_.c_str(), 1);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE"), nullptr);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  }
  void TearDown() override {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
    std::filesystem::remove_all(folder_);
  }

 private:
  std::string folder_ = testing::TempDir() + "hushmode-locale-XXXXXX";
};

TEST_F(GermanProcess, WritesADecimalPoint) {
  const auto written = serializeXml(1.5);
  ASSERT_TRUE(written) << written.error;
  EXPECT_NE(written.value->find("<real>1.5</real>"), std::string::npos) << *written.value;
}

TEST_F(GermanProcess, ReadsADecimalPoint) {
  const auto read = parsePropertyList(samples::xml("<real>2.25</real>"));
  ASSERT_TRUE(read) << read.error;
  EXPECT_EQ(*read.value, Value(2.25));
}

TEST_F(GermanProcess, StaysInGermany) {
  EXPECT_TRUE(serializeXml(1.5));
  EXPECT_TRUE(parsePropertyList(samples::xml("<real>2.25</real>")));
  EXPECT_STREQ(std::localeconv()->decimal_point, ",");
}

}  // namespace
}  // namespace hushmode::devices
