// SPDX-License-Identifier: MIT
#include <xkbcommon/xkbcommon-keysyms.h>

#include <array>

#include "x11_fixture.h"

namespace cocoa {
namespace {

using testing::ElementsAre;

// Whether a server tells pointers through XInput 2 or not must make no difference; nor whether the window
// system uses it.
class X11Input : public X11Test, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    X11Test::SetUp();
    connect({.xinput = GetParam()});
    user.point(900, 700);
  }
};
INSTANTIATE_TEST_SUITE_P(Through, X11Input, testing::Bool(),
                         [](const auto& given) { return given.param ? "XInput" : "Core"; });

TEST_P(X11Input, FollowsThePointer) {
  open();
  user.point(110, 60);
  settle();
  user.point(113, 64);
  settle();
  user.point(900, 700);
  settle();
  ASSERT_THAT(recorder.told, ElementsAre("entered", "moved to", "exited"));
  EXPECT_EQ(recorder.events[0].location, (NSPoint{10, 89}));
  EXPECT_EQ(recorder.events[1].location, (NSPoint{13, 85}));
  EXPECT_EQ(recorder.events[1].delta_x, 3);
  EXPECT_EQ(recorder.events[1].delta_y, 4);
  EXPECT_GE(recorder.events[1].timestamp, recorder.events[0].timestamp);
}

TEST_P(X11Input, HasEveryPixelOfTheWindowInsideIt) {
  open();
  user.point(100, 50);
  settle();
  user.point(299, 149);
  settle();
  EXPECT_EQ(recorder.events.front().location, (NSPoint{0, 99}));
  EXPECT_EQ(recorder.events.back().location, (NSPoint{199, 0}));
}

TEST_P(X11Input, DragsGoToTheWindowThatWasPressedWhereverThePointerIs) {
  open();
  open(other, other_recorder, WindowKind::popup, NSMakeRect(500, 650, 200, 100));
  user.point(110, 60);
  user.press(1);
  settle();
  user.point(550, 90);
  settle();
  user.point(551, 88);
  user.release(1);
  settle();
  const auto drags = recorder.of(WindowEventType::mouse_dragged);
  ASSERT_EQ(drags.size(), 2U);
  EXPECT_EQ(drags[0].delta_x, 440);
  EXPECT_EQ(drags[0].delta_y, 30);
  EXPECT_EQ(drags[1].delta_y, -2);
  EXPECT_EQ(drags[0].location, (NSPoint{450, 59}));
  EXPECT_EQ(recorder.of(WindowEventType::mouse_up).size(), 1U);
  EXPECT_TRUE(other_recorder.of(WindowEventType::mouse_dragged).empty());
  EXPECT_TRUE(other_recorder.of(WindowEventType::mouse_down).empty());
}

TEST_P(X11Input, TellsOfARowOfMotionsTheLastWithTheWholeWay) {
  open();
  user.point(110, 60);
  user.press(1);
  settle();
  recorder.clear();
  for (int i = 1; i <= 50; ++i)
    user.point(110 + i, 60 + 2 * i);
  settle();
  const auto drags = recorder.of(WindowEventType::mouse_dragged);
  ASSERT_GE(drags.size(), 1U);
  EXPECT_LE(drags.size(), 5U);
  CGFloat dx = 0;
  CGFloat dy = 0;
  for (const WindowEvent& drag : drags) {
    dx += drag.delta_x;
    dy += drag.delta_y;
  }
  EXPECT_EQ(dx, 50);
  EXPECT_EQ(dy, 100);
  EXPECT_EQ(drags.back().location, (NSPoint{60, -11}));
}

TEST_P(X11Input, CountsClicks) {
  open();
  user.point(150, 100);
  user.double_click();
  user.click(3);
  user.point(190, 100);
  user.click(3);
  settle();
  const auto downs = recorder.of(WindowEventType::mouse_down);
  ASSERT_EQ(downs.size(), 4U);
  EXPECT_EQ(downs[0].click_count, 1);
  EXPECT_EQ(downs[1].click_count, 2);
  EXPECT_EQ(downs[2].click_count, 1);
  EXPECT_EQ(downs[3].click_count, 1);
  EXPECT_EQ(recorder.of(WindowEventType::mouse_up)[1].click_count, 2);
}

TEST_P(X11Input, NumbersTheButtonsAsThePlatformDoes) {
  open();
  user.point(150, 100);
  for (const int button : {1, 2, 3, 8, 9})
    user.click(button);
  settle();
  std::vector<int> buttons;
  for (const WindowEvent& down : recorder.of(WindowEventType::mouse_down))
    buttons.push_back(down.button);
  EXPECT_THAT(buttons, ElementsAre(0, 2, 1));
}

