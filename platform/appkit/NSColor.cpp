#include "appkit/NSColor.h"

#include <cmath>

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
Ref<NSColor> NSColor::clearColor() {
  return colorWithCalibratedWhite_alpha(0, 0);
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
  for (const float value : values) {
    if (!std::isfinite(value)) {
      coder.fail("a colour component that is not finite");
      return nullptr;
    }
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
