// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <numbers>
#include <random>

#include "exact_coverage.h"
#include "quartz/private/path_data.h"
#include "quartz/private/rasterizer.h"

namespace cocoa {
namespace {

using std::numbers::pi;

constexpr PixelBounds area{0, 0, 60, 60};

std::vector<uint8_t> covered(const Polygon& outline, PixelBounds within = area) {
  std::vector<uint8_t> bytes(static_cast<size_t>(within.width()) * static_cast<size_t>(within.height()));
  Rasterizer().draw(outline, FillRule::nonzero, within, bytes.data(), static_cast<size_t>(within.width()));
  return bytes;
}

Lines line_of(std::vector<DevicePoint> points, bool closed = false) {
  Lines lines;
  lines.sub_paths.push_back({points.size(), closed});
  lines.points = std::move(points);
  return lines;
}

Polygon stroke(const Lines& lines, const Pen& pen, const Matrix& m = identity_matrix) {
  Polygon outline;
  stroke_outline(lines, pen, m, outline);
  return outline;
}

double distance_to(const Lines& lines, double x, double y) {
  double least = INFINITY;
  for (size_t i = 1; i < lines.points.size(); ++i) {
    const DevicePoint a = lines.points[i - 1];
    const DevicePoint b = lines.points[i];
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double t = square > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / square, 0.0, 1.0) : 0;
    least = std::min(least, std::hypot(a.x + t * dx - x, a.y + t * dy - y));
  }
  return least;
}

TEST(StrokeOutline, RoundOnesCoverAllWithinHalfTheWidthAndNoMore) {
  std::mt19937 random(31);
  std::uniform_real_distribution<double> place(10, 50);
  for (int i = 0; i < 30; ++i) {
    // Some of long segments, some of ones much shorter than the line is wide.
    std::vector<DevicePoint> points;
    for (int k = 0; k < 12; ++k) {
      const DevicePoint p{place(random), place(random)};
      points.push_back(i % 2 || k == 0 ? p
                                       : DevicePoint{points.back().x + (p.x - 30) / 10,
                                                     points.back().y + (p.y - 30) / 10});
    }
    const Lines lines = line_of(points);
    const double width = 1 + i % 9;
    const auto bytes = covered(stroke(lines, {width, 10, LineCap::round, LineJoin::round}));
    for (int y = 0; y < 60; ++y) {
      for (int x = 0; x < 60; ++x) {
        const double distance = distance_to(lines, x + 0.5, y + 0.5);
        const int byte = bytes[size_t{60} * static_cast<size_t>(y) + static_cast<size_t>(x)];
        // Half a pixel's diagonal.
        if (distance < width / 2 - 0.72) {
          ASSERT_EQ(byte, 255) << x << ", " << y << " line " << i;
        } else if (distance > width / 2 + 0.72) {
          ASSERT_EQ(byte, 0) << x << ", " << y << " line " << i;
        }
      }
    }
  }
}

TEST(StrokeOutline, MitersEndAtTheirLimit) {
  // The miter's length, in widths, is 1 / sin of half the angle: 2 for 60 degrees.
  const auto reach = [](double limit) {
    const Lines corner = line_of({{10, 30}, {40, 30}, {10, 30 + 30 * std::tan(pi / 3)}});
    const PixelBounds bounds = stroke(corner, {8, limit, LineCap::butt, LineJoin::miter}).bounds();
    return bounds.x1;
  };
  EXPECT_EQ(reach(2.01), 47);  // 4 · 2 · cos 30° beyond the corner, rounded up
  EXPECT_EQ(reach(1.99), 44);  // 4 · cos 30°, rounded up
}

TEST(StrokeOutline, ClosedOnesHaveJoinsAndNoCaps) {
  const Lines square = line_of({{20, 20}, {40, 20}, {40, 40}, {20, 40}}, true);
  const auto bytes = covered(stroke(square, {6, 10, LineCap::butt, LineJoin::miter}));
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 60; ++x) {
      const bool outside = x < 17 || y < 17 || x >= 43 || y >= 43;
      const bool hole = x >= 23 && y >= 23 && x < 37 && y < 37;
      ASSERT_EQ(bytes[size_t{60} * static_cast<size_t>(y) + static_cast<size_t>(x)],
                outside || hole ? 0 : 255)
          << x << ", " << y;
    }
  }
}

TEST(StrokeOutline, ThereAndBackAgainIsALine) {
  const auto bytes =
      covered(stroke(line_of({{20, 30}, {40, 30}}, true), {4, 10, LineCap::butt, LineJoin::bevel}));
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 60; ++x) {
      const bool within = x >= 20 && x < 40 && y >= 28 && y < 32;
      ASSERT_EQ(bytes[size_t{60} * static_cast<size_t>(y) + static_cast<size_t>(x)], within ? 255 : 0)
          << x << ", " << y;
    }
  }
}

