// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include <vector>

#include "appkit/NSColor.h"

namespace cocoa {

/// What is lost on the way through components of the platform's width.
inline constexpr double rounding = sizeof(CGFloat) == sizeof(float) ? 1e-6 : 1e-9;

inline Ref<NSColor> rgb(double r, double g, double b) {
  return NSColor::colorWithDeviceRed_green_blue_alpha(static_cast<CGFloat>(r), static_cast<CGFloat>(g),
                                                      static_cast<CGFloat>(b), 1);
}

inline std::vector<double> components(const NSColor& color) {
  return {static_cast<double>(color.redComponent()), static_cast<double>(color.greenComponent()),
          static_cast<double>(color.blueComponent())};
}

inline void expect_color(const NSColor& color, double r, double g, double b) {
  EXPECT_THAT(components(color), testing::Pointwise(testing::DoubleNear(rounding), {r, g, b}));
}

}  // namespace cocoa
