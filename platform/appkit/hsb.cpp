// SPDX-License-Identifier: MIT
#include "appkit/private/hsb.h"

#include <algorithm>
#include <cmath>

namespace cocoa {

namespace {

/// One primary of the pure hue: 1 for a third of the circle around it, 0 for the third across, linear
/// between.
double primary(double hue, double place_of_primary) {
  double distance = std::abs(hue - place_of_primary);
  distance = std::min(distance, 1 - distance);
  return std::clamp(2 - 6 * distance, 0.0, 1.0);
}

}  // namespace

Ref<NSColor> color_of(const Hsb& hsb) {
  const auto component = [&hsb](double place) {
    const double pure = primary(hsb.hue, place);
    return static_cast<CGFloat>(hsb.brightness * (1 - hsb.saturation * (1 - pure)));
  };
  return NSColor::colorWithDeviceRed_green_blue_alpha(component(0), component(1.0 / 3), component(2.0 / 3),
                                                      1);
}

Hsb hsb_of(const NSColor& color, const Hsb& before) {
  const auto red = static_cast<double>(color.redComponent());
  const auto green = static_cast<double>(color.greenComponent());
  const auto blue = static_cast<double>(color.blueComponent());
  const double most = std::max({red, green, blue});
  const double spread = most - std::min({red, green, blue});
  Hsb result = before;
  result.brightness = most;
  if (most == 0)
    return result;
  result.saturation = spread / most;
  if (spread == 0)
    return result;
  double sixth = 0;
  if (most == red) {
    sixth = (green - blue) / spread;
  } else if (most == green) {
    sixth = 2 + (blue - red) / spread;
  } else {
    sixth = 4 + (red - green) / spread;
  }
  result.hue = sixth < 0 ? sixth / 6 + 1 : sixth / 6;
  // The strip's upper end is red too; the marker stays where the user has put it.
  if (result.hue == 0 && before.hue == 1)
    result.hue = 1;
  return result;
}

}  // namespace cocoa