TEST_P(X11Input, TurnsTheWheelOnceANotch) {
  open();
  user.point(150, 100);
  for (const int button : {4, 5, 5, 6, 7})
    user.click(button);
  settle();
  std::vector<std::pair<CGFloat, CGFloat>> turns;
  for (const WindowEvent& turn : recorder.of(WindowEventType::scroll_wheel)) {
    turns.emplace_back(turn.delta_x, turn.delta_y);
    EXPECT_EQ(turn.location, (NSPoint{50, 49}));
  }
  const std::vector<std::pair<CGFloat, CGFloat>> expected{{0, 1}, {0, -1}, {0, -1}, {1, 0}, {-1, 0}};
  EXPECT_EQ(turns, expected);
  EXPECT_TRUE(recorder.of(WindowEventType::mouse_down).empty());
}

TEST_P(X11Input, SaysWhichModifiersAreHeld) {
  PlatformWindow& w = open();
  user.focus(id(w));
  user.point(150, 100);
  constexpr xcb_keysym_t shift_l = XKB_KEY_Shift_L;
  constexpr xcb_keysym_t control_l = XKB_KEY_Control_L;
  constexpr xcb_keysym_t alt_l = XKB_KEY_Alt_L;
  user.press_key(shift_l);
  user.click(1);
  user.release_key(shift_l);
  user.press_key(control_l);
  user.press_key(alt_l);
  user.click(4);
  user.release_key(alt_l);
  user.release_key(control_l);
  settle();
  EXPECT_EQ(recorder.of(WindowEventType::mouse_down)[0].modifiers, modifier_shift);
  EXPECT_EQ(recorder.of(WindowEventType::scroll_wheel)[0].modifiers, modifier_control | modifier_option);
}

TEST_P(X11Input, EndsTheDragOfAWindowThatIsHidden) {
  PlatformWindow& w = open();
  user.point(150, 100);
  user.press(1);
  settle();
  w.hide();
  settle();
  EXPECT_EQ(recorder.of(WindowEventType::mouse_up).size(), 1U);
  user.release(1);
  settle();
  EXPECT_EQ(recorder.of(WindowEventType::mouse_up).size(), 1U);
}

TEST_P(X11Input, EndsADragWhoseReleaseAnotherProgramTook) {
  const xcb_window_t host = user.make_window(300, 200, 200, 100);
  user.map(host);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {200, 100}}, .host_window = host},
                              recorder);
  ASSERT_TRUE(window);
  window->show();
  ASSERT_TRUE(until([&] { return window->viewable(); }));
  user.point(350, 250);
  user.press(1);
  settle();
  ASSERT_EQ(recorder.of(WindowEventType::mouse_down).size(), 1U);
  // A press holds the pointer until its window can be seen no more. Of its parent's hiding nobody tells the
  // window itself: the release goes to what lies behind.
  user.unmap(host);
  user.release(1);
  user.map(host);
  settle();
  user.point(360, 250);
  settle();
  EXPECT_EQ(recorder.of(WindowEventType::mouse_up).size(), 1U);
  EXPECT_TRUE(recorder.of(WindowEventType::mouse_dragged).empty());
}

TEST_P(X11Input, MayDestroyTheWindowInTheMiddleOfItsEvents) {
  open();
  recorder.on_event = [this](const WindowEvent& event) {
    if (event.type == WindowEventType::mouse_down)
      window.reset();
  };
  user.point(150, 100);
  user.click(1);
  user.click(1);
  user.point(160, 100);
  settle();
  EXPECT_EQ(recorder.of(WindowEventType::mouse_down).size(), 1U);
  EXPECT_EQ(recorder.count("up"), 0);
}

using X11Keys = X11Test;

TEST_F(X11Keys, SayWhatTheyType) {
  PlatformWindow& w = open();
  w.makeKey();
  ASSERT_TRUE(until([&] { return w.isKey(); }));
  constexpr xcb_keysym_t return_key = XKB_KEY_Return;
  constexpr xcb_keysym_t escape = XKB_KEY_Escape;
  constexpr xcb_keysym_t shift_l = XKB_KEY_Shift_L;
  user.type_key('7');
  user.press_key(shift_l);
  user.type_key('a');
  user.release_key(shift_l);
  user.type_key(return_key);
  user.type_key(escape);
  settle();
  std::vector<std::pair<uint32_t, std::string>> typed;
  for (const WindowEvent& key : recorder.of(WindowEventType::key_down))
    typed.emplace_back(key.keysym, key.characters);
  EXPECT_THAT(typed, ElementsAre(std::pair(0x37U, "7"), std::pair(shift_l, ""), std::pair(0x41U, "A"),
                                 std::pair(return_key, "\r"), std::pair(escape, "\x1b")));
  EXPECT_EQ(recorder.of(WindowEventType::key_up).size(), 5U);
  EXPECT_EQ(recorder.of(WindowEventType::key_down)[2].modifiers, modifier_shift);
}

