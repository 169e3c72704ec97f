// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UIKit.h"

#include <cairomm/surface.h>
#include <memory>
#include <string>

namespace hushmode::devices {

/// A picture as a cairo surface.
class CairoImage final : public platform::UIImage {
 public:
  /// `pixelsPerPoint` must be above 0.
  CairoImage(Cairo::RefPtr<Cairo::ImageSurface> surface, double pixelsPerPoint);
  /// A transparent picture of whole pixels.
  static std::shared_ptr<CairoImage> blank(int pixelWidth, int pixelHeight, double pixelsPerPoint);

  platform::CGSize size() const override;
  double scale() const override { return scale_; }

  int pixelWidth() const { return surface_->get_width(); }
  int pixelHeight() const { return surface_->get_height(); }
  /// The colour of a pixel, not premultiplied. Throws std::out_of_range outside of the picture.
  platform::UIColor pixel(int x, int y) const;
  void setPixel(int x, int y, const platform::UIColor& color);
  const Cairo::RefPtr<Cairo::ImageSurface>& surface() const { return surface_; }

  /// Writes the picture as PNG, for a look at it. Throws std::runtime_error, with the path and the reason, when it
  /// cannot.
  void writePng(const std::string& path) const;

 private:
  unsigned char* at(int x, int y) const;

  Cairo::RefPtr<Cairo::ImageSurface> surface_;
  double scale_;
};

/// An off-screen context that draws with cairo. Sizes are in points; their pixels are rounded up to whole ones. Throws
/// std::invalid_argument for a size that is no picture (negative, not a number, beyond 32,767 pixels).
std::unique_ptr<platform::UIGraphicsImageContext> makeCairoImageContext(platform::CGSize size, bool opaque,
                                                                        double scale);

}  // namespace hushmode::devices
