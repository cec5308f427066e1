#include <numbers>

#include "canvas.h"

namespace cocoa {
namespace {

constexpr auto half_turn = static_cast<CGFloat>(std::numbers::pi);

struct Path {
  CGMutablePathRef ref = CGPathCreateMutable();
  Path() = default;
  Path(const Path&) = delete;
  Path& operator=(const Path&) = delete;
  ~Path() { CGPathRelease(ref); }
  CGPoint current() const { return CGPathGetCurrentPoint(ref); }
  bool holds(CGFloat x, CGFloat y, bool eo = false) const {
    return CGPathContainsPoint(ref, nullptr, {x, y}, eo);
  }
};

void expect_point(CGPoint actual, double x, double y) {
  EXPECT_NEAR(static_cast<double>(actual.x), x, 1e-4);
  EXPECT_NEAR(static_cast<double>(actual.y), y, 1e-4);
}

void expect_box(const Path& path, double left, double bottom, double right, double top) {
  const CGRect box = CGPathGetBoundingBox(path.ref);
  expect_point(box.origin, left, bottom);
  expect_point({NSMaxX(box), NSMaxY(box)}, right, top);
}

TEST(ArcToPoint, TouchesBothLinesAtRadiusOverTangentOfHalfTheAngle) {
  // A corner of 60 degrees at (10, 0): tangent points lie r / tan(30°) = 3 · 1.7320508 = 5.1961524 from it,
  // the second one at (10 − 5.196 cos 60°, 5.196 sin 60°).
  Path path;
  CGPathMoveToPoint(path.ref, nullptr, 0, 0);
  CGPathAddArcToPoint(path.ref, nullptr, 10, 0, 5, static_cast<CGFloat>(8.66025404), 3);
  expect_point(path.current(), 10 - 5.1961524 * 0.5, 5.1961524 * 0.8660254);
  // The circle around (4.8038476, 3) lies inside the corner; its rightmost point is (7.8038476, 3).
  EXPECT_TRUE(path.holds(static_cast<CGFloat>(6.9), static_cast<CGFloat>(1.2)));
  EXPECT_FALSE(path.holds(static_cast<CGFloat>(7.2), static_cast<CGFloat>(0.8)));
}

TEST(ArcToPoint, RightAngleEitherWayRound) {
  for (const CGFloat side : {CGFloat{1}, CGFloat{-1}}) {
    Path path;
    CGPathMoveToPoint(path.ref, nullptr, 0, 0);
    CGPathAddArcToPoint(path.ref, nullptr, 10, 0, 10, 10 * side, 4);
    expect_point(path.current(), 10, static_cast<double>(4 * side));
    expect_box(path, 0, static_cast<double>(std::min<CGFloat>(0, 4 * side)), 10,
               static_cast<double>(std::max<CGFloat>(0, 4 * side)));
  }
}

TEST(ArcToPoint, ALargeRadiusRunsBackwardsPastTheStart) {
  Path path;
  CGPathMoveToPoint(path.ref, nullptr, 5, 0);
  CGPathAddArcToPoint(path.ref, nullptr, 10, 0, 10, 10, 20);
  expect_point(path.current(), 10, 20);
  EXPECT_NEAR(static_cast<double>(NSMinX(CGPathGetBoundingBox(path.ref))), -10, 1e-4);
}

TEST(ArcToPoint, DegenerateCornersGiveALineToTheCorner) {
  const auto end_of = [](CGPoint p1, CGPoint p2, CGFloat radius) {
    Path path;
    CGPathMoveToPoint(path.ref, nullptr, 1, 1);
    CGPathAddArcToPoint(path.ref, nullptr, p1.x, p1.y, p2.x, p2.y, radius);
    return path.current();
  };
  expect_point(end_of({1, 1}, {5, 5}, 2), 1, 1);   // start and corner coincide
  expect_point(end_of({4, 1}, {4, 1}, 2), 4, 1);   // corner and end coincide
  expect_point(end_of({4, 1}, {9, 1}, 2), 4, 1);   // straight on
  expect_point(end_of({4, 1}, {-9, 1}, 2), 4, 1);  // straight back
  expect_point(end_of({4, 1}, {4, 9}, 0), 4, 1);   // no radius
}

TEST(ArcToPoint, WithoutACurrentPointDoesNothing) {
  Path path;
  CGPathAddArcToPoint(path.ref, nullptr, 10, 0, 10, 10, 4);
  EXPECT_TRUE(CGPathIsEmpty(path.ref));
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

TEST(Arc, GoesCounterClockwiseUnlessAskedOtherwise) {
  Path path;
  CGPathAddArc(path.ref, nullptr, 0, 0, 10, 0, half_turn / 2, false);
  expect_point(path.current(), 0, 10);
  expect_box(path, 0, 0, 10, 10);
  Path other;
  CGPathAddArc(other.ref, nullptr, 0, 0, 10, 0, half_turn / 2, true);
  expect_point(other.current(), 0, 10);
  EXPECT_NEAR(static_cast<double>(NSMinX(CGPathGetBoundingBox(other.ref))), -10, 1e-4);
  EXPECT_NEAR(static_cast<double>(NSMinY(CGPathGetBoundingBox(other.ref))), -10, 1e-4);
}

TEST(Arc, IsRoundAndStartsWithALineFromTheCurrentPoint) {
  Canvas canvas(40, 40);
  CGContextRef c = canvas.context();
  CGContextMoveToPoint(c, 20, 20);
  CGContextAddArc(c, 20, 20, 15, 0, half_turn, 0);
  CGContextFillPath(c);
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 40; ++x) {
      const double r = std::hypot(x + 0.5 - 20, y + 0.5 - 20);
      if (y < 20 || r > 16) {
        EXPECT_EQ(canvas.at(x, y), clear_pixel) << x << ", " << y;
      } else if (r < 14) {
        EXPECT_EQ(canvas.at(x, y), black_pixel) << x << ", " << y;
      }
    }
  }
}

TEST(Arc, AWholeTurnIsACircleEitherWay) {
  for (const bool clockwise : {false, true}) {
    Path path;
    CGPathAddArc(path.ref, nullptr, 5, 5, 5, 0, 2 * half_turn, clockwise);
    for (const auto& [x, y] : {std::pair{1, 5}, {9, 5}, {5, 1}, {5, 9}, {5, 5}})
      EXPECT_TRUE(path.holds(static_cast<CGFloat>(x), static_cast<CGFloat>(y)));
    EXPECT_FALSE(path.holds(1, 1));
  }
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
  Path path;
  CGPathAddRect(path.ref, nullptr, CGRectMake(0, 0, 10, 10));
  CGPathAddRect(path.ref, nullptr, CGRectMake(2, 2, 4, 4));
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
  CGPathAddRect(path.ref, nullptr, CGRectMake(100, 100, 10, 10));
  const CGAffineTransform moved = CGAffineTransformMakeTranslation(100, 100);
  EXPECT_TRUE(CGPathContainsPoint(path.ref, &moved, {5, 5}, false));
  EXPECT_FALSE(CGPathContainsPoint(path.ref, nullptr, {5, 5}, false));
  EXPECT_FALSE(CGPathContainsPoint(nullptr, nullptr, {5, 5}, false));
}

TEST(Path, TakesCoordinatesThroughTheTransform) {
  const CGAffineTransform doubled = CGAffineTransformMakeScale(2, 2);
  Path path;
  CGPathMoveToPoint(path.ref, &doubled, 1, 2);
  CGPathAddCurveToPoint(path.ref, &doubled, 1, 3, 2, 4, 3, 4);
  expect_point(path.current(), 6, 8);
  Path both;
  CGPathAddPath(both.ref, &doubled, path.ref);
  expect_point(both.current(), 12, 16);
}

TEST(Path, CopiesAreApart) {
  Path path;
  CGPathMoveToPoint(path.ref, nullptr, 1, 2);
  CGMutablePathRef copy = CGPathCreateMutableCopy(path.ref);
  CGPathAddLineToPoint(copy, nullptr, 5, 5);
  expect_point(path.current(), 1, 2);
  expect_point(CGPathGetCurrentPoint(copy), 5, 5);
  CGPathRelease(copy);
}

TEST(Path, SegmentsNeedACurrentPointAndFiniteNumbers) {
  const auto nan = static_cast<CGFloat>(NAN);
  Path path;
  CGPathAddLineToPoint(path.ref, nullptr, 5, 5);
  CGPathAddCurveToPoint(path.ref, nullptr, 1, 1, 2, 2, 3, 3);
  CGPathCloseSubpath(path.ref);
  CGPathMoveToPoint(path.ref, nullptr, nan, 1);
  CGPathAddEllipseInRect(path.ref, nullptr, CGRectMake(0, nan, 5, 5));
  CGPathAddArc(path.ref, nullptr, 1, 1, nan, 0, 1, false);
  EXPECT_TRUE(CGPathIsEmpty(path.ref));
  CGPathMoveToPoint(path.ref, nullptr, 1, 1);
  CGPathAddLineToPoint(path.ref, nullptr, static_cast<CGFloat>(INFINITY), 1);
  expect_point(path.current(), 1, 1);
}

}  // namespace
}  // namespace cocoa
