// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "appkit/private/content_fit.h"

namespace cocoa {
namespace {

TEST(ContentFit, KeepsTheProportionsAndLiesInTheMiddle) {
  ContentFit fit;
  EXPECT_TRUE(fit.fitInto({400, 300}, {100, 100}, 1));
  EXPECT_EQ(fit.factor(), 3);
  EXPECT_NEAR(fit.origin().x * 3, 50, 1e-4);
  EXPECT_EQ(fit.origin().y, 0);
}

TEST(ContentFit, BeginsOnAWholePixel) {
  ContentFit fit;
  EXPECT_TRUE(fit.fitInto({103, 100}, {100, 100}, 1));
  EXPECT_EQ(fit.origin(), (NSPoint{1, 0})) << "not 1.5";
  EXPECT_TRUE(fit.fitInto({103, 100}, {100, 100}, 2));
  EXPECT_EQ(fit.origin(), (NSPoint{1.5, 0})) << "which is a whole one here";
}

TEST(ContentFit, StaysWithoutArea) {
  ContentFit fit;
  EXPECT_TRUE(fit.fitInto({200, 200}, {100, 100}, 1));
  EXPECT_FALSE(fit.fitInto({0, 200}, {100, 100}, 1));
  EXPECT_FALSE(fit.fitInto({200, 200}, {100, 0}, 1));
  EXPECT_EQ(fit.factor(), 2);
}

TEST(ContentFit, PutsRectanglesOfTheContentIntoTheWindow) {
  ContentFit fit;
  fit.set(2, 11);
  EXPECT_EQ(fit.inWindow(NSMakeRect(5, 6, 7, 8)), NSMakeRect(32, 34, 14, 16));
}

TEST(ContentFit, TellsEventsInPointsOfTheContent) {
  ContentFit fit;
  fit.set(2, 11);
  WindowEvent event;
  event.type = WindowEventType::mouse_dragged;
  event.location = {32, 34};
  event.delta_x = 8;
  event.delta_y = -4;
  const WindowEvent told = fit.inContent(event);
  EXPECT_EQ(told.location, (NSPoint{5, 6}));
  EXPECT_EQ(told.delta_x, 4);
  EXPECT_EQ(told.delta_y, -2);
}

TEST(ContentFit, LeavesTheTurnOfAWheelAlone) {
  ContentFit fit;
  fit.set(2, 0);
  WindowEvent event;
  event.type = WindowEventType::scroll_wheel;
  event.delta_y = 1;
  EXPECT_EQ(fit.inContent(event).delta_y, 1);
}

}  // namespace
}  // namespace cocoa
