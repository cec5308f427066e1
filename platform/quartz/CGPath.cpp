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
CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path) {
  if (!path)
    return nullptr;
  auto* copy = new CGPath;
  copy->data = path->data;
  return copy;
}
CGPathRef CGPathRetain(CGPathRef path) {
  return retain_counted(path);
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
void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat cp1x, CGFloat cp1y,
                           CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y) {
  if (path) {
    path->data.curve_to(matrix_from(m),
                        {device_point(cp1x, cp1y), device_point(cp2x, cp2y), device_point(x, y)});
  }
}
void CGPathAddArc(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y, CGFloat radius,
                  CGFloat startAngle, CGFloat endAngle, bool clockwise) {
  if (path) {
    path->data.add_arc(matrix_from(m), device_point(x, y), static_cast<double>(radius),
                       static_cast<double>(startAngle), static_cast<double>(endAngle), clockwise);
  }
}
void CGPathAddArcToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x1, CGFloat y1,
                         CGFloat x2, CGFloat y2, CGFloat radius) {
  if (path) {
    path->data.add_arc_to_point(matrix_from(m), device_point(x1, y1), device_point(x2, y2),
                                static_cast<double>(radius));
  }
}
void CGPathAddEllipseInRect(CGMutablePathRef path, const CGAffineTransform* m, CGRect rect) {
  if (path)
    path->data.add_ellipse(matrix_from(m), rect);
}
void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform* m, CGRect rect) {
  if (path)
    path->data.add_rect(matrix_from(m), rect);
}
void CGPathAddPath(CGMutablePathRef path, const CGAffineTransform* m, CGPathRef other) {
  if (path && other)
    path->data.add_path(matrix_from(m), other->data);
}
void CGPathCloseSubpath(CGMutablePathRef path) {
  if (path)
    path->data.close();
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
