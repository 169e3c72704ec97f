// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "util/Images.h"

#include "platform/Process.h"

namespace hushmode {

using platform::CGRect;
using platform::CGSize;
using platform::UIImage;

namespace {

std::unique_ptr<platform::UIGraphicsImageContext> beginContext(CGSize size) {
  constexpr bool opaque = false;
  constexpr double pixelsPerPoint = 1.0;
  return platform::device().uiKit().beginImageContext(size, opaque, pixelsPerPoint);
}

}  // namespace

std::shared_ptr<UIImage> hm_imageWithRoundedCornersSize(float cornerRadius,
                                                        const std::shared_ptr<UIImage>& usingImage) {
  if (!usingImage) return nullptr;
  const CGRect bounds{{}, usingImage->size()};
  const auto context = beginContext(bounds.size);
  context->addRoundedRectClip(bounds, cornerRadius);
  context->drawInRect(usingImage, bounds);
  return context->image();
}

std::shared_ptr<UIImage> hm_imageWithColor(const platform::UIColor& color) {
  const CGRect bounds{{}, {5, 5}};
  const auto context = beginContext(bounds.size);
  context->fillRect(color, bounds);
  return context->image();
}

}  // namespace hushmode
