// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSBox.h"
#include "quartz/CGColor.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGContext.h"

namespace ondex {

/// A box that is nothing but a thin translucent black rounded outline with a faint white shadow. It never
/// shows a title.
class KV_Ondex_Box : public cocoa::NSBox {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }
  explicit KV_Ondex_Box(cocoa::NSRect frame) : NSBox(frame) {}
  explicit KV_Ondex_Box(cocoa::InterfaceDecoder& decoder) : NSBox(decoder) {}

  bool isOpaque() const override { return false; }
  void drawRect(cocoa::NSRect dirty) override;
  /// Strokes one rounded rectangle with corners of 10 points.
  void draw_edge_in_rect(cocoa::CGContextRef context, cocoa::CGRect rect);
  /// Adds a rectangle whose corners are quarters of an ellipse of that width and height, counter-clockwise
  /// from the middle of the right side; square corners when either is 0.
  void add_rounded_rect_to_path_rect_oval_width_oval_height(cocoa::CGContextRef context, cocoa::CGRect rect,
                                                            float oval_width, float oval_height);

  // Made on first use and kept.
  cocoa::CGColorRef get_edge_color();
  cocoa::CGColorRef get_shadow_color();
  cocoa::CGColorSpaceRef get_RGB_color_space();
};

}  // namespace ondex
