// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSObject.h"
#include "quartz/CGOwned.h"

namespace cocoa {

/// A path that is kept, filled and stroked in the current context with its colours. Width 1, butt caps and
/// mitred joins at first.
class NSBezierPath : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  NSBezierPath();

  static Ref<NSBezierPath> bezierPath() { return make<NSBezierPath>(); }

  void moveToPoint(NSPoint point);
  /// Without a current point nothing but a line in the log: a path must start somewhere.
  void lineToPoint(NSPoint point);
  void removeAllPoints();
  bool isEmpty() const;

  void setLineWidth(CGFloat width) { line_width_ = width; }
  CGFloat lineWidth() const { return line_width_; }

  /// Open subpaths are filled as if closed.
  void fill() const;
  void stroke() const;

  /// Intersects the clip of the current context.
  static void clipRect(NSRect rect);

  CGPathRef CGPath() const { return path_.get(); }

 private:
  CGOwned<cocoa::CGPath> path_;
  CGFloat line_width_ = 1;
};

}  // namespace cocoa
