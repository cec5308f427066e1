// SPDX-License-Identifier: MIT
// Hosts that answer what the editor writes, at once, late, rounded or never.

#include <cmath>
#include <deque>

#include "host_fixture.h"

namespace ondex::test {
namespace {

using testing::IsEmpty;

class Echoes : public HostTest {
 protected:
  /// Drags upwards and checks that the values only rise, by as much as the pointer moves.
  void expectSmoothDrag() {
    const Place from = on_depth;
    press(from);
    for (int step = 1; step <= 20; ++step) {
      point({from.x, from.y - 4 * step});
      user.sync();
      host.idle();
      answer();
      host.idleFor(0.02, 5);
    }
    user.release(1);
    delay = 0;
    for (int i = 0; i < 10; ++i) {
      answer();
      host.idleFor(0.05);
    }
    float last = 0.5F;
    for (const Told& told : host.writes()) {
      EXPECT_GT(told.value, last);
      last = told.value;
    }
    EXPECT_NEAR(last, 0.9F, 1e-5F);
    // It shows the last value written, and goes on from there.
    host.forget();
    drag(on_depth, 0, 20);
    EXPECT_NEAR(host.value(depth_port), 0.8F, 1e-5F);
  }
  /// What a late host still has to say.
  void answer() {
    if (waiting.size() <= delay)
      return;
    const float value = waiting.front();
    waiting.pop_front();
    host.set(depth_port, value);
  }
  std::deque<float> waiting;
  size_t delay = 0;
};

TEST_F(Echoes, Never) {
  open();
  expectSmoothDrag();
}

TEST_F(Echoes, AtOnce) {
  open();
  host.on_write = [this](uint32_t port, float value) { host.set(port, value); };
  expectSmoothDrag();
}

TEST_F(Echoes, Late) {
  open();
  delay = 4;
  host.on_write = [this](uint32_t, float value) { waiting.push_back(value); };
  expectSmoothDrag();
}

TEST_F(Echoes, RoundedToSevenBits) {
  open();
  delay = 2;
  host.on_write = [this](uint32_t, float value) { waiting.push_back(std::round(value * 127) / 127); };
  expectSmoothDrag();
}

TEST_F(Echoes, LateOnesDoNotTurnThePictureBack) {
  open();
  point(on_depth);
  settle();
  user.click(4);
  settle();
  user.click(4);
  settle();
  const auto writes = host.writes();
  ASSERT_EQ(writes.size(), 2U);
  // The touch has ended by now.
  host.idleFor(0.35);
  const auto shown = picture(host.window());
  host.set(depth_port, writes[0].value);
  host.idleFor(0.1);
  host.set(depth_port, writes[1].value);
  host.idleFor(0.6);
  EXPECT_TRUE(picture(host.window()) == shown);
}

TEST_F(Echoes, AutomationOfTheParameterThatIsDraggedDoesNotShakeIt) {
  open();
  host.on_write = [this](uint32_t port, float) { host.set(port, 0.1F); };
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.writes().back().value, 0.7F, 1e-5F);
}

TEST_F(Echoes, AutomationOfAnotherParameterGoesOnDuringADrag) {
  open();
  press(on_depth);
  const auto before = picture(host.window());
  host.set(left_rate_port, 12);
  host.idleFor(0.1);
  EXPECT_FALSE(picture(host.window()) == before);
  user.release(1);
  settle();
}

TEST_F(Echoes, AHostChangeRightAfterADragCounts) {
  open();
  const auto half = picture(host.window());
  drag(on_depth, 0, -40);
  point(on_nothing);
  settle();
  host.set(depth_port, 0.5F);
  host.idleFor(1.2);
  EXPECT_TRUE(picture(host.window()) == half);
}

TEST_F(Echoes, NothingThatTheHostSaysIsEverWritten) {
  open();
  for (int i = 0; i < 100; ++i) {
    for (uint32_t port = 4; port <= 10; ++port)
      host.set(port, static_cast<float>(i) / 100);
    host.idleFor(0.005, 1);
  }
  EXPECT_THAT(host.told(), IsEmpty());
}

}  // namespace
}  // namespace ondex::test
