// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>

#include "appkit/private/damage.h"

namespace cocoa {
namespace {

TEST(Damage, MergesWhatOverlapsAndKeepsWhatDoesNot) {
  Damage damage;
  damage.add({0, 0, 100, 100});
  damage.add({200, 0, 100, 100});
  ASSERT_EQ(damage.rects().size(), 2U);
  damage.add({50, 50, 200, 20});  // meets both
  ASSERT_EQ(damage.rects().size(), 1U);
  EXPECT_EQ(damage.rects()[0], (PixelRect{0, 0, 300, 100}));
}

TEST(Damage, MergesNeighboursThatWasteLittle) {
  Damage damage;
  damage.add({0, 0, 100, 100});
  damage.add({140, 0, 100, 100});  // 4000 pixels between them
  ASSERT_EQ(damage.rects().size(), 1U);
  EXPECT_EQ(damage.rects()[0], (PixelRect{0, 0, 240, 100}));
  damage.add({0, 142, 240, 100});  // 42 rows of 240 pixels
  EXPECT_EQ(damage.rects().size(), 2U);
}

TEST(Damage, IgnoresRectanglesWithoutArea) {
  Damage damage;
  damage.add({0, 0, 0, 10});
  damage.add({0, 0, 10, -1});
  EXPECT_TRUE(damage.empty());
}

TEST(Damage, StaysAHandfulAndCoversEverythingAdded) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> place(0, 990);
  Damage damage;
  std::vector<PixelRect> added;
  for (int i = 0; i < 200; ++i) {
    added.push_back({place(random), place(random), 5, 5});
    damage.add(added.back());
  }
  EXPECT_LE(damage.rects().size(), 8U);
  for (const PixelRect& rect : added) {
    bool covered = false;
    for (const PixelRect& kept : damage.rects()) {
      covered |= rect.x >= kept.x && rect.y >= kept.y && rect.x + rect.width <= kept.x + kept.width &&
                 rect.y + rect.height <= kept.y + kept.height;
    }
    EXPECT_TRUE(covered);
  }
}

TEST(DevicePixels, GrowOutwardsFromPointsAndCountFromTheTop) {
  EXPECT_EQ(device_pixels(NSMakeRect(10, 20, 30, 40), 1, 100, 100), (PixelRect{10, 40, 30, 40}));
  EXPECT_EQ(device_pixels(NSMakeRect(10, 20, 30, 40), 2, 200, 200), (PixelRect{20, 80, 60, 80}));
  // 1.5 device pixels a point: 10.5 to 13.5 in x, 4.5 to 6 from the bottom in y.
  EXPECT_EQ(device_pixels(NSMakeRect(7, 3, 2, 1), 1.5, 30, 30), (PixelRect{10, 24, 4, 2}));
}

TEST(DevicePixels, AreCutToTheWindow) {
  EXPECT_EQ(device_pixels(NSMakeRect(-10, -10, 1e9F, 1e9F), 1, 50, 40), (PixelRect{0, 0, 50, 40}));
  EXPECT_EQ(device_pixels(NSMakeRect(60, 0, 10, 10), 1, 50, 40).width, 0);
}

}  // namespace
}  // namespace cocoa
