// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <cstdlib>

#include "session.h"

/// The program as a job of a terminal.

namespace ondex::test {
namespace {

/// In a new process, the shell of a terminal that starts the program as a job in the background: returns in
/// the job. The shell puts it into the foreground once it reads a byte from its own input, and ends with it.
void become_job_of(const char* terminal) {
  setsid();
  const int opened = open(terminal, O_RDWR);
  const pid_t job = fork();
  if (job == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    dup2(opened, STDIN_FILENO);
    return;
  }
  setpgid(job, job);
  close(STDOUT_FILENO);
  close(STDERR_FILENO);
  char byte = 0;
  if (read(STDIN_FILENO, &byte, 1) == 1)
    tcsetpgrp(opened, job);
  int status = 0;
  waitpid(job, &status, 0);
  _exit(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
}

class TerminalSession : public BareSessionTest {
 protected:
  ~TerminalSession() override {
    if (terminal_ >= 0)
      close(terminal_);
  }
  void start_in_background() {
    terminal_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal_, 0);
    ASSERT_EQ(grantpt(terminal_), 0);
    ASSERT_EQ(unlockpt(terminal_), 0);
    const std::string name = ptsname(terminal_);
    program = std::make_unique<ChildProcess>(ChildProcess::Setup{
        .arguments = {program_file},
        .environment = {{"DISPLAY", server.display()}, {"XDG_CONFIG_HOME", folder.path().string()}},
        .prepare = [name] { become_job_of(name.c_str()); }});
    wait_for_window();
    settle();
  }
  void type(std::string_view text) {
    EXPECT_EQ(::write(terminal_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  void bring_to_foreground() { program->write("f"); }

 private:
  int terminal_ = -1;
};

TEST_F(TerminalSession, InTheBackgroundItGoesOnAndLeavesWhatIsTypedToOthers) {
  start_in_background();
  type("get 2\n");
  // It has been told of what was typed by the time that it answers.
  settle();
  wheel(of(depth).centre(), 4);
  EXPECT_EQ(program->wait_for_line("parameter"), "parameter 2 0.502");
  EXPECT_FALSE(program->has_line("value"));

  bring_to_foreground();
  EXPECT_EQ(program->wait_for_line("value"), "value 2 0.502");
  type("set 2 0.25\nget 2\n");
  EXPECT_EQ(program->wait_for_line("value"), "value 2 0.25");
  type("quit\n");
  EXPECT_EQ(program->wait_for_exit(), 0);
  EXPECT_EQ(program->errors(), "");
}

TEST_F(TerminalSession, ItsWindowClosesInTheBackground) {
  start_in_background();
  type("get 2\n");
  settle();
  user.send_protocol(window, "WM_DELETE_WINDOW");
  bring_to_foreground();
  EXPECT_EQ(program->wait_for_exit(), 0);
}

}  // namespace
}  // namespace ondex::test
