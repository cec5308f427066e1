// SPDX-License-Identifier: MIT
#include "session.h"

/// Where nothing is to be edited, nothing is written.

namespace ondex::test {
namespace {

class QuietSession : public SessionTest {
 protected:
  /// Between the two lower readouts of the left side.
  Position between_readouts() const {
    const Area left = of(left_factor);
    const Area right = of(left_index);
    return {(left.right() + right.x) / 2, left.centre().y};
  }
  /// In all that is not for editing.
  std::vector<Position> quiet_places() const {
    const Area editor = map.editor();
    const Area box = map.control("_effect_box");
    return {between_readouts(),
            {editor.x + 2, editor.y + 2},
            {editor.right() - 3, editor.top() - 3},
            {(editor.x + box.x) / 2, editor.centre().y},
            {box.x + 3, box.centre().y},
            map.control("_left_label").centre(),
            map.control("_right_label").centre(),
            map.control("_tremolo_label").centre(),
            map.control("_vibrato_left_oscillator_response_view").centre(),
            map.control("_vibrato_right_oscillator_response_view").centre()};
  }
};

TEST_F(QuietSession, ClicksAndWheelsBesideTheControlsDoNothing) {
  start();
  const Picture before = screenshot();
  for (const Position place : quiet_places()) {
    click(place);
    for (const int button : {4, 5, 6, 7})
      wheel(place, button);
    expect_writes(written(), {});
  }
  EXPECT_EQ(screenshot().pixels, before.pixels);
  expect_quiet_end();
}

TEST_F(QuietSession, DragsFromBesideTheControlsDoNothing) {
  start();
  for (const Position place : quiet_places()) {
    press(place);
    move_by(3, 9);
    for (const Area& control : {of(left_rate), of(depth), knob()}) {
      point(control.centre());
      settle();
      move_by(5, 5);
    }
    release();
    expect_writes(written(), {});
  }
}

TEST_F(QuietSession, APointerThatOnlyPassesDoesNothing) {
  start();
  for (const Parameter& parameter : parameters) {
    point(of(parameter).centre());
    settle();
    move_by(4, 10);
  }
  point(knob().centre());
  settle();
  move_by(-30, 10);
  expect_writes(written(), {});
}

TEST_F(QuietSession, ADragThatBeganOutsideOfTheWindowIsNotOurs) {
  start();
  press({map.editor().right() + 60, map.editor().centre().y});
  point(of(left_rate).centre());
  settle();
  move_by(0, 10);
  point(knob().centre());
  settle();
  move_by(20, 10);
  release();
  expect_writes(written(), {});
}

TEST_F(QuietSession, OnlyTheLeftButtonEdits) {
  start();
  constexpr int middle = 2;
  constexpr int right = 3;
  for (const int button : {middle, right}) {
    for (const Area& control : {of(left_rate), of(depth), knob()}) {
      press(within(control, 0.3, 0.4), button);
      settle();
      move_by(2, 12);
      release(button);
      expect_writes(written(), {});
    }
  }
  wheel(knob().centre(), 4);
  expect_writes(written(), {{2, 0.501}});
}

}  // namespace
}  // namespace ondex::test
