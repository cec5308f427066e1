// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "canvas.h"

namespace cocoa {
namespace {

TEST(NSViewDrawing, PaintsBackToFrontEachCutToItsBounds) {
  Canvas canvas(20, 20);
  const auto root = make<ColorView>(NSMakeRect(0, 0, 20, 20), red);
  const auto back = make<ColorView>(NSMakeRect(2, 2, 10, 10), green);
  const auto front = make<ColorView>(NSMakeRect(8, 8, 10, 10), blue);
  root->addSubview(back.get());
  root->addSubview(front.get());
  root->drawTree(root->bounds());
  EXPECT_EQ(canvas.at(0, 0), red);
  EXPECT_EQ(canvas.at(3, 3), green);
  EXPECT_EQ(canvas.at(9, 9), blue);
  EXPECT_EQ(canvas.count(green), 100 - 16);
  EXPECT_EQ(canvas.count(blue), 100);
}

TEST(NSViewDrawing, DrawsOnlyWhatMeetsTheDirtyRectangle) {
  Canvas canvas(20, 20);
  const auto root = make<ColorView>(NSMakeRect(0, 0, 20, 20), red);
  const auto touched = make<ColorView>(NSMakeRect(2, 2, 6, 6), green);
  const auto untouched = make<ColorView>(NSMakeRect(12, 12, 6, 6), blue);
  root->addSubview(touched.get());
  root->addSubview(untouched.get());
  root->drawTree(NSMakeRect(4, 4, 2, 2));
  EXPECT_EQ(touched->dirty, NSMakeRect(2, 2, 2, 2));
  EXPECT_EQ(untouched->drawn, 0);
  EXPECT_EQ(canvas.count(green), 4);
  EXPECT_EQ(canvas.count(0), 396);
}

TEST(NSViewDrawing, LeavesOutWhatAnOpaqueViewHides) {
  Canvas canvas(20, 20);
  const auto root = make<ColorView>(NSMakeRect(0, 0, 20, 20), red, true);
  const auto behind = make<ColorView>(NSMakeRect(0, 0, 20, 20), green);
  const auto holder = make<ColorView>(NSMakeRect(2, 2, 16, 16), green);
  const auto opaque = make<ColorView>(NSMakeRect(1, 1, 10, 10), blue, true);
  const auto over = make<ColorView>(NSMakeRect(4, 4, 2, 2), red);
  root->addSubview(behind.get());
  root->addSubview(holder.get());
  holder->addSubview(opaque.get());
  holder->addSubview(over.get());
  root->drawTree(NSMakeRect(5, 5, 4, 4));
  EXPECT_EQ(root->drawn + behind->drawn + holder->drawn, 0);
  EXPECT_EQ(opaque->drawn, 1);
  EXPECT_EQ(over->drawn, 1);
  EXPECT_EQ(canvas.count(blue) + canvas.count(red), 16);
}

TEST(NSViewDrawing, HiddenViewsAndWhatTheyHoldAreNotDrawn) {
  Canvas canvas(10, 10);
  const auto root = make<ColorView>(NSMakeRect(0, 0, 10, 10), red);
  const auto hidden = make<ColorView>(NSMakeRect(0, 0, 10, 10), green, true);
  root->addSubview(hidden.get());
  hidden->setHidden(true);
  root->drawTree(root->bounds());
  EXPECT_EQ(canvas.count(red), 100);
}

}  // namespace
}  // namespace cocoa