TEST(StrokeOutline, WithoutLengthIsADotWhenCapsAreRoundOrSquare) {
  const Lines dot = line_of({{30, 30}, {30, 30}});
  EXPECT_TRUE(stroke(dot, {10, 10, LineCap::butt, LineJoin::round}).empty());
  EXPECT_EQ(stroke(dot, {10, 10, LineCap::square, LineJoin::round}).bounds(), (PixelBounds{25, 25, 35, 35}));
  const Polygon round = stroke(dot, {10, 10, LineCap::round, LineJoin::round});
  double sum = 0;
  for (const uint8_t byte : covered(round))
    sum += byte / 255.0;
  EXPECT_NEAR(sum, pi * 25, 0.2);
  // A place to begin is not a line.
  EXPECT_TRUE(stroke(line_of({{30, 30}}), {10, 10, LineCap::round, LineJoin::round}).empty());
}

TEST(StrokeOutline, ThePenIsRoundInUserSpace) {
  const Matrix wide{4, 0, 0, 1, 0, 0};
  const PixelBounds bounds =
      stroke(line_of({{30, 30}, {30, 30}}), {6, 10, LineCap::round, LineJoin::round}, wide).bounds();
  EXPECT_EQ(bounds, (PixelBounds{18, 27, 42, 33}));
  EXPECT_TRUE(stroke(line_of({{3, 3}, {9, 9}}), {6, 10, LineCap::round, LineJoin::round}, {0, 0, 0, 1, 0, 0})
                  .empty());
}

// What the editor draws, at edges, against an independent computation.

struct Error {
  double mean = 0;
  double worst = 0;
};

/// At pixels that are covered in part.
Error error_of(const Polygon& outline, PixelBounds within, const std::vector<TestEdge>& exact) {
  const auto bytes = covered(outline, within);
  Error error;
  int pixels = 0;
  for (int y = within.y0; y < within.y1; ++y) {
    for (int x = within.x0; x < within.x1; ++x) {
      const double reference = 255 * exact_coverage(exact, FillRule::nonzero, x, y);
      const int byte = bytes[static_cast<size_t>((y - within.y0) * within.width() + x - within.x0)];
      if (reference == 0 || reference == 255)
        continue;
      ++pixels;
      error.mean += std::abs(byte - reference);
      error.worst = std::max(error.worst, std::abs(byte - reference));
    }
  }
  error.mean /= std::max(pixels, 1);
  return error;
}

void add_contour(std::vector<TestEdge>& edges, const std::vector<DevicePoint>& contour) {
  for (size_t i = 0; i < contour.size(); ++i) {
    const DevicePoint a = contour[i];
    const DevicePoint b = contour[(i + 1) % contour.size()];
    if (a.y < b.y)
      edges.push_back({a.x, a.y, b.x, b.y, 1});
    if (a.y > b.y)
      edges.push_back({b.x, b.y, a.x, a.y, -1});
  }
}

std::vector<DevicePoint> ellipse_contour(DevicePoint center, double rx, double ry, int corners) {
  std::vector<DevicePoint> contour;
  contour.reserve(static_cast<size_t>(corners));
  for (int i = 0; i < corners; ++i)
    contour.push_back(
        {center.x + rx * std::cos(2 * pi * i / corners), center.y + ry * std::sin(2 * pi * i / corners)});
  return contour;
}

TEST(EdgePixels, OfCirclesAndCapsuleEndsAreWithinAThreeHundredth) {
  for (const double scale : {0.5, 1.0, 1.25, 1.5, 2.0, 3.0, 4.0}) {
    // The knob's pointer and a readout's end: an ellipse.
    for (const auto& [rx, ry] : {std::pair{5.0, 5.0}, {12.0, 14.5}}) {
      const CGRect rect = CGRectMake(static_cast<CGFloat>(1.3), static_cast<CGFloat>(2.6),
                                     static_cast<CGFloat>(2 * rx), static_cast<CGFloat>(2 * ry));
      PathData path;
      path.add_ellipse({scale, 0, 0, scale, 0, 0}, rect);
      Lines lines;
      path.flatten(lines);
      Polygon outline;
      fill_outline(lines, outline);
      std::vector<TestEdge> exact;
      add_contour(exact,
                  ellipse_contour({(1.3 + rx) * scale, (2.6 + ry) * scale}, rx * scale, ry * scale, 2000));
      const Error error = error_of(outline, outline.bounds(), exact);
      EXPECT_LE(error.mean, 1) << rx << " at " << scale;
      EXPECT_LE(error.worst, 3) << rx << " at " << scale;
    }
  }
}

