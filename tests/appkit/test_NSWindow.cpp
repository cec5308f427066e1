// SPDX-License-Identifier: MIT
#include "appkit/NSEvent.h"
#include "canvas.h"
#include "window_fixture.h"

namespace cocoa {
namespace {

/// One window of 100 × 80 points.
class NSWindowTest : public WindowFixture {
 protected:
  void open(double scale = 1) {
    system.setDefaultScale(scale);
    window = make<NSWindow>(NSMakeRect(50, 60, 100, 80), NSTitledWindowMask);
    window->setWindowSystem(&system);
    window->setContentView(content.get());
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }

  Ref<ColorView> content = make<ColorView>(NSMakeRect(0, 0, 100, 80), red, true);
  Ref<NSWindow> window;
};

class Recorder : public NSView {
 public:
  using NSView::NSView;
  void mouseDown(NSEvent* event) override { record("down", event); }
  void mouseDragged(NSEvent* event) override { record("drag", event); }
  void mouseUp(NSEvent* event) override { record("up", event); }
  void scrollWheel(NSEvent* event) override { record("wheel", event); }
  void keyDown(NSEvent* event) override { log += event->characters()->UTF8String(); }
  bool acceptsFirstResponder() const override { return true; }
  void record(const char* what, NSEvent* event) {
    log += std::string(what) + std::to_string(event->clickCount()) + " ";
    delta_y = event->deltaY();
    location = event->locationInWindow();
  }
  std::string log;
  CGFloat delta_y = 0;
  NSPoint location;
};

TEST_F(NSWindowTest, DrawsItsContentOnceATurn) {
  open();
  EXPECT_EQ(content->drawn, 1);
  EXPECT_EQ(shown().shownPixel(5, 5), red);
  content->setNeedsDisplay(true);
  content->setNeedsDisplay(true);
  EXPECT_EQ(content->drawn, 1);
  turn();
  EXPECT_EQ(content->drawn, 2);
  turn();
  EXPECT_EQ(content->drawn, 2);
}

TEST_F(NSWindowTest, PresentsOnlyTheDamageInDevicePixels) {
  const auto child = make<ColorView>(NSMakeRect(10, 20, 30, 10), blue, true);
  content->addSubview(child.get());
  open(2);
  shown().clearPresented();
  child->setNeedsDisplay(true);
  turn();
  ASSERT_EQ(shown().presented().size(), 1U);
  ASSERT_EQ(shown().presented()[0].size(), 1U);
  EXPECT_EQ(shown().presented()[0][0], (PixelRect{20, 160 - 60, 60, 20}));
  EXPECT_EQ(content->drawn, 1) << "hidden behind the opaque child";
}

TEST_F(NSWindowTest, DoesNotDrawWhileNobodySeesItAndCatchesUpAfterwards) {
  open();
  shown().setObscured(true);
  turn();
  content->setNeedsDisplay(true);
  turn();
  EXPECT_EQ(content->drawn, 1);
  shown().setObscured(false);
  turn();
  EXPECT_EQ(content->drawn, 2);
}

TEST_F(NSWindowTest, WaitsWhileTheWindowSystemReadsTheLastFrame) {
  open();
  shown().setReading(true);
  content->setNeedsDisplay(true);
  turn();
  EXPECT_EQ(content->drawn, 1);
  shown().setReading(false);
  turn();
  EXPECT_EQ(content->drawn, 2);
}

TEST_F(NSWindowTest, DrawsEverythingAgainAtANewScaleAndSize) {
  open();
  shown().setScale(1.5);
  turn();
  EXPECT_EQ(content->drawn, 2);
  EXPECT_EQ(window->backingScaleFactor(), 1.5);
  EXPECT_EQ(shown().shownPixel(149, 119), red);
  shown().resize({120, 90});
  turn();
  EXPECT_EQ(content->frame(), NSMakeRect(0, 0, 120, 90));
}

TEST_F(NSWindowTest, DragsAndTheReleaseGoToTheViewThatWasPressed) {
  const auto a = make<Recorder>(NSMakeRect(0, 0, 50, 80));
  const auto b = make<Recorder>(NSMakeRect(50, 0, 50, 80));
  content->addSubview(a.get());
  content->addSubview(b.get());
  open();
  shown().press({10, 10});
  shown().drag_to({70, 4});
  shown().drag_to({300, -20});
  shown().release();
  turn();
  EXPECT_EQ(a->log.substr(0, 6), "down1 ");
  EXPECT_NE(a->log.find("drag"), std::string::npos);
  EXPECT_NE(a->log.find("up1"), std::string::npos);
  EXPECT_EQ(b->log, "");
}

TEST_F(NSWindowTest, ADragDownwardsHasAPositiveDeltaY) {
  const auto a = make<Recorder>(NSMakeRect(0, 0, 100, 80));
  content->addSubview(a.get());
  open();
  shown().press({10, 50});
  shown().drag_to({10, 40});
  turn();
  EXPECT_EQ(a->delta_y, 10);
  EXPECT_EQ(a->location, (NSPoint{10, 40}));
}

TEST_F(NSWindowTest, TheWheelGoesToTheViewUnderThePointer) {
  const auto a = make<Recorder>(NSMakeRect(0, 0, 50, 80));
  const auto b = make<Recorder>(NSMakeRect(50, 0, 50, 80));
  content->addSubview(a.get());
  content->addSubview(b.get());
  open();
  shown().move_to({60, 10});
  shown().scroll(0, 1.5);
  turn();
  EXPECT_EQ(b->log, "wheel0 ");
  EXPECT_EQ(b->delta_y, CGFloat(1.5));
}

TEST_F(NSWindowTest, AViewThatGoesInMidDragIsForgotten) {
  auto a = make<Recorder>(NSMakeRect(0, 0, 50, 80));
  content->addSubview(a.get());
  open();
  shown().press({10, 10});
  turn();
  a->removeFromSuperview();
  a = nullptr;
  shown().drag_to({20, 20});
  shown().release();
  turn();
  EXPECT_TRUE(content->subviews().empty());
}

TEST_F(NSWindowTest, KeysGoToTheFirstResponder) {
  const auto a = make<Recorder>(NSMakeRect(0, 0, 50, 80));
  content->addSubview(a.get());
  open();
  shown().type("x");
  turn();
  EXPECT_EQ(a->log, "");
  shown().press({10, 10});
  shown().release();
  turn();
  EXPECT_EQ(window->firstResponder(), a.get());
  a->log.clear();
  shown().type("42");
  turn();
  EXPECT_EQ(a->log, "42");
  a->removeFromSuperview();
  EXPECT_EQ(window->firstResponder(), nullptr);
}

class Delegate : public NSWindowDelegate {
 public:
  bool windowShouldClose(NSWindow*) override { return may_close; }
  void windowWillClose(NSWindow*) override { log += "close "; }
  void windowDidBecomeKey(NSWindow*) override { log += "key "; }
  void windowDidResignKey(NSWindow*) override { log += "resign "; }
  bool may_close = true;
  std::string log;
};

TEST_F(NSWindowTest, AsksItsDelegateBeforeItCloses) {
  Delegate delegate;
  open();
  window->setDelegate(&delegate);
  delegate.may_close = false;
  shown().requestClose();
  turn();
  EXPECT_TRUE(window->isVisible());
  delegate.may_close = true;
  shown().requestClose();
  turn();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(delegate.log, "close resign ");
}

TEST_F(NSWindowTest, OrderingOutResignsKeyOnceAndAtOnce) {
  Delegate delegate;
  open();
  ASSERT_TRUE(window->isKeyWindow());
  window->setDelegate(&delegate);
  window->orderOut(nullptr);
  EXPECT_EQ(delegate.log, "resign ");
  turn();
  EXPECT_EQ(delegate.log, "resign ");
}

TEST_F(NSWindowTest, SurvivesItsDestructionFromOutside) {
  Delegate delegate;
  open();
  window->setDelegate(&delegate);
  shown().destroyFromOutside();
  turn();
  EXPECT_FALSE(window->isVisible());
  content->setNeedsDisplay(true);
  turn();
  EXPECT_EQ(content->drawn, 1);
}

TEST_F(NSWindowTest, TellsItsViewsWhichWindowTheyAreIn) {
  open();
  EXPECT_EQ(content->windows, std::vector<NSWindow*>{window.get()});
  window = nullptr;
  EXPECT_EQ(content->windows.back(), nullptr);
  EXPECT_EQ(content->window(), nullptr);
  EXPECT_TRUE(system.windows().empty());
}

TEST_F(NSWindowTest, WithoutAWindowSystemItStaysOffTheScreen) {
  const auto lost = make<NSWindow>(NSMakeRect(0, 0, 10, 10), NSTitledWindowMask);
  lost->makeKeyAndOrderFront(nullptr);
  EXPECT_FALSE(lost->isVisible());
  const WindowSystemScope scope(&system);
  lost->makeKeyAndOrderFront(nullptr);
  EXPECT_TRUE(lost->isVisible());
}

}  // namespace
}  // namespace cocoa
