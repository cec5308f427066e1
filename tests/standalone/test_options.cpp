#include "standalone/options.h"

#include <gtest/gtest.h>

namespace ondex {
namespace {

std::string read(std::vector<const char*> arguments, Options& options) {
  return read_options(arguments, options);
}

std::string error_of(const std::vector<const char*>& arguments) {
  Options options;
  return read_options(arguments, options);
}

TEST(Options, AreReadInAnyOrder) {
  Options options;
  EXPECT_EQ(read({"--set", "2=0.25", "--screenshot", "a.png", "--set", "0=3", "--scale", "1.5"}, options),
            "");
  EXPECT_EQ(options.screenshot, "a.png");
  EXPECT_EQ(options.scale, 1.5);
  ASSERT_EQ(options.changes.size(), 2U);
  EXPECT_EQ(options.changes[0].id, 2U);
  EXPECT_EQ(options.changes[0].value, 0.25F);
  EXPECT_EQ(options.changes[1].id, 0U);
}

TEST(Options, AnEntryIsShownOfItsParameter) {
  Options options;
  EXPECT_EQ(read({"--show", "popup:4", "--screenshot", "a.png"}, options), "");
  EXPECT_EQ(options.shown, Shown::entry);
  EXPECT_EQ(options.entry_of, 4U);
}

TEST(Options, WithoutAnyNothingIsAsked) {
  Options options;
  EXPECT_EQ(read({}, options), "");
  EXPECT_FALSE(options.screenshot);
  EXPECT_FALSE(options.scale);
  EXPECT_EQ(options.shown, Shown::editor);
  EXPECT_FALSE(options.help);
}

TEST(Options, APictureMayShowAnotherWindow) {
  Options options;
  EXPECT_EQ(read({"--show", "preferences", "--screenshot", "a.png"}, options), "");
  EXPECT_EQ(options.shown, Shown::preferences);
  EXPECT_EQ(read({"--screenshot", "a.png", "--show", "colors"}, options), "");
  EXPECT_EQ(options.shown, Shown::colors);
  EXPECT_EQ(error_of({"--show", "preferences"}), "--show goes with --screenshot");
}

TEST(Options, WhatIsWrongIsSaidInOneLine) {
  EXPECT_EQ(error_of({"--frobnicate"}), "unknown option '--frobnicate'; try --help");
  EXPECT_EQ(error_of({"picture.png"}), "unknown option 'picture.png'; try --help");
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
