// SPDX-License-Identifier: MIT
#include <fstream>
#include <iterator>

#include <sys/prctl.h>

#include "session.h"

/// What a start leaves behind: nothing.

namespace ondex::test {
namespace {

/// The processes that the test has started, and those that they have left to it.
std::string children() {
  std::ifstream list("/proc/thread-self/children");
  return {std::istreambuf_iterator<char>(list), {}};
}

class RepeatedSession : public BareSessionTest {};

TEST_F(RepeatedSession, FiftyStartsLeaveNothingBehind) {
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const std::string children_before = children();
  const uint32_t clients_before = user.client_count();
  for (int i = 0; i < 50; ++i) {
    launch();
    // An answer comes from the loop, by when the window has been made.
    program->write("get 2\nquit\n");
    program->wait_for_line("value 2 0.5");
    ASSERT_EQ(program->wait_for_exit(), 0) << program->errors();
    ASSERT_EQ(program->errors(), "");
  }
  EXPECT_EQ(children(), children_before);
  EXPECT_TRUE(test_support::wait_until([&] { return user.client_count() == clients_before; }));
  EXPECT_TRUE(user.children(user.root()).empty());
}

TEST_F(RepeatedSession, OneThatIsKilledLeavesNothingOnTheServer) {
  const uint32_t clients_before = user.client_count();
  start();
  EXPECT_EQ(user.client_count(), clients_before + 1);
  program->signal(SIGKILL);
  EXPECT_EQ(program->wait_for_exit(), -SIGKILL);
  EXPECT_TRUE(test_support::wait_until([&] { return user.client_count() == clients_before; }));
  EXPECT_TRUE(user.children(user.root()).empty());
}

TEST_F(RepeatedSession, TwoAtATimeKeepToThemselves) {
  start();
  const std::unique_ptr<ChildProcess> first = std::move(program);
  user.move(window, 900, 20);
  launch();
  program->write("set 0 5\nget 0\n");
  program->wait_for_line("value 0 5");
  wheel(of(depth).centre(), 4);
  settle();
  EXPECT_EQ(first->wait_for_line("parameter"), "parameter 2 0.502");
  first->write("get 0\n");
  EXPECT_EQ(first->wait_for_line("value"), "value 0 0");
  first->write("quit\n");
  EXPECT_EQ(first->wait_for_exit(), 0);
  EXPECT_EQ(value_of(2), "0.5");
  expect_quiet_end();
}

}  // namespace
}  // namespace ondex::test
