// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "unicode/text_breaks.h"

namespace cocoa {
namespace {

/// The text with a bar wherever it is divided.
std::string divided(std::string_view text, std::vector<size_t> (*breaks)(std::string_view)) {
  std::string result;
  size_t last = 0;
  for (const size_t at : breaks(text)) {
    EXPECT_LE(last, at);
    if (at > 0 && at < text.size()) {
      result += text.substr(last, at - last);
      result += '|';
      last = at;
    }
  }
  EXPECT_EQ(breaks(text).back(), text.size());
  return result.append(text.substr(last));
}

std::string characters(std::string_view text) {
  return divided(text, character_breaks);
}
std::string words(std::string_view text) {
  return divided(text, word_breaks);
}
std::string lines(std::string_view text) {
  return divided(text, line_breaks);
}

TEST(CharacterBreaks, MarksBelongToWhatTheyStandOn) {
  EXPECT_EQ(characters("ae\u0301b"), "a|e\u0301|b");
  EXPECT_EQ(characters("a\u0308\u0301\u0323."), "a\u0308\u0301\u0323|.");
  EXPECT_EQ(characters("\u0915\u093f\u0915"), "\u0915\u093f|\u0915");
  // One at the very beginning has nothing to stand on.
  EXPECT_EQ(characters("\u0301a"), "\u0301|a");
}

TEST(CharacterBreaks, FlagsArePairs) {
  EXPECT_EQ(characters("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7\U0001F1E9"),
            "\U0001F1E9\U0001F1EA|\U0001F1EB\U0001F1F7|\U0001F1E9");
}

TEST(CharacterBreaks, JoinedPicturesAreOne) {
  EXPECT_EQ(characters("\U0001F468\u200D\U0001F469\u200D\U0001F467\U0001F467"),
            "\U0001F468\u200D\U0001F469\u200D\U0001F467|\U0001F467");
  EXPECT_EQ(characters("\U0001F44D\U0001F3FD\u2764\uFE0F!"), "\U0001F44D\U0001F3FD|\u2764\uFE0F|!");
  EXPECT_EQ(characters("\U0001F3F3\uFE0F\u200D\U0001F308"), "\U0001F3F3\uFE0F\u200D\U0001F308");
  EXPECT_EQ(characters("1\uFE0F\u20E32"), "1\uFE0F\u20E3|2");
  // A joiner joins no letters.
  EXPECT_EQ(characters("a\u200Db"), "a\u200D|b");
}

TEST(CharacterBreaks, HangulLettersMakeSyllables) {
  EXPECT_EQ(characters("\u1112\u1161\u11ab\u1100\u1173\u11af"), "\u1112\u1161\u11ab|\u1100\u1173\u11af");
  EXPECT_EQ(characters("\uac00\u11a8\uac01\uac00"), "\uac00\u11a8|\uac01|\uac00");
}

TEST(CharacterBreaks, CarriageReturnAndLineFeedAreOne) {
  EXPECT_EQ(characters("a\r\n\r\nb\n\r"), "a|\r\n|\r\n|b|\n|\r");
  EXPECT_EQ(characters(""), "");
}

TEST(WordBreaks, LettersAndDigitsHoldTogether) {
  EXPECT_EQ(words("left  rate2"), "left|  |rate2");
  EXPECT_EQ(words("na\u00efve cafe\u0301"), "na\u00efve| |cafe\u0301");
  EXPECT_EQ(words("snake_case _x"), "snake_case| |_x");
}

TEST(WordBreaks, PointsAndCommasStandWithinNumbersOnly) {
  EXPECT_EQ(words("12.5,3 1, 2."), "12.5,3| |1|,| |2|.");
  EXPECT_EQ(words("don't a.b a,b 'a'"), "don't| |a.b| |a|,|b| |'|a|'");
  EXPECT_EQ(words("1:2 a:b"), "1|:|2| |a:b");
}

TEST(WordBreaks, SymbolsAndIdeographsStandAlone) {
  EXPECT_EQ(words("a+b=%"), "a|+|b|=|%");
  EXPECT_EQ(words("\u4e2d\u6587\u30ab\u30bf"), "\u4e2d|\u6587|\u30ab\u30bf");
  EXPECT_EQ(words("\uac00\ub098 x"), "\uac00\ub098| |x");
}

TEST(LineBreaks, StandBehindBlanksAndHyphens) {
  EXPECT_EQ(lines("one  two three-four"), "one  |two |three-|four");
  EXPECT_EQ(lines("a\tb"), "a\t|b");
  EXPECT_EQ(lines("a\u200bb"), "a\u200b|b");
}

TEST(LineBreaks, NotWithinNumbersNorBehindTheirSigns) {
  EXPECT_EQ(lines("x -5 1-2 3.5 1,000"), "x |-5 |1-2 |3.5 |1,000");
}

TEST(LineBreaks, PunctuationStaysWithItsWord) {
  EXPECT_EQ(lines("a (b) c! \"d\" e, f"), "a |(b) |c! |\"d\" |e, |f");
  EXPECT_EQ(lines("eight\u2014nine"), "eight|\u2014|nine");
}

TEST(LineBreaks, NoBreakSpacesHold) {
  EXPECT_EQ(lines("12\u00a0Hz a\u2011b a\u2060b"), "12\u00a0Hz |a\u2011b |a\u2060b");
}

TEST(LineBreaks, StandBetweenIdeographsButNotBeforeTheirFullStop) {
  EXPECT_EQ(lines("\u4e2d\u6587\u3002\u5b57a"), "\u4e2d|\u6587\u3002|\u5b57|a");
  EXPECT_EQ(lines("\u300c\u4e2d\u300d\u6587"), "\u300c\u4e2d\u300d|\u6587");
}

}  // namespace
}  // namespace cocoa
