// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <numeric>
#include <ostream>
#include <random>

#include "exact_coverage.h"
#include "quartz/private/rasterizer.h"

namespace cocoa {
namespace {

constexpr FillRule rules[] = {FillRule::nonzero, FillRule::even_odd};

std::vector<uint8_t> drawn(const Polygon& polygon, FillRule rule, PixelBounds area) {
  std::vector<uint8_t> bytes(static_cast<size_t>(area.width()) * static_cast<size_t>(area.height()), 99);
  Rasterizer rasterizer;
  rasterizer.draw(polygon, rule, area, bytes.data(), static_cast<size_t>(area.width()));
  return bytes;
}

void expect_exact(const Polygon& polygon, PixelBounds area) {
  const auto edges = edges_of(polygon);
  for (const FillRule rule : rules) {
    const auto bytes = drawn(polygon, rule, area);
    const uint8_t* byte = bytes.data();
    for (int y = area.y0; y < area.y1; ++y) {
      for (int x = area.x0; x < area.x1; ++x) {
        ASSERT_NEAR(*byte++, 255 * exact_coverage(edges, rule, x, y), 0.501)
            << x << ", " << y << (rule == FillRule::even_odd ? " even-odd" : "");
      }
    }
  }
}

/// The corners are random; `contours` of `corners` each.
Polygon random_polygon(std::mt19937& random, int contours, int corners, double from, double to) {
  std::uniform_real_distribution<double> place(from, to);
  Polygon polygon;
  for (int i = 0; i < contours; ++i) {
    for (int k = 0; k < corners; ++k) {
      const double x = place(random);
      polygon.add(x, place(random));
    }
    polygon.close();
  }
  return polygon;
}

TEST(Rasterizer, CoversTheExactAreaOfRandomPolygonsThatCrossThemselves) {
  std::mt19937 random(11);
  for (const int corners : {3, 4, 5, 8, 12, 30}) {
    for (int i = 0; i < 60 / corners; ++i) {
      SCOPED_TRACE(testing::Message() << corners << " corners, polygon " << i);
      expect_exact(random_polygon(random, 1 + i % 3, corners, -3, 23), {0, 0, 20, 20});
    }
  }
}

TEST(Rasterizer, CoversTheExactAreaOfTinyPolygons) {
  std::mt19937 random(12);
  for (int i = 0; i < 60; ++i) {
    SCOPED_TRACE(i);
    expect_exact(random_polygon(random, 2, 3 + i % 6, 1.1, i % 2 ? 1.3 : 2.9), {0, 0, 4, 4});
  }
}

TEST(Rasterizer, CoversTheExactAreaOfManyEdgesThatBeginInOneRow) {
  // As letters in a line of text do, from the left, from the right and in no order, some upon each other.
  std::mt19937 random(16);
  std::vector<int> order(60);
  std::iota(order.begin(), order.end(), 0);
  for (int i = 0; i < 3; ++i) {
    SCOPED_TRACE(i);
    Polygon polygon;
    for (const int place : order) {
      const double x = place * 0.5 + static_cast<double>(random() % 64) / 64;
      polygon.add(x, 1.125);
      polygon.add(x + 0.75, 1.5 + static_cast<double>(random() % 64) / 32);
      polygon.add(x - 0.25, 1.25);
      polygon.close();
    }
    expect_exact(polygon, {-1, 0, 33, 5});
    i == 0 ? std::reverse(order.begin(), order.end()) : std::shuffle(order.begin(), order.end(), random);
  }
}

TEST(Rasterizer, CoversTheExactAreaOfHugePolygons) {
  std::mt19937 random(13);
  for (int i = 0; i < 40; ++i) {
    SCOPED_TRACE(i);
    expect_exact(random_polygon(random, 1, 6, -3e4, 3e4), {-5, -5, 6, 6});
  }
}

TEST(Rasterizer, CoversTheExactAreaWhereCornersAndEdgesCoincide) {
  // Corners on a coarse grid: edges that meet in corners, lie upon each other, run along rows and columns.
  std::mt19937 random(14);
  for (int i = 0; i < 150; ++i) {
    SCOPED_TRACE(i);
    Polygon polygon;
    for (int contour = 0; contour < 2; ++contour) {
      for (int k = 0; k < 3 + i % 7; ++k) {
        const double x = static_cast<double>(random() % 13) / 4;
        polygon.add(x, static_cast<double>(random() % 13) / 4);
      }
      polygon.close();
    }
    expect_exact(polygon, {-1, -1, 5, 5});
  }
}

TEST(Rasterizer, AContourThatCoversItselfTwiceCoversOnceOrNotAtAll) {
  Polygon twice;
  for (int turn = 0; turn < 2; ++turn) {
    twice.add(0.5, 0.5);
    twice.add(2.5, 0.5);
    twice.add(2.5, 1.25);
    twice.add(0.5, 1.25);
  }
  twice.close();
  const auto covered = drawn(twice, FillRule::nonzero, {0, 0, 3, 2});
  EXPECT_EQ(covered, (std::vector<uint8_t>{64, 128, 64, 32, 64, 32}));
  EXPECT_EQ(drawn(twice, FillRule::even_odd, {0, 0, 3, 2}), std::vector<uint8_t>(6, 0));
}

TEST(Rasterizer, OppositeWindingsWithinAPixelDoNotCancel) {
  // A bow tie within one pixel: its halves wind in opposite directions.
  Polygon tie;
  tie.add(0.25, 0.25);
  tie.add(0.75, 0.75);
  tie.add(0.75, 0.25);
  tie.add(0.25, 0.75);
  tie.close();
  for (const FillRule rule : rules)
    EXPECT_EQ(drawn(tie, rule, {0, 0, 1, 1}).front(), 32);
}

TEST(Rasterizer, APartComesOutAsTheWholeDoes) {
  std::mt19937 random(15);
  for (int i = 0; i < 40; ++i) {
    const Polygon polygon = random_polygon(random, 2, 30, -20, 60);
    const PixelBounds area{-25, -25, 65, 65};
    const FillRule rule = rules[i % 2];
    const auto whole = drawn(polygon, rule, area);
    const auto at = [&](int limit) {
      return area.x0 + static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    for (int k = 0; k < 20; ++k) {
      const int x = at(80);
      const int y = at(80);
      const PixelBounds part{x, y, x + 1 + static_cast<int>(random() % 10),
                             y + 1 + static_cast<int>(random() % 10)};
      const auto bytes = drawn(polygon, rule, part);
      const uint8_t* byte = bytes.data();
      for (int py = part.y0; py < part.y1; ++py) {
        for (int px = part.x0; px < part.x1; ++px)
          ASSERT_EQ(*byte++, whole[static_cast<size_t>((py - area.y0) * area.width() + px - area.x0)]);
      }
    }
  }
}

TEST(Rasterizer, PolygonsOutsideTheAreaCoverNothingOfIt) {
  const auto square = [](double x, double y) {
    Polygon polygon;
    for (const auto& [dx, dy] : {std::pair{0, 0}, {5, 0}, {5, 5}, {0, 5}})
      polygon.add(x + dx, y + dy);
    polygon.close();
    return polygon;
  };
  for (const auto& [x, y] : {std::pair{-10, 2}, {20, 2}, {2, -10}, {2, 20}, {-5, 0}, {10, 0}})
    EXPECT_EQ(drawn(square(x, y), FillRule::nonzero, {0, 0, 10, 10}), std::vector<uint8_t>(100, 0));
  EXPECT_EQ(drawn(Polygon(), FillRule::nonzero, {0, 0, 10, 10}), std::vector<uint8_t>(100, 0));
}

TEST(Rasterizer, LongRowsEndAsTheyShould) {
  // Thousands of slanted bars in a row of pixels: after each of them nothing is left over.
  Polygon bars;
  for (int i = 0; i < 5000; ++i) {
    const double x = 3 * i;
    for (const auto& [dx, dy] : {std::pair{0.125, 0.0}, {1.0, 0.0}, {1.5, 3.0}, {0.5, 3.0}})
      bars.add(x + dx, dy);
    bars.close();
  }
  const auto bytes = drawn(bars, FillRule::nonzero, {0, 0, 15000, 3});
  for (size_t i = 0; i < bytes.size(); ++i)
    ASSERT_EQ(bytes[i], bytes[i - i % 15000 + i % 3]) << i;
}

/// Two periods of the oscillator through 101 points, as tall as wide curves of the editor, and the line back.
Polygon curve_area(double factor, double index, double scale) {
  Polygon polygon;
  for (int i = 0; i <= 100; ++i) {
    const double phase = 2 * std::numbers::pi * i / 100;
    polygon.add(2.8 * i * scale, (80 + 75 * std::sin(phase + index * std::sin(factor * phase))) * scale);
  }
  polygon.close();
  return polygon;
}

TEST(Rasterizer, CoversTheExactAreaOfWildCurves) {
  for (const auto& [factor, index] : {std::pair{0.0, 0.0}, {3.0, 1.5}, {8.0, 5.0}, {20.0, 20.0}}) {
    for (const double scale : {0.5, 1.0}) {
      SCOPED_TRACE(testing::Message() << factor << ", " << index << " at " << scale);
      expect_exact(
          curve_area(factor, index, scale),
          {0, static_cast<int>(60 * scale), static_cast<int>(120 * scale), static_cast<int>(100 * scale)});
    }
  }
}

TEST(Rasterizer, CoversWhatSamplesSay) {
  std::mt19937 random(16);
  for (int i = 0; i < 4; ++i) {
    const Polygon polygon = random_polygon(random, 1, 12, -3, 23);
    const auto edges = edges_of(polygon);
    for (const FillRule rule : rules) {
      const auto bytes = drawn(polygon, rule, {0, 0, 20, 20});
      double sum = 0;
      int pixels = 0;
      for (int k = 0; k < 400; ++k) {
        const double sampled = 255 * sampled_coverage(edges, rule, k % 20, k / 20);
        if (sampled > 0 && sampled < 255) {
          sum += bytes[static_cast<size_t>(k)] - sampled;
          ++pixels;
        }
      }
      EXPECT_NEAR(sum / pixels, 0, 1);
    }
  }
}

TEST(Rasterizer, ASineIsItsOwnMirrorImage) {
  // Turned by half a turn about its middle the curve covers itself.
  for (const double scale : {0.5, 1.0, 1.25, 2.0, 4.0}) {
    const int width = static_cast<int>(280 * scale);
    const int height = static_cast<int>(160 * scale);
    const auto bytes = drawn(curve_area(0, 0, scale), FillRule::nonzero, {0, 0, width, height});
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        ASSERT_EQ(bytes[static_cast<size_t>(y * width + x)],
                  bytes[static_cast<size_t>((height - 1 - y) * width + width - 1 - x)])
            << x << ", " << y << " at " << scale;
      }
    }
  }
}

}  // namespace
}  // namespace cocoa
