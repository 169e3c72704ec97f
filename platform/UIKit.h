// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Object.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// UIKit and CoreGraphics: the application, alerts, the device's version, appearance, images.
namespace hushmode::platform {

struct CGPoint {
  double x = 0, y = 0;
};
struct CGSize {
  double width = 0, height = 0;
};
struct CGRect {
  CGPoint origin;
  CGSize size;
};

/// A view, as far as a simulated tap needs it.
class HUSHMODE_API UIView : public Object {
 public:
  ~UIView() override;
  virtual CGRect frame() const = 0;
  virtual std::shared_ptr<UIView> superview() const = 0;
  virtual std::vector<std::shared_ptr<UIView>> subviews() const = 0;
  /// `rect`, given in `view`'s coordinates, in this view's own.
  virtual CGRect convertRect(const CGRect& rect, const std::shared_ptr<UIView>& fromView) const = 0;
  virtual std::shared_ptr<UIView> hitTest(CGPoint point, const std::shared_ptr<Object>& event) = 0;
};

/// The running application.
class HUSHMODE_API UIApplication : public Object {
 public:
  ~UIApplication() override;
  /// Whether a change of volume shows the system's indicator.
  virtual void setSystemVolumeHUDEnabled(bool enabled) = 0;
};

/// A question to the user.
class HUSHMODE_API UIAlertView : public Object {
 public:
  ~UIAlertView() override;
  virtual void setTag(int tag) = 0;
  virtual int tag() const = 0;
  virtual void show() = 0;
};

struct UIAlertDescription {
  std::string title, message;
  std::optional<std::string> cancelButtonTitle;
  std::vector<std::string> otherButtonTitles;  ///< Their indexes count from 0 when there is no cancel button.
  /// The delegate's `alertView:clickedButtonAtIndex:`, called on the main thread.
  std::function<void(const std::shared_ptr<UIAlertView>&, int buttonIndex)> clickedButtonAtIndex;
};

/// A colour; components from 0.0 to 1.0.
struct UIColor {
  double red = 0, green = 0, blue = 0, alpha = 1;
};

/// A picture.
class HUSHMODE_API UIImage : public Object {
 public:
  ~UIImage() override;
  virtual CGSize size() const = 0;   ///< In points.
  virtual double scale() const = 0;  ///< Pixels a point.
};

/// An off-screen drawing context; ends with the object.
class HUSHMODE_API UIGraphicsImageContext {
 public:
  virtual ~UIGraphicsImageContext();
  /// Clips all later drawing to a rounded rectangle.
  virtual void addRoundedRectClip(const CGRect& rect, double cornerRadius) = 0;
  virtual void drawInRect(const std::shared_ptr<UIImage>& image, const CGRect& rect) = 0;
  virtual void fillRect(const UIColor& color, const CGRect& rect) = 0;
  virtual std::shared_ptr<UIImage> image() = 0;
};

/// What UIKit offers a process.
class HUSHMODE_API UIKit {
 public:
  virtual ~UIKit();
  /// Never null.
  virtual std::shared_ptr<UIApplication> sharedApplication() = 0;
  virtual std::shared_ptr<UIAlertView> makeAlertView(UIAlertDescription description) = 0;
  /// The current device's version text, such as "13.1.2".
  virtual std::string systemVersion() const = 0;
  /// The main screen's interface style (2 is dark); none where the system has no such notion.
  virtual std::optional<int> userInterfaceStyle() const = 0;
  virtual std::unique_ptr<UIGraphicsImageContext> beginImageContext(CGSize size, bool opaque, double scale) = 0;
};

}  // namespace hushmode::platform
