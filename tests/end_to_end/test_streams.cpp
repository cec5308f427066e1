// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "session.h"

/// Standard streams that are closed, or that nobody serves at their other end.

namespace ondex::test {
namespace {

using test_support::wait_until;

class StreamSession : public BareSessionTest {
 protected:
  void launch_without(const std::vector<int>& closed) {
    program = std::make_unique<ChildProcess>(ChildProcess::Setup{
        .arguments = {program_file},
        .environment = {{"DISPLAY", server.display()}, {"XDG_CONFIG_HOME", folder.path().string()}},
        .prepare = [closed] {
          for (const int descriptor : closed)
            close(descriptor);
        }});
    wait_for_window();
    settle();
  }
  /// By the user's hand, when there is nobody to command it.
  void expect_end() {
    user.send_protocol(window, "WM_DELETE_WINDOW");
    EXPECT_EQ(program->wait_for_exit(), 0);
    EXPECT_EQ(program->errors(), "");
  }
  /// Without reading what it says, which would let it go on.
  void expect_end_by(int signal) {
    program->signal(signal);
    EXPECT_TRUE(wait_until([this] { return !program->running(); })) << "it still waits";
    EXPECT_EQ(program->wait_for_exit(), 0);
  }

  /// What a pipe holds at least when no line of text goes into it any more: a line is not divided between two
  /// of its 16 pages.
  static constexpr int full_of_lines = 64000;
};

TEST_F(StreamSession, WithoutInputItWorks) {
  launch_without({STDIN_FILENO});
  wheel(of(depth).centre(), 4);
  expect_writes(written(), {{2, 0.502}});
  expect_end();
}

TEST_F(StreamSession, WithoutOutputItWorks) {
  launch_without({STDOUT_FILENO});
  wheel(of(depth).centre(), 4);
  settle();
  const std::string file = (folder.path() / "picture.png").string();
  command("get 2\nscreenshot " + file);
  EXPECT_TRUE(wait_until([&] { return read_picture(file).width > 0; }));
  expect_end();
}

TEST_F(StreamSession, WithoutErrorsItWorks) {
  launch_without({STDERR_FILENO});
  command("nonsense");
  wheel(of(depth).centre(), 4);
  settle();
  EXPECT_EQ(value_of(2), "0.502");
  expect_end();
}

TEST_F(StreamSession, WithoutAnyStreamItWorks) {
  launch_without({STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO});
  wheel(of(depth).centre(), 4);
  settle();
  EXPECT_TRUE(user.viewable(window));
  expect_end();
}

TEST_F(StreamSession, SignalsEndItWhileNobodyReadsItsOutput) {
  for (const int signal : {SIGINT, SIGTERM}) {
    start();
    for (int i = 0; i < 1000; ++i)
      command("list");
    ASSERT_TRUE(wait_until([this] { return program->unread_output() > full_of_lines; }));
    expect_end_by(signal);
  }
}

TEST_F(StreamSession, SignalsEndItWhileNobodyReadsItsErrors) {
  for (const int signal : {SIGINT, SIGTERM}) {
    start();
    for (int i = 0; i < 5000; ++i)
      command("x");
    ASSERT_TRUE(wait_until([this] { return program->unread_errors() > full_of_lines; }));
    expect_end_by(signal);
  }
}

TEST_F(StreamSession, SignalsEndItWhileNobodyOpensThePipeOfAPicture) {
  const std::string pipe = (folder.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const int signal : {SIGINT, SIGTERM}) {
    start();
    command("get 2\nscreenshot " + pipe);
    program->wait_for_line("value 2");
    expect_end_by(signal);
  }
}

TEST_F(StreamSession, SignalsEndItWhileNobodyReadsThePipeOfAPicture) {
  const std::string pipe = (folder.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const int signal : {SIGINT, SIGTERM}) {
    start({"--scale", "2"});
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    command("screenshot " + pipe);
    ASSERT_TRUE(wait_until([reader] {
      int count = 0;
      return ioctl(reader, FIONREAD, &count) == 0 && count > full_of_lines;
    })) << "the picture is to be larger than what a pipe holds";
    expect_end_by(signal);
    close(reader);
  }
}

}  // namespace
}  // namespace ondex::test
