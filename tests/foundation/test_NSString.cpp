// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "foundation/NSString.h"

namespace cocoa {
namespace {

TEST(NSString, KeepsItsTextAndIsItsOwnDescription) {
  const auto text = make<NSString>("Kelvane: Ondex");
  EXPECT_STREQ(text->UTF8String(), "Kelvane: Ondex");
  EXPECT_TRUE(text->isEqualToString("Kelvane: Ondex"));
  EXPECT_FALSE(text->isEqualToString("Kelvane"));
  EXPECT_TRUE(text->description()->isEqualToString("Kelvane: Ondex"));
}

TEST(FourDecimals, RoundsAsTheCFormatDoes) {
  EXPECT_EQ(string_with_four_decimals(0.0), "0.0000");
  EXPECT_EQ(string_with_four_decimals(1234.5), "1234.5000");
  EXPECT_EQ(string_with_four_decimals(0.00005), "0.0001");
  EXPECT_EQ(string_with_four_decimals(0.00004999), "0.0000");
  EXPECT_EQ(string_with_four_decimals(-0.00001), "-0.0000");
  EXPECT_EQ(string_with_four_decimals(19.99995), "19.9999");  // the double lies just below the tie
}

TEST(FourDecimals, SpellsTheUnusualValues) {
  EXPECT_EQ(string_with_four_decimals(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(string_with_four_decimals(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(string_with_four_decimals(std::nan("")), "nan");
  EXPECT_EQ(string_with_four_decimals(std::numeric_limits<double>::max()).size(), 309U + 5U);
}

}  // namespace
}  // namespace cocoa
