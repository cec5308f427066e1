// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "windows/click_counter.h"
#include "windows/pixel_geometry.h"
#include "windows/pointer_tracker.h"
#include "windows/scroll_valuators.h"

namespace cocoa {
namespace {

constexpr NSPoint here{100, 50};

TEST(ClickCounter, CountsPressesHalfASecondApartAtMost) {
  ClickCounter clicks;
  EXPECT_EQ(clicks.press(here, 0, 1000), 1);
  EXPECT_EQ(clicks.press(here, 0, 1499), 2);
  EXPECT_EQ(clicks.press(here, 0, 1999), 3);
  EXPECT_EQ(clicks.press(here, 0, 2500), 1);
  EXPECT_EQ(clicks.press(here, 0, 3000), 2);
}

TEST(ClickCounter, CountsPressesFivePointsApartAtMost) {
  ClickCounter clicks;
  clicks.press(here, 0, 0);
  EXPECT_EQ(clicks.press({103, 54}, 0, 10), 2);  // 3² + 4² = 5²
  EXPECT_EQ(clicks.press({106, 58.1F}, 0, 20), 1);
}

TEST(ClickCounter, MeasuresFromThePressBeforeNotFromTheFirst) {
  ClickCounter clicks;
  for (int i = 0; i < 4; ++i)
    EXPECT_EQ(clicks.press({static_cast<CGFloat>(4 * i), 0}, 0, static_cast<uint32_t>(400 * i)), i + 1);
}

TEST(ClickCounter, AnotherButtonBeginsAnew) {
  ClickCounter clicks;
  clicks.press(here, 0, 0);
  EXPECT_EQ(clicks.press(here, 1, 10), 1);
  EXPECT_EQ(clicks.press(here, 0, 20), 1);
}

TEST(ClickCounter, GoesOnWhileTheServersTimeWrapsAround) {
  constexpr uint32_t end = std::numeric_limits<uint32_t>::max();
  ClickCounter clicks;
  clicks.press(here, 0, end - 99);           // 100 ms before the wrap
  EXPECT_EQ(clicks.press(here, 0, 400), 2);  // 500 ms later
  clicks.press(here, 0, end - 99);
  EXPECT_EQ(clicks.press(here, 0, 401), 1);  // 501 ms later
}

TEST(ClickCounter, AReleaseHasTheCountOfItsPressHoweverLate) {
  ClickCounter clicks;
  clicks.press(here, 0, 0);
  clicks.press(here, 0, 100);
  clicks.press(here, 2, 200);
  EXPECT_EQ(clicks.release(0), 2);
  EXPECT_EQ(clicks.release(2), 1);
  EXPECT_EQ(clicks.release(1), 0);
}

TEST(ScrollValuators, TheFirstValueOnlySaysWhereTheWheelStands) {
  const std::vector<ScrollAxis> axes{{true, 3, 15}, {false, 2, 15}};
  ScrollValuators wheel(axes);
  EXPECT_FALSE(wheel.moved(std::vector<ValuatorValue>{{3, 1200}}));
  const ScrollTurn turn = wheel.moved(std::vector<ValuatorValue>{{3, 1185}});
  EXPECT_EQ(turn.y, 1);  // the valuator falls while the wheel turns away from the user
  EXPECT_EQ(turn.x, 0);
}

TEST(ScrollValuators, GivesFractionsOfANotch) {
  ScrollValuators wheel(std::vector<ScrollAxis>{{true, 3, 120}});
  wheel.moved(std::vector<ValuatorValue>{{3, 0}});
  EXPECT_EQ(wheel.moved(std::vector<ValuatorValue>{{3, 30}}).y, -0.25);
  EXPECT_EQ(wheel.moved(std::vector<ValuatorValue>{{3, 0}}).y, 0.25);
}

TEST(ScrollValuators, TurnsBothWaysAtOnce) {
  ScrollValuators pad(std::vector<ScrollAxis>{{true, 3, 10}, {false, 2, 10}});
  pad.moved(std::vector<ValuatorValue>{{2, 5}, {3, 7}});
  const ScrollTurn turn = pad.moved(std::vector<ValuatorValue>{{2, 10}, {3, 2}});
  EXPECT_EQ(turn.x, -0.5);
  EXPECT_EQ(turn.y, 0.5);
}

TEST(ScrollValuators, ForgetsWhatItWasWhenThePointerComesBack) {
  ScrollValuators wheel(std::vector<ScrollAxis>{{true, 3, 1}});
  wheel.moved(std::vector<ValuatorValue>{{3, 10}});
  wheel.forgetPositions();
  EXPECT_FALSE(wheel.moved(std::vector<ValuatorValue>{{3, 99}}));
  EXPECT_EQ(wheel.moved(std::vector<ValuatorValue>{{3, 98}}).y, 1);
}

TEST(ScrollValuators, ANegativeIncrementTurnsTheWheelRound) {
  ScrollValuators wheel(std::vector<ScrollAxis>{{true, 3, -15}});
  wheel.moved(std::vector<ValuatorValue>{{3, 0}});
  EXPECT_EQ(wheel.moved(std::vector<ValuatorValue>{{3, 15}}).y, 1);
}

TEST(ScrollValuators, LeavesOtherValuatorsAndUselessAxesAlone) {
  ScrollValuators wheel(std::vector<ScrollAxis>{{true, 3, 15}, {false, 2, 0}});
  wheel.moved(std::vector<ValuatorValue>{{0, 1}, {2, 1}, {3, 1}});
  EXPECT_FALSE(wheel.moved(std::vector<ValuatorValue>{{0, 500}, {1, 500}, {2, 500}}));
  EXPECT_FALSE(ScrollValuators().scrolls());
}

TEST(ScrollValuators, ButtonsOfWheelsAreNotches) {
  EXPECT_EQ(turn_of_button(4).y, 1);
  EXPECT_EQ(turn_of_button(5).y, -1);
  EXPECT_EQ(turn_of_button(6).x, 1);
  EXPECT_EQ(turn_of_button(7).x, -1);
  EXPECT_FALSE(turn_of_button(1));
  EXPECT_FALSE(turn_of_button(8));
}

PointerSample sample_at(double x, double y) {
  PointerSample sample;
  sample.location = {static_cast<CGFloat>(x), static_cast<CGFloat>(100 - y)};
  sample.screen_x = x;
  sample.screen_y = y;
  return sample;
}

TEST(PointerTracker, DeltasOfADragAddUpToTheWholeWayEvenAcrossTheEdge) {
  PointerTracker pointer;
  pointer.enter(sample_at(10, 10));
  pointer.press(sample_at(10, 10), 0);
  CGFloat dx = 0;
  CGFloat dy = 0;
  const auto add = [&](const WindowEvent& event) {
    EXPECT_EQ(event.type, WindowEventType::mouse_dragged);
    dx += event.delta_x;
    dy += event.delta_y;
  };
  add(pointer.move(sample_at(12, 9)));
  pointer.leave(sample_at(-5, 9));
  add(pointer.move(sample_at(-5, 9)));
  pointer.enter(sample_at(3, 40));
  add(pointer.move(sample_at(3, 40)));
  EXPECT_EQ(dx, -7);
  EXPECT_EQ(dy, 30);
}

TEST(PointerTracker, ThePointerComingInTellsNoMotion) {
  PointerTracker pointer;
  EXPECT_EQ(pointer.move(sample_at(50, 50)).delta_x, 0);
  pointer.enter(sample_at(80, 50));
  EXPECT_EQ(pointer.move(sample_at(81, 50)).delta_x, 1);
}

TEST(PointerTracker, ADragIsOfTheButtonHeldLongest) {
  PointerTracker pointer;
  pointer.press(sample_at(0, 0), 1);
  pointer.press(sample_at(0, 0), 0);
  EXPECT_EQ(pointer.move(sample_at(1, 0)).button, 1);
  pointer.release(sample_at(1, 0), 1);
  EXPECT_EQ(pointer.move(sample_at(2, 0)).button, 0);
  pointer.release(sample_at(2, 0), 0);
  EXPECT_EQ(pointer.move(sample_at(3, 0)).type, WindowEventType::mouse_moved);
}

TEST(PointerTracker, DropsAReleaseWithoutAPress) {
  PointerTracker pointer;
  EXPECT_FALSE(pointer.release(sample_at(0, 0), 0));
}

TEST(PointerTracker, TellsComingAndGoingOnce) {
  PointerTracker pointer;
  EXPECT_FALSE(pointer.leave(sample_at(0, 0)));
  EXPECT_TRUE(pointer.enter(sample_at(0, 0)));
  EXPECT_FALSE(pointer.enter(sample_at(0, 0)));
  EXPECT_TRUE(pointer.leave(sample_at(0, 0)));
}

TEST(PixelGeometry, RoundsUpButNotForNoise) {
  EXPECT_EQ(device_pixels(100, 1), 100);
  EXPECT_EQ(device_pixels(101, 1.5), 152);
  EXPECT_EQ(device_pixels(100, 1.1), 110);  // 110.00000000000001
  EXPECT_EQ(device_pixels(0.5, 1), 1);
  EXPECT_EQ(device_pixels(0, 2), 0);
  EXPECT_EQ(device_pixels(-3, 2), 0);
  EXPECT_EQ(device_pixels(std::numeric_limits<CGFloat>::quiet_NaN(), 2), 0);
  EXPECT_EQ(device_pixels(std::numeric_limits<CGFloat>::infinity(), 1), largest_pixel_extent);
}

TEST(PixelGeometry, ClipsToTheWindow) {
  EXPECT_EQ(clipped({-5, -5, 20, 20}, 10, 8), (PixelRect{0, 0, 10, 8}));
  EXPECT_EQ(clipped({2, 3, 4, 5}, 10, 10), (PixelRect{2, 3, 4, 5}));
  EXPECT_FALSE(has_area(clipped({10, 0, 5, 5}, 10, 10)));
  EXPECT_FALSE(has_area(clipped({4, 4, -2, 2}, 10, 10)));
  constexpr int most = std::numeric_limits<int>::max();
  EXPECT_EQ(clipped({1, 1, most, most}, 10, 10), (PixelRect{1, 1, 9, 9}));
}

}  // namespace
}  // namespace cocoa
