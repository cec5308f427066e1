// SPDX-License-Identifier: MIT
#include "appkit/private/color_entry.h"

#include <gtest/gtest.h>

#include <optional>

namespace cocoa {
namespace {

TEST(HexColor, WritesSixDigitsAndReadsThreeOrSix) {
  const HexColorFormatter hex;
  EXPECT_EQ(hex.stringFromNumber(double{0x0026CC}), "#0026CC");
  EXPECT_EQ(hex.stringFromNumber(0.0), "#000000");
  EXPECT_EQ(hex.numberFromString("#0026cc"), 0x0026CC);
  EXPECT_EQ(hex.numberFromString(" FFFFFF\u00a0"), 0xFFFFFF);
  EXPECT_EQ(hex.numberFromString("#8af"), 0x88AAFF);
  for (const char* text :
       {"", "#", "#12", "#1234", "#12345", "#1234567", "#12345g", "0x1234", "-12345", "# 12345"})
    EXPECT_EQ(hex.numberFromString(text), std::nullopt) << text;
}

}  // namespace
}  // namespace cocoa
