// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSColor.h"

/// Colours by hue, saturation and brightness, as people pick them.

namespace cocoa {

/// Each 0 to 1. Hue 0 and 1 are red, 1/3 green, 2/3 blue.
struct Hsb {
  double hue = 0;
  double saturation = 0;
  double brightness = 0;
  bool operator==(const Hsb&) const = default;
};

/// An opaque device RGB colour.
Ref<NSColor> color_of(const Hsb& hsb);

/// What the colour leaves open is taken from `before`: the hue of a grey, and the saturation of black. So a
/// colour that is made darker until it is black has not forgotten what it was.
Hsb hsb_of(const NSColor& color, const Hsb& before);

}  // namespace cocoa
