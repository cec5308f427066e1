// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "quartz/text.h"

/// Carets in a line, and which of them a pointer is nearest to. The tests' font is DejaVu Sans: of its em of
/// 2048 units, the advance of e is 1260, of H 1540, of the ligature fi 1290.

namespace cocoa {
namespace {

constexpr double units_per_em = 2048;

TextStyle style() {
  TextStyle result;
  result.size = units_per_em;
  return result;
}

double caret(std::string_view text, size_t offset) {
  return static_cast<double>(text_caret_position(text, style(), offset));
}

size_t offset_at(std::string_view text, double x) {
  return text_offset_at(text, style(), static_cast<CGFloat>(x));
}

TEST(TextPlaces, CaretsStandBetweenLetters) {
  EXPECT_NEAR(caret("eH", 0), 0, 0.1);
  EXPECT_NEAR(caret("eH", 1), 1260, 0.1);
  EXPECT_NEAR(caret("eH", 2), 1260 + 1540, 0.1);
  EXPECT_NEAR(caret("eH", 99), 1260 + 1540, 0.1);
  EXPECT_EQ(caret("", 0), 0);
}

TEST(TextPlaces, PairsOfLettersStandAsTheFontWantsThem) {
  EXPECT_LT(caret("AV", 2), caret("A", 1) + caret("V", 1) - 50);
  EXPECT_NEAR(caret("AV", 2), static_cast<double>(text_size("AV", style()).width), 1e-3);
}

TEST(TextPlaces, APointerMeansTheNearestCaret) {
  EXPECT_EQ(offset_at("eH", -1e9), 0U);
  EXPECT_EQ(offset_at("eH", 620), 0U);
  EXPECT_EQ(offset_at("eH", 640), 1U);
  EXPECT_EQ(offset_at("eH", 1260 + 760), 1U);
  EXPECT_EQ(offset_at("eH", 1260 + 780), 2U);
  EXPECT_EQ(offset_at("eH", 1e9), 2U);
  EXPECT_EQ(offset_at("", 5), 0U);
  EXPECT_LE(offset_at("eH", NAN), 2U);
}

TEST(TextPlaces, ALetterWithItsAccentsIsOneStep) {
  // One that the font has a glyph for, and one that it composes.
  for (const std::string text : {"e\u0301H", "e\u0333\u0301H"}) {
    const size_t behind = text.size() - 1;
    for (size_t inside = 0; inside < behind; ++inside)
      EXPECT_EQ(caret(text, inside), 0) << text << ' ' << inside;
    EXPECT_NEAR(caret(text, behind), 1260, 0.1) << text;
    for (int x = -10; x < 2900; x += 10) {
      const size_t offset = offset_at(text, x);
      EXPECT_TRUE(offset == 0 || offset == behind || offset == text.size()) << text << ' ' << x;
    }
  }
}

TEST(TextPlaces, ALigatureHasACaretBetweenItsLetters) {
  ASSERT_NEAR(caret("fi", 2), 1290, 0.1);
  EXPECT_GT(caret("fi", 1), 1290 * 0.4);
  EXPECT_LT(caret("fi", 1), 1290 * 0.6);
  EXPECT_EQ(offset_at("fi", caret("fi", 1) + 10), 1U);
  const std::string three = "ffiH";
  EXPECT_LT(caret(three, 0), caret(three, 1));
  EXPECT_LT(caret(three, 1), caret(three, 2));
  EXPECT_LT(caret(three, 2), caret(three, 3));
  EXPECT_NEAR(caret(three, 4) - caret(three, 3), 1540, 0.1);
}

TEST(TextPlaces, SpansReachFromCaretToCaretWhicheverTheScript) {
  for (const std::string text : {"exfi", "ab\u05d0\u05d1\u05d2 12"}) {
    const auto spans = text_spans(text, style(), 1, text.size() - 1);
    ASSERT_EQ(spans.size(), 1U);
    EXPECT_NEAR(static_cast<double>(spans[0].left), caret(text, 1), 0.1);
    EXPECT_NEAR(static_cast<double>(spans[0].right), caret(text, text.size() - 1), 0.1);
    EXPECT_LT(spans[0].left, spans[0].right);
    EXPECT_TRUE(text_spans(text, style(), 1, 1).empty());
  }
}

TEST(TextPlaces, CaretsGoFromLeftToRightAtEverySize) {
  const std::string text = "Te\u0301 fi\u05d0\u05d1\t\U0001F600 12,75 \u0644\u0627";
  for (const double points : {0.5, 9.0, 13.3, 400.0}) {
    TextStyle sized;
    sized.size = points;
    CGFloat last = 0;
    for (size_t offset = 0; offset <= text.size(); ++offset) {
      const CGFloat x = text_caret_position(text, sized, offset);
      EXPECT_GE(x, last) << offset;
      last = x;
    }
    EXPECT_NEAR(static_cast<double>(last), static_cast<double>(text_size(text, sized).width), 1e-3 * points);
  }
}

}  // namespace
}  // namespace cocoa