TEST_F(X11Keys, RepeatWhileTheyAreHeld) {
  PlatformWindow& w = open();
  w.makeKey();
  ASSERT_TRUE(until([&] { return w.isKey(); }));
  user.press_key('5');
  EXPECT_TRUE(until([&] { return recorder.count("key down") >= 3; }));
  user.release_key('5');
  settle();
  const auto downs = recorder.of(WindowEventType::key_down);
  EXPECT_FALSE(downs[0].is_repeat);
  EXPECT_TRUE(downs[1].is_repeat);
  EXPECT_TRUE(downs[2].is_repeat);
  EXPECT_EQ(recorder.count("key up"), 1);
}

TEST_F(X11Keys, MadeUpByAHostAreKeysToo) {
  PlatformWindow& w = open();
  xcb_key_press_event_t key{};
  key.response_type = XCB_KEY_PRESS;
  key.detail = 24;  // the first letter key of every PC keyboard's upper row
  key.event = id(w);
  key.root = user.root();
  xcb_send_event(user.connection(), 0, id(w), 0, reinterpret_cast<const char*>(&key));
  user.sync();
  settle();
  ASSERT_EQ(recorder.count("key down"), 1);
  EXPECT_FALSE(recorder.events[0].characters.empty());
}

TEST_F(X11Keys, FollowALayoutThatIsChangedWhileTheWindowIsOpen) {
  PlatformWindow& w = open();
  w.makeKey();
  ASSERT_TRUE(until([&] { return w.isKey(); }));
  constexpr xcb_keycode_t key_of_a_letter = 24;
  constexpr std::array<xcb_keysym_t, 2> omega{0x7f9, 0x7d9};
  xcb_change_keyboard_mapping(user.connection(), 1, key_of_a_letter, omega.size(), omega.data());
  user.sync();
  settle();
  user.type_key(omega[0]);
  settle();
  EXPECT_EQ(recorder.of(WindowEventType::key_down).back().characters, "ω");
}

using X11Focus = X11Test;

TEST_F(X11Focus, APopupTakesTheKeyboardAndGivesItBack) {
  PlatformWindow& w = open();
  w.makeKey();
  ASSERT_TRUE(until([&] { return w.isKey(); }));
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup);
  popup.makeKey();
  EXPECT_TRUE(until([&] { return popup.isKey(); }));
  EXPECT_FALSE(w.isKey());
  EXPECT_THAT(recorder.told, ElementsAre("key", "resigned"));
  EXPECT_EQ(user.focused(), id(popup));
  popup.hide();
  EXPECT_TRUE(until([&] { return w.isKey(); }));
  EXPECT_EQ(user.focused(), id(w));
}

TEST_F(X11Focus, APopupGivesTheKeyboardBackToTheHostsWindowThatHadIt) {
  const xcb_window_t host = user.make_window(0, 0, 260, 180);
  user.map(host);
  user.focus(host);
  window = system->makeWindow({.kind = WindowKind::embedded, .frame = {{}, {260, 180}}, .host_window = host},
                              recorder);
  window->show();
  ASSERT_TRUE(until([&] { return window->viewable(); }));
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup);
  popup.makeKey();
  ASSERT_TRUE(until([&] { return popup.isKey(); }));
  other.reset();
  EXPECT_TRUE(until([&] { return user.focused() == host; }));
}

TEST_F(X11Focus, APopupThatIsMadeKeyBeforeItShowsBecomesSo) {
  open();
  other = system->makeWindow({.kind = WindowKind::popup, .frame = {{}, {20, 20}}}, other_recorder);
  other->makeKey();
  other->show();
  EXPECT_TRUE(until([&] { return other->isKey(); }));
}

TEST_F(X11Focus, AClickMovesItNowhere) {
  PlatformWindow& w = open();
  const xcb_window_t host = user.make_window(0, 0, 20, 20);
  user.map(host);
  user.focus(host);
  user.point(150, 100);
  user.click(1);
  settle();
  EXPECT_EQ(user.focused(), host);
  EXPECT_FALSE(w.isKey());
}

TEST_F(X11Focus, ThePointersBeingOverAWindowDoesNotMakeItKey) {
  open();
  user.point(150, 100);
  user.focus(XCB_INPUT_FOCUS_POINTER_ROOT);
  settle();
  EXPECT_EQ(recorder.count("key"), 0);
}

}  // namespace
}  // namespace cocoa
