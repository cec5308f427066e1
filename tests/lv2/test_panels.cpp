// SPDX-License-Identifier: MIT
// The windows of its own that the editor opens over a host's.

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>

#include "host_fixture.h"

namespace ondex::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

constexpr Place on_title = {430, 24};
constexpr xcb_keysym_t return_key = XKB_KEY_Return;
constexpr xcb_keysym_t escape_key = XKB_KEY_Escape;

class Panels : public HostTest {
 protected:
  /// The windows that came up on the screen since the editor opened, and still show.
  std::vector<xcb_window_t> panels() {
    auto all = user.children(user.root());
    std::erase_if(all, [this](xcb_window_t window) {
      return std::find(before.begin(), before.end(), window) != before.end() || !user.viewable(window);
    });
    return all;
  }
  void open_with_host_in_focus() {
    open();
    user.focus(parent);
    settle();
    before = user.children(user.root());
  }
  /// Opens the numeric entry over a readout.
  xcb_window_t open_entry(Place readout) {
    point(readout);
    settle();
    user.double_click();
    EXPECT_TRUE(host.idleUntil([this] { return panels().size() == 1; }));
    const auto opened = panels();
    const xcb_window_t entry = opened.empty() ? xcb_window_t{XCB_WINDOW_NONE} : opened.front();
    EXPECT_TRUE(host.idleUntil([&] { return user.focused() == entry; }));
    return entry;
  }
  void type(const std::vector<xcb_keysym_t>& keys) {
    for (const xcb_keysym_t key : keys)
      user.type_key(key);
    settle();
  }

  std::vector<xcb_window_t> before;
};

TEST_F(Panels, ATypedNumberIsOneGestureWithOneWrite) {
  open_with_host_in_focus();
  open_entry(on_left_rate);
  EXPECT_THAT(host.told(), IsEmpty()) << "nothing has been decided yet";
  type({'7', '.', '5', return_key});
  ASSERT_TRUE(host.idleUntil([this] { return panels().empty() && host.told().size() >= 3; }));
  EXPECT_EQ(host.told(), (std::vector<Told>{{Told::begin, left_rate_port, 0},
                                            {Told::write, left_rate_port, 7.5F},
                                            {Told::end, left_rate_port, 0}}));
  EXPECT_TRUE(host.idleUntil([this] { return user.focused() == parent; })) << "the host has its keys again";
}

TEST_F(Panels, AnEntryThatIsCancelledIsNoGesture) {
  open_with_host_in_focus();
  open_entry(on_left_rate);
  type({'7', escape_key});
  ASSERT_TRUE(host.idleUntil([this] { return panels().empty(); }));
  EXPECT_TRUE(host.idleUntil([this] { return user.focused() == parent; }));
  EXPECT_THAT(host.told(), IsEmpty());
}

TEST_F(Panels, WhatTheHostSaysMeanwhileDoesNotWipeWhatIsTyped) {
  open_with_host_in_focus();
  open_entry(on_left_rate);
  type({'7'});
  host.set(left_rate_port, 11);
  host.idleFor(0.2);
  type({'.', '5', return_key});
  ASSERT_TRUE(host.idleUntil([this] { return panels().empty(); }));
  EXPECT_EQ(host.value(left_rate_port), 7.5F);
}

TEST_F(Panels, TheEntryFollowsAHostThatMovesWithoutAWord) {
  open_with_host_in_focus();
  const xcb_window_t entry = open_entry(on_left_rate);
  const auto at_first = user.geometry(entry);
  user.move(parent, 240, 170);
  EXPECT_TRUE(host.idleUntil([&] {
    const auto now = user.geometry(entry);
    return now.x == at_first.x + 40 && now.y == at_first.y + 70;
  }));
  type({'3', return_key});
  ASSERT_TRUE(host.idleUntil([this] { return panels().empty(); }));
  EXPECT_EQ(host.value(left_rate_port), 3);
}

TEST_F(Panels, AllGoWhenTheParentDies) {
  open_with_host_in_focus();
  open_entry(on_left_rate);
  user.destroy(parent);
  EXPECT_TRUE(host.idleUntil([this] { return host.idle() != 0; }));
  EXPECT_TRUE(host.idleUntil([this] { return panels().empty(); }));
  EXPECT_THAT(host.told(), IsEmpty());
  host.close();
}

TEST_F(Panels, AllGoWhenTheHostClosesTheEditor) {
  open_with_host_in_focus();
  open_entry(on_left_rate);
  host.close();
  EXPECT_TRUE(test_support::wait_until([this] { return panels().empty(); }));
  EXPECT_THAT(host.told(), IsEmpty());
}

TEST_F(Panels, ThePreferencesBelongToTheHostsWindow) {
  open_with_host_in_focus();
  point(on_title);
  settle();
  user.click(1);
  ASSERT_TRUE(host.idleUntil([this] { return panels().size() == 1; }));
  const xcb_window_t preferences_window = panels().front();
  EXPECT_THAT(user.property(preferences_window, "WM_TRANSIENT_FOR"), testing::ElementsAre(parent));
  // Another click brings the same one.
  point(on_title);
  settle();
  user.click(1);
  settle();
  EXPECT_THAT(panels(), SizeIs(1));
  user.send_protocol(preferences_window, "WM_DELETE_WINDOW");
  EXPECT_TRUE(host.idleUntil([this] { return panels().empty(); }));
  EXPECT_EQ(host.idle(), 0) << "the editor goes on";
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

TEST_F(Panels, ThePreferencesGoWithTheEditor) {
  open_with_host_in_focus();
  point(on_title);
  settle();
  user.click(1);
  ASSERT_TRUE(host.idleUntil([this] { return panels().size() == 1; }));
  host.close();
  EXPECT_TRUE(test_support::wait_until([this] { return panels().empty(); }));
}

}  // namespace
}  // namespace ondex::test
