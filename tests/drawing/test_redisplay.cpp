// What makes the simple controls be drawn again: seen as what their window presents at the end of the turn.

#include <gtest/gtest.h>

#include "appkit/NSWindow.h"
#include "drawing/KV_Ondex_Button_View.h"
#include "drawing/KV_Ondex_Panel_View.h"
#include "drawn_view.h"
#include "windows/headless.h"

namespace ondex {
namespace {

using namespace cocoa;

constexpr NSRect frame_in_window = {{10, 20}, {80, 14}};
constexpr PixelRect pixels_in_window = {10, 66, 80, 14};  // from the top of a window 100 points high

/// A view in a window that somebody sees.
template <typename View>
class Redisplay : public testing::Test {
 protected:
  Redisplay() {
    window->setWindowSystem(&system);
    window->contentView()->addSubview(view.get());
    window->orderFront(nullptr);
    turn();
  }
  ~Redisplay() override { window->close(); }

  void turn() {
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  /// The parts of the window that are drawn again because of `change`.
  template <typename Change>
  std::vector<PixelRect> drawn_after(const Change& change) {
    system.newestWindow()->clearPresented();
    change();
    turn();
    std::vector<PixelRect> drawn;
    for (const auto& frame : system.newestWindow()->presented())
      drawn.insert(drawn.end(), frame.begin(), frame.end());
    return drawn;
  }

  const NSAutoreleasePool pool;
  HeadlessWindowSystem system;
  const Ref<NSWindow> window = make<NSWindow>(NSMakeRect(0, 0, 200, 100), 0U);
  const Ref<View> view = make<View>(frame_in_window);
};

const std::vector<PixelRect> all_of_it = {pixels_in_window};
const std::vector<PixelRect> nothing;

template <typename View>
using CaptionRedisplay = Redisplay<View>;
using Captions = testing::Types<KV_Ondex_Label_View, KV_Ondex_Button_View>;
TYPED_TEST_SUITE(CaptionRedisplay, Captions, );

TYPED_TEST(CaptionRedisplay, ComesWithANewText) {
  EXPECT_EQ(this->drawn_after([this] { this->view->set_description(make<NSString>("Left").get()); }),
            all_of_it);
}

TYPED_TEST(CaptionRedisplay, DoesNotComeWithANullText) {
  EXPECT_EQ(this->drawn_after([this] { this->view->set_description(nullptr); }), nothing);
}

TYPED_TEST(CaptionRedisplay, ComesWithANewColorAndWithNone) {
  EXPECT_EQ(this->drawn_after([this] { this->view->set_colors_for_info(NSColor::yellowColor().get()); }),
            all_of_it);
  EXPECT_EQ(this->drawn_after([this] { this->view->set_colors_for_info(nullptr); }), all_of_it);
}

TYPED_TEST(CaptionRedisplay, ComesWhenItsInterfaceFileHasBeenLoaded) {
  EXPECT_EQ(this->drawn_after([this] { this->view->awakeFromNib(); }), all_of_it);
}

TYPED_TEST(CaptionRedisplay, DoesNotComeOfItself) {
  EXPECT_EQ(this->drawn_after([] {}), nothing);
}

using PanelRedisplay = Redisplay<KV_Ondex_Panel_View>;

TEST_F(PanelRedisplay, ComesWhenItsInterfaceFileHasBeenLoaded) {
  EXPECT_EQ(drawn_after([this] { view->awakeFromNib(); }), all_of_it);
}

/// The mean alpha of a capsule's glass where nothing lies under it. Over so many rows the rounding to 1/255
/// cancels out.
double mean_glass(KV_Ondex_Label_View& capsule) {
  const test::DrawnView drawn(NSMakeSize(20, 1000), 1,
                              [&](CGContextRef context) { capsule.do_shine(context); });
  double sum = 0;
  for (int row = 360; row < 640; ++row)
    sum += drawn.pixel(10, row).alpha;
  return sum / 280;
}

TEST(Glass, OfAButtonIsAHundredthThinnerThanOfALabel) {
  const auto label = make<KV_Ondex_Label_View>(NSMakeRect(0, 0, 20, 1000));
  const auto button = make<KV_Ondex_Button_View>(NSMakeRect(0, 0, 20, 1000));
  EXPECT_NEAR(mean_glass(*button) / mean_glass(*label), 0.99, 0.003);
}

}  // namespace
}  // namespace ondex
