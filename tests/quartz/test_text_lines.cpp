// SPDX-License-Identifier: MIT
#include <string>

#include "canvas.h"
#include "quartz/text.h"

/// What a line shows that is too wide, by comparing it with the drawing of what it should show.

namespace cocoa {
namespace {

constexpr double size = 10;

struct Drawn {
  std::string text;
  double width = 0;
  LineBreak line_break = LineBreak::word_wrap;
  TextAlignment alignment = TextAlignment::left;
};

std::vector<uint32_t> pixels_of(const Drawn& drawn) {
  Canvas canvas(400, 120, 2);
  TextStyle style;
  style.size = size;
  style.alignment = drawn.alignment;
  style.line_break = drawn.line_break;
  CGContextDrawText(canvas.context(), CGRectMake(5, 0, static_cast<CGFloat>(drawn.width), 60), drawn.text,
                    style);
  return canvas.pixels();
}

double width_of(std::string_view text) {
  TextStyle style;
  style.size = size;
  return static_cast<double>(text_size(text, style).width);
}

/// Whether a text comes out as if its lines had been given one by one.
void expect_shown(const Drawn& drawn, const std::string& lines) {
  EXPECT_EQ(pixels_of(drawn), pixels_of({lines, drawn.width, LineBreak::char_wrap, drawn.alignment}))
      << drawn.text << " as " << lines;
}

TEST(TextLines, AnEllipsisStandsForWhatDoesNotFit) {
  const std::string text = "ABCDEFGHJKLM";
  expect_shown({text, width_of("ABC\u2026") + 1, LineBreak::truncate_tail}, "ABC\u2026");
  expect_shown({text, width_of("\u2026JKLM") + 1, LineBreak::truncate_head}, "\u2026JKLM");
  expect_shown({text, width_of("ABC\u2026KLM") + 2, LineBreak::truncate_middle}, "ABC\u2026KLM");
  // What fits is shown whole.
  for (const auto mode : {LineBreak::truncate_tail, LineBreak::truncate_head, LineBreak::truncate_middle})
    expect_shown({text, width_of(text), mode}, text);
}

TEST(TextLines, AnEllipsisIsAlignedWithWhatItIsPartOf) {
  const double width = width_of("ABC\u2026") + 3;
  for (const auto alignment : {TextAlignment::right, TextAlignment::center})
    expect_shown({"ABCDEFGHJKLM", width, LineBreak::truncate_tail, alignment}, "ABC\u2026");
}

TEST(TextLines, WithoutRoomForAnyLetterTheEllipsisIsAlone) {
  TextStyle style;
  style.size = size;
  for (const auto mode : {LineBreak::truncate_tail, LineBreak::truncate_head, LineBreak::truncate_middle}) {
    Canvas alone(100, 40);
    Canvas shortened(100, 40);
    CGContextDrawText(alone.context(), CGRectMake(5, 0, 90, 40), "\u2026", style);
    style.line_break = mode;
    CGContextDrawText(shortened.context(), CGRectMake(5, 0, 2, 40), "HHHH", style);
    EXPECT_EQ(shortened.pixels(), alone.pixels());
  }
}

TEST(TextLines, EveryParagraphIsShortenedByItself) {
  const double width = width_of("ABC\u2026") + 1;
  expect_shown({"ABCDEFGHJ\nAB\nABCDEFGHJ", width, LineBreak::truncate_tail}, "ABC\u2026\nAB\nABC\u2026");
}

TEST(TextLines, AnAccentIsNeverCutOffItsLetter) {
  const std::string text = "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301";
  expect_shown({text, width_of("e\u0301e\u0301\u2026") + 1, LineBreak::truncate_tail},
               "e\u0301e\u0301\u2026");
  expect_shown({text, width_of("e\u0301e\u0301e\u0301") + 1, LineBreak::word_wrap},
               "e\u0301e\u0301e\u0301\ne\u0301e\u0301e\u0301");
}

TEST(TextLines, ATooWideWordBeginsALineOfItsOwnAndIsWrappedWithin) {
  const double width = width_of("HHHHH") + 1;
  expect_shown({"HH HHHHHHHH HH", width, LineBreak::word_wrap}, "HH\nHHHHH\nHHH\nHH");
  expect_shown({"HHHHHHHHHH", width, LineBreak::word_wrap}, "HHHHH\nHHHHH");
  expect_shown({"HH HHHHHHHH", width, LineBreak::char_wrap}, "HH HH\nHHHHH\nH");
}

TEST(TextLines, LinesEndBehindBlanksAndHyphensAndBlanksAtTheEndTakeNoRoom) {
  for (const auto alignment : {TextAlignment::left, TextAlignment::right, TextAlignment::center}) {
    expect_shown({"one   two three-four", width_of("three-") + 1, LineBreak::word_wrap, alignment},
                 "one\ntwo\nthree-\nfour");
  }
}

TEST(TextLines, ALetterAloneIsShownHoweverNarrowTheRectangle) {
  expect_shown({"AB", 0, LineBreak::word_wrap}, "A\nB");
}

TEST(TextLines, AllKindsOfLineFeedsDivide) {
  expect_shown({"a\r\nb\rc\u2028d", 60, LineBreak::word_wrap}, "a\nb\nc\nd");
  expect_shown({"a\n\nb", 60, LineBreak::word_wrap}, "a\r\r\nb");
}

TEST(TextLines, JustifiedLinesFillTheWidthButForTheLast) {
  const double width = 60;
  const auto right_edge = [&](const char* text, TextAlignment alignment) {
    Canvas canvas(200, 120, 2);
    TextStyle style;
    style.size = size;
    style.alignment = alignment;
    CGContextDrawText(canvas.context(), CGRectMake(0, 0, static_cast<CGFloat>(width), 60), text, style);
    return canvas.painted().right / 2.0;
  };
  EXPECT_NEAR(right_edge("H H H wwwwwww", TextAlignment::justified), width, 1.5);
  EXPECT_LT(right_edge("H H H", TextAlignment::justified), width / 2);
  EXPECT_EQ(right_edge("H H H", TextAlignment::justified), right_edge("H H H", TextAlignment::left));
}

TEST(TextLines, TabsLeadToColumnsOfEightBlanks) {
  EXPECT_NEAR(width_of("\tH"), width_of("        H"), 1e-3);
  EXPECT_NEAR(width_of("H\tH"), width_of("        H"), 1e-3);
  EXPECT_NEAR(width_of("\t\t"), width_of("                "), 1e-3);
}

}  // namespace
}  // namespace cocoa
