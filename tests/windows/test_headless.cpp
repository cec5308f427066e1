// SPDX-License-Identifier: MIT
#include <xkbcommon/xkbcommon-keysyms.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "foundation/Clock.h"
#include "foundation/NSLog.h"
#include "recorder.h"
#include "windows/headless.h"
#include "windows/pixel_geometry.h"

namespace cocoa {
namespace {

using testing::ElementsAre;

class TestClock : public Clock {
 public:
  double time = 10;
  double now() const override { return time; }
};

class Headless : public testing::Test {
 protected:
  HeadlessWindow& open(WindowKind kind = WindowKind::titled, NSRect frame = NSMakeRect(100, 200, 60, 40)) {
    return open(window, recorder, kind, frame);
  }
  HeadlessWindow& open(std::unique_ptr<PlatformWindow>& place, Recorder& listener, WindowKind kind,
                       NSRect frame = NSMakeRect(100, 200, 60, 40)) {
    place = system.makeWindow({.kind = kind, .frame = frame, .title = "Tremolo"}, listener);
    place->show();
    system.dispatch();
    return *system.newestWindow();
  }

  TestClock clock;
  HeadlessWindowSystem system{clock, 2};
  Recorder recorder;
  Recorder other_recorder;
  std::unique_ptr<PlatformWindow> window;
  std::unique_ptr<PlatformWindow> other;
};

TEST_F(Headless, DeliversWhatIsInjectedWhenItIsDispatched) {
  HeadlessWindow& w = open();
  w.press({10, 20}, 0, modifier_shift);
  EXPECT_TRUE(recorder.told.empty());
  EXPECT_TRUE(system.dispatch());
  EXPECT_FALSE(system.dispatch());
  ASSERT_THAT(recorder.told, ElementsAre("entered", "down"));
  const WindowEvent& down = recorder.events[1];
  EXPECT_EQ(down.location, (NSPoint{10, 20}));
  EXPECT_EQ(down.click_count, 1);
  EXPECT_EQ(down.modifiers, modifier_shift);
  EXPECT_EQ(down.timestamp, 10);
}

TEST_F(Headless, OfAWindowTooLargeToBeDrawnTheMiddleIs) {
  HeadlessWindow& w = open();
  w.resize({16384, 8192});
  system.dispatch();
  const Pixels pixels = w.pixels();
  ASSERT_TRUE(pixels);
  EXPECT_LE(static_cast<double>(pixels.width) * pixels.height, most_pixels);
  EXPECT_NEAR(static_cast<double>(pixels.width) / pixels.height, 2, 0.01);
  const NSRect frame = w.frame();
  EXPECT_EQ(frame.size,
            (NSSize{static_cast<CGFloat>(pixels.width / 2.0), static_cast<CGFloat>(pixels.height / 2.0)}));
  EXPECT_NEAR(static_cast<double>(NSMinX(frame) + NSWidth(frame) / 2), 100 + 8192, 1);
  EXPECT_NEAR(static_cast<double>(NSMinY(frame) + NSHeight(frame) / 2), 200 + 4096, 1);
  w.resize({60, 40});
  system.dispatch();
  EXPECT_EQ(w.frame(), NSMakeRect(100, 200, 60, 40));
}

TEST_F(Headless, DeliversAtOnceWhenAskedTo) {
  HeadlessWindow& w = open();
  system.setDelivery(HeadlessWindowSystem::Delivery::at_once);
  w.press({10, 20});
  w.release();
  EXPECT_THAT(recorder.told, ElementsAre("entered", "down", "up"));
}

TEST_F(Headless, CountsClicksByTheTimeOfTheirInjection) {
  HeadlessWindow& w = open();
  for (const double wait : {0.0, 0.5, 0.501}) {
    clock.time += wait;
    w.press({5, 5});
    w.release();
  }
  clock.time += 100;
  system.dispatch();
  const auto downs = recorder.of(WindowEventType::mouse_down);
  ASSERT_EQ(downs.size(), 3U);
  EXPECT_EQ(downs[1].click_count, 2);
  EXPECT_EQ(recorder.of(WindowEventType::mouse_up)[1].click_count, 2);
  EXPECT_EQ(downs[2].click_count, 1);
}

TEST_F(Headless, DragsGoOnOutsideAndSayHowFar) {
  HeadlessWindow& w = open();
  w.press({10, 20});
  w.drag_to({15, 12});
  w.drag_to({500, 12});
  w.release();
  w.move_to({501, 12});
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("entered", "down", "dragged", "exited", "dragged", "up"));
  EXPECT_EQ(recorder.events[2].delta_x, 5);
  EXPECT_EQ(recorder.events[2].delta_y, 8);  // downwards
  EXPECT_EQ(recorder.events[4].delta_x, 485);
  EXPECT_EQ(recorder.events[5].location, (NSPoint{500, 12}));
}

TEST_F(Headless, ScrollsAndTypes) {
  HeadlessWindow& w = open();
  w.move_to({1, 2});
  w.scroll(0, -0.25);
  w.type("7");
  w.key_down(XKB_KEY_Return, "\r", 0, true);
  system.dispatch();
  const auto turns = recorder.of(WindowEventType::scroll_wheel);
  ASSERT_EQ(turns.size(), 1U);
  EXPECT_EQ(turns[0].delta_y, CGFloat{-0.25});
  EXPECT_EQ(turns[0].location, (NSPoint{1, 2}));
  const auto keys = recorder.of(WindowEventType::key_down);
  ASSERT_EQ(keys.size(), 2U);
  EXPECT_EQ(keys[0].keysym, 0x37U);
  EXPECT_EQ(keys[0].characters, "7");
  EXPECT_TRUE(keys[1].is_repeat);
  EXPECT_EQ(recorder.of(WindowEventType::key_up).size(), 1U);
}

TEST_F(Headless, MakingOneWindowKeyTakesItFromTheOther) {
  HeadlessWindow& w = open();
  w.makeKey();
  system.dispatch();
  EXPECT_TRUE(w.isKey());
  HeadlessWindow& popup = open(other, other_recorder, WindowKind::popup);
  popup.makeKey();
  EXPECT_FALSE(popup.isKey()) << "becomes key when the system says so";
  system.dispatch();
  EXPECT_TRUE(popup.isKey());
  EXPECT_THAT(recorder.told, ElementsAre("key", "resigned"));
  EXPECT_THAT(other_recorder.told, ElementsAre("key"));
}

TEST_F(Headless, AHiddenOrClosedPopupGivesKeyBack) {
  open().makeKey();
  HeadlessWindow& popup = open(other, other_recorder, WindowKind::popup);
  popup.makeKey();
  system.dispatch();
  popup.hide();
  system.dispatch();
  EXPECT_TRUE(window->isKey());
  popup.show();
  popup.makeKey();
  system.dispatch();
  recorder.clear();
  other.reset();
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("key"));
}

