// SPDX-License-Identifier: MIT
#include <string>

#include "canvas.h"
#include "quartz/text.h"

/// The tests' font is DejaVu Sans. Of its em of 2048 units: ascent 1901, descent 483, height of capitals
/// 1493, advance of H 1540, of a space 651.

namespace cocoa {
namespace {

constexpr double ascent = 1901.0 / 2048;
constexpr double line_height = (1901.0 + 483.0) / 2048;
constexpr double capitals = 1493.0 / 2048;
constexpr double advance_of_h = 1540.0 / 2048;
constexpr double advance_of_space = 651.0 / 2048;

TextStyle style_of(double size, TextAlignment alignment = TextAlignment::left) {
  TextStyle style;
  style.size = size;
  style.alignment = alignment;
  return style;
}

double ink(const Canvas& canvas) {
  double sum = 0;
  for (const uint32_t pixel : canvas.pixels())
    sum += (pixel >> 24) / 255.0;
  return sum;
}

TEST(Text, StartsAtTheTopOfTheRectangle) {
  Canvas canvas(100, 100);
  CGContextDrawText(canvas.context(), CGRectMake(10, 20, 80, 70), "HHH", style_of(20));
  const auto painted = canvas.painted();
  const double baseline = 90 - 20 * ascent;
  EXPECT_NEAR(painted.bottom, baseline, 1);
  EXPECT_NEAR(painted.top, baseline + 20 * capitals, 1);
  EXPECT_NEAR(painted.left, 10 + 20 * 201.0 / 2048, 1);  // the letter's left margin
}

TEST(Text, IsAlignedInTheRectangle) {
  const double width = 3 * 20 * advance_of_h;
  const auto centre = [](TextAlignment alignment) {
    Canvas canvas(120, 40);
    CGContextDrawText(canvas.context(), CGRectMake(11, 0, 100, 40), "HHH", style_of(20, alignment));
    return (canvas.painted().left + canvas.painted().right) / 2.0;
  };
  EXPECT_NEAR(centre(TextAlignment::center), 61, 1);
  EXPECT_NEAR(centre(TextAlignment::left), 11 + width / 2, 1);
  EXPECT_NEAR(centre(TextAlignment::natural), 11 + width / 2, 1);
  EXPECT_NEAR(centre(TextAlignment::right), 111 - width / 2, 1);
}

TEST(Text, NaturalAlignmentFollowsTheDirectionOfTheText) {
  Canvas canvas(200, 40);
  CGContextDrawText(canvas.context(), CGRectMake(0, 0, 200, 40), "\u05d0\u05d1\u05d2",
                    style_of(20, TextAlignment::natural));
  EXPECT_GT(canvas.painted().left, 100);
}

TEST(Text, DrawsTheLinesThatFitWhollyButAlwaysTheFirst) {
  const auto lines_in = [](double height) {
    Canvas canvas(40, 100);
    CGContextDrawText(canvas.context(),
                      CGRectMake(0, static_cast<CGFloat>(100 - height), 40, static_cast<CGFloat>(height)),
                      "H\nH\nH", style_of(20));
    const double below_first = 100 - canvas.painted().bottom - 20 * ascent;
    return 1 + std::lround(below_first / (20 * line_height));
  };
  EXPECT_EQ(lines_in(5), 1);
  EXPECT_EQ(lines_in(2 * 20 * line_height - 1), 1);
  EXPECT_EQ(lines_in(2 * 20 * line_height + 0.1), 2);
  EXPECT_EQ(lines_in(2.9 * 20 * line_height), 2);
  EXPECT_EQ(lines_in(3 * 20 * line_height + 0.1), 3);
}

TEST(Text, WrapsBetweenWordsAndWithinAWordThatIsTooWide) {
  const auto height_of = [](const char* text, LineBreak line_break) {
    Canvas canvas(60, 200);
    TextStyle style = style_of(10);
    style.line_break = line_break;
    // Room for five letters, not six.
    CGContextDrawText(canvas.context(), CGRectMake(0, 0, static_cast<CGFloat>(5.5 * 10 * advance_of_h), 200),
                      text, style);
    const double below_first = 200 - canvas.painted().bottom - 10 * ascent;
    return 1 + std::lround(below_first / (10 * line_height));
  };
  EXPECT_EQ(height_of("HHH HHH", LineBreak::word_wrap), 2);
  EXPECT_EQ(height_of("HHHHHHHHHHHH", LineBreak::word_wrap), 3);
  EXPECT_EQ(height_of("HHHHH", LineBreak::word_wrap), 1);
  EXPECT_EQ(height_of("HHHHHHHHHH", LineBreak::char_wrap), 2);
  EXPECT_EQ(height_of("HHHHHHHHHH", LineBreak::clip), 1);
  EXPECT_EQ(height_of("HHHHHHHHHH", LineBreak::truncate_tail), 1);
}

TEST(Text, ThatIsClippedOrShortenedStaysBetweenTheSides) {
  for (const auto line_break :
       {LineBreak::clip, LineBreak::truncate_head, LineBreak::truncate_tail, LineBreak::truncate_middle}) {
    for (const auto alignment : {TextAlignment::left, TextAlignment::center, TextAlignment::right}) {
      Canvas canvas(100, 40);
      TextStyle style = style_of(20, alignment);
      style.line_break = line_break;
      CGContextDrawText(canvas.context(), CGRectMake(30, 0, 40, 40), "HHHHHHHH", style);
      EXPECT_GE(canvas.painted().left, 29);
      EXPECT_LE(canvas.painted().right, 71);
      EXPECT_GT(canvas.painted().right - canvas.painted().left, 25);
    }
  }
}

TEST(Text, SizeIsNotRoundedAndGrowsWithTheFont) {
  for (const double size : {9.0, 10.5, 23.0}) {
    const CGSize measured = text_size("HH HH", style_of(size));
    EXPECT_NEAR(static_cast<double>(measured.width), size * (4 * advance_of_h + advance_of_space), 0.02);
    EXPECT_NEAR(static_cast<double>(measured.height), size * line_height, 0.02);
  }
  const CGSize lines = text_size("H\nHHH\nHH", style_of(10));
  EXPECT_NEAR(static_cast<double>(lines.width), 30 * advance_of_h, 0.02);
  EXPECT_NEAR(static_cast<double>(lines.height), 30 * line_height, 0.02);
  EXPECT_EQ(text_size("", style_of(10)).width, 0);
}

TEST(Text, LooksTheSameAtEveryScale) {
  const auto draw = [](double scale) {
    const int pixels = static_cast<int>(120 * scale);
    auto canvas = std::make_unique<Canvas>(pixels, pixels, scale);
    CGContextDrawText(canvas->context(), CGRectMake(10, 10, 100, 100), "Left Tremolo Rate 0.5000",
                      style_of(9, TextAlignment::center));
    return canvas;
  };
  const auto fine = draw(8);
  for (const double scale : {1.0, 1.5, 2.0}) {
    const auto canvas = draw(scale);
    EXPECT_NEAR(ink(*canvas) / (scale * scale), ink(*fine) / 64, ink(*fine) / 64 * 0.02) << scale;
    EXPECT_NEAR(canvas->painted().left / scale, fine->painted().left / 8.0, 1 / scale);
    EXPECT_NEAR(canvas->painted().right / scale, fine->painted().right / 8.0, 1 / scale);
    // Half a pixel more, for the baseline that goes to the nearest row.
    EXPECT_NEAR(canvas->painted().bottom / scale, fine->painted().bottom / 8.0, 1.5 / scale + 0.125);
  }
}

TEST(Text, VeryLargeAndVeryLongTextsAreDrawnInTheirPlaces) {
  // Letters of 1,200 pixels.
  Canvas large(1200, 1200, 4);
  CGContextDrawText(large.context(), CGRectMake(0, 0, 300, 300), "H", style_of(300));
  EXPECT_NEAR(large.painted().bottom, 1200 - 1200 * ascent, 1);
  EXPECT_NEAR(large.painted().top, 1200 - 1200 * (ascent - capitals), 1);
  EXPECT_NEAR(large.painted().left, 1200 * 201.0 / 2048, 1);
  // A line of a million pixels, of which only the beginning shows.
  const std::string many(20000, 'H');
  TextStyle style = style_of(10);
  style.line_break = LineBreak::clip;
  Canvas beginning(200, 100, 8);
  CGContextDrawText(beginning.context(), CGRectMake(0, 0, 25, 12), "HHHH", style);
  Canvas whole(200, 100, 8);
  CGContextDrawText(whole.context(), CGRectMake(0, 0, 25, 12), many, style);
  EXPECT_NEAR(ink(whole), ink(beginning), 0.02 * ink(beginning));
}

TEST(Text, LettersKeepTheirDistances) {
  // Letters of 2.95 points. Were each moved to a whole pixel, the row would be up to a pixel longer or
  // shorter.
  Canvas canvas(60, 20);
  CGContextDrawText(canvas.context(), CGRectMake(0, 0, 60, 20), "IIIIIIIIIIII", style_of(10));
  const double advance = 10 * 604.0 / 2048;
  const double stem = 10 * 202.0 / 2048;
  const auto painted = canvas.painted();
  const double left = painted.left + 1 - canvas.at(painted.left, 14).alpha / 255.0;
  const double right = painted.right - 1 + canvas.at(painted.right - 1, 14).alpha / 255.0;
  EXPECT_NEAR(right - left, 11 * advance + stem, 0.1);
  EXPECT_NEAR(ink(canvas), 12 * stem * 10 * capitals, 0.5);
}

TEST(Text, ColourIsThatOfTheStyleTimesTheStatesAlpha) {
  Canvas canvas(60, 60);
  TextStyle style = style_of(60);
  style.red = 1;
  style.alpha = 0.5;
  CGContextSetAlpha(canvas.context(), 0.5);
  CGContextDrawText(canvas.context(), CGRectMake(0, 0, 60, 60), "I", style);
  int most = 0;
  for (int x = 0; x < 60; ++x)
    most = std::max(most, canvas.at(x, 20).alpha);
  EXPECT_NEAR(most, 64, 1);
  // The same layout in another colour.
  style.red = 0;
  style.green = 1;
  CGContextDrawText(canvas.context(), CGRectMake(30, 0, 30, 60), "I", style);
  EXPECT_GT(canvas.at(39, 20).green, 0);
}

TEST(Text, BoldIsHeavier) {
  TextStyle bold = style_of(12);
  bold.bold = true;
  EXPECT_GT(text_size("Tremolo", bold).width, text_size("Tremolo", style_of(12)).width);
}

TEST(Text, CastsAShadowAndKeepsToTheClip) {
  Canvas canvas(100, 60);
  CGContextRef c = canvas.context();
  CGContextClipToRect(c, CGRectMake(0, 0, 80, 60));
  CGContextDrawText(c, CGRectMake(0, 0, 100, 60), "H", style_of(20));
  const auto plain = canvas.painted();
  set_shadow(c, {70, -20}, 0, 0, 0, 1, 1);
  CGContextDrawText(c, CGRectMake(0, 0, 100, 60), "H", style_of(20));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{plain.left, plain.bottom - 20, 80, plain.top}));
}

