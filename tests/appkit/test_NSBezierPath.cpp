// SPDX-License-Identifier: MIT
#include "appkit/NSBezierPath.h"

#include <gtest/gtest.h>

#include <string>

#include "appkit/NSColor.h"
#include "canvas.h"
#include "foundation/NSLog.h"

namespace cocoa {
namespace {

TEST(NSBezierPath, FillsAnOpenPathAsIfClosedAndLeavesItAsItIs) {
  Canvas canvas(10, 10);
  NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
  const auto path = NSBezierPath::bezierPath();
  path->moveToPoint({2, 2});
  path->lineToPoint({8, 2});
  path->lineToPoint({8, 8});
  path->lineToPoint({2, 8});
  path->fill();
  EXPECT_EQ(canvas.count(red), 36);
  path->fill();
  EXPECT_EQ(CGPathGetCurrentPoint(path->CGPath()), (CGPoint{2, 8}));
}

TEST(NSBezierPath, StrokesHalfItsWidthToEitherSide) {
  Canvas canvas(10, 10);
  NSColor::colorWithDeviceRed_green_blue_alpha(0, 0, 1, 1)->set();
  const auto path = NSBezierPath::bezierPath();
  path->setLineWidth(2);
  path->moveToPoint({0, 5});
  path->lineToPoint({10, 5});
  path->stroke();
  EXPECT_EQ(canvas.count(blue), 20);
  EXPECT_EQ(canvas.at(3, 4), blue);
  EXPECT_EQ(canvas.at(3, 5), blue);
}

TEST(NSBezierPath, ALineWithoutAStartIsLoggedAndLeftOut) {
  std::string log;
  const NSLogHook hook([&](std::string_view line) { log = line; });
  const auto path = NSBezierPath::bezierPath();
  path->lineToPoint({1, 1});
  EXPECT_TRUE(path->isEmpty());
  EXPECT_EQ(log, "NSBezierPath: a line needs a current point");
}

TEST(NSBezierPath, ClipRectIntersectsTheClip) {
  Canvas canvas(10, 10);
  NSColor::colorWithDeviceRed_green_blue_alpha(1, 0, 0, 1)->set();
  NSBezierPath::clipRect(NSMakeRect(0, 0, 5, 10));
  NSBezierPath::clipRect(NSMakeRect(3, 0, 7, 10));
  CGContextFillRect(canvas.context(), NSMakeRect(0, 0, 10, 10));
  EXPECT_EQ(canvas.count(red), 20);
}

}  // namespace
}  // namespace cocoa
