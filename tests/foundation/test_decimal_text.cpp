// SPDX-License-Identifier: MIT
#include "foundation/decimal_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace cocoa {
namespace {

std::string zeros(size_t count) {
  std::string text(count, '0');
  return text;
}

std::optional<double> read(const std::string& text) {
  return number_from_decimal<double>(text);
}

// The expected numbers are quotients of whole numbers of any size, rounded once.
TEST(DecimalText, IsTheNearestDoubleHoweverLong) {
  const struct {
    const char* front;
    size_t zeros;
    const char* back;
    double number;
  } samples[] = {{"0.", 0, "7261269799278378182626819312324081878510e-23", 0x1.18e82209f88adp-77},
                 {"93362774391663868", 5, "e-59", 0x1.fc50b71572c25p-124},
                 {"5671063740648564212", 1000, "e-959", 0x1.69618b3de0255p+198},
                 {"3551920983079809773", 5, "e-30", 0x1.7d6275e656cd6p-22},
                 {"8636484808897205589074417", 400, "e-271", 0x1.49cc844c10481p+511},
                 {"2910951009598092420013642", 0, "e-107", 0x1.c466afa8d480dp-275},
                 {"4699324137170789274491451597851403320102", 400, "e-478", 0x1.995e6e20d2e0bp-128},
                 {"0.", 0, "8882759338166432738e153", 0x1.0f5cd64f3ce3ap+508},
                 {"0.", 1000, "77868481894361106064e992", 0x1.0b8dd74d5ada3p-27},
                 {"70599391061222471706", 5, "e263", 0x1.28bb82e320016p+956},
                 {"0.", 30, "2624958116153759664959997985919242487532e17", 0x1.d8ded391102a1p-46},
                 {"20323285315633543", 400, "e-667", 0x1.2a00b408f81d8p-833},
                 {"7869410553447136537869970777123664216329", 0, "e66", 0x1.b730f686b00fdp+351}};
  for (const auto& [front, count, back, number] : samples) {
    const std::string text = front + zeros(count) + back;
    EXPECT_EQ(read(text), number) << text;
    EXPECT_EQ(read("-" + text), -number) << text;
  }
}

TEST(DecimalText, ZerosAndExponentsCancelWhateverTheirNumber) {
  EXPECT_EQ(read("0." + zeros(399) + "1e400"), 1.0);
  EXPECT_EQ(read("1" + zeros(400) + "e-400"), 1.0);
  EXPECT_EQ(read("0." + zeros(700'000) + "125e700000"), 0.125);
  EXPECT_EQ(read("125" + zeros(700'000) + "e-700003"), 0.125);
  EXPECT_EQ(read(zeros(1000) + "1." + zeros(1000)), 1.0);
}

TEST(DecimalText, TiesGoToTheEvenOneUnlessSomethingFollows) {
  EXPECT_EQ(read("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(read("9007199254740993." + zeros(1000) + "1"), 9007199254740994.0);
  EXPECT_EQ(read("9007199254740995"), 9007199254740996.0);
  EXPECT_EQ(number_from_decimal<float>("16777217"), 16777216.0F);
  EXPECT_EQ(number_from_decimal<float>("16777217." + zeros(60) + "1"), 16777218.0F)
      << "not by way of a double";
}

TEST(DecimalText, OutOfRangeGoesTheRightWay) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(read("0." + zeros(400) + "1e10"), 0.0);
  EXPECT_EQ(read("1" + zeros(400) + "e-10"), infinity);
  EXPECT_EQ(read("1e" + std::string(100, '9')), infinity);
  EXPECT_EQ(read("-1e" + std::string(100, '9')), -infinity);
  EXPECT_EQ(read("1e-" + std::string(100, '9')), 0.0);
  EXPECT_TRUE(std::signbit(*read("-1e-999")));
  EXPECT_EQ(read("0e" + std::string(100, '9')), 0.0);
  EXPECT_EQ(read("5e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_EQ(read("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(read("1.7976931348623159e308"), infinity);
  EXPECT_EQ(number_from_decimal<float>("7.0064923216240854e-46"), std::numeric_limits<float>::denorm_min());
  EXPECT_EQ(number_from_decimal<float>("7.0064923216240853e-46"), 0.0F);
  // Between them lies the half: 340282356779733661637539395458142568448.
  EXPECT_EQ(number_from_decimal<float>("3.4028235677973366e38"), std::numeric_limits<float>::max());
  EXPECT_EQ(number_from_decimal<float>("3.4028235677973367e38"), std::numeric_limits<float>::infinity());
}

TEST(DecimalText, NothingElseIsANumber) {
  for (const char* text : {"",   "-",  ".",   "e5",  "1e",  "1e+",      "1e1.5", "1.2.3", "+1",    "--1",
                           " 1", "1 ", "1,5", "inf", "nan", "infinity", "0x10",  "1f",    "1e5e5", "\u0661"})
    EXPECT_EQ(read(text), std::nullopt) << text;
  EXPECT_EQ(read("1."), 1.0);
  EXPECT_EQ(read(".5E+1"), 5.0);
}

TEST(WithoutBlanks, TakesSpacesOfEveryWidthAway) {
  EXPECT_EQ(without_blanks("\u00A0\u202F 1 2\u00A0\t\r\n\u3000"), "1 2");
  EXPECT_EQ(without_blanks("\u2003"), "");
  EXPECT_EQ(without_blanks(""), "");
  EXPECT_EQ(without_blanks("\u2212"), "\u2212") << "begins with a byte of a blank";
}

}  // namespace
}  // namespace cocoa
