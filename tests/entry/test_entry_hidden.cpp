// SPDX-License-Identifier: MIT
// Windows that go off the screen while a number is typed over them, or a list is open.

#include "entry_on_display.h"
#include "list_on_display.h"

namespace ondex::test {
namespace {

/// What takes a window off the screen, and with a manager how.
enum class Way { minimised, shaded, desktop_shown };

class EntryHidden : public EntryOnDisplay, public testing::WithParamInterface<Way> {
 protected:
  void hide(xcb_window_t which) {
    switch (GetParam()) {
      case Way::minimised:
        user.iconify(which);
        break;
      case Way::shaded:
        send(which, "_NET_WM_STATE", {1, user.atom("_NET_WM_STATE_SHADED")});
        break;
      case Way::desktop_shown:
        send(user.root(), "_NET_SHOWING_DESKTOP", {1, 0});
        break;
    }
  }
  void send(xcb_window_t which, std::string_view type, std::pair<uint32_t, uint32_t> values) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = which;
    message.type = user.atom(type);
    message.data.data32[0] = values.first;
    message.data.data32[1] = values.second;
    xcb_send_event(user.connection(), 0, user.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    user.sync();
  }
};
INSTANTIATE_TEST_SUITE_P(, EntryHidden, testing::Values(Way::minimised, Way::shaded, Way::desktop_shown),
                         [](const auto& given) {
                           return given.param == Way::minimised ? "Minimised"
                                  : given.param == Way::shaded  ? "Shaded"
                                                                : "DesktopShown";
                         });

TEST_P(EntryHidden, GoesWithItsWindow) {
  start_manager();
  show_editor();
  open_entry();
  const xcb_window_t entry = panel_id();
  type("7");
  hide(id());
  ASSERT_TRUE(closes());
  EXPECT_FALSE(user.exists(entry) && user.viewable(entry));
  EXPECT_TRUE(writes.empty());
}

TEST_P(EntryHidden, WhatIsTypedBlindBeforeTheEditorNoticesIsNotWritten) {
  start_manager();
  show_editor();
  open_entry();
  type("7");
  ASSERT_TRUE(until([this] { return typed() == "7"; }));
  // Nothing of ours runs from here until everything has happened.
  hide(id());
  ASSERT_TRUE(user.wait_for_manager());
  type("5");
  user.type_key(key::enter);
  ASSERT_TRUE(closes());
  for (int i = 0; i < 20; ++i)
    pass();
  EXPECT_TRUE(writes.empty());
}

/// Inside a host, which hides its window without a word.
class EntryInHiddenHost : public EntryOnDisplay {
 protected:
  void SetUp() override {
    EntryOnDisplay::SetUp();
    top = user.make_window(60, 50, 900, 420);
    host = user.make_window(0, 0, 900, 400);
    xcb_reparent_window(user.connection(), host, top, 0, 20);
    user.map(host);
    user.map(top);
    show_editor(host);
    ASSERT_TRUE(until([this] { return user.geometry(id()).width == 860; }));
    user.focus(top);
    open_entry();
    type("7");
    ASSERT_TRUE(until([this] { return typed() == "7"; }));
  }
  xcb_window_t top = 0;
  xcb_window_t host = 0;
};

TEST_F(EntryInHiddenHost, GoesWithTheHostsWindow) {
  user.unmap(host);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
}

TEST_F(EntryInHiddenHost, GoesWithAWindowThatTheHostsLiesIn) {
  user.unmap(top);
  type("5");
  user.type_key(key::enter);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
}

TEST_F(EntryInHiddenHost, GoesWithAHostThatItsManagerOnlySaysIsHidden) {
  user.set_property(top, "_NET_WM_STATE", XCB_ATOM_ATOM, {user.atom("_NET_WM_STATE_HIDDEN")});
  ASSERT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
}

TEST_F(EntryInHiddenHost, GoesWithAHostThatItsManagerOnlySaysIsAnIcon) {
  user.set_property(top, "WM_STATE", user.atom("WM_STATE"), std::vector<uint32_t>{3, 0});
  ASSERT_TRUE(closes());
  EXPECT_TRUE(writes.empty());
}

TEST_F(EntryInHiddenHost, OpensAgainWhenTheHostIsBack) {
  user.unmap(top);
  ASSERT_TRUE(closes());
  user.map(top);
  ASSERT_TRUE(until([this] { return window->platformWindow()->viewable(); }));
  // A press elsewhere, so that the next two count as one and two.
  point_at(10, 10);
  user.click(1);
  open_entry();
  type("3");
  user.type_key(key::enter);
  ASSERT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 3}}));
}

// Focus follows the mouse: a manager gives it to the window that the pointer moves onto.

TEST_F(EntryInHiddenHost, StaysWhenTheFocusFollowsThePointerOntoTheEditor) {
  user.focus(top);
  EXPECT_TRUE(until([this] { return user.focused() == panel_id(); }));
  type(".5");
  user.type_key(key::enter);
  ASSERT_TRUE(closes());
  EXPECT_EQ(writes, (std::vector<Write>{{0, 7.5F}}));
  EXPECT_TRUE(until([this] { return user.focused() == top; })) << "who had the keys has them again";
}

TEST_F(EntryInHiddenHost, StaysWhenTheHostPassesTheFocusOnToAWindowInsideItsOwn) {
  user.focus(host);
  EXPECT_TRUE(until([this] { return user.focused() == panel_id(); }));
  EXPECT_TRUE(panel() && panel()->isKeyWindow());
}

TEST_F(EntryInHiddenHost, GoesWhenAnotherProgramTakesTheFocus) {
  const xcb_window_t other = user.make_window(1050, 20, 100, 100);
  user.map(other);
  user.focus(other);
  ASSERT_TRUE(closes());
  EXPECT_EQ(user.focused(), other);
  EXPECT_TRUE(writes.empty());
}

TEST_F(EntryInHiddenHost, AClickInTheHostEndsItAfterTheFocusHasFollowedThePointer) {
  user.focus(top);
  ASSERT_TRUE(until([this] { return user.focused() == panel_id(); }));
  user.point(950, 60);
  user.click(1);
  ASSERT_TRUE(closes());
  EXPECT_TRUE(until([this] { return user.focused() == top; }));
  EXPECT_TRUE(writes.empty());
}

TEST_F(ListOnDisplay, GoesWithAHostsHiddenWindow) {
  const xcb_window_t host = user.make_window(100, 100, 400, 300);
  user.map(host);
  show_window(host);
  user.focus(host);
  open_list();
  ASSERT_TRUE(until([this] { return list_shows(); }));
  user.unmap(host);
  EXPECT_TRUE(until([this] { return !list_shows(); }));
  EXPECT_EQ(button->indexOfSelectedItem(), 0);
}

TEST_F(ListOnDisplay, GoesWithAMinimisedWindow) {
  start_manager();
  show_window();
  open_list();
  ASSERT_TRUE(user.wait_for_manager());
  user.iconify(id());
  EXPECT_TRUE(until([this] { return !list_shows(); }));
}

}  // namespace
}  // namespace ondex::test
