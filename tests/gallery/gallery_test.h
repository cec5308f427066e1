// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon-keysyms.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "child_process.h"
#include "gallery_layout.h"
#include "x_client.h"
#include "x_server.h"

namespace ondex::test {

inline constexpr xcb_keysym_t key_return = XKB_KEY_Return;
inline constexpr xcb_keysym_t key_escape = XKB_KEY_Escape;
inline constexpr xcb_keysym_t key_home = XKB_KEY_Home;
inline constexpr xcb_keysym_t key_up = XKB_KEY_Up;
inline constexpr xcb_keysym_t key_down = XKB_KEY_Down;
inline constexpr xcb_keysym_t key_end = XKB_KEY_End;

/// The gallery on an X server of its own and a user at it; with and without a window manager.
class GalleryTest : public testing::TestWithParam<bool> {
 protected:
  void SetUp() override {
    ASSERT_FALSE(server.display().empty()) << "Xvfb did not start";
    if (GetParam()) {
      manager = std::make_unique<test_support::WindowManager>(server.display());
      ASSERT_TRUE(manager->started());
      user.share_with_manager();
    }
    // Out of the way, so that nothing is entered or left by chance.
    user.point(1200, 20);
    program = std::make_unique<ChildProcess>(
        ChildProcess::Setup{{ONDEX_GALLERY, "--scale", "1"}, {{"DISPLAY", server.display()}}});
    ASSERT_EQ(program->wait_for_line("ready"), "ready");
    if (GetParam()) {
      ASSERT_TRUE(user.wait_for_manager());
    }
    window = find_window(user.root());
    ASSERT_NE(window, XCB_WINDOW_NONE);
    place = user.geometry(window);
  }

  /// Ends as it was told to, with nothing to complain of.
  void TearDown() override {
    if (!program)
      return;
    program->write("quit\n");
    EXPECT_EQ(program->wait_for_exit(), 0);
    EXPECT_EQ(program->errors(), "");
  }

  xcb_window_t find_window(xcb_window_t below) {
    for (const xcb_window_t child : user.children(below)) {
      if (user.text_property(child, "_NET_WM_NAME") == "Ondex gallery")
        return child;
      if (const xcb_window_t found = find_window(child); found != XCB_WINDOW_NONE)
        return found;
    }
    return XCB_WINDOW_NONE;
  }

  /// The open list, a window of the screen beside the program's own; none when there is none.
  xcb_window_t list() {
    const xcb_atom_t menu = user.atom("_NET_WM_WINDOW_TYPE_POPUP_MENU");
    for (const xcb_window_t child : user.children(user.root())) {
      const std::vector<uint32_t> type = user.property(child, "_NET_WM_WINDOW_TYPE");
      if (type == std::vector<uint32_t>{menu} && user.viewable(child))
        return child;
    }
    return XCB_WINDOW_NONE;
  }
  bool wait_for_list() {
    return test_support::wait_until([this] { return list() != XCB_WINDOW_NONE; });
  }
  bool wait_for_no_list() {
    return test_support::wait_until([this] { return list() == XCB_WINDOW_NONE; });
  }
  /// Until the list has all that makes it stay. The window has the keys, so that its title bar stays as it
  /// is.
  bool wait_for_list_with_keys() {
    return wait_for_list() && user.wait_for_owner(window) &&
           test_support::wait_until([this] { return user.focused() == window; });
  }

  void point_at(cocoa::NSPoint in_gallery) {
    user.point(place.x + static_cast<int>(in_gallery.x),
               place.y + place.height - 1 - static_cast<int>(in_gallery.y));
  }
  void click_at(cocoa::NSPoint in_gallery) {
    point_at(in_gallery);
    user.click(1);
  }
  /// The pointer goes to the middle of a line of the open list; lines are 18 high, below a rim of 4.
  void point_at_line(int line) {
    const auto geometry = user.geometry(list());
    user.point(geometry.x + 40, geometry.y + 4 + 18 * line + 9);
  }
  /// The list of the menu, by a click that leaves it open; so many points right of the middle, as a second
  /// click in one place would be a double click.
  void open_menu(int off_middle = 0) {
    const cocoa::NSPoint middle = gallery::centre(gallery::menu);
    click_at({middle.x + static_cast<cocoa::CGFloat>(off_middle), middle.y});
    ASSERT_TRUE(wait_for_list_with_keys());
  }
  std::string line(std::string_view text) { return program->wait_for_line(text); }

  test_support::XServer server;
  test_support::XClient user{server.display()};
  std::unique_ptr<test_support::WindowManager> manager;
  std::unique_ptr<ChildProcess> program;
  xcb_window_t window = XCB_WINDOW_NONE;
  test_support::XClient::Geometry place{};
};

inline std::string manager_name(const testing::TestParamInfo<bool>& info) {
  return info.param ? "Managed" : "Unmanaged";
}

}  // namespace ondex::test
