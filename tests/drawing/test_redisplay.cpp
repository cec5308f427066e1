// SPDX-License-Identifier: MIT
// What makes the simple controls be drawn again: seen as what their window presents at the end of the turn.

#include <gtest/gtest.h>

#include "drawing/KV_Ondex_Button_View.h"
#include "drawing/KV_Ondex_Panel_View.h"
#include "drawn_view.h"
#include "redisplay.h"

namespace ondex {
namespace {

using namespace cocoa;

template <typename View>
using CaptionRedisplay = test::Redisplay<View>;
using Captions = testing::Types<KV_Ondex_Label_View, KV_Ondex_Button_View>;
TYPED_TEST_SUITE(CaptionRedisplay, Captions, );

TYPED_TEST(CaptionRedisplay, ComesWithANewText) {
  EXPECT_EQ(this->drawn_after([this] { this->view->set_description(make<NSString>("Left").get()); }),
            this->all_of_it);
}

TYPED_TEST(CaptionRedisplay, DoesNotComeWithANullText) {
  EXPECT_EQ(this->drawn_after([this] { this->view->set_description(nullptr); }), this->nothing);
}

TYPED_TEST(CaptionRedisplay, ComesWithANewColorAndWithNone) {
  EXPECT_EQ(this->drawn_after([this] { this->view->set_colors_for_info(NSColor::yellowColor().get()); }),
            this->all_of_it);
  EXPECT_EQ(this->drawn_after([this] { this->view->set_colors_for_info(nullptr); }), this->all_of_it);
}

TYPED_TEST(CaptionRedisplay, ComesWhenItsInterfaceFileHasBeenLoaded) {
  EXPECT_EQ(this->drawn_after([this] { this->view->awakeFromNib(); }), this->all_of_it);
}

TYPED_TEST(CaptionRedisplay, DoesNotComeOfItself) {
  EXPECT_EQ(this->drawn_after([] {}), this->nothing);
}

using PanelRedisplay = test::Redisplay<KV_Ondex_Panel_View>;

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
