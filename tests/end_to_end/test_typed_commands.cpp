// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstdlib>
#include <sstream>

#include "session.h"

/// Standard input during a session with a window.

namespace ondex::test {
namespace {

class CommandSession : public BareSessionTest {
 protected:
  /// Sends a line that is wrong and expects one line about it, with this in it.
  void expect_complaint(const std::string& line, const std::string& part) {
    const std::string before = program->errors();
    command(line);
    value_of(0);
    const std::string said = program->errors().substr(before.size());
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << line << ": " << said;
    EXPECT_THAT(said, testing::HasSubstr(part)) << line;
  }
  std::string list() {
    program->forget_output();
    command("list");
    program->wait_for_line("6\tRight Tremolo Mod Index");
    return program->output();
  }
};

TEST_F(CommandSession, GetTellsWhatWasSetAndWhatWasEdited) {
  start({"--set", "5=0.1"});
  EXPECT_EQ(value_of(5), "0.1");
  EXPECT_EQ(value_of(2), "0.5");
  command("set 1 12.75");
  EXPECT_EQ(value_of(1), "12.75");
  wheel(of(right_rate).centre(), 4);
  // The host's change may still be on its way to the readout: it is shown first.
  screenshot();
  wheel(of(left_rate).centre(), 4);
  settle();
  EXPECT_EQ(value_of(0), "0.04");
}

TEST_F(CommandSession, ListTellsEveryParameter) {
  start({"--set", "0=4.5"});
  EXPECT_EQ(list(),
            "0\tLeft Tremolo Rate\t4.5\t0\t20\n"
            "1\tRight Tremolo Rate\t0\t0\t20\n"
            "2\tTremolo Depth\t0.5\t0\t1\n"
            "3\tLeft Tremolo Mod Factor\t0\t0\t20\n"
            "4\tLeft Tremolo Mod Index\t0\t0\t20\n"
            "5\tRight Tremolo Mod Factor\t0\t0\t20\n"
            "6\tRight Tremolo Mod Index\t0\t0\t20\n");
}

TEST_F(CommandSession, WhatCannotBeDoneIsSaidAndChangesNothing) {
  start();
  const Picture before = screenshot();
  const std::string parameters_before = list();
  expect_complaint("set", "ondex: set wants ID VALUE");
  expect_complaint("set 1", "ondex: set wants ID VALUE");
  expect_complaint("set 1 2 3", "ondex: set wants ID VALUE");
  expect_complaint("set 7 1", "ondex: no parameter '7'");
  expect_complaint("set -1 1", "ondex: no parameter '-1'");
  expect_complaint("set 2 1.5", "outside the range");
  expect_complaint("set 2 -0.001", "outside the range");
  expect_complaint("set 2 nan", "not a number");
  expect_complaint("set 2 0,5", "not a number");
  expect_complaint("set 2 0.5x", "not a number");
  expect_complaint("get", "ondex: get wants ID");
  expect_complaint("get x", "no parameter 'x'");
  expect_complaint("list all", "ondex: list wants nothing more");
  expect_complaint("quit now", "ondex: quit wants nothing more");
  expect_complaint("screenshot", "ondex: screenshot wants the name of a file");
  expect_complaint("SET 2 1", "ondex: unknown command 'SET'");
  expect_complaint("\x1b[2J\x07", R"(ondex: unknown command '\x1b[2J\x07')");
  expect_complaint("set 2 \x9b", R"(ondex: '\x9b' is not a number)");
  expect_complaint("get \x08", R"(ondex: no parameter '\x08')");
  expect_complaint("screenshot /none/\x1b[2J.png", R"(/none/\x1b[2J.png)");
  expect_complaint("screenshot " + (folder.path() / "none" / "picture.png").string(), "picture.png");
  expect_complaint(std::string(20000, 'x'), "ondex: a line without an end");
  EXPECT_EQ(list(), parameters_before);
  EXPECT_EQ(screenshot().pixels, before.pixels);
}

TEST_F(CommandSession, EmptyLinesAndCarriageReturnsAreNothing) {
  start();
  program->write("\n\r\n   \n\t\nset 2 0.25\r\n");
  EXPECT_EQ(value_of(2), "0.25");
  expect_quiet_end();
}

TEST_F(CommandSession, CommandsMayComeInPiecesAndInHeaps) {
  start();
  program->write("set 2 0.");
  settle();
  program->write("75\nget 2\nset 2 0.25\nget 2\nge");
  settle();
  EXPECT_EQ(program->wait_for_line("value"), "value 2 0.75");
  EXPECT_EQ(program->wait_for_line("value"), "value 2 0.25");
  program->write("t 4\n");
  EXPECT_EQ(program->wait_for_line("value"), "value 4 0");
}

TEST_F(CommandSession, TheEndOfTheInputLeavesTheWindowOpen) {
  start();
  program->close_input();
  wheel(of(depth).centre(), 4);
  expect_writes(written(), {{2, 0.502}});
  EXPECT_TRUE(user.viewable(window));
  user.send_protocol(window, "WM_DELETE_WINDOW");
  EXPECT_EQ(program->wait_for_exit(), 0);
  EXPECT_EQ(program->errors(), "");
}

TEST_F(CommandSession, ACommandBeforeTheEndOfTheInputIsServed) {
  launch();
  program->write("set 2 0.25\nget 2\n");
  program->close_input();
  EXPECT_EQ(program->wait_for_line("value"), "value 2 0.25");
  program->signal(SIGTERM);
  EXPECT_EQ(program->wait_for_exit(), 0);
}

/// A locale that writes a comma in numbers, made where the machine has the parts for it.
TEST_F(CommandSession, ALocaleWithCommasStillReadsAndPrintsPoints) {
  const std::string locales = folder.path().string();
  const std::string make_locale =
      "localedef --no-archive -i de_DE -f ISO-8859-1 " + locales + "/de_DE >/dev/null 2>&1";
  // Without it the setting alone must do no harm.
  [[maybe_unused]] const int made = std::system(make_locale.c_str());
  start({"--set", "2=0.25"}, {{"LOCPATH", locales}, {"LC_ALL", "de_DE"}, {"LANG", "de_DE"}});
  wheel(of(depth).centre(), 4);
  settle();
  EXPECT_EQ(program->output(), "parameter 2 0.252\n");
  command("set 0 2.5");
  EXPECT_EQ(value_of(0), "2.5");
  const Picture picture = screenshot();
  expect_quiet_end();

  start({"--set", "2=0.252", "--set", "0=2.5"});
  EXPECT_EQ(screenshot().pixels, picture.pixels);
}

}  // namespace
}  // namespace ondex::test
