// SPDX-License-Identifier: MIT
#include <poll.h>

#include "x11_fixture.h"

namespace cocoa {
namespace {

// The same pixels must arrive through shared memory, without our using it, and without the server's having
// it.
enum class Way { shared, sent, sent_to_old_server };

class X11Upload : public X11Test, public testing::WithParamInterface<Way> {
 protected:
  X11Upload()
      : X11Test(GetParam() == Way::sent_to_old_server ? std::vector<std::string>{"-extension", "MIT-SHM"}
                                                      : std::vector<std::string>{}) {}
  void SetUp() override {
    X11Test::SetUp();
    connect({.shared_memory = GetParam() != Way::sent});
    open();
  }
  void set(int x, int y, uint32_t color) {
    const Pixels pixels = window->pixels();
    ASSERT_TRUE(pixels);
    reinterpret_cast<uint32_t*>(pixels.data + static_cast<size_t>(y) * pixels.bytes_per_row)[x] = color;
  }
  bool shows(int x, int y, uint32_t color) {
    return until([&] { return user.pixel(user.root(), x, y) == color; });
  }
};
INSTANTIATE_TEST_SUITE_P(Way, X11Upload, testing::Values(Way::shared, Way::sent, Way::sent_to_old_server),
                         [](const auto& given) {
                           return given.param == Way::shared ? "Shared"
                                  : given.param == Way::sent ? "Sent"
                                                             : "SentToOldServer";
                         });

TEST_P(X11Upload, ShowsWhatWasDrawn) {
  fill(*window, 0xff204080);
  set(0, 0, 0xffff0000);
  set(199, 99, 0xff00ff00);
  set(199, 0, 0xff0000ff);
  window->present(std::vector<PixelRect>{{0, 0, 200, 100}});
  EXPECT_TRUE(shows(100, 50, 0xff0000));
  EXPECT_TRUE(shows(299, 149, 0x00ff00));
  EXPECT_TRUE(shows(299, 50, 0x0000ff));
  EXPECT_TRUE(shows(150, 100, 0x204080));
}

TEST_P(X11Upload, SendsOnlyWhatIsDamaged) {
  fill(*window, 0xff111111);
  window->present(std::vector<PixelRect>{{0, 0, 200, 100}});
  fill(*window, 0xff222222);
  window->present(std::vector<PixelRect>{{10, 10, 5, 5}, {20, 20, 1, 1}});
  EXPECT_TRUE(shows(120, 70, 0x222222));
  EXPECT_EQ(user.pixel(user.root(), 110, 60), 0x222222U);
  EXPECT_EQ(user.pixel(user.root(), 114, 64), 0x222222U);
  EXPECT_EQ(user.pixel(user.root(), 115, 64), 0x111111U);
  EXPECT_EQ(user.pixel(user.root(), 109, 60), 0x111111U);
  EXPECT_EQ(user.pixel(user.root(), 121, 70), 0x111111U);
}

TEST_P(X11Upload, ClipsDamageToTheWindow) {
  fill(*window, 0xff333333);
  window->present(
      std::vector<PixelRect>{{-50, -50, 60, 60}, {190, 90, 1000, 1000}, {500, 500, 1, 1}, {5, 5, -1, 3}});
  EXPECT_TRUE(shows(299, 149, 0x333333));
  EXPECT_EQ(user.pixel(user.root(), 109, 59), 0x333333U);
}

TEST_P(X11Upload, RestoresWhatWasUncoveredWithoutTheOwner) {
  fill(*window, 0xff445566);
  window->present(std::vector<PixelRect>{{0, 0, 200, 100}});
  ASSERT_TRUE(shows(150, 100, 0x445566));
  const xcb_window_t cover = user.make_window(0, 0, 500, 500);
  user.map(cover);
  user.raise(cover);
  ASSERT_TRUE(shows(150, 100, 0x204060));
  user.destroy(cover);
  EXPECT_TRUE(shows(150, 100, 0x445566));
  EXPECT_TRUE(shows(299, 149, 0x445566));
  EXPECT_EQ(recorder.count("redraw"), 0);
}

TEST_P(X11Upload, HasTransparentBlackPixelsOfTheNewSizeAfterAResize) {
  fill(*window, 0xff445566);
  window->present(std::vector<PixelRect>{{0, 0, 200, 100}});
  window->setFrame(NSMakeRect(100, 650, 50, 60));
  const Pixels pixels = window->pixels();
  ASSERT_TRUE(pixels);
  EXPECT_EQ(pixels.width, 50);
  EXPECT_EQ(*reinterpret_cast<uint32_t*>(pixels.data), 0U);
  EXPECT_TRUE(until([this] { return recorder.count("redraw") == 1; }));
  fill(*window, 0xff00aa00);
  window->present(std::vector<PixelRect>{{0, 0, 50, 60}});
  EXPECT_TRUE(shows(149, 149, 0x00aa00));
}

TEST_P(X11Upload, ShowsWindowsLargerThanOneRequest) {
  open(window, recorder, WindowKind::titled, NSMakeRect(0, 0, 1280, 800));  // 4 MB
  fill(*window, 0xff123456);
  set(1279, 799, 0xff654321);
  window->present(std::vector<PixelRect>{{0, 0, 1280, 800}});
  EXPECT_TRUE(shows(1279, 799, 0x654321));
  EXPECT_TRUE(shows(0, 0, 0x123456));
  EXPECT_TRUE(shows(640, 411, 0x123456));
}

TEST_P(X11Upload, ManyFramesInARowAllArrive) {
  for (uint32_t frame = 1; frame <= 100; ++frame) {
    fill(*window, 0xff000000 | frame);
    window->present(std::vector<PixelRect>{{0, 0, 200, 100}});
  }
  EXPECT_TRUE(shows(200, 100, 100));
}

TEST_P(X11Upload, HasNoPixelsWhileTheServerReadsThem) {
  fill(*window, 0xff000001);
  window->present(std::vector<PixelRect>{{0, 0, 200, 100}});
  EXPECT_EQ(static_cast<bool>(window->pixels()), GetParam() != Way::shared);
  EXPECT_TRUE(until([this] { return static_cast<bool>(window->pixels()); }));
  window->present(std::vector<PixelRect>{});
  EXPECT_TRUE(window->pixels()) << "nothing to read, nothing to wait for";
}

using X11Server = X11Test;

TEST_F(X11Server, ADescriptorIsReadableWhenAnEventWasTakenInByTheWay) {
  PlatformWindow& w = open();
  user.point(150, 100);
  // Asking for an answer reads everything that was sent before it from the connection.
  system->makeWindow({.frame = {{}, {5, 5}}}, other_recorder);
  EXPECT_TRUE(test_support::wait_until(
      [&] {
        pollfd watched{system->descriptor(), POLLIN, 0};
        return poll(&watched, 1, 0) == 1;
      },
      {}));
  settle();
  EXPECT_EQ(recorder.count("entered"), 1);
  EXPECT_TRUE(w.viewable());
}

}  // namespace
}  // namespace cocoa