TEST(Text, TurnsWithTheTransform) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextTranslateCTM(c, 40, 0);
  rotate(c, static_cast<CGFloat>(M_PI / 2));
  CGContextDrawText(c, CGRectMake(0, 0, 60, 30), "HHH", style_of(20));
  const auto painted = canvas.painted();
  EXPECT_NEAR(painted.right, 40 - 30 + 20 * ascent, 1);  // the baseline stands upright
  EXPECT_NEAR(painted.top, 3 * 20 * advance_of_h - 20 * 201.0 / 2048, 1.5);
}

TEST(Text, LeavesThePathAlone) {
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextMoveToPoint(c, 3, 4);
  TextStyle style = style_of(10);
  CGContextDrawText(c, CGRectMake(0, 0, 60, 30), "H", style);
  style.line_break = LineBreak::clip;
  CGContextDrawText(c, CGRectMake(0, 0, 60, 30), "H", style);
  EXPECT_EQ(CGContextGetPathCurrentPoint(c), (CGPoint{3, 4}));
}

TEST(Text, ComesOutTheSameAfterItsLayoutWasForgotten) {
  const auto draw = [](const std::string& text) {
    Canvas canvas(80, 20);
    CGContextDrawText(canvas.context(), CGRectMake(0, 0, 80, 20), text, style_of(9, TextAlignment::center));
    return canvas.pixels();
  };
  const auto before = draw("0.5000");
  for (int i = 0; i < 300; ++i)
    draw(std::to_string(i));
  EXPECT_EQ(draw("0.5000"), before);
  EXPECT_EQ(draw("0.5000"), before);
}

