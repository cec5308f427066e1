// SPDX-License-Identifier: MIT
#include "quartz/CGPath.h"

#include "quartz/private/counted.h"
#include "quartz/private/matrix.h"
#include "quartz/private/path_data.h"

namespace cocoa {

struct CGPath : Counted {
  PathData data;
};

namespace {

DevicePoint device_point(CGFloat x, CGFloat y) {
  return {static_cast<double>(x), static_cast<double>(y)};
}

}  // namespace

const PathData& path_data_of(const CGPath& path) {
  return path.data;
}

CGMutablePathRef CGPathCreateMutable() {
  return new CGPath;
}
void CGPathRelease(CGPathRef path) {
  release_counted(path);
}

void CGPathMoveToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y) {
  if (path)
    path->data.move_to(matrix_from(m), static_cast<double>(x), static_cast<double>(y));
}
void CGPathAddLineToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y) {
  if (path)
    path->data.line_to(matrix_from(m), static_cast<double>(x), static_cast<double>(y));
}
void CGPathAddEllipseInRect(CGMutablePathRef path, const CGAffineTransform* m, CGRect rect) {
  if (path)
    path->data.add_ellipse(matrix_from(m), rect);
}

bool CGPathIsEmpty(CGPathRef path) {
  return !path || path->data.empty();
}
CGPoint CGPathGetCurrentPoint(CGPathRef path) {
  if (!path || !path->data.has_current_point())
    return {};
  const auto p = path->data.current_point();
  return {static_cast<CGFloat>(p.x), static_cast<CGFloat>(p.y)};
}
CGRect CGPathGetBoundingBox(CGPathRef path) {
  return path ? rect_from_box(path->data.bounds()) : CGRect{};
}
bool CGPathContainsPoint(CGPathRef path, const CGAffineTransform* m, CGPoint p, bool eoFill) {
  if (!path)
    return false;
  const CGPoint moved = m ? CGPointApplyAffineTransform(p, *m) : p;
  return path->data.contains(device_point(moved.x, moved.y), eoFill);
}

}  // namespace cocoa
