// SPDX-License-Identifier: MIT
#include "x11_fixture.h"

namespace cocoa {
namespace {

using X11Popup = X11Test;

uint8_t depth_of(test_support::XClient& user, xcb_window_t window) {
  auto* reply =
      xcb_get_geometry_reply(user.connection(), xcb_get_geometry(user.connection(), window), nullptr);
  const uint8_t depth = reply ? reply->depth : 0;
  free(reply);
  return depth;
}

// Red 64 at half of alpha over (32, 64, 128): 64 + 32·127/255 = 80, 64·127/255 = 32, 128·127/255 = 64.
constexpr uint32_t glass = 0x80400000;
constexpr uint32_t ground = 0xff204080;
constexpr uint32_t glass_over_ground = 0x502040;

TEST_F(X11Popup, IsLeftToACompositorToBlend) {
  const xcb_window_t compositor = user.make_window(0, 0, 1, 1);
  xcb_set_selection_owner(user.connection(), compositor, user.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
  user.sync();
  EXPECT_EQ(depth_of(user, id(open(window, recorder, WindowKind::titled))), 24);
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(120, 660, 50, 50));
  EXPECT_EQ(depth_of(user, id(popup)), 32);
  fill(popup, glass);
  present(popup);
  EXPECT_TRUE(until([&] { return user.pixel(id(popup), 5, 5) == (glass & 0xffffff); }));
}

TEST_F(X11Popup, LetsItsParentShowThroughWithoutACompositor) {
  PlatformWindow& parent = open();
  fill(parent, ground);
  present(parent);
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(280, 660, 50, 50));
  EXPECT_EQ(depth_of(user, id(popup)), 24);
  fill(popup, glass);
  present(popup);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 290, 100) == glass_over_ground; }));
  EXPECT_EQ(user.pixel(user.root(), 310, 100), glass & 0xffffff)
      << "beside the parent there is nothing to show";
  EXPECT_EQ(*reinterpret_cast<uint32_t*>(popup.pixels().data), glass)
      << "what was drawn stays as it was drawn";
}

TEST_F(X11Popup, FollowsWhatItsParentDrawsBelowIt) {
  PlatformWindow& parent = open();
  fill(parent, 0xffffffff);
  present(parent);
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(120, 660, 50, 50));
  fill(popup, glass);
  present(popup);
  fill(parent, ground);
  present(parent, {20, 0, 30, 100});
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 149, 100) == glass_over_ground; }));
  // 64 + 255·127/255 = 191, 127, 127
  EXPECT_EQ(user.pixel(user.root(), 150, 100), 0xbf7f7fU);
}

TEST_F(X11Popup, ShowsAnotherPartOfItsParentWhenItMoves) {
  PlatformWindow& parent = open();
  fill(parent, 0xffffffff);
  auto* pixels = reinterpret_cast<uint32_t*>(parent.pixels().data);
  for (int i = 0; i < 200 * 100; ++i)
    pixels[i] = i % 200 < 100 ? 0xffffffff : ground;
  present(parent);
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(120, 660, 50, 50));
  fill(popup, glass);
  present(popup);
  ASSERT_TRUE(until([&] { return user.pixel(user.root(), 130, 110) == 0xbf7f7fU; }));
  popup.setFrame(NSMakeRect(220, 660, 50, 50));
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 230, 110) == glass_over_ground; }));
}

TEST_F(X11Popup, LetsAnEmbeddedParentShowThroughWhereverItsHostIs) {
  const xcb_window_t host = user.make_window(300, 200, 200, 100);
  user.map(host);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {200, 100}}, .host_window = host},
                              recorder);
  window->show();
  ASSERT_TRUE(until([&] { return window->viewable(); }));
  fill(*window, 0xffffffff);
  reinterpret_cast<uint32_t*>(window->pixels().data)[10 * 200 + 30] = ground;
  present(*window);
  user.move(host, 400, 300);
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(410, 410, 90, 90));
  fill(popup, glass);
  present(popup);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 430, 310) == glass_over_ground; }));
  EXPECT_EQ(user.pixel(user.root(), 431, 310), 0xbf7f7fU);
}