TEST(Text, UnusualArgumentsAreTaken) {
  const auto nan = static_cast<CGFloat>(NAN);
  Canvas canvas(60, 60);
  CGContextRef c = canvas.context();
  CGContextDrawText(nullptr, CGRectMake(0, 0, 60, 60), "H", style_of(10));
  CGContextDrawText(c, CGRectMake(0, 0, 60, 60), "", style_of(10));
  CGContextDrawText(c, CGRectMake(nan, 0, 60, 60), "H", style_of(10));
  CGContextDrawText(c, CGRectMake(0, 0, nan, 60), "H", style_of(10));
  CGContextDrawText(c, CGRectMake(0, 0, 60, nan), "H", style_of(10));
  CGContextDrawText(c, CGRectMake(0, 0, 60, 60), "H", style_of(0));
  CGContextDrawText(c, CGRectMake(0, 0, 60, 60), "H", style_of(NAN));
  CGContextDrawText(c, CGRectMake(static_cast<CGFloat>(1e30), 0, 60, 60), "H", style_of(10));
  EXPECT_EQ(canvas.painted(), (Canvas::Extents{60, 60, 0, 0}));
  CGContextDrawText(c, CGRectMake(0, 0, -5, 60), "H", style_of(10));
  CGContextDrawText(c, CGRectMake(0, 0, 60, 60), "\xff\xfeH\xc3", style_of(10));
  EXPECT_NE(canvas.painted(), (Canvas::Extents{60, 60, 0, 0}));
  EXPECT_EQ(text_size("H", style_of(NAN)), CGSize{});
}

}  // namespace
}  // namespace cocoa
