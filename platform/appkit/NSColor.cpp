// SPDX-License-Identifier: MIT
#include "appkit/NSColor.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "appkit/NSGraphicsContext.h"
#include "foundation/InterfaceDecoder.h"
#include "foundation/NSCoder.h"

namespace cocoa {

const Class NSColor::class_ = {.name = "NSColor",
                               .superclass = &NSObject::class_,
                               .initWithInterface = &NSColor::initWithInterface,
                               .initWithCoder = &NSColor::initWithCoder};

namespace {

using Space = NSColor::Space;

CGFloat component(CGFloat value) {
  if (std::isnan(value) || value < 0)
    return 0;
  return value > 1 ? 1 : value;
}

constexpr const char* not_finite = "a colour component that is not finite";

bool are_finite(std::span<const float> values) {
  return std::ranges::all_of(values, [](float value) { return std::isfinite(value); });
}

/// The kind of an archived colour of cyan, magenta, yellow, black and alpha. There is none of our own.
constexpr int8_t device_cmyk = 5;

/// Ink takes away light, and black takes it from what the others leave.
Ref<NSObject> color_of_inks(NSCoder& coder) {
  float inks[5] = {};
  if (!coder.decodeFloats(inks))
    return nullptr;
  if (!are_finite(inks)) {
    coder.fail(not_finite);
    return nullptr;
  }
  const auto light = [](float ink) { return 1 - component(static_cast<CGFloat>(ink)); };
  const CGFloat beside_black = light(inks[3]);
  return NSColor::colorWithDeviceRed_green_blue_alpha(
      light(inks[0]) * beside_black, light(inks[1]) * beside_black, light(inks[2]) * beside_black,
      static_cast<CGFloat>(inks[4]));
}

bool is_white(Space space) {
  return space == Space::calibrated_white || space == Space::device_white;
}

}  // namespace

NSColor::NSColor(Space space, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha)
    : space_(space),
      red_(component(red)),
      green_(component(green)),
      blue_(component(blue)),
      alpha_(component(alpha)) {}

Ref<NSColor> NSColor::colorWithDeviceRed_green_blue_alpha(CGFloat red, CGFloat green, CGFloat blue,
                                                          CGFloat alpha) {
  return make<NSColor>(Space::device_rgb, red, green, blue, alpha);
}

Ref<NSColor> NSColor::colorWithCalibratedRed_green_blue_alpha(CGFloat red, CGFloat green, CGFloat blue,
                                                              CGFloat alpha) {
  return make<NSColor>(Space::calibrated_rgb, red, green, blue, alpha);
}

Ref<NSColor> NSColor::colorWithDeviceWhite_alpha(CGFloat white, CGFloat alpha) {
  return make<NSColor>(Space::device_white, white, white, white, alpha);
}

Ref<NSColor> NSColor::colorWithCalibratedWhite_alpha(CGFloat white, CGFloat alpha) {
  return make<NSColor>(Space::calibrated_white, white, white, white, alpha);
}

Ref<NSColor> NSColor::blueColor() {
  return colorWithCalibratedRed_green_blue_alpha(0, 0, 1, 1);
}
Ref<NSColor> NSColor::yellowColor() {
  return colorWithCalibratedRed_green_blue_alpha(1, 1, 0, 1);
}
Ref<NSColor> NSColor::blackColor() {
  return colorWithCalibratedWhite_alpha(0, 1);
}
Ref<NSColor> NSColor::whiteColor() {
  return colorWithCalibratedWhite_alpha(1, 1);
}
Ref<NSColor> NSColor::colorUsingDeviceRGB() const {
  return colorWithDeviceRed_green_blue_alpha(red_, green_, blue_, alpha_);
}

bool NSColor::isEqual(const NSColor* other) const {
  return other && space_ == other->space_ && red_ == other->red_ && green_ == other->green_ &&
         blue_ == other->blue_ && alpha_ == other->alpha_;
}

void NSColor::set() const {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (!context)
    return;
  CGContextSetRGBFillColor(context->graphicsPort(), red_, green_, blue_, alpha_);
  CGContextSetRGBStrokeColor(context->graphicsPort(), red_, green_, blue_, alpha_);
}

void NSColor::encodeWithCoder(NSCoder& coder) const {
  coder.encodeChar(static_cast<int8_t>(space_));
  if (is_white(space_)) {
    const float values[] = {static_cast<float>(red_), static_cast<float>(alpha_)};
    coder.encodeFloats(values);
  } else {
    const float values[] = {static_cast<float>(red_), static_cast<float>(green_), static_cast<float>(blue_),
                            static_cast<float>(alpha_)};
    coder.encodeFloats(values);
  }
}

Ref<NSObject> NSColor::initWithCoder(NSCoder& coder) {
  const auto kind = coder.decodeChar();
  if (!kind)
    return nullptr;
  if (*kind == device_cmyk)
    return color_of_inks(coder);
  const auto space = static_cast<Space>(*kind);
  float values[4] = {};
  switch (space) {
    case Space::calibrated_rgb:
    case Space::device_rgb:
      if (!coder.decodeFloats(values))
        return nullptr;
      break;
    case Space::calibrated_white:
    case Space::device_white: {
      float white_alpha[2] = {};
      if (!coder.decodeFloats(white_alpha))
        return nullptr;
      values[0] = values[1] = values[2] = white_alpha[0];
      values[3] = white_alpha[1];
      break;
    }
    default:
      coder.fail("a colour of a kind that is not read");
      return nullptr;
  }
  if (!are_finite(values)) {
    coder.fail(not_finite);
    return nullptr;
  }
  return make<NSColor>(space, static_cast<CGFloat>(values[0]), static_cast<CGFloat>(values[1]),
                       static_cast<CGFloat>(values[2]), static_cast<CGFloat>(values[3]));
}

Ref<NSObject> NSColor::initWithInterface(InterfaceDecoder& decoder) {
  static constexpr std::string_view names[] = {"calibratedRGB", "deviceRGB", "calibratedWhite",
                                               "deviceWhite"};
  static constexpr Space spaces[] = {Space::calibrated_rgb, Space::device_rgb, Space::calibrated_white,
                                     Space::device_white};
  const Space space = spaces[decoder.choice("colorSpace", names, 0)];
  const auto number = [&decoder](const char* name, double if_absent) {
    return static_cast<CGFloat>(decoder.number(name, if_absent));
  };
  const CGFloat alpha = number("alpha", 1);
  if (is_white(space)) {
    const CGFloat white = number("white", 0);
    return make<NSColor>(space, white, white, white, alpha);
  }
  return make<NSColor>(space, number("red", 0), number("green", 0), number("blue", 0), alpha);
}

}  // namespace cocoa
