// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CairoImages.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <cairomm/context.h>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <stdexcept>

namespace hushmode::devices {

using platform::CGRect;
using platform::CGSize;
using platform::UIColor;
using platform::UIImage;

namespace {

constexpr double mostPixels = 32767;  // What a cairo surface can hold.

int wholePixels(double pixels) {
  if (!(pixels >= 0 && pixels <= mostPixels)) throw std::invalid_argument("no size for a picture");
  return static_cast<int>(std::ceil(pixels));
}

class ImageContext final : public platform::UIGraphicsImageContext {
 public:
  ImageContext(CGSize size, bool opaque, double scale)
      : surface_(Cairo::ImageSurface::create(Cairo::Surface::Format::ARGB32, wholePixels(size.width * scale),
                                             wholePixels(size.height * scale))),
        context_(Cairo::Context::create(surface_)),
        scale_(scale) {
    if (opaque) {
      context_->set_source_rgb(0, 0, 0);
      context_->paint();
    }
    context_->scale(scale, scale);
  }

  void addRoundedRectClip(const CGRect& rect, double cornerRadius) override {
    const auto [origin, size] = rect;
    const double radius = std::clamp(cornerRadius, 0.0, std::min(size.width, size.height) / 2);
    const double right = origin.x + size.width, bottom = origin.y + size.height;
    constexpr double quarter = std::numbers::pi / 2;
    context_->begin_new_path();
    context_->arc(right - radius, origin.y + radius, radius, -quarter, 0);
    context_->arc(right - radius, bottom - radius, radius, 0, quarter);
    context_->arc(origin.x + radius, bottom - radius, radius, quarter, 2 * quarter);
    context_->arc(origin.x + radius, origin.y + radius, radius, 2 * quarter, 3 * quarter);
    context_->close_path();
    context_->clip();
  }

  void drawInRect(const std::shared_ptr<UIImage>& image, const CGRect& rect) override {
    const auto drawn = std::dynamic_pointer_cast<CairoImage>(image);
    if (!drawn || drawn->pixelWidth() == 0 || drawn->pixelHeight() == 0) return;
    context_->save();
    context_->translate(rect.origin.x, rect.origin.y);
    context_->scale(rect.size.width / drawn->pixelWidth(), rect.size.height / drawn->pixelHeight());
    context_->set_source(drawn->surface(), 0, 0);
    // Without this the outermost pixels of a picture that is scaled would fade into nothing.
    context_->get_source()->set_extend(Cairo::Pattern::Extend::PAD);
    context_->rectangle(0, 0, drawn->pixelWidth(), drawn->pixelHeight());
    context_->fill();
    context_->restore();
  }

  void fillRect(const UIColor& color, const CGRect& rect) override {
    context_->set_source_rgba(color.red, color.green, color.blue, color.alpha);
    context_->rectangle(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
    context_->fill();
  }

  std::shared_ptr<UIImage> image() override {
    surface_->flush();
    // A copy: what is drawn later does not change a picture that was taken.
    auto taken =
        Cairo::ImageSurface::create(Cairo::Surface::Format::ARGB32, surface_->get_width(), surface_->get_height());
    const auto copy = Cairo::Context::create(taken);
    copy->set_source(surface_, 0, 0);
    copy->paint();
    taken->flush();
    return std::make_shared<CairoImage>(taken, scale_);
  }

 private:
  Cairo::RefPtr<Cairo::ImageSurface> surface_;
  Cairo::RefPtr<Cairo::Context> context_;
  double scale_;
};

}  // namespace

CairoImage::CairoImage(Cairo::RefPtr<Cairo::ImageSurface> surface, double pixelsPerPoint)
    : surface_(std::move(surface)), scale_(pixelsPerPoint) {}

std::shared_ptr<CairoImage> CairoImage::blank(int pixelWidth, int pixelHeight, double pixelsPerPoint) {
  return std::make_shared<CairoImage>(
      Cairo::ImageSurface::create(Cairo::Surface::Format::ARGB32, pixelWidth, pixelHeight), pixelsPerPoint);
}

CGSize CairoImage::size() const { return {pixelWidth() / scale_, pixelHeight() / scale_}; }

unsigned char* CairoImage::at(int x, int y) const {
  if (x < 0 || y < 0 || x >= pixelWidth() || y >= pixelHeight()) throw std::out_of_range("no such pixel");
  return surface_->get_data() + static_cast<std::ptrdiff_t>(y) * surface_->get_stride() +
         static_cast<std::ptrdiff_t>(x) * 4;
}

UIColor CairoImage::pixel(int x, int y) const {
  surface_->flush();
  std::uint32_t argb = 0;
  std::memcpy(&argb, at(x, y), sizeof argb);
  const double alpha = (argb >> 24U) / 255.0;
  const auto part = [&](unsigned shift) { return alpha > 0 ? ((argb >> shift) & 0xffU) / 255.0 / alpha : 0.0; };
  return {part(16), part(8), part(0), alpha};
}

void CairoImage::setPixel(int x, int y, const UIColor& color) {
  const auto part = [&](double value) { return static_cast<std::uint32_t>(std::lround(value * color.alpha * 255)); };
  const std::uint32_t argb = static_cast<std::uint32_t>(std::lround(color.alpha * 255)) << 24U |
                             part(color.red) << 16U | part(color.green) << 8U | part(color.blue);
  surface_->flush();
  std::memcpy(at(x, y), &argb, sizeof argb);
  surface_->mark_dirty();
}

void CairoImage::writePng(const std::string& path) const {
  try {
    surface_->write_to_png(path);
  } catch (const std::exception& error) {
    throw std::runtime_error(tr("{0}: the picture could not be written: {1}", path, error.what()));
  }
}

std::unique_ptr<platform::UIGraphicsImageContext> makeCairoImageContext(CGSize size, bool opaque, double scale) {
  return std::make_unique<ImageContext>(size, opaque, scale);
}

}  // namespace hushmode::devices
