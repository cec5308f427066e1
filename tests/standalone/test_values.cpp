// SPDX-License-Identifier: MIT
#include "standalone/private/values.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "standalone/private/text_lines.h"

namespace ondex {
namespace {

TEST(ValueText, IsTheShortestThatReadsBackToTheSameFloat) {
  EXPECT_EQ(text_of(0.0F), "0");
  EXPECT_EQ(text_of(0.5F), "0.5");
  EXPECT_EQ(text_of(0.1F), "0.1");
  EXPECT_EQ(text_of(0.55F), "0.55");
  EXPECT_EQ(text_of(20.0F), "20");
  EXPECT_EQ(text_of(1.0F / 3.0F), "0.33333334");
  EXPECT_EQ(text_of(-0.25F), "-0.25");
}

TEST(ValueText, ReadsBackForRandomFloats) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> values(0.0F, 20.0F);
  for (int i = 0; i < 10000; ++i) {
    const float value = values(random);
    EXPECT_EQ(float_from(text_of(value)), value);
  }
}

TEST(ValueText, OnlyAWholeFiniteNumberIsRead) {
  EXPECT_EQ(float_from("1e-3"), 0.001F);
  EXPECT_EQ(float_from("-2.5"), -2.5F);
  EXPECT_EQ(float_from("0." + std::string(399, '0') + "25e400"), 2.5F);
  EXPECT_EQ(float_from("1" + std::string(400, '0') + "e-10"), std::nullopt);
  EXPECT_EQ(float_from("1e-60"), 0.0F);
  for (const char* text : {"", " 1", "1 ", "1,5", "0x10", "nan", "inf", "1e99", "1.5.2", "+1", "one"}) {
    EXPECT_EQ(float_from(text), std::nullopt) << text;
  }
  EXPECT_EQ(unsigned_from("6"), 6U);
  for (const char* text : {"", "-1", "6.0", "99999999999"})
    EXPECT_EQ(unsigned_from(text), std::nullopt) << text;
}

TEST(TextLines, AreCutWhereTheyEndHoweverTheyArrive) {
  TextLines lines;
  lines.append("set 2 ");
  EXPECT_EQ(lines.take(), std::nullopt);
  lines.append("0.5\r\nlist\n\nqu");
  EXPECT_EQ(lines.take(), "set 2 0.5");
  EXPECT_EQ(lines.take(), "list");
  EXPECT_EQ(lines.take(), "");
  EXPECT_EQ(lines.take(), std::nullopt);
  lines.append("it\n");
  EXPECT_EQ(lines.take(), "quit");
}

/// Else a heap of lines costs the square of their number.
TEST(TextLines, StayWhereTheyAreWhileTheyAreTaken) {
  constexpr size_t count = 1000;
  TextLines lines;
  for (size_t i = 0; i < count; ++i)
    lines.append("set 2 0.5\n");
  const auto first = lines.take();
  ASSERT_TRUE(first);
  for (size_t i = 1; i < count; ++i) {
    const auto line = lines.take();
    ASSERT_TRUE(line);
    ASSERT_EQ(line->data() - first->data(), static_cast<ptrdiff_t>(i * 10));
  }
  EXPECT_EQ(lines.take(), std::nullopt);
  EXPECT_EQ(*first, "set 2 0.5") << "good until more comes";
}

TEST(TextLines, GiveUpTheRoomOfThoseTakenWhenMoreCome) {
  TextLines lines;
  lines.append("get 0\n");
  const char* const begin = lines.take()->data();
  for (int i = 0; i < 1000; ++i) {
    lines.append("get 1\n");
    const auto line = lines.take();
    ASSERT_EQ(line, "get 1");
    ASSERT_EQ(line->data(), begin);
  }
}

TEST(TextLines, AreNotKeptWithoutLimit) {
  TextLines lines;
  lines.append(std::string(8000, 'x'));
  EXPECT_FALSE(lines.overlong());
  lines.append(std::string(200, 'x'));
  EXPECT_TRUE(lines.overlong());
}

TEST(TextLines, TheRestOfADroppedLineIsNotALine) {
  TextLines lines;
  lines.append(std::string(10000, 'x'));
  ASSERT_TRUE(lines.overlong());
  lines.drop_overlong();
  lines.append(std::string(9000, 'x'));
  EXPECT_FALSE(lines.overlong());
  lines.append("set 2 1\nget 0\nlist\n");
  EXPECT_EQ(lines.take(), "get 0");
  EXPECT_EQ(lines.take(), "list");
  EXPECT_EQ(lines.take(), std::nullopt);
}

}  // namespace
}  // namespace ondex
