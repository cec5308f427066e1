// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSObject.h"

namespace cocoa {

/// An immutable colour: four numbers, not premultiplied, and the space that they are meant in.
class NSColor : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// The numbers are those of the archive format.
  enum class Space : int8_t { calibrated_rgb = 1, device_rgb = 2, calibrated_white = 3, device_white = 4 };

  /// Components outside 0 to 1 are brought inside; not-a-number becomes 0.
  static Ref<NSColor> colorWithDeviceRed_green_blue_alpha(CGFloat red, CGFloat green, CGFloat blue,
                                                          CGFloat alpha);
  static Ref<NSColor> colorWithCalibratedRed_green_blue_alpha(CGFloat red, CGFloat green, CGFloat blue,
                                                              CGFloat alpha);
  static Ref<NSColor> colorWithDeviceWhite_alpha(CGFloat white, CGFloat alpha);
  static Ref<NSColor> colorWithCalibratedWhite_alpha(CGFloat white, CGFloat alpha);
  static Ref<NSColor> blueColor();    ///< calibrated (0, 0, 1)
  static Ref<NSColor> yellowColor();  ///< calibrated (1, 1, 0)
  static Ref<NSColor> blackColor();   ///< calibrated white 0
  static Ref<NSColor> whiteColor();   ///< calibrated white 1

  Space space() const { return space_; }
  /// Of a white colour, red, green and blue are its white: every colour here can be drawn and shown.
  CGFloat redComponent() const { return red_; }
  CGFloat greenComponent() const { return green_; }
  CGFloat blueComponent() const { return blue_; }
  CGFloat alphaComponent() const { return alpha_; }

  /// The same numbers as a device RGB colour. Calibrated numbers are taken as they are: the screens here
  /// have no profile to calibrate against.
  Ref<NSColor> colorUsingDeviceRGB() const;
  /// Equal space and equal components; colours of equal numbers in two spaces differ.
  bool isEqual(const NSColor* other) const;

  /// Makes it the fill and stroke colour of the current context.
  void set() const;

  /// Of an interface file: RGB or white, device or calibrated.
  static Ref<NSObject> initWithInterface(InterfaceDecoder& decoder);
  void encodeWithCoder(NSCoder& coder) const override;
  /// Reads the spaces above, and kind 5, cyan, magenta, yellow and black of a device, as the device RGB
  /// colour (1 - ink)(1 - black). Null for any other colour and for components that are not finite.
  static Ref<NSObject> initWithCoder(NSCoder& coder);

 private:
  template <typename T, typename... Args>
  friend Ref<T> make(Args&&...);
  NSColor(Space space, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
  Space space_;
  CGFloat red_, green_, blue_, alpha_;
};

}  // namespace cocoa
