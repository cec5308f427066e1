// SPDX-License-Identifier: MIT
#include "x_server.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>

#include "x_client.h"

namespace test_support {

bool wait_until(const std::function<bool()>& condition, const std::vector<int>& descriptors) {
  using std::chrono::steady_clock;
  const auto deadline = steady_clock::now() + std::chrono::seconds(10);
  std::vector<pollfd> watched;
  watched.reserve(descriptors.size());
  for (const int descriptor : descriptors)
    watched.push_back({descriptor, POLLIN, 0});
  while (!condition()) {
    if (steady_clock::now() > deadline)
      return false;
    poll(watched.data(), watched.size(), 10);
  }
  return true;
}

Child::Child(const std::vector<std::string>& command, const std::string& display, int inherited) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& argument : command)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  process_ = fork();
  if (process_ != 0)
    return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (!display.empty())
    setenv("DISPLAY", display.c_str(), 1);
  if (inherited >= 0)
    fcntl(inherited, F_SETFD, 0);
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

Child::~Child() {
  reap(SIGTERM);
}

bool Child::running() {
  if (process_ > 0 && waitpid(process_, nullptr, WNOHANG) == process_)
    process_ = -1;
  return process_ > 0;
}

void Child::kill() {
  reap(SIGKILL);
}

void Child::reap(int signal) {
  if (!running())
    return;
  ::kill(process_, signal);
  if (!wait_until([this] { return !running(); })) {
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  process_ = -1;
}

XServer::XServer(const std::vector<std::string>& extra_arguments) {
  std::array<int, 2> number_pipe{};
  if (pipe2(number_pipe.data(), O_CLOEXEC) != 0)
    return;
  std::vector<std::string> command{"Xvfb",      "-displayfd", std::to_string(number_pipe[1]),
                                   "-screen",   "0",          "1280x800x24",
                                   "-nolisten", "tcp",        "-noreset"};
  command.insert(command.end(), extra_arguments.begin(), extra_arguments.end());
  server_ = std::make_unique<Child>(command, "", number_pipe[1]);
  close(number_pipe[1]);

  std::string number;
  fcntl(number_pipe[0], F_SETFL, O_NONBLOCK);
  const bool started = wait_until(
      [&] {
        char digit = 0;
        while (read(number_pipe[0], &digit, 1) == 1)
          number += digit;
        return !number.empty() && number.back() == '\n';
      },
      {number_pipe[0]});
  close(number_pipe[0]);
  if (started)
    display_ = ":" + number.substr(0, number.size() - 1);
}

XServer::~XServer() = default;

WindowManager::WindowManager(const std::string& display) : manager_({"openbox", "--sm-disable"}, display) {
  // It says that it is there before it listens, and requests to map a window in between are lost on it: it is
  // ready as soon as it has put a window into a frame.
  XClient client(display);
  const xcb_window_t probe = client.make_window(0, 0, 10, 10, false);
  started_ = wait_until([&] {
    if (client.has_window_manager())
      client.map(probe);
    return client.viewable(probe) && client.parent_of(probe) != client.root();
  });
  client.destroy(probe);
}

}  // namespace test_support
