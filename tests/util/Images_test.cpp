// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "util/Images.h"

#include "devices/shared/CairoImages.h"
#include "tests/support/PhoneFixture.h"
#include "util/HMUtils.h"

#include <filesystem>

namespace hushmode {
namespace {

using devices::CairoImage;
using platform::UIColor;

std::shared_ptr<CairoImage> cairo(const std::shared_ptr<platform::UIImage>& image) {
  return std::dynamic_pointer_cast<CairoImage>(image);
}

/// A picture all of one colour.
std::shared_ptr<CairoImage> filled(int width, int height, double scale, const UIColor& color) {
  auto image = CairoImage::blank(width, height, scale);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) image->setPixel(x, y, color);
  }
  return image;
}

void expectColor(const UIColor& color, const UIColor& expected) {
  constexpr double step = 1.0 / 255;
  EXPECT_NEAR(color.red, expected.red, step);
  EXPECT_NEAR(color.green, expected.green, step);
  EXPECT_NEAR(color.blue, expected.blue, step);
  EXPECT_NEAR(color.alpha, expected.alpha, step);
}

using Images = PhoneFixture;

TEST_F(Images, ASquareOfAnyColourIsFiveByFivePixelsAtScaleOne) {
  for (const UIColor& color : {UIColor{1, 0, 0, 1}, UIColor{0.2, 0.4, 0.6, 1}, UIColor{0, 0, 0, 1}}) {
    const auto image = cairo(hm_imageWithColor(color));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixelWidth(), 5);
    EXPECT_EQ(image->pixelHeight(), 5);
    EXPECT_EQ(image->scale(), 1.0);
    for (int y = 0; y < 5; ++y) {
      for (int x = 0; x < 5; ++x) expectColor(image->pixel(x, y), color);
    }
  }
}

TEST_F(Images, ATransparentColourStaysTransparent) {
  expectColor(cairo(hm_imageWithColor({1, 1, 1, 0}))->pixel(2, 2), {0, 0, 0, 0});
}

TEST_F(Images, WithRadiusZeroTheCopyIsNotClipped) {
  auto source = filled(8, 4, 1, {0, 1, 0, 1});
  source->setPixel(0, 0, {1, 0, 0, 1});
  const auto copy = cairo(hm_imageWithRoundedCornersSize(0, source));
  EXPECT_EQ(copy->pixelWidth(), 8);
  EXPECT_EQ(copy->pixelHeight(), 4);
  expectColor(copy->pixel(0, 0), {1, 0, 0, 1});
  expectColor(copy->pixel(7, 3), {0, 1, 0, 1});
}

TEST_F(Images, ASourceOfTwoPixelsAPointComesBackWithOne) {
  const auto copy = cairo(hm_imageWithRoundedCornersSize(0, filled(200, 200, 2, {0, 0, 1, 1})));
  EXPECT_EQ(copy->pixelWidth(), 100);
  EXPECT_EQ(copy->pixelHeight(), 100);
  EXPECT_EQ(copy->scale(), 1.0);
  EXPECT_EQ(copy->size().width, 100);
  expectColor(copy->pixel(0, 0), {0, 0, 1, 1});
  expectColor(copy->pixel(99, 99), {0, 0, 1, 1});
}

TEST_F(Images, TheCornersAreCutAndTheMiddleIsNot) {
  const auto copy = cairo(hm_imageWithRoundedCornersSize(20, filled(100, 100, 1, {1, 0, 0, 1})));
  for (const auto& [x, y] : {std::pair{0, 0}, {99, 0}, {0, 99}, {99, 99}}) {
    expectColor(copy->pixel(x, y), {0, 0, 0, 0});
  }
  for (const auto& [x, y] : {std::pair{50, 50}, {50, 0}, {0, 50}, {99, 50}, {8, 8}}) {
    expectColor(copy->pixel(x, y), {1, 0, 0, 1});
  }
}

TEST_F(Images, ARadiusBeyondTheHalfMakesACircle) {
  const auto copy = cairo(hm_imageWithRoundedCornersSize(500, filled(40, 40, 1, {1, 0, 0, 1})));
  expectColor(copy->pixel(2, 2), {0, 0, 0, 0});
  expectColor(copy->pixel(20, 1), {1, 0, 0, 1});
}

TEST_F(Images, NoImageGivesNoImage) { EXPECT_EQ(hm_imageWithRoundedCornersSize(5, nullptr), nullptr); }

TEST_F(Images, APictureCanBeWrittenForALook) {
  const std::string path = (std::filesystem::temp_directory_path() / "hushmode-square.png").string();
  cairo(hm_imageWithColor({1, 0, 0, 1}))->writePng(path);
  EXPECT_GT(std::filesystem::file_size(path), 50U);
  std::filesystem::remove(path);
  EXPECT_THROW(cairo(hm_imageWithColor({1, 0, 0, 1}))->writePng("/nowhere/square.png"), std::runtime_error);
}

using Utilities = PhoneFixture;

TEST_F(Utilities, TheDateFormatterIsOneObjectWithNothingSet) {
  const auto formatter = HMUtils::dateFormatter();
  ASSERT_TRUE(formatter);
  EXPECT_EQ(HMUtils::dateFormatter(), formatter);
  EXPECT_EQ(formatter->dateFormat(), std::nullopt);
  EXPECT_EQ(formatter->stringFromDate(platform::Date(0)), "");
}

TEST_F(Utilities, TheDateFormatterWritesWhatItsPatternSays) {
  const platform::Date date(1715677505.25);  // Tuesday, 2024-05-14 09:05:05.25 UTC
  const struct {
    const char* pattern;
    const char* text;
  } cases[] = {
      {"yyyy-MM-dd HH:mm:ss.SSS", "2024-05-14 09:05:05.250"},
      {"h:mm a", "9:05 AM"},
      {"EEE, d MMM yy", "Tue, 14 May 24"},
      {"EEEE d MMMM", "Tuesday 14 May"},
      {"'at' HH 'o''clock'", "at 09 o'clock"},
      {"'it is ''now''' HH", "it is 'now' 09"},
      {"HH 'open", "09 open"},
      {"''HH''", "'09'"},
      {"", ""},
  };
  const auto formatter = HMUtils::dateFormatter();
  for (const auto& each : cases) {
    SCOPED_TRACE(each.pattern);
    formatter->setDateFormat(each.pattern);
    EXPECT_EQ(formatter->stringFromDate(date), each.text);
  }
  phone.foundation().setTimeZone(devices::TimeZone::named("Asia/Tokyo"));
  formatter->setDateFormat("HH:mm");
  EXPECT_EQ(formatter->stringFromDate(date), "18:05");
}

TEST_F(Utilities, DarkModeIsStyleTwoAndNoOther) {
  EXPECT_FALSE(HMUtils::isDarkModeEnabled());
  for (const int style : {0, 1, 2, 3}) {
    phone.uiKit().setUserInterfaceStyle(style);
    EXPECT_EQ(HMUtils::isDarkModeEnabled(), style == 2) << style;
  }
}

}  // namespace
}  // namespace hushmode
