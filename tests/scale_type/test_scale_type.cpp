// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "scale_type/scale_type.h"

namespace ondex {
namespace {

TEST(ScaleType, LinearLeavesValuesAsTheyAre) {
  EXPECT_EQ(mapped_value(0, -3.25), -3.25);
  EXPECT_EQ(plain_value(0, -3.25), -3.25);
}

TEST(ScaleType, LogarithmicIsToTheBaseOfTen) {
  EXPECT_DOUBLE_EQ(mapped_value(1, 0.001), -3.0);
  EXPECT_DOUBLE_EQ(mapped_value(1, 20000.0), 4.301029995663981);
  EXPECT_DOUBLE_EQ(plain_value(1, 2.0), 100.0);
  EXPECT_DOUBLE_EQ(plain_value(1, 0.5), 3.1622776601683795);
}

TEST(ScaleType, SquareRootGoesBackBySquaring) {
  EXPECT_DOUBLE_EQ(mapped_value(2, 20.0), 4.47213595499958);
  EXPECT_DOUBLE_EQ(plain_value(2, 1.5), 2.25);
  EXPECT_DOUBLE_EQ(plain_value(2, -0.5), 0.25);
}

TEST(ScaleType, EveryOtherNumberIsLinear) {
  for (const int32_t type : {7, 3, -1, std::numeric_limits<int32_t>::min()}) {
    EXPECT_EQ(mapped_value(type, 100.0), 100.0) << type;
    EXPECT_EQ(plain_value(type, 100.0), 100.0) << type;
  }
}

TEST(ScaleType, ValuesOutsideTheMapFollowIeeeArithmetic) {
  EXPECT_EQ(mapped_value(1, 0.0), -std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(mapped_value(1, -1.0)));
  EXPECT_TRUE(std::isnan(mapped_value(2, -1.0)));
}

TEST(Clamped, BringsAValueInsideAndTakesWhatIsNoNumberForTheMinimum) {
  EXPECT_EQ(clamped(0.5, 0, 1), 0.5);
  EXPECT_EQ(clamped(-0.5, 0, 1), 0);
  EXPECT_EQ(clamped(1.5, 0, 1), 1);
  EXPECT_EQ(clamped(std::nan(""), 0.25, 1), 0.25);
}

}  // namespace
}  // namespace ondex