TEST_F(Headless, APopupMayCloseItselfWhenItIsNoLongerKey) {
  HeadlessWindow& w = open();
  HeadlessWindow& popup = open(other, other_recorder, WindowKind::popup);
  popup.makeKey();
  system.dispatch();
  other_recorder.on_resigned = [this] { other.reset(); };
  w.makeKey();
  system.dispatch();
  EXPECT_TRUE(window->isKey());
  EXPECT_EQ(system.windows().size(), 1U);
}

TEST_F(Headless, AWindowThatIsNotShownBecomesKeyWhenItIs) {
  window = system.makeWindow({.frame = NSMakeRect(0, 0, 10, 10)}, recorder);
  window->makeKey();
  system.dispatch();
  EXPECT_FALSE(window->isKey());
  window->show();
  system.dispatch();
  EXPECT_TRUE(window->isKey());
}

TEST_F(Headless, APopupShowsAtOnceAndATitledWindowWhenItsManagerAgrees) {
  window = system.makeWindow({.frame = NSMakeRect(0, 0, 10, 10)}, recorder);
  window->show();
  EXPECT_FALSE(window->viewable());
  system.dispatch();
  EXPECT_TRUE(window->viewable());
  other = system.makeWindow({.kind = WindowKind::popup, .frame = NSMakeRect(0, 0, 9, 9)}, other_recorder);
  other->show();
  EXPECT_TRUE(other->viewable());
  other->hide();
  EXPECT_FALSE(other->viewable());
}

TEST_F(Headless, KnowsWhenNobodySeesIt) {
  HeadlessWindow& w = open();
  w.setObscured(true);
  system.dispatch();
  EXPECT_FALSE(w.viewable());
  w.setObscured(false);
  system.dispatch();
  EXPECT_TRUE(w.viewable());
}

TEST_F(Headless, ShowsOnlyWhatWasPresented) {
  HeadlessWindow& w = open();
  EXPECT_FALSE(w.shownFrame());
  const Pixels pixels = w.pixels();
  ASSERT_EQ(pixels.width, 120);
  ASSERT_EQ(pixels.height, 80);
  std::memset(pixels.data, 0xff, pixels.bytes_per_row * static_cast<size_t>(pixels.height));
  const PixelRect part{10, 20, 5, 5};
  w.present({&part, 1});
  EXPECT_EQ(w.shownPixel(10, 20), 0xffffffffU);
  EXPECT_EQ(w.shownPixel(14, 24), 0xffffffffU);
  EXPECT_EQ(w.shownPixel(15, 24), 0U);
  EXPECT_EQ(w.shownPixel(9, 20), 0U);
  EXPECT_EQ(w.shownPixel(-1, 500), 0U);
  const Frame frame = w.shownFrame();
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame.pixels[20 * frame.width + 10], 0xffffffffU);
  EXPECT_EQ(frame.pixels[20 * frame.width + 9], 0U);
  ASSERT_EQ(w.presented().size(), 1U);
  EXPECT_EQ(w.presented()[0], HeadlessWindow::Damage{part});
  w.expose({0, 0, 1, 1});
  system.dispatch();
  EXPECT_EQ(w.shownPixel(0, 0), 0xffffffffU);
  EXPECT_TRUE(recorder.told.empty());
}

