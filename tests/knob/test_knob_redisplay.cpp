// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "knob/KV_Ondex_Big_Knob_View.h"
#include "redisplay.h"

namespace ondex {
namespace {

using namespace cocoa;

class KnobRedisplay : public test::Redisplay<KV_Ondex_Big_Knob_View> {
 protected:
  static int pixels_of(const std::vector<PixelRect>& parts) {
    int pixels = 0;
    for (const PixelRect& part : parts)
      pixels += part.width * part.height;
    return pixels;
  }
};

TEST_F(KnobRedisplay, ComesForAllOfItWhenAllOfItIsAskedFor) {
  EXPECT_EQ(drawn_after([this] { view->setNeedsDisplay(true); }), all_of_it);
}

TEST_F(KnobRedisplay, ComesForThePointerAloneWithANewValue) {
  view->set_current_value(0);
  const int all = pixels_of(all_of_it);
  const int pointer = pixels_of(drawn_after([this] { view->set_current_value(0.5); }));
  EXPECT_GT(pointer, 0);
  EXPECT_LT(pointer, all);
}

TEST_F(KnobRedisplay, ComesForThePointerAloneWithAnotherRange) {
  const int pointer = pixels_of(drawn_after([this] {
    view->set_values_minimum_maximum_default_value_scale_type(0, 20, 0, 0);
    view->set_current_value(5);
  }));
  EXPECT_GT(pointer, 0);
  EXPECT_LT(pointer, pixels_of(all_of_it));
}

}  // namespace
}  // namespace ondex
