#pragma once

#include "quartz/CGAffineTransform.h"
#include "quartz/CGGeometry.h"

/// Lines and curves: a list of subpaths, each with a start, a current point and perhaps a closing line.
///
/// Where a function takes a transform, its coordinates go through it first; null is the identity.
/// Coordinates that are not finite leave the path as it was. All functions accept a null path.

namespace cocoa {

struct CGPath;
using CGPathRef = const CGPath*;
using CGMutablePathRef = CGPath*;

CGMutablePathRef CGPathCreateMutable();
CGMutablePathRef CGPathCreateMutableCopy(CGPathRef path);
CGPathRef CGPathRetain(CGPathRef path);
void CGPathRelease(CGPathRef path);

void CGPathMoveToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y);
/// Nothing without a current point, as the other segments.
void CGPathAddLineToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y);
void CGPathAddCurveToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat cp1x, CGFloat cp1y,
                           CGFloat cp2x, CGFloat cp2y, CGFloat x, CGFloat y);
/// A line from the current point, if there is one, to the arc's start, then the arc. Angles in radians from
/// the x axis; counter-clockwise where y grows upwards unless `clockwise`.
void CGPathAddArc(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y, CGFloat radius,
                  CGFloat startAngle, CGFloat endAngle, bool clockwise);
/// An arc that touches the line from the current point to (x1, y1) and the line on to (x2, y2), with a line
/// to its first tangent point. The second becomes the current point. A straight or degenerate corner, or a
/// radius of 0, gives a line to (x1, y1).
void CGPathAddArcToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x1, CGFloat y1,
                         CGFloat x2, CGFloat y2, CGFloat radius);
/// A closed subpath, clockwise from the middle of the right side.
void CGPathAddEllipseInRect(CGMutablePathRef path, const CGAffineTransform* m, CGRect rect);
void CGPathAddRect(CGMutablePathRef path, const CGAffineTransform* m, CGRect rect);
void CGPathAddPath(CGMutablePathRef path, const CGAffineTransform* m, CGPathRef other);
void CGPathCloseSubpath(CGMutablePathRef path);

bool CGPathIsEmpty(CGPathRef path);
/// The zero point without one.
CGPoint CGPathGetCurrentPoint(CGPathRef path);
/// Of all points, those that steer curves too; the zero rectangle for an empty path.
CGRect CGPathGetBoundingBox(CGPathRef path);
/// Whether a fill of the path would paint `point`, which goes through `m` first.
bool CGPathContainsPoint(CGPathRef path, const CGAffineTransform* m, CGPoint point, bool eoFill);

}  // namespace cocoa
