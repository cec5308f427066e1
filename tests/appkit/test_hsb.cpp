// SPDX-License-Identifier: MIT
#include "appkit/private/hsb.h"

#include "color_components.h"

namespace cocoa {
namespace {

TEST(HsbColor, IsRedGreenAndBlueAtThirdsOfTheCircle) {
  expect_color(*color_of({0, 1, 1}), 1, 0, 0);
  expect_color(*color_of({1.0 / 6, 1, 1}), 1, 1, 0);
  expect_color(*color_of({1.0 / 3, 1, 1}), 0, 1, 0);
  expect_color(*color_of({0.5, 1, 1}), 0, 1, 1);
  expect_color(*color_of({2.0 / 3, 1, 1}), 0, 0, 1);
  expect_color(*color_of({5.0 / 6, 1, 1}), 1, 0, 1);
  expect_color(*color_of({1, 1, 1}), 1, 0, 0);
  // Half as bright and half as pure: 0.5 and 0.5 (1 - 0.5).
  expect_color(*color_of({0, 0.5, 0.5}), 0.5, 0.25, 0.25);
}

TEST(HsbColor, ComesBackFromItsColor) {
  for (const double hue : {0.02, 0.2, 0.4, 0.6, 0.8, 0.98}) {
    for (const double saturation : {0.1, 0.5, 1.0}) {
      for (const double brightness : {0.1, 0.7, 1.0}) {
        const Hsb back = hsb_of(*color_of({hue, saturation, brightness}), {});
        EXPECT_NEAR(back.hue, hue, rounding);
        EXPECT_NEAR(back.saturation, saturation, rounding);
        EXPECT_NEAR(back.brightness, brightness, rounding);
      }
    }
  }
}

TEST(HsbColor, WhatAGreyOrBlackLeavesOpenStays) {
  const Hsb before = {0.4, 0.6, 0.8};
  EXPECT_EQ(hsb_of(*rgb(0.5, 0.5, 0.5), before), (Hsb{0.4, 0, 0.5}));
  EXPECT_EQ(hsb_of(*rgb(0, 0, 0), before), (Hsb{0.4, 0.6, 0}));
  EXPECT_EQ(hsb_of(*rgb(1, 0, 0), {1, 0.5, 0.5}), (Hsb{1, 1, 1})) << "the upper red stays the upper one";
}

}  // namespace
}  // namespace cocoa
