// SPDX-License-Identifier: MIT
// What is too large: windows, titles, files, and what memory there is.

#include "foundation/NSLog.h"
#include "resource_limit.h"
#include "windows/pixel_geometry.h"
#include "x11_fixture.h"

namespace cocoa {
namespace {

using test_support::ResourceLimit;
using test_support::XClient;
using testing::ElementsAre;

constexpr uint32_t margin_grey = 0x333333;

class X11Limits : public X11Test {
 protected:
  /// A host makes the window as large as nobody's screen.
  PlatformWindow& openAs(int width, int height) {
    PlatformWindow& w = open();
    user.resize(id(w), width, height);
    EXPECT_TRUE(until([&] { return recorder.count("redraw") == 1; }));
    recorder.clear();
    return w;
  }
  /// The margins around the part of a window that is drawn, in device pixels.
  static PixelRect drawnIn(int width, int height) { return drawn_part(width, height); }
};

TEST_F(X11Limits, OfAWindowTooLargeToBeDrawnTheMiddleIs) {
  PlatformWindow& w = openAs(16384, 8192);
  const Pixels pixels = w.pixels();
  ASSERT_TRUE(pixels);
  EXPECT_LE(static_cast<double>(pixels.width) * pixels.height, most_pixels);
  EXPECT_GT(static_cast<double>(pixels.width) * pixels.height, 0.99 * most_pixels);
  EXPECT_NEAR(static_cast<double>(pixels.width) / pixels.height, 2, 0.01);
  const int left = (16384 - pixels.width) / 2;
  const int top = (8192 - pixels.height) / 2;
  EXPECT_EQ(w.frame().size,
            (NSSize{static_cast<CGFloat>(pixels.width), static_cast<CGFloat>(pixels.height)}));

  // Its upper left comes to (100, 50) on the screen.
  user.move(id(w), 100 - left, 50 - top);
  fill(w, 0xff204080);
  reinterpret_cast<uint32_t*>(pixels.data)[0] = 0xff00ff00;
  present(w);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 100, 50) == 0x00ff00U; }));
  EXPECT_EQ(user.pixel(user.root(), 101, 50), 0x204080U);
  EXPECT_EQ(user.pixel(user.root(), 99, 50), margin_grey);
  EXPECT_EQ(user.pixel(user.root(), 100, 49), margin_grey);
  EXPECT_TRUE(until([&] { return w.frame().origin.x == 100; }));
  EXPECT_EQ(NSMaxY(w.frame()), 750);
  EXPECT_EQ(w.screenFrame(), w.frame());

  user.point(107, 61);
  user.click(1);
  ASSERT_TRUE(until([&] { return recorder.count("down") == 1; }));
  EXPECT_EQ(recorder.of(WindowEventType::mouse_down)[0].location,
            (NSPoint{7, static_cast<CGFloat>(pixels.height - 1 - 11)}));

  // What was uncovered comes back.
  const xcb_window_t cover = user.make_window(90, 40, 50, 50);
  user.map(cover);
  user.raise(cover);
  ASSERT_TRUE(until([&] { return user.pixel(user.root(), 100, 50) == 0x204060U; }));
  user.destroy(cover);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 100, 50) == 0x00ff00U; }));
}

TEST_F(X11Limits, APopupShowsWhatIsBelowItInAWindowTooLargeToBeDrawn) {
  PlatformWindow& w = openAs(16384, 8192);
  const PixelRect drawn = drawnIn(16384, 8192);
  user.move(id(w), 100 - drawn.x, 50 - drawn.y);
  fill(w, 0xffffffff);
  const Pixels pixels = w.pixels();
  for (int y = 0; y < 100; ++y)
    std::fill_n(reinterpret_cast<uint32_t*>(pixels.data) + static_cast<ptrdiff_t>(y) * pixels.width, 60,
                0xff204080);
  present(w);
  ASSERT_TRUE(until([&] { return w.frame().origin.x == 100; }));
  PlatformWindow& popup = open(other, other_recorder, WindowKind::popup, NSMakeRect(140, 700, 40, 40));
  fill(popup, 0x80400000);
  present(popup);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 159, 80) == 0x502040U; }));
  EXPECT_EQ(user.pixel(user.root(), 160, 80), 0xbf7f7fU);
}

