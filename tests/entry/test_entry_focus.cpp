// SPDX-License-Identifier: MIT
#include "entry_on_display.h"

namespace ondex::test {
namespace {

/// In a host that lets the editor sit deep inside a window of its own.
class EntryInHost : public EntryOnDisplay {
 protected:
  void SetUp() override {
    EntryOnDisplay::SetUp();
    host = user.make_window(60, 50, 900, 400);
    user.map(host);
    other = user.make_window(1050, 20, 100, 100);
    user.map(other);
    show_editor(host);
    ASSERT_TRUE(until([this] { return user.geometry(id()).width == 860; }));
  }
  xcb_window_t host = 0;
  xcb_window_t other = 0;
};

TEST_F(EntryInHost, TakesTheKeysOnlyWhileItIsOpenAndGivesThemBack) {
  user.focus(host);
  point_at(10, 10);
  user.click(1);
  pass();
  EXPECT_EQ(user.focused(), host) << "a click moves no keys";
  open_entry();
  EXPECT_EQ(user.focused(), panel_id());
  type("7.5");
  user.type_key(key::enter);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(until([this] { return user.focused() == host; }));
  EXPECT_EQ(writes.back(), (Write{0, 7.5F}));
}

TEST_F(EntryInHost, EscapeGivesThemBackToWhoeverHadThem) {
  user.focus(other);
  open_entry();
  user.type_key(key::escape);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(until([this] { return user.focused() == other; }));
}

TEST_F(EntryInHost, AClickInTheEditorGivesThemBack) {
  user.focus(host);
  open_entry();
  point_at(10, 10);
  user.click(1);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(until([this] { return user.focused() == host; }));
}

TEST_F(EntryInHost, AClickBesideTheEditorGivesThemBack) {
  user.focus(host);
  open_entry();
  user.point(950, 440);
  user.click(1);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(until([this] { return user.focused() == host; }));
}

TEST_F(EntryInHost, WhenWhoHadThemHasGoneTheHostGetsThem) {
  user.focus(other);
  open_entry();
  user.destroy(other);
  user.type_key(key::escape);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(until([this] { return user.focused() == host; }));
}

TEST_F(EntryInHost, WhenWhoHadThemIsHiddenTheHostGetsThem) {
  user.focus(other);
  open_entry();
  user.unmap(other);
  user.type_key(key::escape);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(until([this] { return user.focused() == host; }));
}

TEST_F(EntryInHost, ThePanelFollowsAHostThatMovesWithoutTellingTheEditor) {
  user.focus(host);
  open_entry();
  const auto before = user.geometry(panel_id());
  user.move(host, 160, 150);
  EXPECT_TRUE(until([&] {
    const auto now = user.geometry(panel_id());
    return now.x == before.x + 100 && now.y == before.y + 100;
  }));
  EXPECT_TRUE(panel()->isKeyWindow());
}

TEST_F(EntryInHost, TheHostMayDestroyItsWindowMeanwhile) {
  user.focus(host);
  open_entry();
  type("7.5");
  user.destroy(host);
  EXPECT_TRUE(until([this] { return !window->isVisible(); }));
  window = nullptr;
  editor = nullptr;
  pass();
  EXPECT_TRUE(writes.empty());
}

TEST_F(EntryInHost, KeysThatTheHostHasGrabbedStillReachThePanel) {
  user.focus(host);
  // As hosts do that close their editors on Escape.
  xcb_grab_key(user.connection(), 1, host, XCB_MOD_MASK_ANY, 9, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  user.sync();
  open_entry();
  user.type_key(key::escape);
  EXPECT_TRUE(closes());
}

}  // namespace
}  // namespace ondex::test
