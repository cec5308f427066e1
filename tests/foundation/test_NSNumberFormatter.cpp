// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <clocale>
#include <limits>

#include "foundation/NSNumberFormatter.h"

namespace cocoa {
namespace {

class NumberFormatter : public testing::Test {
 protected:
  NumberFormatter() { formatter->setMaximumFractionDigits(9); }
  std::optional<double> read(std::string_view text) const { return formatter->numberFromString(text); }
  Ref<NSNumberFormatter> formatter = make<NSNumberFormatter>();
};

TEST_F(NumberFormatter, ReadsPointAndCommaAlike) {
  EXPECT_EQ(read("12.5"), 12.5);
  EXPECT_EQ(read("12,5"), 12.5);
  EXPECT_EQ(read(".5"), 0.5);
  EXPECT_EQ(read(",5"), 0.5);
  EXPECT_EQ(read("5,"), 5.0);
}

TEST_F(NumberFormatter, ReadsTheSameUnderAnyLocale) {
  const char* const set = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  EXPECT_EQ(read("12.5"), 12.5);
  EXPECT_EQ(formatter->stringFromNumber(12.5), "12.5");
  if (set)
    std::setlocale(LC_NUMERIC, "C");
}

TEST_F(NumberFormatter, ReadsSignsExponentsAndBlanksAround) {
  EXPECT_EQ(read("-3"), -3.0);
  EXPECT_EQ(read("+3"), 3.0);
  EXPECT_EQ(read("\u22123"), -3.0) << "the minus sign that texts copied from elsewhere have";
  EXPECT_EQ(read(" 2e3\t"), 2000.0);
  EXPECT_EQ(read("1E-2"), 0.01);
  EXPECT_EQ(read("0.5\u00a0"), 0.5) << "a space that does not break, as tables and web pages have";
  EXPECT_EQ(read("\u202f-0.5\u00a0 "), -0.5);
}

TEST_F(NumberFormatter, RefusesWhatIsNoNumber) {
  for (const char* text :
       {"",  " ",  "abc", "1a",  "1 2", "1.2.3", "1,234.5",  "--1",  "+-1",      "-",     ".",
        ",", "e5", "1e",  "nan", "inf", "-inf",  "infinity", "0x10", "1\u00a02", "\u0661"})
    EXPECT_EQ(read(text), std::nullopt) << text;
}

TEST_F(NumberFormatter, NumbersBeyondTheDoublesAreTheLargestOrNothing) {
  const double largest = std::numeric_limits<double>::max();
  EXPECT_EQ(read("1e999"), largest);
  EXPECT_EQ(read("-1e999"), -largest);
  EXPECT_EQ(read("1" + std::string(400, '0')), largest);
  EXPECT_EQ(read("1e-999"), 0.0);
  EXPECT_EQ(read("0." + std::string(400, '0') + "1"), 0.0);
  EXPECT_EQ(read("0," + std::string(400, '0') + "1e10"), 0.0);
  EXPECT_EQ(read("1" + std::string(400, '0') + "e-10"), largest);
  EXPECT_EQ(read("-1" + std::string(400, '0') + "e-10"), -largest);
  EXPECT_EQ(read("0." + std::string(399, '0') + "1e400"), 1.0);
  EXPECT_EQ(read("5" + std::string(400, '0') + "e-401"), 0.5);
}

TEST_F(NumberFormatter, RefusesNumbersOutsideTheBoundsUnlessLenient) {
  formatter->setMaximum(20000);
  formatter->setMinimum(20);
  EXPECT_EQ(formatter->minimum(), 20.0);
  EXPECT_EQ(formatter->maximum(), 20000.0);
  EXPECT_EQ(read("20"), 20.0);
  EXPECT_EQ(read("20000"), 20000.0);
  EXPECT_EQ(read("19.999"), std::nullopt);
  EXPECT_EQ(read("50000"), std::nullopt);
  formatter->setLenient(true);
  EXPECT_EQ(read("50000"), 50000.0);
  EXPECT_EQ(read("0"), 0.0);
  EXPECT_EQ(read("abc"), std::nullopt);
}

TEST_F(NumberFormatter, WritesTheShortestDigitsOfItsPrecision) {
  EXPECT_EQ(formatter->stringFromNumber(0.1F), "0.1");
  EXPECT_EQ(formatter->stringFromNumber(static_cast<double>(0.1F)), "0.100000001");
  EXPECT_EQ(formatter->stringFromNumber(3.3333333F), "3.3333333");
  EXPECT_EQ(formatter->stringFromNumber(20000.0F), "20000");
  EXPECT_EQ(formatter->stringFromNumber(-0.25), "-0.25");
  EXPECT_EQ(formatter->stringFromNumber(1e20), "100000000000000000000");
}

TEST_F(NumberFormatter, KeepsToTheFractionDigits) {
  formatter->setMaximumFractionDigits(2);
  EXPECT_EQ(formatter->stringFromNumber(1.005), "1") << "1.005 has no double; the nearest is below it";
  EXPECT_EQ(formatter->stringFromNumber(1.239), "1.24");
  EXPECT_EQ(formatter->stringFromNumber(1.101), "1.1");
  EXPECT_EQ(formatter->stringFromNumber(-0.001), "0");
  formatter->setMinimumFractionDigits(2);
  EXPECT_EQ(formatter->stringFromNumber(1.0), "1.00");
  EXPECT_EQ(formatter->stringFromNumber(1.5), "1.50");
  EXPECT_EQ(formatter->stringFromNumber(1.005), "1.00");
}

TEST_F(NumberFormatter, AFreshOneShowsWholeNumbersAndHasNoBounds) {
  const auto fresh = make<NSNumberFormatter>();
  EXPECT_EQ(fresh->stringFromNumber(0.5), "0");
  EXPECT_EQ(fresh->stringFromNumber(1.5), "2");
  EXPECT_EQ(fresh->minimum(), std::nullopt);
  EXPECT_EQ(fresh->maximum(), std::nullopt);
  EXPECT_FALSE(fresh->isLenient());
}

TEST_F(NumberFormatter, NamesWhatIsNotFinite) {
  EXPECT_EQ(formatter->stringFromNumber(std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(formatter->stringFromNumber(-std::numeric_limits<double>::infinity()), "-inf");
}

}  // namespace
}  // namespace cocoa
