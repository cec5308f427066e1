#pragma once

#include "foundation/NSObject.h"
#include "quartz/CGPath.h"

namespace cocoa {

enum NSWindingRule : int { NSNonZeroWindingRule = 0, NSEvenOddWindingRule = 1 };

/// A path that is kept, filled and stroked in the current context with its colours. Width 1, butt caps and
/// mitred joins at first.
class NSBezierPath : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  NSBezierPath();
  ~NSBezierPath() override;

  static Ref<NSBezierPath> bezierPath() { return make<NSBezierPath>(); }
  static Ref<NSBezierPath> bezierPathWithRect(NSRect rect);
  static Ref<NSBezierPath> bezierPathWithOvalInRect(NSRect rect);

  void moveToPoint(NSPoint point);
  /// Without a current point these two do nothing but log: a path must start somewhere.
  void lineToPoint(NSPoint point);
  void curveToPoint_controlPoint1_controlPoint2(NSPoint end, NSPoint control1, NSPoint control2);
  void closePath();
  void removeAllPoints();
  bool isEmpty() const;
  bool containsPoint(NSPoint point) const;

  void setLineWidth(CGFloat width) { line_width_ = width; }
  CGFloat lineWidth() const { return line_width_; }
  void setWindingRule(NSWindingRule rule) { rule_ = rule; }

  /// Open subpaths are filled as if closed.
  void fill() const;
  void stroke() const;
  void addClip() const;

  static void fillRect(NSRect rect);
  static void strokeRect(NSRect rect);
  /// Intersects the clip of the current context.
  static void clipRect(NSRect rect);
  static void strokeLineFromPoint_toPoint(NSPoint from, NSPoint to);

  CGPathRef CGPath() const { return path_; }

 private:
  CGMutablePathRef path_;
  CGFloat line_width_ = 1;
  NSWindingRule rule_ = NSNonZeroWindingRule;
};

/// Fills the rectangle with the current colour.
void NSRectFill(NSRect rect);

}  // namespace cocoa
