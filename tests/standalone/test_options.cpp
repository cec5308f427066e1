// SPDX-License-Identifier: MIT
#include "standalone/options.h"

#include <gtest/gtest.h>

namespace ondex {
namespace {

using cocoa::Result;

Result<Options> result_of(const std::vector<std::string>& arguments) {
  std::vector<std::string> texts = {"ondex"};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& text : texts)
    pointers.push_back(text.data());
  return read_options(pointers);
}

Options read(const std::vector<std::string>& arguments) {
  const Result<Options> options = result_of(arguments);
  EXPECT_TRUE(options) << options.cause();
  return options ? *options : Options();
}

std::string error_of(const std::vector<std::string>& arguments) {
  const Result<Options> options = result_of(arguments);
  return options ? "" : options.cause();
}

TEST(Options, AreReadInAnyOrder) {
  const Options options =
      read({"--set", "2=0.25", "--screenshot", "a.png", "--set", "0=3", "--scale", "1.5"});
  EXPECT_EQ(options.screenshot, "a.png");
  EXPECT_EQ(options.scale, 1.5);
  ASSERT_EQ(options.changes.size(), 2U);
  EXPECT_EQ(options.changes[0].id, 2U);
  EXPECT_EQ(options.changes[0].value, 0.25F);
  EXPECT_EQ(options.changes[1].id, 0U);
}

TEST(Options, AnEntryIsShownOfItsParameter) {
  const Options options = read({"--show", "popup:4", "--screenshot", "a.png"});
  EXPECT_EQ(options.shown, Shown::entry);
  EXPECT_EQ(options.entry_of, 4U);
}

TEST(Options, WithoutAnyNothingIsAsked) {
  const Options options = read({});
  EXPECT_FALSE(options.screenshot);
  EXPECT_FALSE(options.scale);
  EXPECT_EQ(options.shown, Shown::editor);
  EXPECT_FALSE(options.help);
}

TEST(Options, APictureMayShowAnotherWindow) {
  EXPECT_EQ(read({"--show", "preferences", "--screenshot", "a.png"}).shown, Shown::preferences);
  EXPECT_EQ(read({"--screenshot", "a.png", "--show", "colors"}).shown, Shown::colors);
  EXPECT_EQ(error_of({"--show", "preferences"}), "--show goes with --screenshot");
}

TEST(Options, AValueMayFollowAnEqualsSign) {
  const Options options = read({"--scale=2", "--set=3=1.5", "--screenshot=a=b.png", "--show=popup:1"});
  EXPECT_EQ(options.scale, 2.0);
  ASSERT_EQ(options.changes.size(), 1U);
  EXPECT_EQ(options.changes[0].id, 3U);
  EXPECT_EQ(options.changes[0].value, 1.5F);
  EXPECT_EQ(options.screenshot, "a=b.png");
  EXPECT_EQ(options.entry_of, 1U);
  EXPECT_EQ(error_of({"--scale=5"}), "--scale wants a number from 0.5 to 4, not '5'");
  EXPECT_EQ(error_of({"--screenshot="}), "--screenshot wants the name of a file");
}

TEST(Options, HelpHasALetterToo) {
  EXPECT_TRUE(read({"-h"}).help);
  EXPECT_TRUE(read({"--help"}).help);
  EXPECT_TRUE(read({"--version"}).version);
  EXPECT_FALSE(read({"--version"}).help);
}

TEST(Options, AValueIsWhatFollowsWhateverItLooksLike) {
  EXPECT_EQ(read({"--screenshot", "--help"}).screenshot, "--help");
  EXPECT_EQ(error_of({"--scale", "-1"}), "--scale wants a number from 0.5 to 4, not '-1'");
}

TEST(Options, WhatIsWrongIsSaidInOneLine) {
  EXPECT_EQ(error_of({"--frobnicate"}), "unknown option '--frobnicate'; try --help");
  EXPECT_EQ(error_of({"picture.png"}), "unknown option 'picture.png'; try --help");
  EXPECT_EQ(error_of({"--help", "picture.png"}), "unknown option 'picture.png'; try --help");
  EXPECT_EQ(error_of({"--", "picture.png"}), "unknown option 'picture.png'; try --help");
  EXPECT_EQ(error_of({"-x"}), "unknown option '-x'; try --help");
  EXPECT_EQ(error_of({"-hx"}), "unknown option '-hx'; try --help");
  EXPECT_EQ(error_of({"--help=3"}), "unknown option '--help=3'; try --help");
  EXPECT_EQ(error_of({"--s", "2"}), "unknown option '--s'; try --help");
  EXPECT_EQ(error_of({"--scale"}), "--scale wants a value");
  EXPECT_EQ(error_of({"--scale", "big"}), "--scale wants a number from 0.5 to 4, not 'big'");
  EXPECT_EQ(error_of({"--scale", "0"}), "--scale wants a number from 0.5 to 4, not '0'");
  EXPECT_EQ(error_of({"--set", "3"}), "--set wants ID=VALUE, not '3'");
  EXPECT_EQ(error_of({"--set", "9=1"}), "--set 9=1: no parameter '9': there are 0 to 6");
  EXPECT_EQ(error_of({"--set", "2=2"}), "--set 2=2: 2 is outside the range of parameter 2, 0 to 1");
  EXPECT_EQ(error_of({"--screenshot", ""}), "--screenshot wants the name of a file");
  EXPECT_EQ(error_of({"--screenshot", "a.png", "--show"}), "--show wants a value");
  EXPECT_EQ(error_of({"--screenshot", "a.png", "--show", "knob"}),
            "--show knows popup:ID, preferences and colors, not 'knob'");
  EXPECT_EQ(error_of({"--screenshot", "a.png", "--show", "popup:7"}),
            "--show popup:7: no parameter '7': there are 0 to 6");
  EXPECT_EQ(error_of({"--screenshot", "a.png", "--show", "popup:"}),
            "--show popup:: no parameter '': there are 0 to 6");
  EXPECT_EQ(error_of({"--show", "popup:2"}), "--show goes with --screenshot");
}

TEST(Options, HelpNamesEveryOptionAndCommand) {
  const std::string help = help_text();
  for (const char* name :
       {"--screenshot", "--show", "--scale", "--set", "--help", "--version", "set ID VALUE", "get ID", "list",
        "screenshot FILE.png", "quit", "parameter ID VALUE"}) {
    EXPECT_NE(help.find(name), std::string::npos) << name;
  }
}

}  // namespace
}  // namespace ondex
