// SPDX-License-Identifier: MIT
#include "session.h"

/// The window on the desktop: what it says of itself, and that it is whole again after whatever hid it.

namespace ondex::test {
namespace {

using test_support::wait_until;

class WindowSession : public SessionTest {
 protected:
  void bring_back() {
    user.send_to_manager(window, "_NET_ACTIVE_WINDOW", 1);
    EXPECT_TRUE(wait_until([this] { return user.viewable(window); }));
  }
};

class BareWindowSession : public WindowSession {
 protected:
  BareWindowSession() { managed = false; }
};

TEST_F(WindowSession, SaysWhoItIs) {
  start();
  EXPECT_EQ(user.text_property(window, "WM_NAME"), "KV Ondex");
  EXPECT_EQ(user.text_property(window, "_NET_WM_NAME"), "KV Ondex");
  const auto frame = user.geometry(window);
  EXPECT_EQ(frame.width, map.editor().width);
  EXPECT_EQ(frame.height, map.editor().height);
}

TEST_F(WindowSession, ShowsWhatItsPicturesShow) {
  start({"--set", "3=2", "--set", "4=1.5"});
  EXPECT_TRUE(comes_to_show(screenshot()));
  expect_quiet_end();
}

TEST_F(WindowSession, WithoutAManagerItShowsAndEditsAllTheSame) {
  manager.reset();
  managed = false;
  start();
  EXPECT_TRUE(comes_to_show(screenshot()));
  press(of(left_factor).centre());
  move_by(0, 40);
  release();
  click({knob().centre().x, knob().top() - 20});
  wheel(knob().centre(), 5);
  expect_writes(written(),
                {{3, after_drag(left_factor, 0, 0, 40)}, {3, 5}, {3, after_knob_wheel(left_factor, 5, -1)}});
  EXPECT_TRUE(comes_to_show(screenshot()));
  expect_quiet_end();
}

TEST_F(WindowSession, IsWholeAgainAfterItWasAnIcon) {
  start();
  user.iconify(window);
  ASSERT_TRUE(wait_until([this] { return !user.viewable(window); }));
  bring_back();
  EXPECT_TRUE(comes_to_show(screenshot()));

  user.iconify(window);
  ASSERT_TRUE(wait_until([this] { return !user.viewable(window); }));
  command("set 2 0.9");
  command("set 3 4");
  command("set 4 1.5");
  const Picture changed = screenshot();
  bring_back();
  EXPECT_TRUE(comes_to_show(changed));
  expect_writes(written(), {});
  wheel(of(depth).centre(), 4);
  expect_writes(written(), {{2, 0.902}});
}

TEST_F(WindowSession, IsWholeAgainAfterItWasCovered) {
  start();
  const auto frame = user.geometry(window);
  const Picture before = screenshot();
  ASSERT_TRUE(comes_to_show(before));
  const xcb_window_t cover = user.make_window(frame.x + 30, frame.y + 20, 500, 300);
  user.map(cover);
  user.raise(cover);
  EXPECT_NE(on_screen().pixels, before.pixels);
  user.destroy(cover);
  EXPECT_TRUE(comes_to_show(before));
}

TEST_F(WindowSession, WhatChangesUnderACoverShowsWhenItGoes) {
  start();
  const auto frame = user.geometry(window);
  const xcb_window_t cover = user.make_window(frame.x - 5, frame.y - 5, frame.width + 10, frame.height + 10);
  user.map(cover);
  user.raise(cover);
  command("set 0 7");
  command("set 5 2");
  command("set 6 3");
  const Picture changed = screenshot();
  user.move(cover, frame.x + frame.width / 2, frame.y);
  user.destroy(cover);
  EXPECT_TRUE(comes_to_show(changed));
}

TEST_F(WindowSession, GesturesAreRightWhereverItIsMoved) {
  start();
  user.move(window, 700, 400);
  ASSERT_TRUE(user.wait_for_manager());
  settle();
  click({knob().centre().x, knob().top() - 20});
  expect_writes(written(), {{2, 0.5}});
  press(of(right_index).centre());
  move_by(0, 40);
  release();
  expect_writes(written(), {{6, after_drag(right_index, 0, 0, 40)}});
}

TEST_F(BareWindowSession, AManagerThatComesLaterTakesItOver) {
  start();
  manager = std::make_unique<test_support::WindowManager>(server.display());
  ASSERT_TRUE(manager->started());
  EXPECT_TRUE(wait_until([this] { return user.parent_of(window) != user.root(); }));
  ASSERT_TRUE(user.wait_for_manager());
  EXPECT_TRUE(comes_to_show(screenshot()));
  wheel(of(depth).centre(), 4);
  expect_writes(written(), {{2, 0.502}});
  user.send_to_manager(window, "_NET_CLOSE_WINDOW");
  EXPECT_EQ(program->wait_for_exit(), 0);
}

TEST_F(WindowSession, AManagerThatGoesLeavesItUsable) {
  start();
  manager.reset();
  EXPECT_TRUE(wait_until([this] { return user.parent_of(window) == user.root() && user.viewable(window); }));
  EXPECT_TRUE(comes_to_show(screenshot()));
  wheel(of(depth).centre(), 4);
  expect_writes(written(), {{2, 0.502}});
}

}  // namespace
}  // namespace ondex::test
