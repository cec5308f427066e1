// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "appkit/private/field_value.h"

namespace cocoa {
namespace {

Ref<NSNumberFormatter> formatter_of_two_digits() {
  auto formatter = make<NSNumberFormatter>();
  formatter->setMaximumFractionDigits(2);
  return formatter;
}

TEST(FieldValue, KeepsTheNumberThatItsTextShowsRounded) {
  FieldValue value;
  value.setNumber(0.125, formatter_of_two_digits().get());
  EXPECT_EQ(value.number(), 0.125);
  EXPECT_EQ(value.text().size(), 4U) << value.text();
}

TEST(FieldValue, ShowsAFloatWithTheDigitsOfAFloat) {
  FieldValue value;
  value.setNumber(0.1F, nullptr);
  EXPECT_EQ(value.text(), "0.1");
  EXPECT_EQ(value.number(), static_cast<double>(0.1F));
}

TEST(FieldValue, TakesAnyTextWithoutAFormatter) {
  FieldValue value;
  EXPECT_TRUE(value.take("red", nullptr));
  EXPECT_EQ(value.text(), "red");
  EXPECT_EQ(value.number(), 0);
  EXPECT_TRUE(value.take("2.5", nullptr));
  EXPECT_EQ(value.number(), 2.5);
}

TEST(FieldValue, TakesWhatTheFormatterMakesANumberOf) {
  FieldValue value;
  const auto formatter = formatter_of_two_digits();
  EXPECT_TRUE(value.take("2.5", formatter.get()));
  EXPECT_FALSE(value.take("red", formatter.get()));
  EXPECT_EQ(value.text(), "2.5");
  EXPECT_EQ(value.number(), 2.5);
}

TEST(FieldValue, MayBeSetToATextThatIsNoNumber) {
  FieldValue value;
  value.setNumber(3.0, nullptr);
  value.setText("red", formatter_of_two_digits().get());
  EXPECT_EQ(value.text(), "red");
  EXPECT_EQ(value.number(), 0);
}

}  // namespace
}  // namespace cocoa
