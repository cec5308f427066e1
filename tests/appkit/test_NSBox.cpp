// SPDX-License-Identifier: MIT
#include "appkit/NSBox.h"

#include <gtest/gtest.h>

#include <cmath>

#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "canvas.h"

namespace cocoa {
namespace {

Ref<NSBox> box_titled(std::string_view title, NSTitlePosition position, NSBorderType border = NSLineBorder) {
  auto box = make<NSBox>(NSMakeRect(5, 5, 130, 80));
  box->setTitle(title);
  box->setTitlePosition(position);
  box->setBorderType(border);
  return box;
}

CGFloat title_height() {
  const auto attributes = make<NSMutableDictionary>();
  attributes->setObject_forKey(NSFont::systemFontOfSize(11).get(), NSFontAttributeName);
  return std::ceil(sizeWithAttributes(make<NSString>("Demo").get(), attributes.get()).height) + 2;
}

TEST(NSBox, WithoutATitleTheBorderIsTheBounds) {
  EXPECT_EQ(box_titled("", NSAtTop)->borderRect(), NSMakeRect(0, 0, 130, 80));
  EXPECT_EQ(box_titled("Demo", NSNoTitle)->borderRect(), NSMakeRect(0, 0, 130, 80));
}

TEST(NSBox, AtTheTopTheBorderRunsThroughTheMiddleOfTheTitle) {
  EXPECT_EQ(box_titled("Demo", NSAtTop)->borderRect(),
            NSMakeRect(0, 0, 130, 80 - std::ceil(title_height() / 2)));
  EXPECT_EQ(box_titled("Demo", NSBelowTop)->borderRect(), NSMakeRect(0, 0, 130, 80));
}

TEST(NSBox, AboveTheTopTheTitleStandsOutsideTheBorder) {
  EXPECT_EQ(box_titled("Demo", NSAboveTop)->borderRect(), NSMakeRect(0, 0, 130, 80 - title_height() - 2));
  EXPECT_EQ(box_titled("Demo", NSAboveTop, NSNoBorder)->borderRect(),
            NSMakeRect(0, 0, 130, 80 - title_height()));
}

TEST(NSBox, BelowTheBottomTheBorderMovesUp) {
  const CGFloat taken = title_height() + 2;
  EXPECT_EQ(box_titled("Demo", NSBelowBottom)->borderRect(), NSMakeRect(0, taken, 130, 80 - taken));
}

TEST(NSBox, HasOneContentViewAtATime) {
  const auto box = box_titled("", NSNoTitle);
  const Ref<NSView> old(box->contentView());
  const auto content = make<NSView>(NSMakeRect(2, 2, 100, 50));
  box->setContentView(content.get());
  EXPECT_EQ(box->subviews().size(), 1U);
  EXPECT_EQ(content->superview(), box.get());
  EXPECT_EQ(old->superview(), nullptr);
  box->setContentView(nullptr);
  EXPECT_EQ(box->contentView(), content.get());
}

TEST(NSBox, DrawsItsBorderAndItsTitle) {
  Canvas canvas(130, 80);
  box_titled("Demo", NSAtTop)->drawTree(NSMakeRect(0, 0, 130, 80));
  EXPECT_NE(canvas.at(0, 20), 0U);
  EXPECT_EQ(canvas.at(65, 40), 0U);
  int title_pixels = 0;
  for (int x = 10; x < 45; ++x) {
    for (int y = 64; y < 80; ++y)
      title_pixels += canvas.at(x, y) != 0 ? 1 : 0;
  }
  EXPECT_GT(title_pixels, 20);
}

}  // namespace
}  // namespace cocoa
