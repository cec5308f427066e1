// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cmath>

#include "session.h"

/// What a host changes is shown where it belongs, and is not written back to it.

namespace ondex::test {
namespace {

class HostSession : public BareSessionTest {
 protected:
  /// Whether each control has a pixel that differs, and that no pixel outside of all of them does.
  void expect_changed(const Picture& before, const Picture& after, const std::vector<Area>& controls) const {
    ASSERT_EQ(before.pixels.size(), after.pixels.size());
    std::vector<bool> changed(controls.size());
    size_t elsewhere = 0;
    for (size_t i = 0; i < before.pixels.size(); ++i) {
      if (before.pixels[i] == after.pixels[i])
        continue;
      const auto width = static_cast<size_t>(before.width);
      const size_t row = i / width;
      const Position place = {(static_cast<double>(i % width) + 0.5) / scale,
                              (before.height - static_cast<double>(row) - 0.5) / scale};
      bool inside = false;
      for (size_t c = 0; c < controls.size(); ++c) {
        const Area& area = controls[c];
        const bool here =
            place.x > area.x && place.x < area.right() && place.y > area.y && place.y < area.top();
        changed[c] = changed[c] || here;
        inside = inside || here;
      }
      elsewhere += inside ? 0 : 1;
    }
    EXPECT_THAT(changed, testing::Each(true));
    EXPECT_EQ(elsewhere, 0U) << "pixels that changed outside of the controls";
  }
  Area left_graph() const { return map.control("_vibrato_left_oscillator_response_view"); }
  Area right_graph() const { return map.control("_vibrato_right_oscillator_response_view"); }
};

TEST_F(HostSession, AChangeShowsInItsReadoutAndGraph) {
  start();
  const struct {
    const char* command;
    std::vector<Area> controls;
  } changes[] = {
      {"set 0 4.5", {of(left_rate)}},
      {"set 1 12", {of(right_rate)}},
      {"set 2 0.9", {of(depth), knob()}},
      // Factor and index need each other to bend the curve.
      {"set 3 2", {of(left_factor)}},
      {"set 4 1.5", {of(left_index), left_graph()}},
      {"set 3 4", {of(left_factor), left_graph()}},
      {"set 6 2.5", {of(right_index)}},
      {"set 5 3", {of(right_factor), right_graph()}},
      {"set 6 3", {of(right_index), right_graph()}},
  };
  Picture before = screenshot();
  for (const auto& change : changes) {
    SCOPED_TRACE(change.command);
    command(change.command);
    const Picture after = screenshot();
    expect_changed(before, after, change.controls);
    EXPECT_TRUE(comes_to_show(after));
    before = after;
  }
  expect_writes(written(), {});
  expect_quiet_end();
}

TEST_F(HostSession, TheKnobFollowsTheSelectedReadoutOnly) {
  start();
  click(of(left_factor).centre());
  settle();
  Picture before = screenshot();
  command("set 2 0.75");
  Picture after = screenshot();
  expect_changed(before, after, {of(depth)});
  before = after;
  command("set 3 6");
  after = screenshot();
  // With an index of 0 the graph is the same for all factors.
  expect_changed(before, after, {of(left_factor), knob()});
  expect_writes(written(), {});
}

TEST_F(HostSession, GesturesGoOnFromTheHostsValue) {
  start();
  command("set 2 0.75");
  command("set 5 9");
  screenshot();
  wheel(knob().centre(), 4);
  wheel(of(right_factor).centre(), 4);
  expect_writes(written(), {{2, 0.751}, {5, after_wheel(right_factor, 9, 1)}});
}

TEST_F(HostSession, AChangeInTheMiddleOfADragIsGoneOnFrom) {
  start();
  press(of(right_rate).centre());
  move_by(0, 20);
  command("set 1 10");
  screenshot();
  move_by(0, 20);
  release();
  expect_writes(written(), {{1, 2}, {1, 12}});
}

TEST_F(HostSession, WhatTheUserEditsIsWhatTheHostGets) {
  start();
  wheel(of(depth).centre(), 4);
  settle();
  EXPECT_EQ(value_of(2), "0.502");
  const Picture edited = screenshot();
  EXPECT_TRUE(comes_to_show(edited));
  command("set 2 0.5");
  command("set 2 0.502");
  EXPECT_EQ(screenshot().pixels, edited.pixels);
}

TEST_F(HostSession, ARowOfChangesEndsWithTheLast) {
  start();
  command("set 4 2");
  command("set 3 2");
  const Picture wanted = screenshot();
  std::string many;
  for (int i = 0; i < 500; ++i)
    many += "set 3 " + std::to_string(i % 20) + "\nset 4 " + std::to_string(i % 7) + "\n";
  program->write(many + "set 4 2\nset 3 2\n");
  EXPECT_EQ(screenshot().pixels, wanted.pixels);
  expect_writes(written(), {});
}

}  // namespace
}  // namespace ondex::test
