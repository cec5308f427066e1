#include "appkit/NSGraphicsContext.h"
#include "editor_fixture.h"
#include "quartz/CGBitmapContext.h"

namespace ondex::test {
namespace {

using namespace cocoa;

/// The background alone, drawn into a picture of its own.
class BackgroundTest : public EditorFixture {
 protected:
  void draw(int w, int h) {
    width = w;
    pixels.assign(static_cast<size_t>(w * h), 0);
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
    const uint32_t pixel = pixels[static_cast<size_t>(y * width + x)];
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

}  // namespace
}  // namespace ondex::test
