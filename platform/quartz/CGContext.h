// SPDX-License-Identifier: MIT
#pragma once

#include "quartz/CGAffineTransform.h"
#include "quartz/CGColor.h"
#include "quartz/CGColorSpace.h"
#include "quartz/CGGeometry.h"
#include "quartz/CGPath.h"
#include "quartz/CGShading.h"

/// A place to draw: a current path, and a stack of graphics states.
///
/// The state holds the transform, the clip, line attributes, antialiasing, colours, alpha and the shadow.
/// The path is outside of it: its points are transformed as they are added, later changes of the transform
/// do not move them, and saving or restoring the state leaves the path alone.
///
/// Base space is in points with y upwards from the lower left corner; user space starts equal to it.
/// All functions accept a null context. Numbers that are not finite are ignored with the operation that got
/// them. A context and what is drawn with it belong to one thread at a time.

namespace cocoa {

struct CGContext;
using CGContextRef = CGContext*;

void CGContextRelease(CGContextRef context);

// State

void CGContextSaveGState(CGContextRef context);
/// Nothing when no state was saved since the context or the innermost transparency layer began.
void CGContextRestoreGState(CGContextRef context);

void CGContextTranslateCTM(CGContextRef context, CGFloat tx, CGFloat ty);
void CGContextScaleCTM(CGContextRef context, CGFloat sx, CGFloat sy);
void CGContextConcatCTM(CGContextRef context, CGAffineTransform transform);
/// From user space to base space.
CGAffineTransform CGContextGetCTM(CGContextRef context);
/// From user space to device pixels, y upwards from the lower edge of the bitmap.
CGAffineTransform CGContextGetUserSpaceToDeviceSpaceTransform(CGContextRef context);

enum CGLineCap { kCGLineCapButt = 0, kCGLineCapRound = 1, kCGLineCapSquare = 2 };
enum CGLineJoin { kCGLineJoinMiter = 0, kCGLineJoinRound = 1, kCGLineJoinBevel = 2 };

/// In user space at the time of the stroke. 1 at first; butt caps, miter joins with a limit of 10.
void CGContextSetLineWidth(CGContextRef context, CGFloat width);
void CGContextSetLineCap(CGContextRef context, CGLineCap cap);
void CGContextSetLineJoin(CGContextRef context, CGLineJoin join);
/// Whether edges of fills, strokes and clips are smooth, as they are at first.
void CGContextSetShouldAntialias(CGContextRef context, bool shouldAntialias);
/// Multiplies the alpha of everything drawn, shadows too. 1 at first.
void CGContextSetAlpha(CGContextRef context, CGFloat alpha);

/// Colours are opaque black at first.
void CGContextSetStrokeColorWithColor(CGContextRef context, CGColorRef color);
void CGContextSetRGBFillColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha);
void CGContextSetRGBStrokeColor(CGContextRef context, CGFloat red, CGFloat green, CGFloat blue,
                                CGFloat alpha);

/// Everything drawn from now on casts a shadow: its shape moved by `offset`, in base space whatever the
/// transform (positive height moves it up), and blurred so that it grows by `blur` points on each side.
/// The clip in force now limits where the shadow lands; clips added later shape what casts it.
/// A null or transparent colour turns the shadow off.
void CGContextSetShadowWithColor(CGContextRef context, CGSize offset, CGFloat blur, CGColorRef color);

// Path

void CGContextBeginPath(CGContextRef context);
void CGContextMoveToPoint(CGContextRef context, CGFloat x, CGFloat y);
/// Nothing without a current point, as the other segments.
void CGContextAddLineToPoint(CGContextRef context, CGFloat x, CGFloat y);
/// An arc that touches the line from the current point to (x1, y1) and the line on to (x2, y2), with a line
/// to its first tangent point. The second becomes the current point. A straight or degenerate corner, or a
/// radius of 0, gives a line to (x1, y1).
void CGContextAddArcToPoint(CGContextRef context, CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2,
                            CGFloat radius);
void CGContextAddEllipseInRect(CGContextRef context, CGRect rect);
void CGContextAddRect(CGContextRef context, CGRect rect);
void CGContextAddPath(CGContextRef context, CGPathRef path);
void CGContextClosePath(CGContextRef context);
bool CGContextIsPathEmpty(CGContextRef context);
/// In user space; the zero point without one.
CGPoint CGContextGetPathCurrentPoint(CGContextRef context);

// Clip. All but the bounding box empty the path.

/// Intersects the clip with the inside of the path; nothing when the path is empty.
void CGContextClip(CGContextRef context);
void CGContextEOClip(CGContextRef context);
/// A rectangle without area, such as one of negative width, leaves nothing to draw on. In a context whose
/// scale is not whole the sides go to the nearest edges of device pixels.
void CGContextClipToRect(CGContextRef context, CGRect rect);
/// In user space; the zero rectangle when everything is clipped away.
CGRect CGContextGetClipBoundingBox(CGContextRef context);

// Painting. All but shadings empty the path.

enum CGPathDrawingMode { kCGPathFill = 0, kCGPathStroke = 2, kCGPathFillStroke = 3 };

/// Open subpaths are filled as if they were closed.
void CGContextFillPath(CGContextRef context);
void CGContextStrokePath(CGContextRef context);
/// Fill and stroke together cast one shadow.
void CGContextDrawPath(CGContextRef context, CGPathDrawingMode mode);
void CGContextFillRect(CGContextRef context, CGRect rect);
void CGContextStrokeRect(CGContextRef context, CGRect rect);
void CGContextStrokeRectWithWidth(CGContextRef context, CGRect rect, CGFloat width);
/// Makes the pixels of the rectangle transparent, within the clip.
void CGContextClearRect(CGContextRef context, CGRect rect);

/// Paints the shading over the whole clip.
void CGContextDrawShading(CGContextRef context, CGShadingRef shading);

/// Until the matching end, drawing goes into a layer of its own, with alpha 1 and no shadow. At the end the
/// layer is drawn as one object, with the alpha and the shadow of before, and the state of before returns.
void CGContextBeginTransparencyLayer(CGContextRef context, const void* auxiliaryInfo);
void CGContextEndTransparencyLayer(CGContextRef context);

}  // namespace cocoa
