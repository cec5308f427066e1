// SPDX-License-Identifier: MIT
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
void CGPathRelease(CGPathRef path);

void CGPathMoveToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y);
/// Nothing without a current point, as the other segments.
void CGPathAddLineToPoint(CGMutablePathRef path, const CGAffineTransform* m, CGFloat x, CGFloat y);
/// A closed subpath, clockwise from the middle of the right side.
void CGPathAddEllipseInRect(CGMutablePathRef path, const CGAffineTransform* m, CGRect rect);

bool CGPathIsEmpty(CGPathRef path);
/// The zero point without one.
CGPoint CGPathGetCurrentPoint(CGPathRef path);
/// Of all points, those that steer curves too; the zero rectangle for an empty path.
CGRect CGPathGetBoundingBox(CGPathRef path);
/// Whether a fill of the path would paint `point`, which goes through `m` first.
bool CGPathContainsPoint(CGPathRef path, const CGAffineTransform* m, CGPoint point, bool eoFill);

}  // namespace cocoa
