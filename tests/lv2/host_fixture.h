#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

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

  /// Opens the editor in a window of the host's at (200, 100) and waits for its first picture.
  void open(Offer offer = {}) {
    parent = user.make_window(200, 100, editor_width, editor_height);
    user.map(parent);
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
  /// Presses, moves by (x, y) in steps, and releases.
  void drag(Place from, int x, int y) {
    point(from);
    settle();
    user.press(1);
    settle();
    for (int step = 1; step <= 4; ++step) {
      point({from.x + x * step / 4, from.y + y * step / 4});
      settle();
    }
    user.release(1);
    settle();
  }
  /// The window's pixels, row by row.
  std::vector<uint32_t> picture(xcb_window_t window) {
    const auto size = user.geometry(window);
    const auto cookie =
        xcb_get_image(user.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                      static_cast<uint16_t>(size.width), static_cast<uint16_t>(size.height), ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply(
        xcb_get_image_reply(user.connection(), cookie, nullptr), &std::free);
    std::vector<uint32_t> pixels;
    if (!reply)
      return pixels;
    const auto* words = reinterpret_cast<const uint32_t*>(xcb_get_image_data(reply.get()));
    for (int i = 0; i < xcb_get_image_data_length(reply.get()) / 4; ++i)
      pixels.push_back(words[i] & 0xffffffU);
    return pixels;
  }

  OwnPreferences preferences;
  test_support::XServer server;
  test_support::XClient user{server.display()};
  UiObject object;
  xcb_window_t parent = XCB_WINDOW_NONE;
  Host host{object.descriptor()};
};

}  // namespace ondex::test