TEST_F(X11Popup, OutlivesTheDestructionOfItsParentFromOutside) {
  PlatformWindow& parent = open();
  fill(parent, ground);
  present(parent);
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(120, 660, 50, 50));
  user.destroy(id(parent));
  ASSERT_TRUE(until([&] { return recorder.count("gone") == 1; }));
  fill(popup, glass);
  present(popup);
  EXPECT_TRUE(until([&] { return user.pixel(id(popup), 5, 5) == (glass & 0xffffff); }));
}

TEST_F(X11Popup, MayBeClosedAfterItsParent) {
  open();
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(120, 660, 50, 50));
  popup.makeKey();
  ASSERT_TRUE(until([&] { return popup.isKey(); }));
  window.reset();
  fill(popup, glass);
  present(popup);
  settle();
  other.reset();
  settle();
}

// What a popup takes for itself

class X11GrabbingPopup : public X11Test, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    X11Test::SetUp();
    connect({.xinput = GetParam()});
    open();
    popup = &open(other, other_recorder, WindowKind::popup, NSMakeRect(120, 660, 50, 50));
    stranger = user.make_window(800, 400, 100, 100);
    user.select_input(stranger, XCB_EVENT_MASK_BUTTON_PRESS);
    user.map(stranger);
  }
  /// Clicks on the other program's window; whether that program noticed.
  bool click_reaches_stranger() {
    user.point(850, 450);
    user.click(1);
    user.sync();
    bool noticed = false;
    while (xcb_generic_event_t* event = user.poll_event()) {
      noticed = noticed || (event->response_type & 0x7f) == XCB_BUTTON_PRESS;
      free(event);
    }
    return noticed;
  }

  PlatformWindow* popup = nullptr;
  xcb_window_t stranger = XCB_WINDOW_NONE;
};

TEST_P(X11GrabbingPopup, HearsOfClicksInOtherPrograms) {
  popup->grabPointer();
  settle();
  EXPECT_FALSE(click_reaches_stranger());
  ASSERT_TRUE(until([&] { return other_recorder.count("up") == 1; }));
  const auto down = other_recorder.of(WindowEventType::mouse_down);
  ASSERT_EQ(down.size(), 1U);
  // The popup's lower left corner is at (120, 139) from the top left, counted in pixels.
  EXPECT_EQ(down[0].location, (NSPoint{850 - 120, 139 - 450}));
  popup->releasePointer();
  settle();
  EXPECT_TRUE(click_reaches_stranger());
}

TEST_P(X11GrabbingPopup, TakesThePointerOverFromThePressThatOpenedIt) {
  user.point(110, 60);
  user.press(1);
  ASSERT_TRUE(until([&] { return recorder.count("down") == 1; }));
  popup->grabPointer();
  settle();
  user.point(850, 450);
  user.release(1);
  EXPECT_TRUE(until([&] { return other_recorder.count("moved to") > 0; }));
  EXPECT_FALSE(click_reaches_stranger());
}

TEST_P(X11GrabbingPopup, LetsGoOfThePointerWhenItHidesOrGoes) {
  popup->grabPointer();
  popup->hide();
  settle();
  EXPECT_TRUE(click_reaches_stranger());
  popup->show();
  popup->grabPointer();
  settle();
  EXPECT_FALSE(click_reaches_stranger());
  other.reset();
  settle();
  EXPECT_TRUE(click_reaches_stranger());
}

TEST_P(X11GrabbingPopup, LosesThePointerWithItsProgram) {
  popup->grabPointer();
  settle();
  EXPECT_FALSE(click_reaches_stranger());
  other.reset();
  window.reset();
  system.reset();
  EXPECT_TRUE(test_support::wait_until([&] { return click_reaches_stranger(); }));
}

TEST_P(X11GrabbingPopup, DestroyedFromOutsideItHoldsNothing) {
  popup->grabPointer();
  settle();
  user.destroy(id(*popup));
  ASSERT_TRUE(until([&] { return other_recorder.count("gone") == 1; }));
  EXPECT_TRUE(click_reaches_stranger());
  popup->grabPointer();
  popup->releasePointer();
  settle();
}

TEST_P(X11GrabbingPopup, KnowsItsScreen) {
  EXPECT_EQ(popup->screenBounds(), NSMakeRect(0, 0, 1280, 800));
}

INSTANTIATE_TEST_SUITE_P(, X11GrabbingPopup, testing::Bool(), [](const testing::TestParamInfo<bool>& mode) {
  return mode.param ? "XInput" : "Core";
});

}  // namespace
}  // namespace cocoa
