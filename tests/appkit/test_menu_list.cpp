// SPDX-License-Identifier: MIT
#include "appkit/private/menu_list.h"

#include <gtest/gtest.h>

#include <string>

#include "appkit/NSFont.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/private/menu_tracking.h"
#include "canvas.h"

namespace cocoa {
namespace {

Ref<NSMenu> menu_of(int count) {
  auto menu = make<NSMenu>();
  for (int i = 0; i < count; ++i)
    menu->addItem(make<NSMenuItem>("item " + std::to_string(i)).get());
  return menu;
}

// A line is 18 high, a separator 9, with 4 above the first and below the last.

TEST(MenuList, IsAsTallAsItsLinesAndAsWideAsItsWidestTitle) {
  const auto menu = menu_of(2);
  menu->addItem(NSMenuItem::separatorItem().get());
  menu->addItem(make<NSMenuItem>("by far the longest title").get());
  const auto list = make<MenuList>(*menu);
  EXPECT_EQ(list->naturalSize().height, 4 + 18 + 18 + 9 + 18 + 4);
  const auto attributes = make<NSMutableDictionary>();
  attributes->setObject_forKey(NSFont::systemFontOfSize(11).get(), NSFontAttributeName);
  const CGFloat text =
      sizeWithAttributes(make<NSString>("by far the longest title").get(), attributes.get()).width;
  EXPECT_GE(list->naturalSize().width, text + 30);
  EXPECT_LE(list->naturalSize().width, text + 50);
  EXPECT_EQ(list->middleOf(0), 13);
  EXPECT_EQ(list->middleOf(3), 4 + 18 + 18 + 9 + 9);
}

TEST(MenuList, FindsTheLineUnderAPoint) {
  const auto list = make<MenuList>(*menu_of(3));
  const CGFloat height = NSHeight(list->bounds());
  EXPECT_EQ(list->lineAt({20, height - 2}), -1) << "the rim";
  EXPECT_EQ(list->lineAt({20, height - 5}), 0);
  EXPECT_EQ(list->lineAt({20, height - CGFloat(21.5)}), 0);
  EXPECT_EQ(list->lineAt({20, height - CGFloat(22.5)}), 1);
  EXPECT_EQ(list->lineAt({20, 4}), 2);
  EXPECT_EQ(list->lineAt({20, 3}), -1);
  EXPECT_EQ(list->lineAt({-1, 30}), -1);
  EXPECT_EQ(list->lineAt({20, height + 5}), -1);
  EXPECT_EQ(list->arrowAt({20, 3}), 0) << "everything shows";
}

TEST(MenuList, ATallListScrollsBetweenItsEnds) {
  const auto list = make<MenuList>(*menu_of(20));
  list->setFrameSize({100, 100});
  // 20 · 18 + 8 = 368 high
  EXPECT_FALSE(list->scrollTo(-5));
  EXPECT_TRUE(list->scrollTo(1000));
  EXPECT_EQ(list->scrolled(), 268);
  EXPECT_EQ(list->rectOf(19).origin.y, 4);
  list->scrollTo(100);
  EXPECT_EQ(list->arrowAt({50, 99}), 1);
  EXPECT_EQ(list->arrowAt({50, 1}), -1);
  EXPECT_EQ(list->arrowAt({50, 50}), 0);
  EXPECT_EQ(list->lineAt({50, 99}), -1) << "under an arrow";
  EXPECT_EQ(list->lineAt({50, 50}), 8) << "(150 - 4) / 18";
  list->scrollTo(0);
  EXPECT_EQ(list->arrowAt({50, 99}), 0) << "there is nothing above";
}

TEST(MenuList, BringsAnyLineWhollyBetweenTheArrows) {
  const auto list = make<MenuList>(*menu_of(20));
  list->setFrameSize({100, 100});
  for (const int line : {19, 0, 7, 12, 1, 18}) {
    list->scrollToShow(line);
    const NSRect rect = list->rectOf(line);
    EXPECT_EQ(list->lineAt({50, NSMinY(rect) + 1}), line);
    EXPECT_EQ(list->lineAt({50, NSMaxY(rect) - 1}), line);
  }
}

TEST(MenuList, MarksAndLightsLines) {
  const auto menu = menu_of(2);
  menu->itemAtIndex(1)->setState(NSOnState);
  const auto list = make<MenuList>(*menu);
  const auto drawn = [&list](int x0, int y0, int x1, int y1, auto is) {
    const NSSize size = list->bounds().size;
    Canvas canvas(static_cast<int>(size.width), static_cast<int>(size.height));
    list->drawTree(list->bounds());
    int count = 0;
    for (int x = x0; x < x1; ++x) {
      for (int y = y0; y < y1; ++y)
        count += is(canvas.at(x, y)) ? 1 : 0;
    }
    return count;
  };
  const auto bright = [](uint32_t p) { return (p & 0xFF) > 0xA0 && (p >> 8 & 0xFF) > 0xA0; };
  const auto lit = [](uint32_t p) { return (p & 0xFF) > (p >> 8 & 0xFF) + 0x40; };
  // 44 high: the second line lies from 4 to 22, the first from 22 to 40.
  EXPECT_GT(drawn(4, 4, 20, 22, bright), 5) << "the check mark";
  EXPECT_EQ(drawn(4, 22, 20, 40, bright), 0);
  EXPECT_GT(drawn(22, 22, 60, 40, bright), 10) << "the title";
  EXPECT_EQ(drawn(2, 4, 20, 40, lit), 0);
  list->setHighlighted(0);
  EXPECT_EQ(drawn(2, 22, 20, 40, lit), 18 * 18);
  EXPECT_EQ(drawn(2, 4, 20, 22, lit), 0);
}

// Where a list goes: the screen is 1000 × 800.

constexpr NSRect screen = {{0, 0}, {1000, 800}};

TEST(MenuPlace, CoversTheControlWithTheLineThatIsAsked) {
  const MenuPlace place = place_menu(NSMakeRect(300, 400, 120, 20), {80, 62}, 31, screen);
  EXPECT_EQ(place.frame, NSMakeRect(300, 379, 120, 62));
  EXPECT_EQ(place.scrolled, 0);
  EXPECT_EQ(place_menu(NSMakeRect(300, 400, 120, 20), {200, 62}, 13, screen).frame,
            NSMakeRect(300, 361, 200, 62))
      << "wider than the control, with the first line over it";
}

TEST(MenuPlace, StaysOnTheScreen) {
  const NSSize list = {200, 100};
  EXPECT_EQ(place_menu(NSMakeRect(950, 780, 60, 20), list, 50, screen).frame, NSMakeRect(800, 700, 200, 100));
  EXPECT_EQ(place_menu(NSMakeRect(-30, 0, 60, 20), list, 50, screen).frame, NSMakeRect(0, 0, 200, 100));
  EXPECT_EQ(place_menu(NSMakeRect(100, 100, 60, 20), {3000, 100}, 50, screen).frame,
            NSMakeRect(0, 60, 1000, 100));
}

TEST(MenuPlace, ATooTallListIsCutToTheScreenAndScrolledToItsLine) {
  // The line in question is 1000 below the top of 2000 and shall be at 410.
  const MenuPlace place = place_menu(NSMakeRect(300, 400, 120, 20), {80, 2000}, 1000, screen);
  EXPECT_EQ(place.frame, NSMakeRect(300, 0, 120, 800));
  EXPECT_EQ(place.scrolled, 610) << "1410 - 800";
  EXPECT_EQ(place_menu(NSMakeRect(300, 400, 120, 20), {80, 2000}, 13, screen).scrolled, 0);
  EXPECT_EQ(place_menu(NSMakeRect(300, 400, 120, 20), {80, 2000}, 1990, screen).scrolled, 1200);
}

}  // namespace
}  // namespace cocoa