TEST_F(Headless, HasNoPixelsWhileTheLastFrameIsRead) {
  HeadlessWindow& w = open();
  w.setReading(true);
  EXPECT_FALSE(w.pixels());
  w.setReading(false);
  EXPECT_TRUE(w.pixels());
}

TEST_F(Headless, HasNoPixelsWithoutArea) {
  EXPECT_FALSE(open(WindowKind::titled, NSMakeRect(0, 0, 0, 10)).pixels());
}

TEST_F(Headless, AsksForADrawingWhenSizeScaleOrPixelsChange) {
  HeadlessWindow& w = open();
  w.resize({30, 20});
  w.setScale(3);
  w.setScale(3);
  w.losePixels();
  w.move({1, 1});
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("redraw", "redraw", "redraw", "moved"));
  EXPECT_EQ(w.pixels().width, 90);
  EXPECT_EQ(w.frame(), NSMakeRect(1, 1, 30, 20));
  recorder.clear();
  w.setFrame(NSMakeRect(5, 5, 31, 20));
  EXPECT_TRUE(recorder.told.empty()) << "not from inside the call";
  EXPECT_EQ(w.pixels().width, 93);
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("redraw"));
}

TEST_F(Headless, IsGoneWhenDestroyedFromOutside) {
  HeadlessWindow& w = open();
  w.makeKey();
  system.dispatch();
  w.destroyFromOutside();
  w.press({1, 1});
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("key", "resigned", "gone"));
  EXPECT_FALSE(w.viewable());
  EXPECT_FALSE(w.pixels());
  EXPECT_EQ(system.newestWindow(), nullptr);
}

TEST_F(Headless, MayBeDestroyedByItsOwnEvent) {
  HeadlessWindow& w = open();
  recorder.on_event = [this](const WindowEvent& event) {
    if (event.type == WindowEventType::mouse_down)
      window.reset();
  };
  w.press({1, 1});
  w.drag_to({2, 2});
  w.release();
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("entered", "down"));
}

TEST_F(Headless, ClosingIsAskedForNotDone) {
  HeadlessWindow& w = open();
  w.requestClose();
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("close"));
  EXPECT_TRUE(w.viewable());
}

TEST_F(Headless, HidingInTheMiddleOfADragEndsIt) {
  HeadlessWindow& w = open();
  w.press({1, 1}, 1);
  system.dispatch();
  w.hide();
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("entered", "down", "up"));
  EXPECT_EQ(recorder.events[2].button, 1);
}

TEST_F(Headless, EveryWindowGoesWithTheConnection) {
  open();
  open(other, other_recorder, WindowKind::popup);
  system.loseConnection();
  EXPECT_FALSE(system.connected());
  system.dispatch();
  EXPECT_THAT(recorder.told, ElementsAre("gone"));
  EXPECT_THAT(other_recorder.told, ElementsAre("gone"));
  std::string line;
  const NSLogHook hook([&line](std::string_view message) { line = message; });
  EXPECT_EQ(system.makeWindow({.title = "late"}, recorder), nullptr);
  EXPECT_EQ(line, "The window \"late\" could not be made.");
}

TEST_F(Headless, AnEmbeddedWindowIsWhereItsHostIs) {
  HeadlessWindow& w = open(WindowKind::embedded, NSMakeRect(3, 4, 50, 50));
  w.setHostOrigin({200, 300});
  EXPECT_EQ(w.frame(), NSMakeRect(3, 4, 50, 50));
  EXPECT_EQ(w.screenFrame(), NSMakeRect(203, 304, 50, 50));
}

TEST_F(Headless, OneWindowMayTakeAllThatThePointerDoes) {
  HeadlessWindow& w = open();
  HeadlessWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(110, 210, 20, 20));
  popup.grabPointer();
  w.press({40, 30});
  w.release();
  w.scroll(0, 1);
  system.dispatch();
  EXPECT_TRUE(recorder.told.empty());
  const auto down = other_recorder.of(WindowEventType::mouse_down);
  ASSERT_EQ(down.size(), 1U);
  EXPECT_EQ(down[0].location, (NSPoint{30, 20})) << "10 to the right and above the other window's corner";
  EXPECT_EQ(other_recorder.count("up"), 1);
  EXPECT_EQ(other_recorder.count("scroll"), 1);
  popup.hide();
  w.press({40, 30});
  system.dispatch();
  EXPECT_EQ(recorder.count("down"), 1);
  popup.show();
  popup.grabPointer();
  other.reset();
  EXPECT_EQ(system.pointerOwner(), nullptr);
}

}  // namespace
}  // namespace cocoa
