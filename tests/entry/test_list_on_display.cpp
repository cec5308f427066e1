// SPDX-License-Identifier: MIT
#include <xkbcommon/xkbcommon-keysyms.h>

#include <gmock/gmock.h>

#include "list_on_display.h"

namespace ondex::test {
namespace {

using testing::ElementsAre;

constexpr uint32_t key_return = XKB_KEY_Return;
constexpr uint32_t key_down = XKB_KEY_Down;
constexpr uint32_t key_f4 = XKB_KEY_F4;
constexpr uint32_t key_alt = XKB_KEY_Alt_L;

TEST_F(ListOnDisplay, LeavesTheFocusInsideItsHost) {
  const xcb_window_t host = user.make_window(100, 100, 400, 300);
  user.map(host);
  show_window(host);
  user.focus(host);
  open_list();
  EXPECT_EQ(user.focused(), id());
  user.type_key(key_down);
  user.type_key(key_return);
  ASSERT_TRUE(until([this] { return !list_shows(); }));
  EXPECT_EQ(button->indexOfSelectedItem(), 1);
  EXPECT_TRUE(until([&] { return user.focused() == host; }));
}

TEST_F(ListOnDisplay, ClosesWhenAnotherProgramTakesTheFocusFromItsHost) {
  const xcb_window_t host = user.make_window(100, 100, 400, 300);
  const xcb_window_t other = user.make_window(700, 100, 100, 100);
  user.map(host);
  user.map(other);
  show_window(host);
  user.focus(host);
  open_list();
  user.focus(other);
  EXPECT_TRUE(until([this] { return !list_shows(); }));
  EXPECT_TRUE(until([&] { return user.focused() == other; }));
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
}

TEST_F(ListOnDisplay, ItsWindowStaysTheManagersActiveOneWithAllItsKeys) {
  start_manager();
  show_window();
  ASSERT_TRUE(until([this] { return window->isKeyWindow(); }));
  open_list();
  ASSERT_TRUE(user.wait_for_manager());
  EXPECT_EQ(user.focused(), id());
  EXPECT_THAT(user.property(user.root(), "_NET_ACTIVE_WINDOW"), ElementsAre(id()));
  user.press_key(key_alt);
  user.type_key(key_f4);
  user.release_key(key_alt);
  EXPECT_TRUE(until([this] { return !window->isVisible(); }));
  EXPECT_FALSE(list_shows());
}

}  // namespace
}  // namespace ondex::test
