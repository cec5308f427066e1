// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <fstream>

#include "program_copy.h"
#include "session.h"

/// The ways in which the program ends, and what it says then.

namespace ondex::test {
namespace {

using test_support::wait_until;

class EndSession : public SessionTest {
 protected:
  void expect_end(int status) {
    EXPECT_EQ(program->wait_for_exit(), status) << program->errors();
    EXPECT_TRUE(wait_until([this] { return !user.exists(window); }));
  }
  void expect_good_end() {
    expect_end(0);
    EXPECT_EQ(program->errors(), "");
    EXPECT_EQ(program->output(), "");
  }
};

class BareEndSession : public EndSession {
 protected:
  BareEndSession() { managed = false; }
};

TEST_F(EndSession, TheManagersCloseEndsIt) {
  start();
  user.send_to_manager(window, "_NET_CLOSE_WINDOW");
  expect_good_end();
}

TEST_F(BareEndSession, AMessageToCloseEndsIt) {
  start();
  user.send_protocol(window, "WM_DELETE_WINDOW");
  expect_good_end();
}

TEST_F(BareEndSession, SignalsEndIt) {
  for (const int signal : {SIGINT, SIGTERM}) {
    start();
    program->signal(signal);
    expect_good_end();
  }
}

TEST_F(BareEndSession, QuitEndsItWhateverComesBehind) {
  start();
  program->write("quit\nget 0\nnonsense\n");
  expect_good_end();
}

TEST_F(BareEndSession, ItEndsInTheMiddleOfADrag) {
  start();
  press(of(left_rate).centre());
  move_by(0, 10);
  expect_writes(written(), {{0, 1}});
  user.send_protocol(window, "WM_DELETE_WINDOW");
  expect_good_end();
}

TEST_F(BareEndSession, ItEndsWithThePanelOfAReadoutOpen) {
  start();
  double_click(of(left_rate).centre());
  settle();
  user.send_protocol(window, "WM_DELETE_WINDOW");
  expect_good_end();
}

TEST_F(BareEndSession, ADestroyedWindowEndsIt) {
  start();
  user.destroy(window);
  expect_good_end();
}

TEST_F(BareEndSession, TheLossOfTheServerIsSaidAndEndsItWithStatusOne) {
  start();
  server.kill();
  EXPECT_EQ(program->wait_for_exit(), 1);
  EXPECT_THAT(program->errors(), testing::HasSubstr("ondex: the connection to the display was lost\n"));
  EXPECT_EQ(program->output(), "");
}

TEST_F(BareEndSession, TheLossOfItsConnectionAloneEndsItInTheSameWay) {
  start();
  xcb_kill_client(user.connection(), window);
  user.sync();
  expect_end(1);
  EXPECT_THAT(program->errors(), testing::HasSubstr("ondex: the connection to the display was lost\n"));
}

TEST_F(BareEndSession, TheLossOfTheServerInTheMiddleOfADragEndsItToo) {
  start();
  press(knob().centre());
  move_by(10, 10);
  server.kill();
  EXPECT_EQ(program->wait_for_exit(), 1);
}

TEST_F(BareEndSession, AReaderOfItsOutputThatGoesDoesNotEndIt) {
  start();
  program->close_output();
  wheel(of(depth).centre(), 4);
  settle();
  user.send_protocol(window, "WM_DELETE_WINDOW");
  EXPECT_EQ(program->wait_for_exit(), 0);
  EXPECT_EQ(program->errors(), "");
}

TEST_F(BareEndSession, WithoutADisplayItSaysSoInOneLine) {
  for (const std::optional<std::string>& display :
       {std::optional<std::string>(), std::optional<std::string>(":"),
        std::optional<std::string>("nowhere:77")}) {
    launch({}, {{"DISPLAY", display}});
    EXPECT_EQ(program->wait_for_exit(), 1);
    const std::string errors = program->errors();
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    EXPECT_THAT(errors, testing::HasSubstr("There is no X display"));
    EXPECT_EQ(program->output(), "");
  }
}

TEST_F(BareEndSession, WithoutItsInterfaceFileItShowsNoWindow) {
  program_file = copy_program(ONDEX_PROGRAM, folder.path());
  const auto file = folder.path() / "resources" / "KVOndexView.xib";
  std::ofstream(file) << "<document><objects>";
  launch();
  EXPECT_EQ(program->wait_for_exit(), 1);
  EXPECT_THAT(program->errors(), testing::HasSubstr("KVOndexView.xib: "));
  EXPECT_THAT(program->errors(), testing::HasSubstr("\nOndex: Unable to load nib for view.\n"));

  std::filesystem::remove(file);
  launch();
  EXPECT_EQ(program->wait_for_exit(), 1);
  EXPECT_THAT(program->errors(), testing::HasSubstr("KVOndexView.xib"));
  EXPECT_THAT(program->errors(), testing::HasSubstr("\nOndex: Unable to load nib for view.\n"));
  EXPECT_THAT(user.children(user.root()), testing::IsEmpty());
}

}  // namespace
}  // namespace ondex::test
