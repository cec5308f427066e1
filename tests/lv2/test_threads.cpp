// SPDX-License-Identifier: MIT
// Hosts whose calls come on several threads, one at a time.

#include <thread>

#include "host_fixture.h"

namespace ondex::test {
namespace {

constexpr Place on_the_title = {430, 24};

class Threads : public HostTest {
 protected:
  static void elsewhere(const std::function<void()>& call) { std::thread(call).join(); }
  bool preferences_open() {
    const auto all = user.children(user.root());
    return std::any_of(all.begin(), all.end(), [this](xcb_window_t window) {
      return user.viewable(window) && user.text_property(window, "_NET_WM_NAME") == "KV Ondex Preferences";
    });
  }
  void click_title() {
    point(on_the_title);
    settle();
    user.click(1);
  }
};

TEST_F(Threads, AnEditorMadeOnOneIsTurnedOnAnother) {
  parent = makeParent(200, 100);
  bool opened = false;
  elsewhere([&] { opened = host.open({.parent = parent}); });
  ASSERT_TRUE(opened);
  ASSERT_TRUE(host.idleUntil([&] { return user.pixel(host.window(), 5, 5).value_or(0) != 0; }));
  host.idleFor(0.1);
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
  click_title();
  EXPECT_TRUE(host.idleUntil([this] { return preferences_open(); }));
  EXPECT_THAT(host.log(), testing::IsEmpty());
}

TEST_F(Threads, EveryCallMayComeOnOneOfItsOwn) {
  open();
  point(on_the_title);
  elsewhere([this] { host.idleFor(0.06); });
  user.click(1);
  EXPECT_TRUE(test_support::wait_until([this] {
    elsewhere([this] { host.idle(); });
    return preferences_open();
  }));
  elsewhere([this] { host.set(depth_port, 0.25F); });
  elsewhere([this] { host.idleFor(0.1); });
  elsewhere([this] { host.close(); });
  EXPECT_TRUE(test_support::wait_until([this] { return !preferences_open(); }));
  EXPECT_THAT(host.log(), testing::IsEmpty());
}

}  // namespace
}  // namespace ondex::test
