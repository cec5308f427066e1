// SPDX-License-Identifier: MIT
#include "foundation/visible_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/NSLog.h"

namespace cocoa {
namespace {

using namespace std::string_literals;

TEST(VisibleText, LeavesPrintableCharactersAlone) {
  for (const char* text : {"", "set 2 0.5", "~ \\ ' \"", "Größe", "日本語", "\U0001F600", "\u00A0"})
    EXPECT_EQ(visible_text(text), text);
}

TEST(VisibleText, WritesControlsAsAStringOfCDoes) {
  EXPECT_EQ(visible_text("a\nb\rc\td"), R"(a\nb\rc\td)");
  EXPECT_EQ(visible_text("\x1b[2Jx\x07\x7f"), R"(\x1b[2Jx\x07\x7f)");
  EXPECT_EQ(visible_text("null \0."s), R"(null \x00.)");
  EXPECT_EQ(visible_text("\u009B2J"), R"(\xc2\x9b2J)") << "a terminal may take it for an escape sequence";
}

TEST(VisibleText, WritesWhatBreaksOrTurnsALine) {
  EXPECT_EQ(visible_text("a\u2028b"), R"(a\xe2\x80\xa8b)");
  EXPECT_EQ(visible_text("a\xe2\x80\xae"
                         "b"),
            R"(a\xe2\x80\xaeb)");
  EXPECT_EQ(visible_text("a\xe2\x81\xa6"
                         "b"),
            R"(a\xe2\x81\xa6b)");
}

TEST(VisibleText, WritesBytesThatAreNoText) {
  EXPECT_EQ(visible_text("\x80"), R"(\x80)");
  EXPECT_EQ(visible_text("a\xff\xfe"
                         "b"),
            R"(a\xff\xfeb)");
  EXPECT_EQ(visible_text("\xC0\xAF"), R"(\xc0\xaf)") << "an overlong form";
  EXPECT_EQ(visible_text("\xED\xA0\x80"), R"(\xed\xa0\x80)") << "a surrogate";
  EXPECT_EQ(visible_text("\xE2\x82"), R"(\xe2\x82)") << "cut off";
  EXPECT_EQ(visible_text("\xF4\x90\x80\x80"), R"(\xf4\x90\x80\x80)") << "beyond the last character";
}

TEST(VisibleText, DoneTwiceChangesNothingMore) {
  const std::string once = visible_text("\x1b\n\x80");
  EXPECT_EQ(visible_text(once), once);
}

TEST(VisibleText, IsWhatIsLogged) {
  std::vector<std::string> lines;
  const NSLogHook hook([&](std::string_view line) { lines.emplace_back(line); });
  NSLog("couldn't read %s", "a\nb\x1b[2J.png");
  EXPECT_EQ(lines, std::vector<std::string>{R"(couldn't read a\nb\x1b[2J.png)"});
}

}  // namespace
}  // namespace cocoa
