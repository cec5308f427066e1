// SPDX-License-Identifier: MIT
#include "quartz/rounded_rect.h"

namespace cocoa {

void add_rounded_rect(CGContextRef context, CGRect rect, CGFloat oval_width, CGFloat oval_height) {
  if (oval_width == 0 || oval_height == 0) {
    CGContextAddRect(context, rect);
    return;
  }
  CGContextSaveGState(context);
  CGContextTranslateCTM(context, NSMinX(rect), NSMinY(rect));
  CGContextScaleCTM(context, oval_width, oval_height);
  // In these units a corner is a quarter of a circle of radius 0.5.
  const CGFloat w = NSWidth(rect) / oval_width;
  const CGFloat h = NSHeight(rect) / oval_height;
  constexpr auto radius = CGFloat(0.5);
  CGContextMoveToPoint(context, w, h / 2);
  CGContextAddArcToPoint(context, w, h, w / 2, h, radius);
  CGContextAddArcToPoint(context, 0, h, 0, h / 2, radius);
  CGContextAddArcToPoint(context, 0, 0, w / 2, 0, radius);
  CGContextAddArcToPoint(context, w, 0, w, h / 2, radius);
  CGContextClosePath(context);
  CGContextRestoreGState(context);
}

}  // namespace cocoa
