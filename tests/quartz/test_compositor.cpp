// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>

#include "quartz/private/compositor.h"

namespace cocoa {
namespace {

int channel_of(uint32_t pixel, int i) {
  return static_cast<int>(pixel >> (8 * i) & 0xFF);
}

/// Premultiplied; often nothing or opaque.
FineColor random_color(std::mt19937& random) {
  const auto any = static_cast<uint32_t>(random());
  const uint32_t alpha = any % 4 == 0 ? 0 : any % 3 == 0 ? FineColor::full : any / 16 % FineColor::full;
  FineColor color{};
  for (int i = 0; i < 3; ++i)
    color.channel[i] = static_cast<uint16_t>(random() % (alpha + 1));
  color.channel[3] = static_cast<uint16_t>(alpha);
  return color;
}

uint32_t random_pixel(std::mt19937& random) {
  const auto any = static_cast<uint32_t>(random());
  const uint32_t alpha = any % 2 ? 255 : any / 2 % 256;
  uint32_t pixel = alpha << 24;
  for (int shift = 0; shift < 24; shift += 8)
    pixel |= static_cast<uint32_t>(random() % (alpha + 1)) << shift;
  return pixel;
}

/// Often nothing or all, in stretches as in shapes.
std::vector<uint8_t> random_coverage(std::mt19937& random, size_t count) {
  std::vector<uint8_t> coverage;
  while (coverage.size() < count) {
    const uint8_t value = random() % 3 == 0 ? 0 : random() % 2 ? 255 : static_cast<uint8_t>(random());
    coverage.insert(coverage.end(), 1 + random() % 6, value);
  }
  coverage.resize(count);
  return coverage;
}

TEST(Compositor, BlendsAsExactArithmeticDoes) {
  std::mt19937 random(21);
  for (int i = 0; i < 200000; ++i) {
    const FineColor color = random_color(random);
    const uint32_t below = random_pixel(random);
    const auto coverage = static_cast<uint8_t>(random());
    uint32_t result = below;
    blend_row(&result, 1, {&color, false}, &coverage);
    const double rest = 1 - color.channel[3] / (1.0 * FineColor::full) * coverage / 255;
    for (int k = 0; k < 4; ++k) {
      const double exact = color.channel[k] / 256.0 * coverage / 255 + channel_of(below, k) * rest;
      ASSERT_NEAR(channel_of(result, k), exact, 0.52) << k << ' ' << below << ' ' << int{coverage};
    }
  }
}

TEST(Compositor, RowsComeOutAsTheirPixelsOneByOne) {
  // Single pixels are blended by plain code, rows by blocks.
  std::mt19937 random(22);
  for (size_t count = 1; count < 40; ++count) {
    for (int i = 0; i < 60; ++i) {
      std::vector<FineColor> colors(count);
      for (FineColor& color : colors)
        color = i % 2 ? random_color(random) : colors.front();
      std::vector<uint32_t> row(count);
      for (uint32_t& pixel : row)
        pixel = random_pixel(random);
      const auto coverage = random_coverage(random, count);
      const bool is_one = i % 2 == 0;
      const uint8_t* through = i % 3 ? coverage.data() : nullptr;
      std::vector<uint32_t> expected = row;
      for (size_t k = 0; k < count; ++k)
        blend_row(&expected[k], 1, {&colors[is_one ? 0 : k], false}, through ? through + k : nullptr);
      blend_row(row.data(), count, {colors.data(), is_one}, through);
      ASSERT_EQ(row, expected) << count << " pixels, case " << i;
    }
  }
}

TEST(Compositor, FullCoverageIsAsNoneGivenAndEmptyCoverageChangesNothing) {
  std::mt19937 random(23);
  for (int i = 0; i < 20000; ++i) {
    const FineColor color = random_color(random);
    const uint32_t below = random_pixel(random);
    const uint8_t all = 255;
    const uint8_t none = 0;
    uint32_t through_all = below;
    uint32_t direct = below;
    uint32_t untouched = below;
    blend_row(&through_all, 1, {&color, true}, &all);
    blend_row(&direct, 1, {&color, true}, nullptr);
    blend_row(&untouched, 1, {&color, true}, &none);
    ASSERT_EQ(through_all, direct);
    ASSERT_EQ(untouched, below);
    if (color.is_opaque()) {
      ASSERT_EQ(direct, color.pixel());
    }
  }
}

TEST(Compositor, WhatIsOpaqueStaysOpaque) {
  std::mt19937 random(24);
  for (int i = 0; i < 100000; ++i) {
    const FineColor color = random_color(random);
    const auto coverage = static_cast<uint8_t>(random());
    uint32_t pixel = random_pixel(random) | 0xFF000000;
    blend_row(&pixel, 1, {&color, true}, &coverage);
    ASSERT_EQ(pixel >> 24, 255U);
  }
}

TEST(Compositor, MultipliesCoverageToTheNearest) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      auto product = static_cast<uint8_t>(a);
      const auto by = static_cast<uint8_t>(b);
      multiply(&product, &by, 1);
      ASSERT_EQ(product, (a * b + 127) / 255) << a << ", " << b;
    }
  }
}

TEST(Compositor, PicturesArePaintedAsTheyAreAndWithLess) {
  std::mt19937 random(25);
  std::vector<uint32_t> picture(12);
  for (uint32_t& pixel : picture)
    pixel = random_pixel(random);
  const PixelView view{picture.data(), 4, {2, 3, 6, 6}};
  std::vector<uint32_t> target(100, 0);
  PictureSource as_it_is(view, 1);
  paint({target.data(), 10, {0, 0, 10, 10}}, box_coverage(view.bounds), box_coverage({0, 0, 10, 10}),
        as_it_is);
  for (int y = 3; y < 6; ++y) {
    for (int x = 2; x < 6; ++x)
      EXPECT_EQ(target[size_t{10} * static_cast<size_t>(y) + static_cast<size_t>(x)],
                picture[static_cast<size_t>(4 * (y - 3) + x - 2)]);
  }
  std::fill(target.begin(), target.end(), 0);
  PictureSource half(view, 0.5);
  paint({target.data(), 10, {0, 0, 10, 10}}, box_coverage(view.bounds), box_coverage({0, 0, 10, 10}), half);
  for (int k = 0; k < 4; ++k)
    EXPECT_NEAR(channel_of(target[32], k), channel_of(picture[0], k) / 2.0, 0.51);
}

TEST(Compositor, ShapeAndClipAreBothRespected) {
  std::vector<uint8_t> bytes(100);
  for (size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<uint8_t>(i * 7);
  const Coverage shape = byte_coverage({0, 0, 10, 10}, bytes.data());
  const Coverage clip = byte_coverage({3, 2, 8, 9}, std::vector<uint8_t>(35, 128).data());
  PlainSource white(FineColor{{65280, 65280, 65280, 65280}});
  std::vector<uint32_t> target(100, 0);
  paint({target.data(), 10, {0, 0, 10, 10}}, shape, clip, white);
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 10; ++x) {
      const auto i = size_t{10} * static_cast<size_t>(y) + static_cast<size_t>(x);
      const bool within = x >= 3 && x < 8 && y >= 2 && y < 9;
      EXPECT_NEAR(channel_of(target[i], 3), within ? bytes[i] * 128 / 255.0 : 0, 1) << x << ", " << y;
    }
  }
}

}  // namespace
}  // namespace cocoa
