// SPDX-License-Identifier: MIT
#pragma once

/// Points, sizes and rectangles.
///
/// Units are points; a window's scale factor turns points into device pixels in one place only, the
/// context that draws. No view is flipped: y grows upwards, a rectangle's origin is its lower left.

namespace cocoa {

/// The platform's coordinate type: double, or float in the 32-bit layout (ONDEX_CGFLOAT_IS_FLOAT).
#ifdef ONDEX_CGFLOAT_IS_FLOAT
using CGFloat = float;
#else
using CGFloat = double;
#endif

struct CGPoint {
  CGFloat x = 0;
  CGFloat y = 0;
  bool operator==(const CGPoint&) const = default;
};

struct CGSize {
  CGFloat width = 0;
  CGFloat height = 0;
  bool operator==(const CGSize&) const = default;
};

struct CGRect {
  CGPoint origin;
  CGSize size;
  bool operator==(const CGRect&) const = default;
};

using NSPoint = CGPoint;
using NSSize = CGSize;
using NSRect = CGRect;

constexpr NSPoint NSMakePoint(CGFloat x, CGFloat y) {
  return {x, y};
}
constexpr NSSize NSMakeSize(CGFloat w, CGFloat h) {
  return {w, h};
}
constexpr NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) {
  return {{x, y}, {w, h}};
}

constexpr CGFloat NSMinX(NSRect r) {
  return r.origin.x;
}
constexpr CGFloat NSMinY(NSRect r) {
  return r.origin.y;
}
constexpr CGFloat NSMaxX(NSRect r) {
  return r.origin.x + r.size.width;
}
constexpr CGFloat NSMaxY(NSRect r) {
  return r.origin.y + r.size.height;
}
constexpr CGFloat NSWidth(NSRect r) {
  return r.size.width;
}
constexpr CGFloat NSHeight(NSRect r) {
  return r.size.height;
}

/// True for a rectangle without area; one with a NaN or a negative extent is empty too.
constexpr bool NSIsEmptyRect(NSRect r) {
  return !(r.size.width > 0 && r.size.height > 0);
}

constexpr NSRect NSInsetRect(NSRect r, CGFloat dx, CGFloat dy) {
  return NSMakeRect(r.origin.x + dx, r.origin.y + dy, r.size.width - 2 * dx, r.size.height - 2 * dy);
}

constexpr NSRect NSOffsetRect(NSRect r, CGFloat dx, CGFloat dy) {
  return {{r.origin.x + dx, r.origin.y + dy}, r.size};
}

/// The common part of both, or the zero rectangle when there is none.
constexpr NSRect NSIntersectionRect(NSRect a, NSRect b) {
  const CGFloat x0 = NSMinX(a) > NSMinX(b) ? NSMinX(a) : NSMinX(b);
  const CGFloat y0 = NSMinY(a) > NSMinY(b) ? NSMinY(a) : NSMinY(b);
  const CGFloat x1 = NSMaxX(a) < NSMaxX(b) ? NSMaxX(a) : NSMaxX(b);
  const CGFloat y1 = NSMaxY(a) < NSMaxY(b) ? NSMaxY(a) : NSMaxY(b);
  return x1 > x0 && y1 > y0 ? NSMakeRect(x0, y0, x1 - x0, y1 - y0) : NSRect{};
}

constexpr bool NSIntersectsRect(NSRect a, NSRect b) {
  return !NSIsEmptyRect(NSIntersectionRect(a, b));
}

/// Whether the point lies in the rectangle of an unflipped view: the left and lower edges belong to it.
constexpr bool NSPointInRect(NSPoint p, NSRect r) {
  return p.x >= NSMinX(r) && p.x < NSMaxX(r) && p.y >= NSMinY(r) && p.y < NSMaxY(r);
}

}  // namespace cocoa
