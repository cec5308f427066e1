// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "appkit/private/swallowed_clicks.h"

namespace cocoa {
namespace {

TEST(SwallowedClicks, AreThoseThatTakeTheKeysFromAChild) {
  SwallowedClicks clicks;
  EXPECT_TRUE(clicks.press(0, 10, true));
  EXPECT_TRUE(clicks.isHeld(0));
  EXPECT_TRUE(clicks.release(0));
  EXPECT_FALSE(clicks.isHeld(0));
  EXPECT_FALSE(clicks.release(0));
  EXPECT_FALSE(clicks.press(0, 11, false));
  EXPECT_FALSE(clicks.isHeld(0));
}

TEST(SwallowedClicks, AreThoseForWhichAManagerHasTakenThem) {
  SwallowedClicks clicks;
  clicks.childEnded(10);
  EXPECT_TRUE(clicks.press(0, 10, false));
  EXPECT_FALSE(clicks.press(1, 10, false)) << "once";
}

TEST(SwallowedClicks, AreNotTheFirstOnesAfterACloseByKey) {
  SwallowedClicks clicks;
  clicks.childEnded(std::nullopt);
  EXPECT_FALSE(clicks.press(0, 10, false));
  clicks.childEnded(9);
  EXPECT_FALSE(clicks.press(0, 10, false)) << "that press was made somewhere else";
}

TEST(SwallowedClicks, HoldSeveralButtons) {
  SwallowedClicks clicks;
  EXPECT_TRUE(clicks.press(0, 10, true));
  EXPECT_TRUE(clicks.press(1, 11, true));
  EXPECT_TRUE(clicks.release(0));
  EXPECT_TRUE(clicks.isHeld(1));
}

}  // namespace
}  // namespace cocoa
