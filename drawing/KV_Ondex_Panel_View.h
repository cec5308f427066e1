// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSView.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGContext.h"

namespace ondex {

/// A background for other controls: blue, brighter along the vertical middle, with a raised rim 20 points
/// wide at its left and right.
class KV_Ondex_Panel_View : public cocoa::NSView {
 public:
  static const cocoa::Class class_;
  const cocoa::Class& isa() const override { return class_; }

  explicit KV_Ondex_Panel_View(cocoa::NSRect frame) : NSView(frame) {}
  void awakeFromNib() override;

  /// Dragging the background moves the window.
  bool mouseDownCanMoveWindow() const override { return true; }
  void drawRect(cocoa::NSRect dirty) override;
  /// Paints the area's width, as high as the clip: the shadings run along the horizontal only.
  void do_2d_bg_area(cocoa::CGContextRef context, cocoa::CGRect area);

  // Made on first use and kept.
  cocoa::CGColorSpaceRef get_RGB_color_space();
  cocoa::CGColorSpaceRef get_grey_color_space();
  cocoa::CGColorSpaceRef get_CMYK_color_space();
};

}  // namespace ondex
