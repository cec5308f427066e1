// SPDX-License-Identifier: MIT
#include <xkbcommon/xkbcommon-keysyms.h>

#include <functional>
#include <vector>

#include "appkit/NSWindow.h"
#include "manual_clock.h"
#include "menu_view_fixture.h"
#include "windows/headless.h"

namespace ondex {
namespace {

using namespace cocoa;
using test::MenuView;

class MenuViewOnScreen : public MenuView {
 protected:
  MenuViewOnScreen() {
    window->setWindowSystem(&system);
    window->contentView()->addSubview(menu.get());
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  ~MenuViewOnScreen() override { window = nullptr; }
  void turn() {
    const NSAutoreleasePool turn_pool;
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  HeadlessWindow& main_window() { return *system.windows().front(); }
  bool open() { return system.windows().size() == 2; }
  void click_middle() {
    main_window().press(middle);
    turn();
    main_window().release();
    turn();
    clock.advance(2);
  }
  void key(uint32_t keysym) {
    system.keyWindow()->key_down(keysym, "");
    turn();
  }
  size_t redraws_of(const std::function<void()>& action) {
    main_window().clearPresented();
    action();
    turn();
    return main_window().presented().size();
  }

  static constexpr NSPoint middle = {static_cast<CGFloat>(in_middle), static_cast<CGFloat>(height)};
  static constexpr uint32_t key_return = XKB_KEY_Return;
  static constexpr uint32_t key_escape = XKB_KEY_Escape;
  static constexpr uint32_t key_down = XKB_KEY_Down;
  NSAutoreleasePool pool;
  test::ManualClock clock{1000};
  HeadlessWindowSystem system{clock};
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(300, 200, 400, 300), NSTitledWindowMask);
};

TEST_F(MenuViewOnScreen, TheMiddleOpensTheListOverTheWholeControl) {
  click_middle();
  ASSERT_TRUE(open());
  const NSRect list = system.newestWindow()->frame();
  EXPECT_EQ(NSMinX(list), 320);
  EXPECT_EQ(NSWidth(list), 120);
  EXPECT_EQ(NSMaxY(list), 253) << "the first line's middle, 13 below the top, at 240";
  EXPECT_TRUE(host->edited.empty()) << "the action waits for the list to close";
  key(key_down);
  key(key_return);
  EXPECT_FALSE(open());
  EXPECT_EQ(menu->indexOfSelectedItem(), 1);
  EXPECT_EQ(host->edited, std::vector<NSObject*>{menu.get()});
}

TEST_F(MenuViewOnScreen, ClosingTheListWithoutAChoiceReportsToo) {
  click_middle();
  key(key_escape);
  EXPECT_EQ(menu->indexOfSelectedItem(), 0);
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuViewOnScreen, TheReleaseThatChoosesEndsThePress) {
  main_window().press(middle);
  turn();
  EXPECT_TRUE(menu->mouse_is_down);
  main_window().drag_to({middle.x, middle.y - 18});
  turn();
  main_window().release();
  turn();
  EXPECT_EQ(menu->indexOfSelectedItem(), 1);
  EXPECT_EQ(host->edited.size(), 1U);
  EXPECT_FALSE(menu->mouse_is_down);
}

TEST_F(MenuViewOnScreen, AnEmptyListReportsAtOnce) {
  menu->remove_all_items();
  click_middle();
  EXPECT_FALSE(open());
  EXPECT_EQ(host->edited.size(), 1U);
}

TEST_F(MenuViewOnScreen, TheListMayOutliveTheView) {
  click_middle();
  menu->removeFromSuperview();
  menu = nullptr;
  key(key_return);
  EXPECT_FALSE(open());
  EXPECT_TRUE(host->edited.empty());
}

TEST_F(MenuViewOnScreen, OnlyWhatSaysSoAsksForARedraw) {
  EXPECT_EQ(redraws_of([&] { menu->set_colors_for_line(NSColor::yellowColor().get()); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->set_menu_button(button.get()); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->append_item(text("Saw").get()); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->insert_item_at_index(text("Dust").get(), 0); }), 0U);
  EXPECT_EQ(redraws_of([&] { menu->select_index(1); }), 1U);
  EXPECT_EQ(redraws_of([&] { menu->select_index(77); }), 1U);
  EXPECT_EQ(redraws_of([&] { main_window().press({static_cast<CGFloat>(in_left), middle.y}); }), 1U);
  EXPECT_EQ(redraws_of([&] { main_window().release(); }), 1U);
  EXPECT_EQ(redraws_of([&] { test::press(*menu, 2, in_left, height); }), 1U);
}

}  // namespace
}  // namespace ondex
