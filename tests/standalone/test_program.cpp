// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "child_process.h"
#include "program_copy.h"
#include "temporary_folder.h"

namespace ondex::test {
namespace {

/// The program itself, without any display.
class ProgramTest : public testing::Test {
 protected:
  ChildProcess::Setup setup(std::vector<std::string> arguments,
                            const std::string& program = ONDEX_PROGRAM) const {
    arguments.insert(arguments.begin(), program);
    return {std::move(arguments), {{"DISPLAY", std::nullopt}, {"XDG_CONFIG_HOME", folder.path().string()}}};
  }
  std::string copied_program() const { return copy_program(ONDEX_PROGRAM, folder.path()); }
  static std::string contents(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  std::string picture() const { return (folder.path() / "picture.png").string(); }

  TemporaryFolder folder;
};

TEST_F(ProgramTest, RendersAPictureWithoutADisplay) {
  ChildProcess program(setup({"--screenshot", picture(), "--scale", "2", "--set", "2=0.25"}));
  EXPECT_EQ(program.wait_for_exit(), 0);
  EXPECT_EQ(program.errors(), "");
  EXPECT_GT(std::filesystem::file_size(picture()), 10000U);
}

TEST_F(ProgramTest, TheEntryOfEveryParameterCanBeShown) {
  ChildProcess plain(setup({"--screenshot", picture()}));
  ASSERT_EQ(plain.wait_for_exit(), 0);
  std::set<std::string> pictures{contents(picture())};
  for (const char* entry : {"popup:0", "popup:1", "popup:2", "popup:3", "popup:4", "popup:5", "popup:6"}) {
    ChildProcess program(setup({"--screenshot", picture(), "--show", entry}));
    EXPECT_EQ(program.wait_for_exit(), 0);
    EXPECT_EQ(program.errors(), "");
    EXPECT_TRUE(pictures.insert(contents(picture())).second) << entry << " looks like another";
  }
}

TEST_F(ProgramTest, AnEntryThatIsNoneGivesOneLineAndStatusTwo) {
  ChildProcess program(setup({"--screenshot", picture(), "--show", "popup:9"}));
  EXPECT_EQ(program.wait_for_exit(), 2);
  EXPECT_EQ(program.errors(), "ondex: --show popup:9: no parameter '9': there are 0 to 6\n");
  EXPECT_FALSE(std::filesystem::exists(picture()));
}

TEST_F(ProgramTest, APictureThatCannotBeWrittenIsAnError) {
  ChildProcess program(setup({"--screenshot", (folder.path() / "none" / "picture.png").string()}));
  EXPECT_EQ(program.wait_for_exit(), 1);
  EXPECT_NE(program.errors().find("picture.png"), std::string::npos);
}

TEST_F(ProgramTest, ABadOptionGivesOneLineAndStatusTwo) {
  ChildProcess program(setup({"--screenshot", picture(), "--set", "9=1"}));
  EXPECT_EQ(program.wait_for_exit(), 2);
  EXPECT_EQ(program.errors(), "ondex: --set 9=1: no parameter '9': there are 0 to 6\n");
  EXPECT_EQ(program.output(), "");
  EXPECT_FALSE(std::filesystem::exists(picture()));
}

TEST_F(ProgramTest, WhatItRepeatsOfAnOptionStaysOneLine) {
  const std::string escape = "\x1b[2J\n";
  const std::string shown = R"(\x1b[2J\n)";
  const std::vector<std::pair<std::vector<std::string>, std::string>> bad = {
      {{escape}, "unknown option '" + shown + "'; try --help"},
      {{"--set", escape}, "--set wants ID=VALUE, not '" + shown + "'"},
      {{"--set", "0=" + escape}, "--set 0=" + shown + ": '" + shown + "' is not a number"},
      {{"--scale", escape}, "--scale wants a number from 0.5 to 4, not '" + shown + "'"},
      {{"--show", escape}, "--show knows popup:ID, preferences and colors, not '" + shown + "'"}};
  for (const auto& [arguments, error] : bad) {
    ChildProcess program(setup(arguments));
    EXPECT_EQ(program.wait_for_exit(), 2);
    EXPECT_EQ(program.errors(), "ondex: " + error + "\n");
  }
}

TEST_F(ProgramTest, TheNameOfAPictureIsShownInOneLine) {
  ChildProcess program(setup({"--screenshot", "/none/\x1b[2J\n.png"}));
  EXPECT_EQ(program.wait_for_exit(), 1);
  const std::string errors = program.errors();
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
  EXPECT_NE(errors.find(R"(/none/\x1b[2J\n.png)"), std::string::npos) << errors;
}

/// Its pictures may go to a FIFO.
TEST_F(ProgramTest, ASignalEndsItWhileItWaitsForAReader) {
  const std::string pipe = (folder.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  ChildProcess program(setup({"--screenshot", pipe}));
  program.signal(SIGTERM);
  EXPECT_EQ(program.wait_for_exit(), -SIGTERM);
}

TEST_F(ProgramTest, WithoutADisplayItSaysSoInOneLine) {
  ChildProcess program(setup({}));
  EXPECT_EQ(program.wait_for_exit(), 1);
  const std::string errors = program.errors();
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
  EXPECT_NE(errors.find("display"), std::string::npos) << errors;
}

TEST_F(ProgramTest, PrintsHelpAndVersion) {
  ChildProcess help(setup({"--help"}));
  EXPECT_EQ(help.wait_for_exit(), 0);
  EXPECT_EQ(help.output().rfind("Usage: ondex", 0), 0U);
  ChildProcess version(setup({"--version"}));
  EXPECT_EQ(version.wait_for_exit(), 0);
  EXPECT_EQ(version.output(), "ondex 1.0.0\n");
}

TEST_F(ProgramTest, FindsItsInterfaceFilesBesideItself) {
  ChildProcess program(setup({"--screenshot", picture()}, copied_program()));
  EXPECT_EQ(program.wait_for_exit(), 0);
  EXPECT_TRUE(std::filesystem::exists(picture()));
}

TEST_F(ProgramTest, AMissingInterfaceFileEndsItWithStatusOne) {
  const std::string copy = copied_program();
  std::filesystem::remove(folder.path() / "resources" / "KVOndexView.xib");
  ChildProcess program(setup({"--screenshot", picture()}, copy));
  EXPECT_EQ(program.wait_for_exit(), 1);
  EXPECT_NE(program.errors().find("KVOndexView.xib"), std::string::npos) << program.errors();
  EXPECT_NE(program.errors().find("\nOndex: Unable to load nib for view.\n"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(picture()));
}

TEST_F(ProgramTest, ABrokenInterfaceFileIsNamedWithItsCause) {
  const std::string copy = copied_program();
  std::ofstream(folder.path() / "resources" / "KVOndexView.xib") << "<document>";
  ChildProcess program(setup({"--screenshot", picture()}, copy));
  EXPECT_EQ(program.wait_for_exit(), 1);
  EXPECT_NE(program.errors().find("KVOndexView.xib: "), std::string::npos) << program.errors();
  EXPECT_NE(program.errors().find("\nOndex: Unable to load nib for view.\n"), std::string::npos);
}

}  // namespace
}  // namespace ondex::test
