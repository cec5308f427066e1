// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>

#include "appkit/NSEvent.h"
#include "appkit/NSWindow.h"
#include "manual_clock.h"
#include "windows/headless.h"

namespace cocoa {
namespace {

/// Notes all that the mouse does.
class MouseView : public NSView {
 public:
  using NSView::NSView;
  void mouseDown(NSEvent* event) override {
    note("down", event);
    if (on_press)
      on_press();
  }
  void mouseDragged(NSEvent* event) override { note("drag", event); }
  void mouseUp(NSEvent* event) override { note("up", event); }
  void rightMouseDown(NSEvent* event) override { note("right-down", event); }
  void rightMouseUp(NSEvent* event) override { note("right-up", event); }
  void scrollWheel(NSEvent*) override { log += "wheel "; }
  void note(const char* what, NSEvent* event) {
    log += std::string(what) + std::to_string(event->clickCount()) + " ";
  }
  std::string log;
  std::function<void()> on_press;
};

/// A window that can have the keys, as one that is typed into.
class KeyWindow : public NSWindow {
 public:
  using NSWindow::NSWindow;
  bool canBecomeKeyWindow() const override { return true; }
};

/// Lets go of its window when that loses the keys.
struct Closer : NSWindowDelegate {
  void windowDidResignKey(NSWindow* window) override {
    ++closed;
    window->setDelegate(nullptr);
    window->parentWindow()->removeChildWindow(window);
    window->orderOut(nullptr);
  }
  int closed = 0;
};

/// A window with a child over it that has the keys. With the parameter, a window manager gives the keys to
/// what is pressed before it hears of the press.
class ClickBesideChild : public testing::Test, public testing::WithParamInterface<bool> {
 protected:
  ClickBesideChild() {
    system.setPressesGiveKeys(GetParam());
    window->setWindowSystem(&system);
    window->setContentView(content.get());
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  ~ClickBesideChild() override { window = nullptr; }
  void turn() {
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  void open_child() {
    clock.advance(10);
    child = make<KeyWindow>(NSMakeRect(110, 110, 30, 20), NSBorderlessWindowMask);
    child->setDelegate(&closer);
    window->addChildWindow_ordered(child.get(), NSWindowAbove);
    child->makeKeyAndOrderFront(nullptr);
  }
  HeadlessWindow& editor_window() { return *system.windows().front(); }

  NSAutoreleasePool pool;
  ondex::test::ManualClock clock{1000};
  HeadlessWindowSystem system{clock};
  Closer closer;
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(100, 100, 200, 100), NSTitledWindowMask);
  Ref<MouseView> content = make<MouseView>(NSMakeRect(0, 0, 200, 100));
  Ref<KeyWindow> child;
};
INSTANTIATE_TEST_SUITE_P(WindowManager, ClickBesideChild, testing::Values(false, true),
                         [](const auto& test) { return test.param ? "GivesKeys" : "None"; });

TEST_P(ClickBesideChild, EndsTheChildAndDoesNothingElse) {
  open_child();
  turn();
  clock.advance(10);
  editor_window().press({150, 50});
  editor_window().drag_to({160, 60});
  editor_window().release();
  turn();
  EXPECT_EQ(closer.closed, 1);
  EXPECT_EQ(content->log, "");
  clock.advance(10);
  editor_window().press({150, 50});
  editor_window().drag_to({160, 60});
  editor_window().release();
  turn();
  EXPECT_EQ(content->log, "down1 drag0 up1 ");
}

TEST_P(ClickBesideChild, TheSecondClickOfADoubleClickIsOne) {
  open_child();
  turn();
  for (int click = 0; click < 2; ++click) {
    editor_window().press({150, 50});
    editor_window().release();
  }
  turn();
  EXPECT_EQ(content->log, "down2 up2 ");
}

TEST_P(ClickBesideChild, SoDoesAClickBeforeTheChildHasGotTheKeysThatItAskedFor) {
  // All that the user did while nobody looked.
  content->on_press = [this] { open_child(); };
  for (int click = 0; click < 2; ++click) {
    editor_window().press({20, 80}, click);
    editor_window().release(click);
  }
  turn();
  EXPECT_EQ(closer.closed, 1);
  EXPECT_FALSE(child->isVisible());
  EXPECT_EQ(content->log, "down1 up1 ");
}

TEST_P(ClickBesideChild, OtherButtonsEndItTooAndStayOutOfTheWayOfTheLeftOne) {
  open_child();
  turn();
  clock.advance(10);
  editor_window().press({150, 50}, 1);
  turn();
  EXPECT_EQ(closer.closed, 1);
  editor_window().press({150, 50});
  editor_window().release(1);
  editor_window().release();
  turn();
  EXPECT_EQ(content->log, "down1 up1 ");
}

TEST_P(ClickBesideChild, TheWheelEndsNothing) {
  open_child();
  turn();
  editor_window().move_to({150, 50});
  editor_window().scroll(0, 1);
  turn();
  EXPECT_EQ(closer.closed, 0);
  EXPECT_EQ(content->log, "wheel ");
}

TEST_P(ClickBesideChild, AClickAfterTheChildHasEndedOtherwiseIsAsAnyOther) {
  open_child();
  turn();
  child->giveUpKey();
  turn();
  clock.advance(10);
  editor_window().press({150, 50});
  editor_window().release();
  turn();
  EXPECT_EQ(closer.closed, 1);
  EXPECT_EQ(content->log, "down1 up1 ");
}

TEST_P(ClickBesideChild, AClickInAnotherWindowActsThere) {
  const auto other = make<NSWindow>(NSMakeRect(400, 100, 200, 100), NSTitledWindowMask);
  const auto other_content = make<MouseView>(NSMakeRect(0, 0, 200, 100));
  other->setWindowSystem(&system);
  other->setContentView(other_content.get());
  other->orderFront(nullptr);
  turn();
  HeadlessWindow& other_window = *system.newestWindow();
  open_child();
  turn();
  clock.advance(10);
  other_window.press({150, 50});
  other_window.release();
  turn();
  EXPECT_EQ(other_content->log, "down1 up1 ");
  EXPECT_EQ(closer.closed, GetParam() ? 1 : 0) << "who gives the keys is the window system's matter";
}

TEST_P(ClickBesideChild, OrderingOutTellsAChildThatHasNotGotTheKeysYet) {
  open_child();
  window->orderOut(nullptr);
  EXPECT_EQ(closer.closed, 1);
  EXPECT_TRUE(window->childWindows().empty());
}

}  // namespace
}  // namespace cocoa
