// SPDX-License-Identifier: MIT
#include "canvas.h"
#include "quartz/private/path_data.h"

namespace cocoa {
namespace {

struct Path {
  CGMutablePathRef ref = CGPathCreateMutable();
  Path() = default;
  Path(const Path&) = delete;
  Path& operator=(const Path&) = delete;
  ~Path() { CGPathRelease(ref); }
  CGPoint current() const { return CGPathGetCurrentPoint(ref); }
  bool holds(CGFloat x, CGFloat y) const { return CGPathContainsPoint(ref, nullptr, {x, y}, false); }
  CGRect box() const { return CGPathGetBoundingBox(ref); }
};

/// What a context's path consists of.
struct Outline {
  PathData data;
  void move_to(CGFloat x, CGFloat y) {
    data.move_to(identity_matrix, static_cast<double>(x), static_cast<double>(y));
  }
  void arc_to(CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius) {
    const auto point = [](CGFloat x, CGFloat y) {
      return DevicePoint{static_cast<double>(x), static_cast<double>(y)};
    };
    data.add_arc_to_point(identity_matrix, point(x1, y1), point(x2, y2), static_cast<double>(radius));
  }
  CGPoint current() const {
    const DevicePoint p = data.current_point();
    return {static_cast<CGFloat>(p.x), static_cast<CGFloat>(p.y)};
  }
  bool holds(CGFloat x, CGFloat y, bool even_odd = false) const {
    return data.contains({static_cast<double>(x), static_cast<double>(y)}, even_odd);
  }
  CGRect box() const { return rect_from_box(data.bounds()); }
};

void expect_point(CGPoint actual, double x, double y) {
  EXPECT_NEAR(static_cast<double>(actual.x), x, 1e-4);
  EXPECT_NEAR(static_cast<double>(actual.y), y, 1e-4);
}

template <typename AnyPath>
void expect_box(const AnyPath& path, double left, double bottom, double right, double top) {
  const CGRect box = path.box();
  expect_point(box.origin, left, bottom);
  expect_point({NSMaxX(box), NSMaxY(box)}, right, top);
}

TEST(ArcToPoint, TouchesBothLinesAtRadiusOverTangentOfHalfTheAngle) {
  // A corner of 60 degrees at (10, 0): tangent points lie r / tan(30°) = 3 · 1.7320508 = 5.1961524 from it,
  // the second one at (10 − 5.196 cos 60°, 5.196 sin 60°).
  Outline path;
  path.move_to(0, 0);
  path.arc_to(10, 0, 5, static_cast<CGFloat>(8.66025404), 3);
  expect_point(path.current(), 10 - 5.1961524 * 0.5, 5.1961524 * 0.8660254);
  // The circle around (4.8038476, 3) lies inside the corner; its rightmost point is (7.8038476, 3).
  EXPECT_TRUE(path.holds(static_cast<CGFloat>(6.9), static_cast<CGFloat>(1.2)));
  EXPECT_FALSE(path.holds(static_cast<CGFloat>(7.2), static_cast<CGFloat>(0.8)));
}

TEST(ArcToPoint, RightAngleEitherWayRound) {
  for (const CGFloat side : {CGFloat{1}, CGFloat{-1}}) {
    Outline path;
    path.move_to(0, 0);
    path.arc_to(10, 0, 10, 10 * side, 4);
    expect_point(path.current(), 10, static_cast<double>(4 * side));
    expect_box(path, 0, static_cast<double>(std::min<CGFloat>(0, 4 * side)), 10,
               static_cast<double>(std::max<CGFloat>(0, 4 * side)));
  }
}

TEST(ArcToPoint, ALargeRadiusRunsBackwardsPastTheStart) {
  Outline path;
  path.move_to(5, 0);
  path.arc_to(10, 0, 10, 10, 20);
  expect_point(path.current(), 10, 20);
  EXPECT_NEAR(static_cast<double>(NSMinX(path.box())), -10, 1e-4);
}

TEST(ArcToPoint, DegenerateCornersGiveALineToTheCorner) {
  const auto end_of = [](CGPoint p1, CGPoint p2, CGFloat radius) {
    Outline path;
    path.move_to(1, 1);
    path.arc_to(p1.x, p1.y, p2.x, p2.y, radius);
    return path.current();
  };
  expect_point(end_of({1, 1}, {5, 5}, 2), 1, 1);   // start and corner coincide
  expect_point(end_of({4, 1}, {4, 1}, 2), 4, 1);   // corner and end coincide
  expect_point(end_of({4, 1}, {9, 1}, 2), 4, 1);   // straight on
  expect_point(end_of({4, 1}, {-9, 1}, 2), 4, 1);  // straight back
  expect_point(end_of({4, 1}, {4, 9}, 0), 4, 1);   // no radius
}

TEST(ArcToPoint, WithoutACurrentPointDoesNothing) {
  Outline path;
  path.arc_to(10, 0, 10, 10, 4);
  EXPECT_TRUE(path.data.empty());
}

TEST(ArcToPoint, ScaledUserSpaceGivesQuarterEllipses) {
  // As a box's corners are made: units of 20 by 10 points.
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextSaveGState(c);
  CGContextTranslateCTM(c, 10, 10);
  CGContextScaleCTM(c, 20, 10);
  CGContextMoveToPoint(c, 2, 2);
  CGContextAddArcToPoint(c, 2, 4, 1, 4, 0.5);
  CGContextRestoreGState(c);
  expect_point(CGContextGetPathCurrentPoint(c), 10 + 1.5 * 20, 10 + 4 * 10);
}

TEST(Ellipse, IsClosedAndTheNextLineStartsWhereItDid) {
  Path path;
  CGPathAddEllipseInRect(path.ref, nullptr, CGRectMake(0, 0, 20, 10));
  expect_box(path, 0, 0, 20, 10);
  expect_point(path.current(), 20, 5);
  EXPECT_TRUE(path.holds(1, 5));
  EXPECT_TRUE(path.holds(10, static_cast<CGFloat>(9.9)));
  EXPECT_FALSE(path.holds(2, 1));
  CGPathAddLineToPoint(path.ref, nullptr, 30, 20);
  CGPathAddLineToPoint(path.ref, nullptr, 30, 5);
  EXPECT_TRUE(path.holds(29, 10));
}

TEST(Contains, FollowsTheWindingRule) {
  Outline path;
  path.data.add_rect(identity_matrix, CGRectMake(0, 0, 10, 10));
  path.data.add_rect(identity_matrix, CGRectMake(2, 2, 4, 4));
  EXPECT_TRUE(path.holds(4, 4));
  EXPECT_FALSE(path.holds(4, 4, true));
  EXPECT_TRUE(path.holds(8, 8, true));
  EXPECT_FALSE(path.holds(11, 5));
}

TEST(Contains, TreatsOpenSubpathsAsClosed) {
  Path path;
  CGPathMoveToPoint(path.ref, nullptr, 0, 0);
  CGPathAddLineToPoint(path.ref, nullptr, 10, 0);
  CGPathAddLineToPoint(path.ref, nullptr, 10, 10);
  EXPECT_TRUE(path.holds(8, 4));
  EXPECT_FALSE(path.holds(2, 8));
}

TEST(Contains, AppliesTheTransformToThePoint) {
  Path path;
  CGPathAddEllipseInRect(path.ref, nullptr, CGRectMake(100, 100, 10, 10));
  const CGAffineTransform moved = CGAffineTransformMakeTranslation(100, 100);
  EXPECT_TRUE(CGPathContainsPoint(path.ref, &moved, {5, 5}, false));
  EXPECT_FALSE(CGPathContainsPoint(path.ref, nullptr, {5, 5}, false));
  EXPECT_FALSE(CGPathContainsPoint(nullptr, nullptr, {5, 5}, false));
}

TEST(Path, TakesCoordinatesThroughTheTransform) {
  const CGAffineTransform doubled = CGAffineTransformMakeScale(2, 2);
  Path path;
  CGPathMoveToPoint(path.ref, &doubled, 1, 2);
  CGPathAddLineToPoint(path.ref, &doubled, 3, 4);
  expect_point(path.current(), 6, 8);
  Canvas canvas(4, 4);
  CGContextScaleCTM(canvas.context(), 3, 3);
  CGContextAddPath(canvas.context(), path.ref);
  expect_point(CGContextGetPathCurrentPoint(canvas.context()), 6, 8);
  CGContextScaleCTM(canvas.context(), CGFloat(1) / 3, CGFloat(1) / 3);
  expect_point(CGContextGetPathCurrentPoint(canvas.context()), 18, 24);
}

TEST(Path, SegmentsNeedACurrentPointAndFiniteNumbers) {
  const auto nan = static_cast<CGFloat>(NAN);
  Path path;
  CGPathAddLineToPoint(path.ref, nullptr, 5, 5);
  CGPathMoveToPoint(path.ref, nullptr, nan, 1);
  CGPathAddEllipseInRect(path.ref, nullptr, CGRectMake(0, nan, 5, 5));
  EXPECT_TRUE(CGPathIsEmpty(path.ref));
  CGPathMoveToPoint(path.ref, nullptr, 1, 1);
  CGPathAddLineToPoint(path.ref, nullptr, static_cast<CGFloat>(INFINITY), 1);
  expect_point(path.current(), 1, 1);
}

}  // namespace
}  // namespace cocoa