TEST_F(X11Limits, AWindowThatHasBeenTooLargeIsWholeAgain) {
  PlatformWindow& w = openAs(32000, 32000);
  fill(w, 0xff204080);
  present(w);
  user.resize(id(w), 300, 200);
  ASSERT_TRUE(until([&] { return recorder.count("redraw") == 1; }));
  EXPECT_EQ(w.pixels().width, 300);
  EXPECT_EQ(w.pixels().height, 200);
  fill(w, 0xff00aa00);
  present(w);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 100, 50) == 0x00aa00U; }));
  EXPECT_EQ(user.pixel(user.root(), 399, 249), 0x00aa00U);
  EXPECT_EQ(w.frame(), NSMakeRect(100, 550, 300, 200));
}

TEST_F(X11Limits, OfATitleTooLongForTheServerTheBeginningIsShown) {
  std::string title = "Tremolo ";
  while (title.size() < 20U << 20U)
    title += "\xc3\xa9";  // é
  window = system->makeWindow({.frame = {{}, {20, 20}}, .title = title}, recorder);
  ASSERT_TRUE(window);
  settle();
  ASSERT_TRUE(system->connected());
  const auto expect_beginning = [&](char first) {
    for (const char* name : {"_NET_WM_NAME", "WM_NAME"}) {
      const std::string shown = user.text_property(id(*window), name);
      EXPECT_EQ(shown.size() % 2, 0U) << "no half characters";
      EXPECT_GT(shown.size(), 200U);
      EXPECT_EQ(shown, first + title.substr(1, shown.size() - 1));
    }
  };
  expect_beginning('T');
  title[0] = 'P';
  window->setTitle(title);
  settle();
  ASSERT_TRUE(system->connected());
  expect_beginning('P');
}

TEST_F(X11Limits, ATitleThatIsNoTextAtAllHarmsNobody) {
  window = system->makeWindow({.frame = {{}, {20, 20}}, .title = std::string(20U << 20U, '\x80')}, recorder);
  ASSERT_TRUE(window);
  settle();
  EXPECT_TRUE(system->connected());
}

/// Under a limit of file sizes, which memory with a descriptor has too.
class X11FileSizes : public X11Test, public testing::WithParamInterface<uint64_t> {};
INSTANTIATE_TEST_SUITE_P(, X11FileSizes, testing::Values(0, 4096), testing::PrintToStringParamName());

TEST_P(X11FileSizes, WindowsShowAllTheSame) {
  const ResourceLimit limit(RLIMIT_FSIZE, GetParam());
  connect({});
  PlatformWindow& w = open();
  fill(w, 0xff204080);
  present(w);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 150, 100) == 0x204080U; }));
}

#ifndef ONDEX_SANITIZED

TEST_F(X11Limits, WithoutMemoryThereAreNoPixelsUntilThereIsSome) {
  std::vector<std::string> lines;
  const NSLogHook hook([&lines](std::string_view line) { lines.emplace_back(line); });
  connect({.shared_memory = false});
  PlatformWindow& w = open();
  fill(w, 0xff204080);
  present(w);
  {
    const ResourceLimit limit(RLIMIT_AS, test_support::address_space() + (8U << 20U));
    user.resize(id(w), 4000, 2000);
    ASSERT_TRUE(until([&] { return recorder.count("redraw") == 1; }));
    EXPECT_FALSE(w.pixels());
    EXPECT_FALSE(w.pixels());
    present(w);
    settle();
    EXPECT_THAT(lines, ElementsAre("There is no memory for a window of 4000 x 2000 pixels."));
  }
  EXPECT_TRUE(w.pixels());
  fill(w, 0xff00aa00);
  present(w);
  EXPECT_TRUE(until([&] { return user.pixel(user.root(), 1200, 700) == 0x00aa00U; }));
}

#endif

}  // namespace
}  // namespace cocoa
