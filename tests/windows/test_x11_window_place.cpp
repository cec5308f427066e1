// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "windows/private/x11_window_place.h"

namespace cocoa {
namespace {

TEST(X11WindowPlace, CountsPixelsFromTheTopOfTheScreen) {
  X11WindowPlace place(1.5, 900, false);
  place.put({{10, 20}, {100, 50}});
  EXPECT_EQ(place.x(), 15);
  EXPECT_EQ(place.y(), 900 - 30 - 75);
  EXPECT_EQ(place.width(), 150);
  EXPECT_EQ(place.height(), 75);
  EXPECT_EQ(place.frame(), NSMakeRect(10, 20, 100, 50));
}

TEST(X11WindowPlace, KeepsTheExactSizeUntilOthersGiveAnother) {
  X11WindowPlace place(1, 900, false);
  place.put({{0, 0}, {100.25, 50.5}});
  EXPECT_EQ(place.width(), 101);
  EXPECT_EQ(place.height(), 51);
  EXPECT_EQ(place.size(), (NSSize{100.25, 50.5}));
  place.setPixelSize(120, 60);
  EXPECT_EQ(place.size(), (NSSize{120, 60}));
}

TEST(X11WindowPlace, HasAtLeastOnePixelAndAtMostWhatTheProtocolHas) {
  X11WindowPlace place(1, 900, false);
  place.put({{-1e9, 1e9}, {0, -5}});
  EXPECT_EQ(place.width(), 1);
  EXPECT_EQ(place.height(), 1);
  EXPECT_EQ(place.x(), -largest_pixel_extent);
  EXPECT_EQ(place.y(), 900 - largest_pixel_extent - 1);
}

TEST(X11WindowPlace, KeepsItsUpperLeftCornerInsideAHost) {
  X11WindowPlace place(1, 100, true);
  place.put({{-10, 0}, {300, 200}});
  EXPECT_EQ(place.x(), 0);
  EXPECT_EQ(place.y(), 0) << "the host's window is still too low";
  EXPECT_TRUE(place.setParentHeight(240));
  EXPECT_FALSE(place.setParentHeight(240));
  EXPECT_EQ(place.frame(), NSMakeRect(0, 40, 300, 200));
}

TEST(X11WindowPlace, CountsAsTheDrawnMiddleOfAWindowThatIsTooLarge) {
  X11WindowPlace place(2, 20000, false);
  place.setPixelSize(20000, 20000);
  ASSERT_TRUE(place.hasMargin());
  const PixelRect& drawn = place.drawn();
  EXPECT_EQ(place.size(), (NSSize{CGFloat(drawn.width / 2.0), CGFloat(drawn.height / 2.0)}));
  EXPECT_EQ(place.frame().origin.x, CGFloat(drawn.x / 2.0));
  EXPECT_EQ(place.locationOf(drawn.x, drawn.y + drawn.height - 1), (NSPoint{0, 0}));
  EXPECT_TRUE(place.covers(0, 19999)) << "what is around it belongs to the window";
}

TEST(X11WindowPlace, TellsThePixelUnderThePointerByItsLowerLeftCorner) {
  X11WindowPlace place(2, 900, false);
  place.put({{0, 0}, {100, 50}});
  EXPECT_EQ(place.locationOf(0, 99), (NSPoint{0, 0}));
  EXPECT_EQ(place.locationOf(3.9, 0.2), (NSPoint{1.5, 49.5}));
  EXPECT_EQ(place.locationOf(-1, 100), (NSPoint{-0.5, -0.5}));
}

TEST(X11WindowPlace, KnowsWhetherItMoved) {
  X11WindowPlace place(1, 900, false);
  place.put({{10, 20}, {100, 50}});
  EXPECT_FALSE(place.moveTo(place.x(), place.y()));
  EXPECT_TRUE(place.moveTo(50, 60));
  EXPECT_TRUE(place.covers(149, 109));
  EXPECT_FALSE(place.covers(150, 109));
  EXPECT_FALSE(place.covers(50, 59));
  EXPECT_EQ(place.frameAt(0, 0, 50).origin, (NSPoint{0, 0}));
}

}  // namespace
}  // namespace cocoa
