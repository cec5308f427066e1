// SPDX-License-Identifier: MIT
#include "quartz/private/coverage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "quartz/private/compositor.h"

namespace cocoa {
namespace {

/// A byte for each pixel of the area.
std::vector<uint8_t> bytes_of(const Coverage& coverage, PixelBounds area) {
  std::vector<uint8_t> bytes(static_cast<size_t>(area.width()) * static_cast<size_t>(area.height()));
  const Coverage all = box_coverage(area);
  CoveredRows rows(coverage, all);
  for (int y = rows.bounds().y0; y < rows.bounds().y1; ++y) {
    int before = area.x0;
    for (const CoveredPart& part : rows.row(y)) {
      EXPECT_TRUE(before <= part.x0 && part.x0 < part.x1 && part.x1 <= area.x1);
      before = part.x1;
      for (int x = part.x0; x < part.x1; ++x)
        bytes[static_cast<size_t>((y - area.y0) * area.width() + x - area.x0)] =
            part.coverage ? part.coverage[x - part.x0] : 255;
    }
  }
  return bytes;
}

/// Often nothing or all, in stretches as in shapes.
std::vector<uint8_t> random_bytes(std::mt19937& random, size_t count) {
  std::vector<uint8_t> bytes;
  while (bytes.size() < count) {
    const uint8_t value = random() % 3 == 0 ? 0 : random() % 2 ? 255 : static_cast<uint8_t>(random());
    bytes.insert(bytes.end(), 1 + random() % 30, value);
  }
  bytes.resize(count);
  return bytes;
}

TEST(CoverageRows, HoldAllThatIsCoveredAndNoLongGaps) {
  for (int length = 1; length < 300; length += 1 + length / 20) {
    for (int distance = 1; distance < 100; distance += 3) {
      std::vector<uint8_t> bytes(static_cast<size_t>(length));
      for (int i = length % 7; i < length; i += distance)
        bytes[static_cast<size_t>(i)] = 1;
      CoverageRows rows;
      rows.add_row(bytes.data(), length);
      std::vector<uint8_t> found(bytes.size());
      for (const CoverageRows::Run& run : rows.row(0)) {
        ASSERT_TRUE(run.x0 < run.x1 && run.x1 <= length && rows.bytes_of(run));
        std::copy_n(rows.bytes_of(run), run.x1 - run.x0, found.begin() + run.x0);
        constexpr std::array<uint8_t, 46> gap{};
        const uint8_t* const last = rows.bytes_of(run) + (run.x1 - run.x0);
        EXPECT_EQ(std::search(rows.bytes_of(run), last, gap.begin(), gap.end()), last);
      }
      ASSERT_EQ(found, bytes) << length << " " << distance;
    }
  }
}

TEST(CoverageRows, HaveOneRunForManyShortStretches) {
  // As a row of a wild curve has them: each is shorter than what painting it on its own takes.
  std::vector<uint8_t> bytes;
  for (int i = 0; i < 40; ++i)
    bytes.insert(bytes.end(), 8 + static_cast<size_t>(i % 3) * 8, i % 2 ? 0 : 255);
  const auto count = static_cast<int>(bytes.size());
  CoverageRows rows;
  rows.add_row(bytes.data(), count);
  EXPECT_EQ(rows.row(0).size(), 1U);
  EXPECT_EQ(bytes_of(row_coverage(std::move(rows), 0, 0), {0, 0, count, 1}), bytes);
}

TEST(CoverageRows, OfABodyTakeBytesAtItsEdgesOnly) {
  std::vector<uint8_t> bytes(1000, 255);
  bytes.front() = bytes.back() = 77;
  CoverageRows rows;
  for (int y = 0; y < 100; ++y)
    rows.add_row(bytes.data(), 1000);
  EXPECT_LT(rows.bytes(), 20000U);
}

TEST(Coverage, OfBytesIsThemAndItsBoundsHoldWhatIsCoveredOnly) {
  std::mt19937 random(31);
  const PixelBounds area{-7, 5, 61, 9};
  std::vector<uint8_t> bytes = random_bytes(random, 68 * 4);
  EXPECT_EQ(bytes_of(byte_coverage(area, bytes.data()), area), bytes);
  std::fill(bytes.begin(), bytes.end(), uint8_t{0});
  EXPECT_TRUE(byte_coverage(area, bytes.data()).bounds.empty());
  bytes[68 + 10] = bytes[2 * 68 + 30] = 1;
  EXPECT_EQ(byte_coverage(area, bytes.data()).bounds, (PixelBounds{3, 6, 24, 8}));
}

TEST(Coverage, IntersectionsMultiply) {
  std::mt19937 random(32);
  const PixelBounds area{0, 0, 90, 6};
  for (int i = 0; i < 50; ++i) {
    const PixelBounds a_bounds{3, 1, 83, 6};
    const PixelBounds b_bounds{10, 0, 90, 5};
    const Coverage a = byte_coverage(a_bounds, random_bytes(random, 80 * 5).data());
    const Coverage b = byte_coverage(b_bounds, random_bytes(random, 80 * 5).data());
    std::vector<uint8_t> expected = bytes_of(a, area);
    multiply(expected.data(), bytes_of(b, area).data(), expected.size());
    ASSERT_EQ(bytes_of(intersection(a, b), area), expected);
    // The same as where it is drawn.
    std::vector<uint32_t> pixels(expected.size());
    PlainSource white(FineColor{{65280, 65280, 65280, 65280}});
    paint({pixels.data(), 90, area}, a, b, white);
    for (size_t k = 0; k < pixels.size(); ++k)
      ASSERT_EQ(pixels[k] >> 24, expected[k]) << k;
  }
}

TEST(Coverage, IsCutByBoxesAndMovedWithoutCopies) {
  const Coverage a = byte_coverage({0, 0, 4, 4}, std::vector<uint8_t>(16, 128).data());
  const Coverage cut = intersection(a, moved(box_coverage({0, 0, 8, 1}), 1, 1));
  EXPECT_EQ(cut.bounds, (PixelBounds{1, 1, 4, 2}));
  EXPECT_EQ(cut.rows, a.rows);
  EXPECT_TRUE(intersection(a, box_coverage({7, 7, 9, 9})).bounds.empty());
  const Coverage away = moved(cut, -10, 5);
  EXPECT_EQ(away.rows, a.rows);
  EXPECT_EQ(bytes_of(away, {-10, 6, -5, 7}), (std::vector<uint8_t>{0, 128, 128, 128, 0}));
}

TEST(CoverageCache, ForgetsWhatWasNotUsedForLongest) {
  CoverageCache cache;
  const std::vector<uint8_t> bytes(40000, 1);
  const auto make = [&](double key) { cache.keep({key}, byte_coverage({0, 0, 200, 200}, bytes.data())); };
  make(1);
  make(2);
  const auto kept = cache.find({1})->rows;
  for (int i = 3; i < 40; ++i) {
    make(i);
    ASSERT_NE(cache.find({1}), nullptr) << i;
    EXPECT_EQ(cache.find({1})->rows, kept);
  }
  EXPECT_EQ(cache.find({2}), nullptr);
  size_t known = 0;
  for (int i = 1; i < 40; ++i)
    known += cache.find({static_cast<double>(i)}) ? 1 : 0;
  EXPECT_LE(known * bytes.size(), CoverageCache::most_bytes);
  EXPECT_GE(known, 5U);
}

TEST(CoverageCache, TellsKeysApartAndDoesNotKeepTheLargest) {
  CoverageCache cache;
  cache.keep({1, 2}, box_coverage({0, 0, 1, 1}));
  EXPECT_NE(cache.find({1, 2}), nullptr);
  EXPECT_EQ(cache.find({2, 1}), nullptr);
  EXPECT_EQ(cache.find({1}), nullptr);
  EXPECT_EQ(cache.find({1, 2, 0}), nullptr);
  const std::vector<uint8_t> bytes(CoverageCache::most_bytes, 1);
  cache.keep({3}, byte_coverage({0, 0, 512, 1024}, bytes.data()));
  EXPECT_EQ(cache.find({3}), nullptr);
  EXPECT_NE(cache.find({1, 2}), nullptr);
}

}  // namespace
}  // namespace cocoa
