// SPDX-License-Identifier: MIT
#include <cmath>
#include <numbers>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "editor_fixture.h"
#include "made_shadings.h"
#include "quartz/CGBitmapContext.h"
#include "windows/headless.h"

namespace ondex::test {
namespace {

using namespace cocoa;

/// The background alone, drawn into a picture of its own.
class BackgroundTest : public EditorFixture {
 protected:
  void draw(int w, int h) {
    width = w;
    pixels.assign(static_cast<size_t>(w) * static_cast<size_t>(h), 0);
    CGContextRef context = CGBitmapContextCreateWithScale(
        pixels.data(), static_cast<size_t>(w), static_cast<size_t>(h), static_cast<size_t>(w) * 4, 1);
    const auto view = make<KVOndexView>(NSMakeRect(0, 0, static_cast<CGFloat>(w), static_cast<CGFloat>(h)));
    {
      const NSGraphicsContext::Scope scope(context);
      view->drawRect(NSMakeRect(3, 3, 1, 1));
    }
    CGContextRelease(context);
  }
  /// Within 1/255 of (0.9 k, 0.62 k, 0.5 k).
  void expect_warm(int x, int y, double k) {
    const uint32_t pixel =
        pixels[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
    EXPECT_NEAR((pixel >> 16) & 0xFF, 255 * 0.9 * k, 1.01) << x;
    EXPECT_NEAR((pixel >> 8) & 0xFF, 255 * 0.62 * k, 1.01) << x;
    EXPECT_NEAR(pixel & 0xFF, 255 * 0.5 * k, 1.01) << x;
    EXPECT_EQ(pixel >> 24, 0xFFU);
  }
  int width = 0;
  std::vector<uint32_t> pixels;
};

// A pixel's centre lies half a point in: over a width of 200 the field's t at x is (x + 0.5) / 200.

TEST_F(BackgroundTest, TheFieldIsBrightestAlongTheCentreAndDoesNotVaryVertically) {
  draw(200, 30);
  expect_warm(100, 15, 0.9975);  // t = 0.5025: (1 - 0.005 + 1) / 2
  expect_warm(100, 0, 0.9975);
  expect_warm(100, 29, 0.9975);
  expect_warm(60, 15, 0.8025);  // t = 0.3025: (0.605 + 1) / 2
}

TEST_F(BackgroundTest, TheSidebarsAreRidgesOfTwentyPoints) {
  draw(200, 30);
  // t = (x + 0.5) / 20: k = 0.75 (1 - |cos(pi t)|) + 0.25
  expect_warm(0, 10, 0.252312);
  expect_warm(10, 10, 0.941156);
  expect_warm(19, 10, 0.252312);
  expect_warm(20, 10, 0.6025);  // the field again
  expect_warm(199, 10, 0.252312);
  expect_warm(190, 10, 0.941156);
}

TEST_F(BackgroundTest, InANarrowViewTheRightSidebarLiesOnTop) {
  draw(30, 10);
  // At 15 the left one has t = 0.775, the right one, which starts at 10, t = 0.275.
  expect_warm(15, 5, 0.75 * (1 - 0.649448) + 0.25);
  expect_warm(5, 5, 0.75 * (1 - 0.649448) + 0.25);
  expect_warm(10, 5, 0.252312);
}

TEST_F(BackgroundTest, BothSidebarsAreMadeOfOneFunction) {
  const MadeShadings made;
  draw(200, 30);
  ASSERT_EQ(made.functions.size(), 3U);
  EXPECT_NE(made.functions[0], made.functions[1]);
  EXPECT_EQ(made.functions[1], made.functions[2]);
}

/// Of the pixels of a window of some scale that shows the background and nothing else.
class BackgroundInWindow : public EditorFixture {
 protected:
  /// Red in a column, which is the same in each row or else -1.
  static int red(const Frame& frame, int column) {
    const uint32_t first = frame.pixels[column];
    for (int y = 1; y < frame.height; ++y) {
      if (frame.pixels[y * frame.width + column] != first)
        return -1;
    }
    return static_cast<int>(first >> 16 & 0xFF);
  }
  /// The outermost pixels belong to the sidebars, which are (0.225, ...) at their outer edges.
  void expect_background(const HeadlessWindow& shown, double scale) {
    const Frame frame = shown.shownFrame();
    ASSERT_TRUE(frame);
    const double t = 0.5 / scale / 20;
    const double edge = 0.9 * 255 * (0.75 * (1 - std::cos(t * std::numbers::pi)) + 0.25);
    for (const int column : {0, frame.width - 1}) {
      EXPECT_GE(red(frame, column), 57) << column << " of " << frame.width << " at " << scale;
      EXPECT_LE(red(frame, column), edge + 1) << column << " of " << frame.width << " at " << scale;
    }
    EXPECT_NEAR(red(frame, frame.width / 2), 0.9 * 255, 4) << scale;
  }
};

TEST_F(BackgroundInWindow, ReachesEveryPixelAtEveryScale) {
  for (int hundredths = 50; hundredths <= 400; ++hundredths) {
    const double scale = hundredths / 100.0;
    HeadlessWindowSystem system(clock, scale);
    // As wide as the editor, whose right edge lies within a pixel at most scales.
    const auto window = make<NSWindow>(NSMakeRect(0, 0, 860, 12), NSTitledWindowMask);
    const auto view = make<KVOndexView>(NSMakeRect(0, 0, 860, 12));
    window->setWindowSystem(&system);
    window->setContentView(view.get());
    window->makeKeyAndOrderFront(nullptr);
    system.dispatch();
    turn();
    expect_background(*system.newestWindow(), scale);
  }
}

TEST_F(BackgroundInWindow, ReachesEveryPixelOfAHostsWindowOfItsSize) {
  for (int hundredths = 100; hundredths <= 300; ++hundredths) {
    const double scale = hundredths / 100.0;
    HeadlessWindowSystem system(clock, 1);
    const auto window = make<NSWindow>(NSMakeRect(0, 0, 86, 35), NSTitledWindowMask);
    const auto view = make<KVOndexView>(NSMakeRect(0, 0, 86, 35));
    window->setWindowSystem(&system);
    window->setContentView(view.get());
    window->setContentScalesToFit();
    window->makeKeyAndOrderFront(nullptr);
    system.dispatch();
    system.newestWindow()->resize(
        {std::ceil(CGFloat(86 * scale) - CGFloat(0.001)), std::ceil(CGFloat(35 * scale) - CGFloat(0.001))});
    system.dispatch();
    turn();
    expect_background(*system.newestWindow(), scale);
  }
}

}  // namespace
}  // namespace ondex::test
