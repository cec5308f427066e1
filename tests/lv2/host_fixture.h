// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "host.h"
#include "temporary_folder.h"
#include "x_client.h"
#include "x_server.h"

namespace ondex::test {

inline constexpr int editor_width = 860;
inline constexpr int editor_height = 352;

/// A place in the editor, in its points from the upper left corner.
struct Place {
  int x, y;
};
inline constexpr Place on_depth = {430, 303};      ///< tremolo depth, port 6, 200 points of drag a range
inline constexpr Place on_left_rate = {183, 269};  ///< port 4
inline constexpr Place on_knob = {430, 176};       ///< its centre
inline constexpr Place on_nothing = {10, 340};

inline constexpr uint32_t left_rate_port = 4;
inline constexpr uint32_t depth_port = 6;
inline constexpr uint32_t left_index_port = 8;

/// An X server with a user on it, a host's window, and a host.
class HostTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(server.display().empty()) << "Xvfb did not start";
    ASSERT_TRUE(object.descriptor());
    setenv("DISPLAY", server.display().c_str(), 1);
  }
  void TearDown() override { host.close(); }

  /// A window of the host's that shows.
  xcb_window_t makeParent(int x = 0, int y = 0, int width = editor_width, int height = editor_height) {
    const xcb_window_t window = user.make_window(x, y, width, height);
    user.map(window);
    return window;
  }
  /// Opens the editor in a window of the host's at (200, 100) and waits for its first picture.
  void open(Offer offer = {}) {
    parent = makeParent(200, 100);
    offer.parent = parent;
    ASSERT_TRUE(host.open(offer));
    ASSERT_TRUE(host.idleUntil([&] { return user.pixel(host.window(), 5, 5).value_or(0) != 0; }));
    // Until nothing moves any more.
    host.idleFor(0.1);
    host.forget();
  }

  void point(Place place) {
    const auto window = user.geometry(host.window());
    user.point(window.x + place.x, window.y + place.y);
  }
  /// What the user has just done arrives.
  void settle() {
    user.sync();
    host.idleFor(0.06);
  }
  void press(Place place) {
    point(place);
    settle();
    user.press(1);
    settle();
  }
  /// Presses, moves by (x, y) in steps, and releases.
  void drag(Place from, int x, int y) {
    press(from);
    for (int step = 1; step <= 4; ++step) {
      point({from.x + x * step / 4, from.y + y * step / 4});
      settle();
    }
    user.release(1);
    settle();
  }
  /// The window's pixels as 0xFFRRGGBB, row by row.
  std::vector<uint32_t> picture(xcb_window_t window) {
    const auto place = user.geometry(window);
    return user.pixels(window, place.width, place.height);
  }

  OwnPreferences preferences;
  test_support::XServer server;
  test_support::XClient user{server.display()};
  UiObject object;
  xcb_window_t parent = XCB_WINDOW_NONE;
  Host host{object.descriptor()};
};

}  // namespace ondex::test
