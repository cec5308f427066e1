// SPDX-License-Identifier: MIT
#include <fontconfig/fontconfig.h>

#include <string>
#include <thread>

#include "canvas.h"
#include "quartz/text.h"

/// What the user's configuration of fonts says, and how text follows it.

namespace cocoa {
namespace {

constexpr const char* font_folder =
    "<dir>/usr/share/fonts/truetype/dejavu</dir><cachedir prefix=\"xdg\">fontconfig</cachedir>";

/// Calls `use` on a thread of its own, as each has its fonts, with a configuration as the process's own.
template <typename Use>
void with_fonts(const std::string& rules, const Use& use) {
  FcConfig* before = FcConfigReference(nullptr);
  FcConfig* config = FcConfigCreate();
  const std::string xml = "<fontconfig>" + rules + "</fontconfig>";
  ASSERT_TRUE(FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8*>(xml.c_str()), FcTrue));
  ASSERT_TRUE(FcConfigSetCurrent(config));
  FcConfigDestroy(config);
  std::thread(use).join();
  EXPECT_EQ(FcConfigGetCurrent(), config);
  FcConfigSetCurrent(before);
  FcConfigDestroy(before);
}

std::string rule(const std::string& property, const std::string& value) {
  return R"(<match target="font"><edit name=")" + property + R"(" mode="assign">)" + value +
         "</edit></match>";
}

TextStyle font_of(double size, const std::string& family = "DejaVu Sans") {
  TextStyle style;
  style.size = size;
  style.family = family;
  return style;
}

std::vector<uint32_t> pixels_of(std::string_view text, const TextStyle& style) {
  Canvas canvas(120, 60, 2);
  CGContextDrawText(canvas.context(), CGRectMake(5, 0, 50, 30), text, style);
  return canvas.pixels();
}

size_t painted_pixels(const std::vector<uint32_t>& pixels) {
  return pixels.size() - static_cast<size_t>(std::count(pixels.begin(), pixels.end(), 0U));
}

const std::string unhinted = rule("hinting", "<bool>false</bool>");

TEST(TextFonts, AnotherFontStandsInForAMissingCharacter) {
  with_fonts(font_folder + unhinted, [] {
    // A letter that the mono-spaced font lacks looks as in the one that has it.
    const TextStyle mono = font_of(12, "DejaVu Sans Mono");
    EXPECT_EQ(pixels_of("\u05d0", mono), pixels_of("\u05d0", font_of(12)));
    EXPECT_NE(pixels_of("\u05d0", mono), pixels_of("\U0010FFFD", mono));
    // The others stay as they are.
    EXPECT_NEAR(static_cast<double>(text_size("i\u05d0W", mono).width),
                static_cast<double>(text_size("iW", mono).width + text_size("\u05d0", font_of(12)).width),
                1e-3);
    EXPECT_NE(text_size("iW", mono).width, text_size("iW", font_of(12)).width);
  });
}

TEST(TextFonts, ACharacterThatNoFontHasShowsItsBox) {
  with_fonts(font_folder + unhinted, [] {
    const TextStyle style = font_of(20);
    const auto box = pixels_of("\U0010FFFD", style);
    EXPECT_EQ(pixels_of("\U0010FFFC", style), box);
    EXPECT_GT(painted_pixels(box), 20U);
    EXPECT_GT(text_size("\U0010FFFD", style).width, 5);
    // Its sides are inked, its middle is not.
    Canvas canvas(60, 60);
    CGContextDrawText(canvas.context(), CGRectMake(0, 0, 60, 60), "\U0010FFFD", font_of(40));
    const auto painted = canvas.painted();
    const int middle = (painted.bottom + painted.top) / 2;
    EXPECT_GT(canvas.at(painted.left + 1, middle).alpha, 200);
    EXPECT_GT(canvas.at(painted.right - 2, middle).alpha, 200);
    EXPECT_EQ(canvas.at(painted.left + (painted.right - painted.left) / 4, middle).alpha, 0);
  });
}

TEST(TextFonts, AnUnknownFamilyIsReplaced) {
  with_fonts(font_folder + unhinted,
             [] { EXPECT_GT(painted_pixels(pixels_of("H", font_of(12, "No Such Family"))), 10U); });
}

TEST(TextFonts, WithoutAnyFontNothingIsDrawnAndNothingFails) {
  with_fonts("<cachedir prefix=\"xdg\">fontconfig</cachedir>", [] {
    EXPECT_EQ(painted_pixels(pixels_of("H e\u0301\n\t\u05d0", font_of(12))), 0U);
    EXPECT_EQ(text_size("H", font_of(12)).width, 0);
    EXPECT_EQ(text_caret_position("He", font_of(12), 2), 0);
    EXPECT_LE(text_offset_at("He", font_of(12), 5), 2U);
    TextStyle style = font_of(12);
    for (int mode = 0; mode <= 5; ++mode) {
      style.line_break = static_cast<LineBreak>(mode);
      EXPECT_EQ(painted_pixels(pixels_of("one two three four five", style)), 0U);
    }
  });
}

/// The rows of a canvas in which letters are partly covered and wholly covered at most.
struct Rows {
  int partly = 0;
  int wholly = 0;
};

/// Of the capital H, whose bars and stems end at straight edges.
Rows rows_of_h() {
  Canvas canvas(40, 40);
  CGContextDrawText(canvas.context(), CGRectMake(4, 0, 40, 40), "H", font_of(10.5));
  Rows rows;
  for (int y = 0; y < 40; ++y) {
    int stem = 0;
    for (int x = 0; x < 8; ++x)
      stem += canvas.at(x, y).alpha;
    // The left stem: 202 units wide of 2048.
    const double covered = stem / 255.0 / (10.5 * 202 / 2048);
    rows.wholly += covered > 0.97 ? 1 : 0;
    rows.partly += covered > 0.03 && covered <= 0.97 ? 1 : 0;
  }
  return rows;
}

TEST(TextFonts, HintingIsAsTheUserWantsIt) {
  // Capitals of 10.5 points are 7.65 pixels high: as they are, or fitted to whole rows.
  with_fonts(font_folder + unhinted, [] {
    EXPECT_EQ(rows_of_h().wholly, 7);
    EXPECT_EQ(rows_of_h().partly, 1);
  });
  with_fonts(font_folder + rule("hintstyle", "<const>hintnone</const>"),
             [] { EXPECT_EQ(rows_of_h().partly, 1); });
  with_fonts(font_folder + rule("hintstyle", "<const>hintslight</const>"), [] {
    EXPECT_EQ(rows_of_h().wholly, 8);
    EXPECT_EQ(rows_of_h().partly, 0);
  });
}

TEST(TextFonts, HintingDoesNotChangeDistances) {
  const TextStyle style = font_of(10.5);
  CGSize plain{};
  with_fonts(font_folder + unhinted, [&] { plain = text_size("Left Tremolo Rate 0.5", style); });
  for (const char* hinting : {"hintslight", "hintmedium", "hintfull"}) {
    with_fonts(font_folder + rule("hintstyle", "<const>" + std::string(hinting) + "</const>"), [&] {
      pixels_of("Left Tremolo Rate 0.5", style);
      EXPECT_EQ(text_size("Left Tremolo Rate 0.5", style), plain);
    });
  }
}

TEST(TextFonts, WithoutSmoothingPixelsAreCoveredOrNot) {
  for (const std::string& hinting : {unhinted, rule("hintstyle", "<const>hintfull</const>")}) {
    with_fonts(font_folder + rule("antialias", "<bool>false</bool>") + hinting, [] {
      const auto pixels = pixels_of("Rate 0.5", font_of(9));
      EXPECT_GT(painted_pixels(pixels), 50U);
      for (const uint32_t pixel : pixels)
        ASSERT_TRUE(pixel == 0 || pixel == 0xFF000000U) << std::hex << pixel;
    });
  }
}

TEST(TextFonts, ColoursOfSubpixelsAreIgnored) {
  std::vector<uint32_t> plain;
  with_fonts(font_folder + unhinted, [&] { plain = pixels_of("Rate", font_of(9)); });
  with_fonts(font_folder + unhinted + rule("rgba", "<const>rgb</const>"),
             [&] { EXPECT_EQ(pixels_of("Rate", font_of(9)), plain); });
}

TEST(TextFonts, AMissingBoldFaceIsMadeFromTheRegularOne) {
  const std::string only_regular =
      "<selectfont><rejectfont><glob>*Bold*</glob></rejectfont></selectfont>"
      "<match target=\"font\"><test name=\"weight\" compare=\"less_eq\"><const>medium</const></test>"
      "<test target=\"pattern\" name=\"weight\" compare=\"more_eq\"><const>bold</const></test>"
      "<edit name=\"embolden\" mode=\"assign\"><bool>true</bool></edit></match>";
  with_fonts(only_regular + font_folder + unhinted, [] {
    TextStyle bold = font_of(12);
    bold.bold = true;
    const auto ink = [](const std::vector<uint32_t>& pixels) {
      double sum = 0;
      for (const uint32_t pixel : pixels)
        sum += pixel >> 24;
      return sum;
    };
    EXPECT_GT(ink(pixels_of("Rate", bold)), ink(pixels_of("Rate", font_of(12))) * 1.2);
    EXPECT_GT(text_size("Rate", bold).width, text_size("Rate", font_of(12)).width);
    // As outlines too.
    const auto turned = [](const TextStyle& style) {
      Canvas canvas(120, 120);
      rotate(canvas.context(), CGFloat(0.3));
      CGContextDrawText(canvas.context(), CGRectMake(20, 10, 90, 60), "Rate", style);
      return canvas.pixels();
    };
    EXPECT_GT(ink(turned(bold)), ink(turned(font_of(12))) * 1.2);
  });
}

TEST(TextFonts, TheProcessKeepsItsConfiguration) {
  FcConfig* shared = FcConfigReference(nullptr);
  const FcFontSet* fonts = FcConfigGetFonts(shared, FcSetSystem);
  ASSERT_NE(fonts, nullptr);
  const int count = fonts->nfont;
  std::thread([] { EXPECT_GT(painted_pixels(pixels_of("H\u05d0\U0010FFFD", font_of(12))), 0U); }).join();
  EXPECT_EQ(FcConfigGetCurrent(), shared);
  EXPECT_EQ(FcConfigGetFonts(shared, FcSetSystem), fonts);
  EXPECT_EQ(fonts->nfont, count);
  FcConfigDestroy(shared);
}

TEST(TextFonts, ThreadsDrawAtTheSameTime) {
  const auto wanted = pixels_of("Rate \u05d0 0.5", font_of(12));
  const auto draw_often = [&] {
    for (int i = 0; i < 50; ++i) {
      pixels_of(std::to_string(i), font_of(9 + i % 3));
      ASSERT_EQ(pixels_of("Rate \u05d0 0.5", font_of(12)), wanted);
    }
  };
  std::thread one(draw_often);
  std::thread other(draw_often);
  draw_often();
  one.join();
  other.join();
}

}  // namespace
}  // namespace cocoa
