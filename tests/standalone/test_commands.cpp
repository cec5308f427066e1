// SPDX-License-Identifier: MIT
#include "standalone/private/commands.h"

#include <gtest/gtest.h>

namespace ondex {
namespace {

Command command_of(std::string_view line) {
  const cocoa::Result<Command> command = read_command(line);
  EXPECT_TRUE(command) << line << ": " << command.cause();
  return command ? *command : Command();
}

std::string fault_of(std::string_view line) {
  const cocoa::Result<Command> command = read_command(line);
  return command ? "" : command.cause();
}

TEST(Commands, AreReadFromALine) {
  EXPECT_EQ(command_of("list").kind, CommandKind::list);
  EXPECT_EQ(command_of(" quit ").kind, CommandKind::quit);
  EXPECT_EQ(command_of("").kind, CommandKind::none);
  EXPECT_EQ(command_of(" \t ").kind, CommandKind::none);
  const Command set = command_of("set 4\t12.5");
  EXPECT_EQ(set.kind, CommandKind::set);
  EXPECT_EQ(set.change.id, 4U);
  EXPECT_EQ(set.change.value, 12.5F);
  const Command get = command_of("get 6");
  EXPECT_EQ(get.kind, CommandKind::get);
  EXPECT_EQ(get.change.id, 6U);
}

TEST(Commands, APicturesNameMayHoldBlanks) {
  EXPECT_EQ(command_of("screenshot my picture.png ").file, "my picture.png");
  EXPECT_EQ(command_of("  screenshot a.png").file, "a.png");
}

TEST(Commands, WhatIsWrongIsSaidInOneLineAndIsNoCommand) {
  EXPECT_EQ(fault_of("sett 1 2"), "unknown command 'sett'");
  EXPECT_EQ(fault_of("set 1"), "set wants ID VALUE");
  EXPECT_EQ(fault_of("set 1 2 3"), "set wants ID VALUE");
  EXPECT_EQ(fault_of("set 7 0"), "no parameter '7': there are 0 to 6");
  EXPECT_EQ(fault_of("set -1 0"), "no parameter '-1': there are 0 to 6");
  EXPECT_EQ(fault_of("set 1 fast"), "'fast' is not a number");
  EXPECT_EQ(fault_of("set 1 1,5"), "'1,5' is not a number");
  EXPECT_EQ(fault_of("set 2 1.5"), "1.5 is outside the range of parameter 2, 0 to 1");
  EXPECT_EQ(fault_of("set 0 -0.5"), "-0.5 is outside the range of parameter 0, 0 to 20");
  EXPECT_EQ(fault_of("get"), "get wants ID");
  EXPECT_EQ(fault_of("screenshot"), "screenshot wants the name of a file");
  EXPECT_EQ(fault_of("list all"), "list wants nothing more");
  EXPECT_EQ(fault_of("quit now"), "quit wants nothing more");
}

}  // namespace
}  // namespace ondex
