// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "appkit/NSGraphicsContext.h"
#include "appkit/NSWindow.h"
#include "foundation/CFRunLoop.h"
#include "picture.h"
#include "standalone/private/view_picture.h"
#include "temporary_folder.h"
#include "windows/headless.h"
#include "windows/pixel_geometry.h"

namespace ondex::test {
namespace {

using namespace cocoa;

constexpr uint32_t red = 0xFFFF0000U;
constexpr uint32_t green = 0xFF00FF00U;

/// All of one colour, which may be changed without a word to the window.
class Plain : public NSView {
 public:
  explicit Plain(NSRect frame) : NSView(frame) {}
  void drawRect(NSRect) override {
    CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
    CGContextSetRGBFillColor(context, red_part, 1 - red_part, 0, 1);
    CGContextFillRect(context, NSInsetRect(bounds(), -2, -2));
  }
  CGFloat red_part = 1;
};

class WindowPictures : public testing::Test {
 protected:
  void open(double scale, NSSize size) {
    system.setDefaultScale(scale);
    view = make<Plain>(NSRect{{}, size});
    window = make<NSWindow>(NSRect{{100, 100}, size}, NSTitledWindowMask);
    window->setWindowSystem(&system);
    window->setContentView(view.get());
    window->makeKeyAndOrderFront(nullptr);
    pass();
  }
  void pass() {
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  Picture picture() {
    const std::string file = (folder.path() / "picture.png").string();
    EXPECT_TRUE(write_window_picture(*window, file.c_str()));
    return read_picture(file);
  }
  HeadlessWindow& shown() { return *system.windows().front(); }

  const TemporaryFolder folder;
  NSAutoreleasePool pool;
  HeadlessWindowSystem system;
  Ref<Plain> view;
  Ref<NSWindow> window;
};

TEST_F(WindowPictures, AreAsLargeAsTheWindowAtEveryScale) {
  for (int hundredths = 50; hundredths <= 400; hundredths += 5) {
    const double scale = hundredths / 100.0;
    open(scale, {860, 3});
    const Picture taken = picture();
    const Frame frame = shown().shownFrame();
    EXPECT_EQ(taken.width, frame.width) << scale;
    EXPECT_EQ(taken.height, frame.height) << scale;
    EXPECT_EQ(taken.pixels, std::vector<uint32_t>(taken.pixels.size(), red)) << scale;
    window = nullptr;
  }
}

TEST_F(WindowPictures, ShowWhatTheWindowShowsAndNotWhatItWouldDraw) {
  open(1, {20, 10});
  view->red_part = 0;
  window->setNeedsDisplayInRect({{5, 0}, {5, 10}});
  EXPECT_TRUE(is_about_to_show(*window));
  pass();
  EXPECT_FALSE(is_about_to_show(*window));
  const Picture taken = picture();
  ASSERT_EQ(taken.width, 20);
  EXPECT_EQ(taken.pixels[4], red);
  EXPECT_EQ(taken.pixels[5], green);
  EXPECT_EQ(taken.pixels[9], green);
  EXPECT_EQ(taken.pixels[10], red);
}

TEST_F(WindowPictures, AreDrawnOfAWindowThatNobodySees) {
  open(1.5, {20, 10});
  shown().setObscured(true);
  pass();
  view->red_part = 0;
  view->setNeedsDisplay(true);
  EXPECT_FALSE(is_about_to_show(*window)) << "it would be waited for in vain";
  const Picture taken = picture();
  EXPECT_EQ(taken.width, 30);
  EXPECT_EQ(taken.pixels, std::vector<uint32_t>(taken.pixels.size(), green));
}

TEST_F(WindowPictures, HaveChildWindowsInTheirPlaces) {
  open(2, {20, 10});
  const auto child = make<NSWindow>(NSMakeRect(112, 104, 30, 3), NSBorderlessWindowMask);
  const auto above = make<Plain>(NSMakeRect(0, 0, 30, 3));
  above->red_part = 0;
  child->setContentView(above.get());
  window->addChildWindow_ordered(child.get(), NSWindowAbove);
  pass();
  pass();
  const Picture taken = picture();
  ASSERT_EQ(taken.width, 40);
  ASSERT_EQ(taken.height, 20);
  const auto at = [&taken](int x, int y) {
    return taken.pixels[static_cast<size_t>(y) * static_cast<size_t>(taken.width) + static_cast<size_t>(x)];
  };
  // From 12 points on to the right edge and beyond, 4 to 7 points above the lower edge.
  EXPECT_EQ(at(23, 8), red);
  EXPECT_EQ(at(24, 8), green);
  EXPECT_EQ(at(39, 8), green);
  EXPECT_EQ(at(30, 5), red);
  EXPECT_EQ(at(30, 6), green);
  EXPECT_EQ(at(30, 11), green);
  EXPECT_EQ(at(30, 12), red);
}

}  // namespace
}  // namespace ondex::test
