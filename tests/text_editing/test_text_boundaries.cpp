// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "text_editing/private/utf8_line.h"
#include "text_editing/text_boundaries.h"

namespace cocoa {
namespace {

// e and a combining acute accent: three bytes that a reader sees as one letter.
constexpr std::string_view accented = "e\u0301";
// Two regional indicators, four bytes each, that make one flag.
constexpr std::string_view flag = "\U0001F1E9\U0001F1EA";

TEST(TextBoundaries, ACaretStandsBetweenWholeCharacters) {
  const std::string text = "a" + std::string(accented) + std::string(flag) + "b";
  const TextBoundaries boundaries(text);
  EXPECT_EQ(boundaries.after(0), 1U);
  EXPECT_EQ(boundaries.after(1), 4U);
  EXPECT_EQ(boundaries.after(4), 12U);
  EXPECT_EQ(boundaries.after(12), 13U);
  EXPECT_EQ(boundaries.after(13), 13U);
  EXPECT_EQ(boundaries.before(13), 12U);
  EXPECT_EQ(boundaries.before(12), 4U);
  EXPECT_EQ(boundaries.before(4), 1U);
  EXPECT_EQ(boundaries.before(0), 0U);
}

TEST(TextBoundaries, AnOffsetInsideACharacterMeansItsBeginning) {
  const TextBoundaries boundaries(accented);
  EXPECT_EQ(boundaries.at(1), 0U);
  EXPECT_EQ(boundaries.at(2), 0U);
  EXPECT_EQ(boundaries.before(2), 0U);
  EXPECT_EQ(boundaries.after(2), 3U);
  EXPECT_EQ(boundaries.at(99), 3U);
}

TEST(TextBoundaries, AnEmptyTextHasOnePlace) {
  const TextBoundaries boundaries("");
  EXPECT_EQ(boundaries.at(0), 0U);
  EXPECT_EQ(boundaries.before(0), 0U);
  EXPECT_EQ(boundaries.after(0), 0U);
  EXPECT_EQ(boundaries.wordStartBefore(0), 0U);
  EXPECT_EQ(boundaries.wordEndAfter(0), 0U);
  EXPECT_EQ(boundaries.wordAt(0).end, 0U);
}

TEST(TextBoundaries, WordsAreSteppedOverWithWhatSeparatesThem) {
  const TextBoundaries boundaries("left  rate");
  EXPECT_EQ(boundaries.wordEndAfter(0), 4U);
  EXPECT_EQ(boundaries.wordEndAfter(4), 10U);
  EXPECT_EQ(boundaries.wordStartBefore(10), 6U);
  EXPECT_EQ(boundaries.wordStartBefore(6), 0U);
  EXPECT_EQ(boundaries.wordStartBefore(8), 6U);
}

TEST(TextBoundaries, ANumberIsOneWordWithItsDecimalPointOrComma) {
  EXPECT_EQ(TextBoundaries("12.5 Hz").wordAt(1).end, 4U);
  EXPECT_EQ(TextBoundaries("12,5 Hz").wordAt(3).start, 0U);
  EXPECT_EQ(TextBoundaries("12,5 Hz").wordAt(5).start, 5U);
}

TEST(TextBoundaries, BetweenWordsTheWordIsWhatSeparates) {
  const TextBoundaries boundaries("a  b");
  EXPECT_EQ(boundaries.wordAt(1).start, 1U);
  EXPECT_GE(boundaries.wordAt(1).end, 2U);
  EXPECT_LE(boundaries.wordAt(1).end, 3U);
}

TEST(TextBoundaries, BehindTheLastCharacterTheLastWordIsMeant) {
  const auto word = TextBoundaries("a 12").wordAt(4);
  EXPECT_EQ(word.start, 2U);
  EXPECT_EQ(word.end, 4U);
}

TEST(Utf8Line, ALineEndsTheTextAndBlankLinesBeforeItAreNone) {
  EXPECT_EQ(utf8_line("\n\r\n0.5\nnext", 100), "0.5");
  EXPECT_EQ(utf8_line("one\u2028two", 100), "one");
}

TEST(Utf8Line, TabsBecomeBlanksAndControlsNothing) {
  EXPECT_EQ(utf8_line(std::string_view("a\tb\x01\x7f"
                                       "c\0d",
                                       8),
                      100)
                .substr(0, 4),
            "a bc");
}

TEST(Utf8Line, BytesThatAreNotUtf8AreReplaced) {
  EXPECT_EQ(utf8_line("1\xff"
                      "2",
                      100),
            "1\uFFFD2");
}

TEST(Utf8Line, ItIsCutBetweenCharacters) {
  EXPECT_EQ(utf8_line("a\u00e9\u00e9", 4), "a\u00e9");
  EXPECT_EQ(utf8_line("abc", 0), "");
}

}  // namespace
}  // namespace cocoa
