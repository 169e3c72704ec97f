// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UIKit.h"

#include <memory>

/// Pictures for settings screens. Drawing is the device's. Each call opens and closes a context of its own.
namespace hushmode {

/// A copy of the image with rounded corners (`cornerRadius` in points). At one pixel a point whatever the image's scale
/// and the screen's, on purpose: a 2x image of 100 by 100 points comes back with 100 by 100 pixels. Null without an
/// image. A picture larger than the device can draw is the device's error to raise.
HUSHMODE_API std::shared_ptr<platform::UIImage> hm_imageWithRoundedCornersSize(
    float cornerRadius, const std::shared_ptr<platform::UIImage>& usingImage);

/// A square of 5 by 5 pixels of one colour.
HUSHMODE_API std::shared_ptr<platform::UIImage> hm_imageWithColor(const platform::UIColor& color);

}  // namespace hushmode
