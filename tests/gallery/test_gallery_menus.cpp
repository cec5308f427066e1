// SPDX-License-Identifier: MIT
#include "gallery_test.h"

namespace ondex::test {
namespace {

using GalleryMenus = GalleryTest;

constexpr cocoa::NSPoint menu_middle = gallery::centre(gallery::menu);
constexpr cocoa::NSPoint left_cap = {gallery::menu.origin.x + 7, menu_middle.y};
constexpr cocoa::NSPoint right_cap = {gallery::menu.origin.x + gallery::menu.size.width - 7, menu_middle.y};

TEST_P(GalleryMenus, PressDragReleaseChooses) {
  point_at(menu_middle);
  user.press(1);
  ASSERT_TRUE(wait_for_list());
  point_at_line(2);
  user.release(1);
  EXPECT_EQ(line("menu"), "menu 2 Square");
  EXPECT_TRUE(wait_for_no_list());
}

TEST_P(GalleryMenus, TheListLiesOverTheControlWithTheSelectedLineOnIt) {
  point_at(menu_middle);
  user.press(1);
  ASSERT_TRUE(wait_for_list());
  const auto geometry = user.geometry(list());
  EXPECT_EQ(geometry.x, place.x + 20);
  EXPECT_EQ(geometry.width, 120);
  EXPECT_EQ(geometry.height, 4 + 4 * 18 + 4);
  // The first line's middle, 13 below the top, is the control's, 300 above the window's lower edge.
  EXPECT_EQ(geometry.y + 13, place.y + place.height - 300);
  user.point(place.x + 500, place.y + 300);
  user.release(1);
  EXPECT_EQ(line("menu"), "menu 0 Sine");
}

TEST_P(GalleryMenus, ClickAndClickChooses) {
  open_menu();
  point_at_line(3);
  user.click(1);
  EXPECT_EQ(line("menu"), "menu 3 Noise");
  EXPECT_TRUE(wait_for_no_list());
}

TEST_P(GalleryMenus, TheKeysChooseAndGoBackToWhoHadThem) {
  const xcb_window_t had_keys = user.focused();
  open_menu();
  user.type_key(key_down);
  user.type_key(key_down);
  user.type_key(key_return);
  EXPECT_EQ(line("menu"), "menu 2 Square");
  EXPECT_TRUE(test_support::wait_until([&] { return user.focused() == had_keys; }));
  open_menu(20);
  user.type_key(key_end);
  user.type_key(key_up);
  user.type_key(' ');
  EXPECT_EQ(line("menu 2"), "menu 2 Square");
  open_menu(-20);
  user.type_key('t');
  user.type_key(key_return);
  EXPECT_EQ(line("menu"), "menu 1 Triangle");
}

TEST_P(GalleryMenus, EscapeClosesWithoutAChoiceAndReports) {
  open_menu();
  user.type_key(key_end);
  user.type_key(key_escape);
  EXPECT_EQ(line("menu"), "menu 0 Sine");
  EXPECT_TRUE(wait_for_no_list());
}

TEST_P(GalleryMenus, AClickElsewhereInTheWindowClosesAndIsUsedUp) {
  open_menu();
  click_at(gallery::centre(gallery::button));
  EXPECT_EQ(line("menu"), "menu 0 Sine");
  EXPECT_TRUE(wait_for_no_list());
  EXPECT_FALSE(program->has_line("button"));
  click_at(gallery::centre(gallery::button));
  EXPECT_EQ(line("button"), "button");
}

TEST_P(GalleryMenus, AClickInAnotherProgramClosesAndTheNextOneGetsThere) {
  test_support::XClient other(server.display());
  const xcb_window_t others = other.make_window(900, 500, 100, 100);
  other.select_input(others, XCB_EVENT_MASK_BUTTON_PRESS);
  other.map(others);
  const auto presses = [&other] {
    int count = 0;
    while (xcb_generic_event_t* event = other.poll_event()) {
      count += (event->response_type & 0x7f) == XCB_BUTTON_PRESS ? 1 : 0;
      free(event);
    }
    return count;
  };
  open_menu();
  user.point(950, 550);
  user.click(1);
  EXPECT_EQ(line("menu"), "menu 0 Sine");
  ASSERT_TRUE(wait_for_no_list());
  other.sync();
  EXPECT_EQ(presses(), 0);
  user.click(1);
  other.sync();
  EXPECT_EQ(presses(), 1) << "nobody holds the pointer any more";
}

TEST_P(GalleryMenus, TakingTheKeysAwayCloses) {
  open_menu();
  const xcb_window_t others = user.make_window(900, 500, 100, 100);
  user.map(others);
  user.focus(others);
  EXPECT_EQ(line("menu"), "menu 0 Sine");
  EXPECT_TRUE(wait_for_no_list());
}

TEST_P(GalleryMenus, TheCapsStepAroundTheEnds) {
  click_at(left_cap);
  EXPECT_EQ(line("menu"), "menu 3 Noise");
  click_at(right_cap);
  EXPECT_EQ(line("menu 0"), "menu 0 Sine");
}

TEST_P(GalleryMenus, APressedCapIsRedUntilItIsReleased) {
  const auto is_red = [this] {
    const auto pixel =
        user.pixel(window, static_cast<int>(left_cap.x) - 3, place.height - 1 - static_cast<int>(left_cap.y));
    return pixel && (*pixel >> 16) > 2 * (*pixel & 0xFF);
  };
  point_at(left_cap);
  EXPECT_FALSE(is_red());
  user.press(1);
  EXPECT_TRUE(test_support::wait_until(is_red));
  user.release(1);
  EXPECT_TRUE(test_support::wait_until([&] { return !is_red(); }));
}

TEST_P(GalleryMenus, APopUpButtonWorksByItself) {
  click_at(gallery::centre(gallery::pop_up));
  ASSERT_TRUE(wait_for_list_with_keys());
  user.type_key(key_end);
  user.type_key(key_return);
  EXPECT_EQ(line("popup"), "popup 4 Noise") << "the line that separates is an item as well";
}

TEST_P(GalleryMenus, AListTallerThanTheScreenStaysOnItAndScrolls) {
  click_at(gallery::centre(gallery::tall_menu));
  ASSERT_TRUE(wait_for_list_with_keys());
  const auto geometry = user.geometry(list());
  EXPECT_EQ(geometry.y, 0);
  EXPECT_EQ(geometry.height, 800);
  user.point(geometry.x + 40, 400);
  user.click(5);
  user.click(5);
  user.type_key(key_end);
  user.type_key(key_return);
  EXPECT_EQ(line("tall"), "tall 99 Item 99");
}

TEST_P(GalleryMenus, ClosingTheWindowTakesTheOpenListAlong) {
  open_menu();
  const xcb_window_t open = list();
  user.send_protocol(window, "WM_DELETE_WINDOW");
  EXPECT_EQ(program->wait_for_exit(), 0);
  EXPECT_FALSE(user.exists(open));
  program.reset();
  test_support::XClient other(server.display());
  EXPECT_NE(user.focused(), open);
}

INSTANTIATE_TEST_SUITE_P(, GalleryMenus, testing::Bool(), manager_name);

}  // namespace
}  // namespace ondex::test
