// SPDX-License-Identifier: MIT
#include "appkit/NSEvent.h"
#include "canvas.h"
#include "window_fixture.h"

namespace cocoa {
namespace {

class Pointed : public ColorView {
 public:
  using ColorView::ColorView;
  void mouseDown(NSEvent* event) override { location = event->locationInWindow(); }
  void mouseDragged(NSEvent* event) override { delta_y = event->deltaY(); }
  void scrollWheel(NSEvent* event) override { wheel = event->deltaY(); }
  NSPoint location;
  CGFloat delta_y = 0;
  CGFloat wheel = 0;
};

/// A content of 100 × 80 points in a window that its host resizes.
class FitTest : public WindowFixture {
 protected:
  FitTest() {
    window->setWindowSystem(&system);
    window->setContentView(content.get());
    window->setContentScalesToFit();
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  Ref<Pointed> content = make<Pointed>(NSMakeRect(0, 0, 100, 80), red, true);
  Ref<NSWindow> window = make<NSWindow>(NSMakeRect(0, 0, 100, 80), NSTitledWindowMask);
};

TEST_F(FitTest, TheContentGrowsWithItsWindowAndKeepsItsPoints) {
  shown().resize({200, 160});
  turn();
  EXPECT_EQ(content->frame(), NSMakeRect(0, 0, 100, 80));
  EXPECT_EQ(window->backingScaleFactor(), 2.0);
  EXPECT_EQ(shown().shownPixel(0, 0), red);
  EXPECT_EQ(shown().shownPixel(199, 159), red);
}

TEST_F(FitTest, ProportionsAreKeptWithDarkMarginsAround) {
  shown().resize({300, 160});
  turn();
  EXPECT_EQ(window->backingScaleFactor(), 2.0);
  EXPECT_EQ(shown().shownPixel(49, 80), 0xFF333333U);
  EXPECT_EQ(shown().shownPixel(50, 80), red);
  EXPECT_EQ(shown().shownPixel(249, 80), red);
  EXPECT_EQ(shown().shownPixel(250, 80), 0xFF333333U);
}

TEST_F(FitTest, EventsArriveInPointsOfTheContent) {
  shown().resize({300, 160});
  turn();
  shown().press({50 + 2 * 30, 2 * 20});
  turn();
  EXPECT_EQ(content->location, (NSPoint{30, 20}));
  shown().drag_to({50 + 2 * 30, 2 * 15});
  turn();
  EXPECT_EQ(content->delta_y, 5);
  shown().release();
  shown().scroll(0, 1);
  turn();
  EXPECT_EQ(content->wheel, 1);
}

TEST_F(FitTest, OnlyWhatChangedIsPresentedAtItsScaledPlace) {
  shown().resize({200, 160});
  turn();
  shown().clearPresented();
  content->setNeedsDisplayInRect(NSMakeRect(10, 20, 30, 10));
  turn();
  ASSERT_EQ(shown().presented().size(), 1U);
  EXPECT_EQ(shown().presented()[0][0], (PixelRect{20, 100, 60, 20}));
}

TEST_F(FitTest, ASizeWithoutAreaIsSurvived) {
  shown().resize({0, 0});
  turn();
  shown().resize({50, 40});
  turn();
  EXPECT_EQ(window->backingScaleFactor(), 0.5);
  EXPECT_EQ(shown().shownPixel(25, 20), red);
}

TEST_F(FitTest, AWindowAboveItLiesWhereTheContentHasItAndIsScaledToo) {
  HeadlessWindow& below = shown();
  below.resize({300, 160});
  turn();
  const auto child = make<NSWindow>(NSMakeRect(30, 20, 40, 10), NSBorderlessWindowMask);
  const auto view = make<Pointed>(NSMakeRect(0, 0, 40, 10), green, true);
  child->setContentView(view.get());
  window->addChildWindow_ordered(child.get(), NSWindowAbove);
  turn();
  const NSPoint origin = below.frame().origin;
  // 50 points of margin, then twice the content's 30.
  EXPECT_EQ(child->platformWindow()->frame(), NSMakeRect(origin.x + 110, origin.y + 40, 80, 20));
  EXPECT_EQ(child->backingScaleFactor(), 2.0);
  EXPECT_EQ(view->frame(), NSMakeRect(0, 0, 40, 10));
  below.resize({100, 80});
  turn();
  turn();
  EXPECT_EQ(child->platformWindow()->frame(), NSMakeRect(origin.x + 30, origin.y + 20, 40, 10));
  EXPECT_EQ(child->backingScaleFactor(), 1.0);
}

}  // namespace
}  // namespace cocoa
