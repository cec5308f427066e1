// SPDX-License-Identifier: MIT
#include "x11_fixture.h"

namespace cocoa {
namespace {

using test_support::XClient;

using X11Manager = ManagedX11Test;

TEST_F(X11Manager, ShowsATitledWindowInAFrame) {
  PlatformWindow& w = open();
  EXPECT_TRUE(w.viewable());
  EXPECT_NE(user.parent_of(id(w)), user.root());
  EXPECT_EQ(user.geometry(id(w)).width, 200);
  EXPECT_EQ(user.geometry(id(w)).height, 100);
}

TEST_F(X11Manager, KnowsWhereItIsInItsFrame) {
  PlatformWindow& w = open();
  const auto matches = [&] {
    const XClient::Geometry place = user.geometry(id(w));
    return w.frame() ==
           NSMakeRect(static_cast<CGFloat>(place.x), static_cast<CGFloat>(800 - place.y - 100), 200, 100);
  };
  EXPECT_TRUE(until(matches));
  EXPECT_EQ(w.screenFrame(), w.frame());
  w.setFrame(NSMakeRect(300, 200, 200, 100));
  EXPECT_TRUE(until([&] { return user.geometry(id(w)) == (XClient::Geometry{300, 500, 200, 100}); }));
  settle();
  EXPECT_EQ(w.frame(), NSMakeRect(300, 200, 200, 100));
  EXPECT_EQ(recorder.count("redraw"), 0);
}

TEST_F(X11Manager, FollowsItsFrameAndTellsItsOwner) {
  PlatformWindow& w = open();
  const xcb_window_t its_frame = user.parent_of(id(w));
  const XClient::Geometry before = user.geometry(id(w));
  user.move(its_frame, 400, 300);
  EXPECT_TRUE(test_support::wait_until([&] { return user.geometry(id(w)) != before; }));
  EXPECT_EQ(w.screenFrame().origin.x, static_cast<CGFloat>(user.geometry(id(w)).x));
}

TEST_F(X11Manager, GivesANewWindowTheKeyboardWhenAskedTo) {
  PlatformWindow& w = open();
  w.makeKey();
  EXPECT_TRUE(until([&] { return w.isKey(); }));
  PlatformWindow& second = open(other, other_recorder, WindowKind::titled);
  second.makeKey();
  EXPECT_TRUE(until([&] { return second.isKey(); }));
  EXPECT_FALSE(w.isKey());
  ASSERT_TRUE(user.wait_for_manager());
  w.makeKey();
  EXPECT_TRUE(until([&] { return w.isKey(); }));
}

TEST_F(X11Manager, LetsAPopupTakeTheKeyboardAndGiveItBack) {
  PlatformWindow& w = open();
  w.makeKey();
  ASSERT_TRUE(until([&] { return w.isKey(); }));
  ASSERT_TRUE(user.wait_for_manager());
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup);
  popup.makeKey();
  ASSERT_TRUE(until([&] { return popup.isKey(); }));
  user.type_key('1');
  ASSERT_TRUE(until([&] { return other_recorder.count("key down") == 1; }));
  other.reset();
  EXPECT_TRUE(until([&] { return w.isKey(); }));
  EXPECT_EQ(user.focused(), id(w));
}

TEST_F(X11Manager, HidesAnIconifiedWindowAndShowsItAgain) {
  PlatformWindow& w = open();
  EXPECT_TRUE(user.wait_for_manager());
  user.iconify(id(w));
  EXPECT_TRUE(until([&] { return !w.viewable(); }));
  // It goes on with the icon after the window has gone.
  EXPECT_TRUE(user.wait_for_manager());
  user.map(id(w));
  EXPECT_TRUE(until([&] { return w.viewable(); }));
}

TEST_F(X11Manager, LetsGoOfAHiddenWindow) {
  PlatformWindow& w = open();
  w.hide();
  EXPECT_TRUE(until([&] { return user.parent_of(id(w)) == user.root(); }));
  w.show();
  EXPECT_TRUE(until([&] { return w.viewable() && user.parent_of(id(w)) != user.root(); }));
}

TEST_F(X11Manager, KeepsAPanelAboveTheWindowItBelongsTo) {
  PlatformWindow& w = open();
  PlatformWindow& panel = open(other, other_recorder, WindowKind::panel);
  EXPECT_EQ(user.geometry(id(panel)), (XClient::Geometry{100, 50, 200, 100}));
  const xcb_window_t panel_frame = user.parent_of(id(panel));
  const xcb_window_t window_frame = user.parent_of(id(w));
  const auto is_above = [&] {
    const auto stack = user.children(user.root());
    return std::find(stack.begin(), stack.end(), panel_frame) >
           std::find(stack.begin(), stack.end(), window_frame);
  };
  EXPECT_TRUE(is_above());
  w.makeKey();
  w.show();
  settle();
  EXPECT_TRUE(is_above());
}

TEST_F(X11Manager, MovesAWindowAlongWithThePointer) {
  PlatformWindow& w = open();
  const XClient::Geometry before = user.geometry(id(w));
  user.point(before.x + 10, before.y + 20);
  user.press(1);
  ASSERT_TRUE(until([&] { return recorder.count("down") == 1; }));
  ASSERT_TRUE(w.letManagerMove());
  int tremble = 0;
  ASSERT_TRUE(until([&] {
    user.point(before.x + 90, before.y + 80 + (tremble ^= 1));
    return user.geometry(id(w)).x == before.x + 80;
  }));
  user.point(before.x + 90, before.y + 80);
  user.release(1);
  const XClient::Geometry after = {before.x + 80, before.y + 60, 200, 100};
  EXPECT_TRUE(until([&] { return user.geometry(id(w)) == after; }));
  EXPECT_TRUE(until([&] { return w.frame().origin.x == static_cast<CGFloat>(after.x); }));
  // The release is told as soon as the pointer is seen again.
  user.point(after.x + 30, after.y + 30);
  EXPECT_TRUE(until([&] { return recorder.count("up") == 1; }));
  ASSERT_TRUE(user.wait_for_manager());
  EXPECT_EQ(user.geometry(id(w)), after);
}

TEST_F(X11Manager, LetsGoOfAWindowWhoseButtonComesUpAtOnce) {
  PlatformWindow& w = open();
  const XClient::Geometry before = user.geometry(id(w));
  for (int click = 1; click <= 5; ++click) {
    user.point(before.x + 10, before.y + 20);
    user.press(1);
    ASSERT_TRUE(until([&] { return recorder.count("down") == click; }));
    ASSERT_TRUE(w.letManagerMove());
    user.release(1);
    ASSERT_TRUE(user.wait_for_manager());
    settle();
    ASSERT_TRUE(user.wait_for_manager());
    user.point(before.x + 30, before.y + 50);
    EXPECT_TRUE(until([&] { return recorder.count("up") == click; }));
    ASSERT_TRUE(user.wait_for_manager());
    EXPECT_EQ(user.geometry(id(w)), before);
  }
}

TEST_F(X11Manager, MovesNoWindowThatItDoesNotManage) {
  open();
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup);
  EXPECT_FALSE(popup.letManagerMove());
}

TEST_F(X11Manager, ClosesThroughTheOwner) {
  PlatformWindow& w = open();
  user.send_to_manager(id(w), "_NET_CLOSE_WINDOW");
  EXPECT_TRUE(until([&] { return recorder.count("close") == 1; }));
}

}  // namespace
}  // namespace cocoa
