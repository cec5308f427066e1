// SPDX-License-Identifier: MIT
#include "session.h"

/// Displays of other densities: the same editor from more device pixels.

namespace ondex::test {
namespace {

class ScaledSession : public SessionTest {
 protected:
  void set_dpi(const std::string& dpi) {
    user.set_property(user.root(), "RESOURCE_MANAGER", XCB_ATOM_STRING,
                      "Xcursor.size:\t24\nXft.dpi:\t" + dpi + "\nXft.antialias:\t1\n");
  }
  void expect_window_at_scale() {
    const auto frame = user.geometry(window);
    EXPECT_EQ(frame.width, map.editor().width * scale);
    EXPECT_EQ(frame.height, map.editor().height * scale);
  }
  /// The same movements of the hand in points, whatever the pixels.
  void expect_gestures() {
    Position at = of(left_rate).centre();
    press(at);
    move_by(0, 30);
    double value = after_drag(left_rate, 0, 0, 30 / scale);
    Writes expected = {{0, value}};
    move_by(12, -9);
    expected.push_back({0, after_drag(left_rate, value, 12 / scale, -9 / scale)});
    release();
    expect_writes(written(), expected);

    wheel(of(right_index).centre(), 4);
    expect_writes(written(), {{6, after_wheel(right_index, 0, 1)}});

    const Position centre = knob().centre();
    click(of(left_index).centre());
    for (const auto& [right, up] : {std::pair(31.0, 47.0), {-60.0, 5.0}, {50.5, -12.25}}) {
      at = {centre.x + right, centre.y + up};
      click(at);
      expect_writes(written(), {{4, knob_at(left_index, centre, told(at))}});
    }
    double_click({centre.x - 10, centre.y + 70});
    const Writes writes = written();
    ASSERT_EQ(writes.size(), 2U);
    EXPECT_EQ(writes[1].value, 0);
  }
  void expect_picture() {
    const Picture picture = screenshot();
    EXPECT_EQ(picture.width, map.editor().width * scale);
    EXPECT_TRUE(comes_to_show(picture));
  }
};

TEST_F(ScaledSession, TwiceTheDotsDoubleTheWindow) {
  set_dpi("192");
  scale = 2;
  start();
  expect_window_at_scale();
  expect_gestures();
  expect_picture();
  expect_quiet_end();
}

TEST_F(ScaledSession, HalfPixelsPointsWork) {
  scale = 1.5;
  start({"--scale", "1.5"});
  expect_window_at_scale();
  expect_gestures();
  expect_picture();
  expect_quiet_end();
}

TEST_F(ScaledSession, TheOptionOverridesTheDesktop) {
  set_dpi("192");
  start({"--scale", "1"});
  expect_window_at_scale();
  expect_gestures();
  expect_picture();
}

TEST_F(ScaledSession, TheDesktopMayWantAFraction) {
  set_dpi("144");
  scale = 1.5;
  start();
  expect_window_at_scale();
  expect_gestures();
}

TEST_F(ScaledSession, ReadoutsReachToTheirLastDevicePixel) {
  scale = 2;
  start({"--scale", "2"});
  const Area area = of(depth);
  constexpr double pixel = 0.5;
  wheel({area.x, area.y}, 4);
  wheel({area.right() - pixel, area.top() - pixel}, 4);
  EXPECT_EQ(written().size(), 2U);
  wheel({area.x - pixel, area.centre().y}, 4);
  wheel({area.right(), area.centre().y}, 4);
  wheel({area.centre().x, area.top()}, 4);
  wheel({area.centre().x, area.y - pixel}, 4);
  expect_writes(written(), {});
}

}  // namespace
}  // namespace ondex::test
