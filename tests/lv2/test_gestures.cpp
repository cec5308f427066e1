// SPDX-License-Identifier: MIT
// What the user does in the editor, as the host hears of it.

#include "host_fixture.h"

namespace ondex::test {
namespace {

using testing::IsEmpty;
using Gestures = HostTest;

/// Whether the parameter is touched first, written, and released last, and nothing else happens.
void expect_one_gesture(const std::vector<Told>& told, uint32_t port) {
  ASSERT_GE(told.size(), 3U);
  EXPECT_EQ(told.front(), (Told{Told::begin, port, 0}));
  EXPECT_EQ(told.back(), (Told{Told::end, port, 0}));
  for (size_t i = 1; i + 1 < told.size(); ++i) {
    EXPECT_EQ(told[i].kind, Told::write);
    EXPECT_EQ(told[i].port, port);
  }
}

TEST_F(Gestures, ADragIsOneGestureAndWritesWhatIsShown) {
  open();
  drag(on_depth, 0, -40);
  expect_one_gesture(host.told(), depth_port);
  // 200 points cross the range.
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

TEST_F(Gestures, TheKnobEditsTheSelectedParameter) {
  open();
  drag(on_knob, 0, -60);
  expect_one_gesture(host.told(), depth_port);
  EXPECT_NEAR(host.value(depth_port), 0.5F, 1e-5F) << "straight up";
}

TEST_F(Gestures, AWheelIsOneGestureThatEndsWhenItStandsStill) {
  open();
  point(on_left_rate);
  settle();
  for (int turn = 0; turn < 3; ++turn) {
    user.click(4);
    settle();
  }
  ASSERT_THAT(host.told(), testing::SizeIs(4));
  EXPECT_EQ(host.told().front(), (Told{Told::begin, left_rate_port, 0}));
  ASSERT_TRUE(host.idleUntil([this] { return host.told().size() == 5; }));
  expect_one_gesture(host.told(), left_rate_port);
  host.idleFor(0.4);
  EXPECT_EQ(host.told().size(), 5U);
}

TEST_F(Gestures, ADoubleClickOnTheKnobRestoresTheDefault) {
  open();
  host.set(depth_port, 0.9F);
  host.idleFor(0.1);
  point(on_knob);
  settle();
  user.double_click();
  settle();
  const auto writes = host.writes();
  ASSERT_EQ(writes.size(), 2U);
  EXPECT_EQ(writes[1], (Told{Told::write, depth_port, 0.5F}));
  ASSERT_EQ(host.told().size(), 6U);
  for (const size_t first : {size_t{0}, size_t{3}}) {
    EXPECT_EQ(host.told()[first].kind, Told::begin);
    EXPECT_EQ(host.told()[first + 1].kind, Told::write);
    EXPECT_EQ(host.told()[first + 2].kind, Told::end);
  }
}

TEST_F(Gestures, SelectingAReadoutWritesNothing) {
  open();
  point(on_left_rate);
  settle();
  user.click(1);
  settle();
  EXPECT_THAT(host.told(), IsEmpty());
}

TEST_F(Gestures, AHostWithoutTouchGetsTheWritesAlone) {
  open({.touch = false});
  drag(on_depth, 0, -40);
  EXPECT_FALSE(host.writes().empty());
  EXPECT_EQ(host.writes(), host.told());
}

TEST_F(Gestures, AWindowThatDiesInMidDragEndsThem) {
  open();
  press(on_depth);
  point({on_depth.x, on_depth.y - 30});
  settle();
  ASSERT_FALSE(host.writes().empty());
  user.destroy(parent);
  ASSERT_TRUE(host.idleUntil([this] { return host.told().back().kind == Told::end; }));
  expect_one_gesture(host.told(), depth_port);
  EXPECT_NE(host.idle(), 0);
  host.close();
  expect_one_gesture(host.told(), depth_port);
}

TEST_F(Gestures, CleanupInMidDragEndsThem) {
  open();
  press(on_depth);
  point({on_depth.x, on_depth.y - 30});
  settle();
  host.close();
  expect_one_gesture(host.told(), depth_port);
}

}  // namespace
}  // namespace ondex::test
