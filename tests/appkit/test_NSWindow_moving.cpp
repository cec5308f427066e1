// SPDX-License-Identifier: MIT
#include "canvas.h"
#include "window_fixture.h"

namespace cocoa {
namespace {

/// Keeps what it is told of the mouse.
class MovableListener : public NSView {
 public:
  MovableListener(NSRect frame, bool moves_window) : NSView(frame), moves_window_(moves_window) {}
  bool mouseDownCanMoveWindow() const override { return moves_window_; }
  void mouseDragged(NSEvent*) override { ++drags; }
  int drags = 0;

 private:
  bool moves_window_;
};

/// A window of 100 × 80 points at (50, 60): its left half moves it, its right half does not.
class WindowMoving : public WindowFixture {
 protected:
  void open(uint64_t host = 0) {
    window->setWindowSystem(&system);
    window->setHostWindow(host);
    window->setMovableByWindowBackground(true);
    window->contentView()->addSubview(ground.get());
    window->contentView()->addSubview(control.get());
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  /// From a place in the window, by a distance on the screen, in two steps.
  void drag(NSPoint from, CGFloat x, CGFloat y) {
    HeadlessWindow& w = *system.windows().front();
    w.press(from);
    w.drag_to({from.x + x / 2, from.y + y / 2});
    // Wherever the window is by now.
    w.drag_to({from.x + x, from.y + y});
    turn();
    w.release();
    turn();
  }

  Ref<MovableListener> ground = make<MovableListener>(NSMakeRect(0, 0, 50, 80), true);
  Ref<MovableListener> control = make<MovableListener>(NSMakeRect(50, 0, 50, 80), false);
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(50, 60, 100, 80), NSTitledWindowMask);
};

TEST_F(WindowMoving, FollowsADragOnItsBackground) {
  open();
  drag({10, 20}, 30, -24);
  EXPECT_EQ(window->frame(), NSMakeRect(80, 36, 100, 80));
  EXPECT_EQ(shown().frame(), window->frame());
  EXPECT_EQ(ground->drags, 0);
  drag({10, 20}, -7, 5);
  EXPECT_EQ(window->frame(), NSMakeRect(73, 41, 100, 80));
}

TEST_F(WindowMoving, StaysUnderADragOnAControl) {
  open();
  drag({60, 20}, 30, -24);
  EXPECT_EQ(window->frame(), NSMakeRect(50, 60, 100, 80));
  EXPECT_EQ(shown().frame(), window->frame());
  EXPECT_GT(control->drags, 0);
}

TEST_F(WindowMoving, StaysWithoutAButtonHeldOrWithAnother) {
  open();
  shown().move_to({10, 20});
  shown().move_to({40, 40});
  turn();
  shown().press({10, 20}, 1);
  shown().drag_to({40, 40});
  shown().release(1);
  turn();
  EXPECT_EQ(window->frame(), NSMakeRect(50, 60, 100, 80));
  drag({10, 20}, 4, 4);
  shown().drag_to({90, 70});
  turn();
  EXPECT_EQ(window->frame(), NSMakeRect(54, 64, 100, 80)) << "the button has come up";
}

TEST_F(WindowMoving, StaysWhenItDoesNotWantToBeMoved) {
  open();
  window->setMovableByWindowBackground(false);
  drag({10, 20}, 30, -24);
  EXPECT_EQ(window->frame(), NSMakeRect(50, 60, 100, 80));
  EXPECT_GT(ground->drags, 0) << "the view's own affair, then";
}

TEST_F(WindowMoving, StaysInsideAHostsWindow) {
  open(77);
  drag({10, 20}, 30, -24);
  EXPECT_EQ(window->frame(), NSMakeRect(50, 60, 100, 80));
  EXPECT_EQ(shown().frame(), window->frame());
}

TEST_F(WindowMoving, TakesItsChildrenAlong) {
  open();
  const auto child = make<NSWindow>(NSMakeRect(60, 70, 20, 10), NSBorderlessWindowMask);
  child->setHasShadow(false);
  window->addChildWindow_ordered(child.get(), NSWindowAbove);
  turn();
  drag({10, 60}, 30, -24);
  EXPECT_EQ(child->frame(), NSMakeRect(90, 46, 20, 10));
  EXPECT_EQ(
      child->platformWindow()->screenFrame().origin.x - window->platformWindow()->screenFrame().origin.x, 10);
}

TEST_F(WindowMoving, ScaledToItsSizeItKeepsThat) {
  window->setContentScalesToFit();
  open();
  shown().resize({200, 160});
  turn();
  drag({20, 40}, 30, -24);
  EXPECT_EQ(shown().frame(), NSMakeRect(80, 36, 200, 160));
  EXPECT_EQ(window->frame().origin, (NSPoint{80, 36}));
}

TEST_F(WindowMoving, EndsWithItsWindowOffTheScreen) {
  open();
  shown().press({10, 20});
  turn();
  window->orderOut(nullptr);
  turn();
  window->makeKeyAndOrderFront(nullptr);
  turn();
  shown().drag_to({40, 40});
  turn();
  EXPECT_EQ(window->frame(), NSMakeRect(50, 60, 100, 80));
}

}  // namespace
}  // namespace cocoa