// A line is the union of its segments, joins and caps: each a contour of its own, all wound alike.

class Pieces {
 public:
  Pieces(const Pen& pen, const Matrix& to_device) : pen_(pen), m_(to_device) {}
  const std::vector<TestEdge>& edges() const { return edges_; }

  /// In user space.
  void add_line(const std::vector<DevicePoint>& points, bool closed) {
    const size_t count = points.size();
    const size_t segments = closed ? count : count - 1;
    for (size_t i = 0; i < segments; ++i)
      add_segment(points[i], points[(i + 1) % count]);
    for (size_t i = closed ? 0 : 1; i < segments; ++i)
      add_join(points[(i + count - 1) % count], points[i], points[(i + 1) % count]);
    if (!closed) {
      add_cap(points[0], points[1]);
      add_cap(points[count - 1], points[count - 2]);
    }
  }

 private:
  double half() const { return pen_.width / 2; }
  void add(std::vector<DevicePoint> contour) {
    double twice_area = 0;
    for (DevicePoint& p : contour)
      p = m_.apply(p.x, p.y);
    for (size_t i = 0; i < contour.size(); ++i) {
      const DevicePoint& next = contour[(i + 1) % contour.size()];
      twice_area += contour[i].x * next.y - contour[i].y * next.x;
    }
    if (twice_area < 0)
      std::reverse(contour.begin(), contour.end());
    add_contour(edges_, contour);
  }
  /// From a to b, as long as half the line is wide.
  DevicePoint along(DevicePoint a, DevicePoint b) const {
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    return {(b.x - a.x) / length * half(), (b.y - a.y) / length * half()};
  }
  void add_segment(DevicePoint a, DevicePoint b) {
    const DevicePoint d = along(a, b);
    add({{a.x - d.y, a.y + d.x}, {b.x - d.y, b.y + d.x}, {b.x + d.y, b.y - d.x}, {a.x + d.y, a.y - d.x}});
  }
  /// A piece of the disc around p, from one place on its edge on.
  void add_pie(DevicePoint p, DevicePoint from, double angle) {
    std::vector<DevicePoint> contour{p};
    const double begin = std::atan2(from.y - p.y, from.x - p.x);
    for (int i = 0; i <= 100; ++i) {
      const double at = begin + angle * i / 100;
      contour.push_back({p.x + half() * std::cos(at), p.y + half() * std::sin(at)});
    }
    add(contour);
  }
  void add_join(DevicePoint a, DevicePoint p, DevicePoint b) {
    const DevicePoint in = along(a, p);
    const DevicePoint out = along(p, b);
    const double side = in.x * out.y - in.y * out.x > 0 ? 1 : -1;
    const DevicePoint first{p.x + side * in.y, p.y - side * in.x};
    const DevicePoint second{p.x + side * out.y, p.y - side * out.x};
    const double turn = std::acos((in.x * out.x + in.y * out.y) / (half() * half()));
    if (pen_.join == LineJoin::round) {
      add_pie(p, first, side * turn);
      return;
    }
    std::vector<DevicePoint> contour{p, first, second};
    if (pen_.join == LineJoin::miter && 1 / std::cos(turn / 2) <= pen_.miter_limit) {
      const double ahead = std::tan(turn / 2);
      contour.insert(contour.begin() + 2, {first.x + in.x * ahead, first.y + in.y * ahead});
    }
    add(contour);
  }
  void add_cap(DevicePoint p, DevicePoint from) {
    const DevicePoint d = along(from, p);
    if (pen_.cap == LineCap::round)
      add_pie(p, {p.x + d.y, p.y - d.x}, pi);
    if (pen_.cap == LineCap::square)
      add_segment(p, {p.x + d.x, p.y + d.y});
  }

  Pen pen_;
  Matrix m_;
  std::vector<TestEdge> edges_;
};

TEST(StrokeOutline, CoversTheUnionOfSegmentsJoinsAndCaps) {
  std::mt19937 random(32);
  std::uniform_real_distribution<double> place(3, 17);
  const Matrix matrices[] = {identity_matrix, {1, 0, 0, -1, 0, 20}, {1.25, 0.5, -0.25, 0.75, 0, 0}};
  for (int i = 0; i < 54; ++i) {
    SCOPED_TRACE(i);
    const Pen pen{0.6 + i % 7, i % 4 ? 10 : 1.5, static_cast<LineCap>(i % 3),
                  static_cast<LineJoin>(i / 3 % 3)};
    const Matrix& m = matrices[i / 9 % 3];
    const bool closed = i % 2 != 0;
    // Some of them with segments that are shorter than the line is wide.
    std::vector<DevicePoint> points;
    for (int k = 0; k < 3 + i % 4; ++k) {
      const DevicePoint p{place(random), place(random)};
      points.push_back(k == 0 || i < 27
                           ? p
                           : DevicePoint{points.back().x + (p.x - 10) / 4, points.back().y + (p.y - 10) / 4});
    }
    Pieces pieces(pen, m);
    pieces.add_line(points, closed);
    for (DevicePoint& p : points)
      p = m.apply(p.x, p.y);
    const Error error = error_of(stroke(line_of(points, closed), pen, m), {0, 0, 24, 24}, pieces.edges());
    EXPECT_LE(error.mean, 1);
    EXPECT_LE(error.worst, 3);
  }
}

