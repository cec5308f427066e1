// SPDX-License-Identifier: MIT
#include "appkit/private/content_fit.h"

#include <algorithm>
#include <cmath>

namespace cocoa {

void ContentFit::set(double factor, CGFloat margin) {
  factor_ = factor;
  origin_ = {margin, margin};
}

bool ContentFit::fitInto(NSSize given, NSSize content, double scale) {
  if (NSIsEmptyRect({{}, given}) || NSIsEmptyRect({{}, content}))
    return false;
  const CGFloat fit = std::min(given.width / content.width, given.height / content.height);
  factor_ = static_cast<double>(fit);
  // From a whole pixel on, so that it is as sharp as in a window of just its size.
  const double content_scale = scale * factor_;
  const auto margin = [fit, content_scale](CGFloat given_extent, CGFloat extent) {
    constexpr double noise = 1.0 / 256;
    const double pixels = static_cast<double>((given_extent / fit - extent) / 2) * content_scale;
    return static_cast<CGFloat>(std::floor(pixels + noise) / content_scale);
  };
  origin_ = {margin(given.width, content.width), margin(given.height, content.height)};
  return true;
}

NSRect ContentFit::inWindow(NSRect rect) const {
  const auto fit = static_cast<CGFloat>(factor_);
  return {{(rect.origin.x + origin_.x) * fit, (rect.origin.y + origin_.y) * fit},
          {rect.size.width * fit, rect.size.height * fit}};
}

WindowEvent ContentFit::inContent(WindowEvent event) const {
  if (factor_ == 1 && origin_ == NSPoint{})
    return event;
  const auto fit = static_cast<CGFloat>(factor_);
  event.location = {event.location.x / fit - origin_.x, event.location.y / fit - origin_.y};
  if (event.type != WindowEventType::scroll_wheel) {
    event.delta_x /= fit;
    event.delta_y /= fit;
  }
  return event;
}

}  // namespace cocoa
