#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "quartz/private/coverage.h"

namespace cocoa {
namespace {

constexpr PixelBounds everything{-10000, -10000, 10000, 10000};

Polygon triangle(double x, double y, double size) {
  Polygon polygon;
  polygon.add(x, y);
  polygon.add(x + size, y + size / 3);
  polygon.add(x + size / 2, y + size);
  polygon.close();
  return polygon;
}

TEST(CoverageCache, KnowsAShapeAgainWhereverItComesInWholePixels) {
  CoverageCache cache;
  Polygon first = triangle(2.25, 3.5, 9);
  Polygon again = triangle(-17.75, 40.5, 9);
  Polygon between = triangle(2.5, 3.5, 9);
  const Coverage a = cache.find(first, FillRule::nonzero, true, everything);
  const Coverage b = cache.find(again, FillRule::nonzero, true, everything);
  const Coverage c = cache.find(between, FillRule::nonzero, true, everything);
  EXPECT_EQ(a.bytes, b.bytes);
  EXPECT_EQ(b.bounds, (PixelBounds{-18, 40, -8, 50}));
  EXPECT_NE(a.bytes, c.bytes);
}

TEST(CoverageCache, TellsRulesAndSmoothnessApart) {
  CoverageCache cache;
  Coverage found[4];
  for (int i = 0; i < 4; ++i) {
    Polygon polygon = triangle(0.5, 0.5, 9);
    found[i] = cache.find(polygon, i % 2 ? FillRule::even_odd : FillRule::nonzero, i < 2, everything);
  }
  for (int i = 0; i < 4; ++i) {
    for (int k = 0; k < i; ++k)
      EXPECT_NE(found[i].bytes, found[k].bytes);
  }
  for (const uint8_t byte : *found[2].bytes)
    EXPECT_TRUE(byte == 0 || byte == 255);
}

TEST(CoverageCache, ForgetsWhatWasNotUsedForLongest) {
  CoverageCache cache;
  const auto find = [&cache](double size) {
    Polygon polygon = triangle(0.5, 0.5, size);
    return cache.find(polygon, FillRule::nonzero, true, everything).bytes;
  };
  const auto kept = find(100);
  const auto forgotten = find(101);
  // Each takes more than 40 KB.
  for (int i = 0; i < 20; ++i) {
    find(210 + i);
    EXPECT_EQ(find(100), kept) << i;
  }
  EXPECT_NE(find(101), forgotten);
}

TEST(CoverageCache, OfALargeShapeCoversWhatIsNeeded) {
  CoverageCache cache;
  Polygon polygon = triangle(-5000.5, -5000.5, 9000);
  const Coverage part = cache.find(polygon, FillRule::nonzero, true, {0, 0, 20, 10});
  EXPECT_EQ(part.bounds, (PixelBounds{0, 0, 20, 10}));
  EXPECT_EQ(part.bytes->size(), 200U);
}

TEST(CoverageCache, WholePixelsNeedNoBytes) {
  CoverageCache cache;
  Polygon box;
  for (const auto& [x, y] : {std::pair{3, 4}, {3, 9}, {12, 9}, {12, 4}})
    box.add(x, y);
  box.close();
  const Coverage coverage = cache.find(box, FillRule::even_odd, true, everything);
  EXPECT_EQ(coverage.bounds, (PixelBounds{3, 4, 12, 9}));
  EXPECT_EQ(coverage.bytes, nullptr);
}

TEST(Coverage, IntersectionsMultiply) {
  const Coverage a = byte_coverage({0, 0, 4, 4}, std::vector<uint8_t>(16, 128));
  const Coverage b = byte_coverage({2, 1, 6, 3}, std::vector<uint8_t>(8, 64));
  const Coverage both = intersection(a, b);
  EXPECT_EQ(both.bounds, (PixelBounds{2, 1, 4, 3}));
  EXPECT_EQ(*both.at(3, 2), 32);
  const Coverage cut = intersection(a, box_coverage({1, 1, 9, 2}));
  EXPECT_EQ(cut.bounds, (PixelBounds{1, 1, 4, 2}));
  EXPECT_EQ(cut.bytes, a.bytes);
  EXPECT_TRUE(intersection(a, box_coverage({7, 7, 9, 9})).bounds.empty());
}

TEST(Coverage, PartsHoldAllThatIsCoveredAndNoLongGaps) {
  for (size_t length = 1; length < 100; ++length) {
    for (size_t distance = 1; distance < 40; distance += 3) {
      std::vector<uint8_t> bytes(length);
      for (size_t i = length % 7; i < length; i += distance)
        bytes[i] = 1;
      std::vector<uint8_t> found(length);
      const uint8_t* before = bytes.data();
      for_covered(bytes.data(), length, [&](const uint8_t* first, const uint8_t* last) {
        ASSERT_TRUE(before <= first && first < last && last <= bytes.data() + length);
        ASSERT_TRUE(*first != 0 && last[-1] != 0);
        std::copy(first, last, found.begin() + (first - bytes.data()));
        constexpr std::array<uint8_t, 16> gap{};
        EXPECT_EQ(std::search(first, last, gap.begin(), gap.end()), last);
        before = last;
      });
      ASSERT_EQ(found, bytes) << length << " " << distance;
    }
  }
}

}  // namespace
}  // namespace cocoa