TEST(StrokeOutline, OfSegmentsThatTurnBackAreAsWideAsAlone) {
  // There and back on one line, by each join: the tip is that of a cap, or cut off.
  for (const LineJoin join : {LineJoin::miter, LineJoin::round, LineJoin::bevel}) {
    for (const double way : {1.0, -1.0}) {
      const Lines lines = line_of({{30 - 10 * way, 30}, {30 + 10 * way, 30}, {30, 30}});
      const LineCap cap = join == LineJoin::round ? LineCap::round : LineCap::butt;
      const Lines alone = line_of({{30 - 10 * way, 30}, {30 + 10 * way, 30}});
      const Pen pen{4, 10, LineCap::butt, join};
      const auto bytes = covered(stroke(lines, pen), {30, 20, 60, 40});
      EXPECT_EQ(way > 0 ? bytes : covered(stroke(lines, pen), {0, 20, 30, 40}),
                way > 0 ? covered(stroke(alone, {4, 10, cap, join}), {30, 20, 60, 40})
                        : covered(stroke(alone, {4, 10, cap, join}), {0, 20, 30, 40}));
    }
  }
}

TEST(StrokeOutline, OfAnyPenHasNoMoreCornersThanAnEyeCanTell) {
  for (const double width : {1e-9, 1.0, 1e9, 1e300}) {
    const Polygon outline =
        stroke(line_of({{10, 10}, {20, 20}, {10, 20}}), {width, 10, LineCap::round, LineJoin::round});
    EXPECT_LT(outline.points().size(), 20000U) << width;
  }
}

/// Two periods of the oscillator, as a graph of the editor draws them.
std::vector<DevicePoint> curve(double factor, double index, double scale) {
  std::vector<DevicePoint> points;
  for (int i = 0; i <= 100; ++i) {
    const double phase = 2 * pi * i / 100;
    points.push_back(
        {(20 + 2.8 * i) * scale, (83.5 + 78.5 * std::sin(phase + index * std::sin(factor * phase))) * scale});
  }
  return points;
}

TEST(EdgePixels, OfCurvesAreasAndLinesAreWithinAThreeHundredth) {
  for (const double scale : {0.5, 1.0, 1.5, 2.0, 4.0}) {
    for (const auto& [factor, index] : {std::pair{0.0, 0.0}, {3.0, 1.5}, {8.0, 5.0}, {20.0, 20.0}}) {
      SCOPED_TRACE(testing::Message() << factor << ", " << index << " at " << scale);
      const std::vector<DevicePoint> points = curve(factor, index, scale);
      const int y = static_cast<int>(60 * scale);
      const PixelBounds part{static_cast<int>(60 * scale), y, static_cast<int>(60 * scale) + 60, y + 6};
      const Lines lines = line_of(points);
      Polygon fill;
      fill_outline(lines, fill);
      std::vector<TestEdge> exact;
      add_contour(exact, points);
      const Error area_error = error_of(fill, part, exact);
      EXPECT_LE(area_error.mean, 1);
      EXPECT_LE(area_error.worst, 3);

      // The line is the union of its segments and of a disc at each corner.
      exact.clear();
      for (size_t i = 0; i + 1 < points.size(); ++i) {
        const DevicePoint a = points[i];
        const DevicePoint b = points[i + 1];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        const double nx = (b.y - a.y) / length * scale;
        const double ny = (a.x - b.x) / length * scale;
        add_contour(exact,
                    {{a.x - nx, a.y - ny}, {b.x - nx, b.y - ny}, {b.x + nx, b.y + ny}, {a.x + nx, a.y + ny}});
        add_contour(exact, ellipse_contour(a, -scale, scale, 120));
      }
      const Pen pen{2, 10, LineCap::butt, LineJoin::round};
      const Error line_error = error_of(stroke(lines, pen, {scale, 0, 0, scale, 0, 0}), part, exact);
      EXPECT_LE(line_error.mean, 1);
      EXPECT_LE(line_error.worst, 3);
    }
  }
}

}  // namespace
}  // namespace cocoa
