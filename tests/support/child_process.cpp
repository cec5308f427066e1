// SPDX-License-Identifier: MIT
#include "child_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace ondex::test {

namespace {

/// Far longer than anything takes, so that it is met only when something is wrong.
constexpr int deadline_milliseconds = 60000;

void run(const ChildProcess::Setup& setup, const int (&ends)[3]) {
  prctl(PR_SET_PDEATHSIG, setup.end);
  for (int i = 0; i < 3; ++i)
    dup2(ends[i], i);
  for (const auto& [name, value] : setup.environment) {
    if (value) {
      setenv(name.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name.c_str());
    }
  }
  if (setup.prepare)
    setup.prepare();
  std::vector<char*> arguments;
  for (const std::string& argument : setup.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const Setup& setup) : end_(setup.end) {
  ::signal(SIGPIPE, SIG_IGN);
  int in[2];
  int out[2];
  int err[2];
  if (pipe2(in, O_CLOEXEC) != 0 || pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0)
    return;
  pid_ = fork();
  if (pid_ == 0)
    run(setup, {in[0], out[1], err[1]});
  close(in[0]);
  close(out[1]);
  close(err[1]);
  input_ = in[1];
  output_descriptor_ = out[0];
  error_descriptor_ = err[0];
}

ChildProcess::~ChildProcess() {
  if (pid_ > 0 && !status_) {
    kill(pid_, end_);
    if (end_ != SIGKILL) {
      wait_for_exit();
    } else {
      waitpid(pid_, nullptr, 0);
    }
  }
  for (const int descriptor : {input_, output_descriptor_, error_descriptor_}) {
    if (descriptor >= 0)
      close(descriptor);
  }
}

void ChildProcess::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::write(input_, text.data(), text.size());
    if (count <= 0)
      return;
    text.remove_prefix(static_cast<size_t>(count));
  }
}

void ChildProcess::close_input() {
  if (input_ >= 0)
    close(input_);
  input_ = -1;
}

void ChildProcess::close_output() {
  if (output_descriptor_ >= 0)
    close(output_descriptor_);
  output_descriptor_ = -1;
}

void ChildProcess::signal(int number) {
  if (pid_ > 0)
    kill(pid_, number);
}

bool ChildProcess::read_some(int milliseconds) {
  pollfd descriptors[] = {{output_descriptor_, POLLIN, 0}, {error_descriptor_, POLLIN, 0}};
  if (poll(descriptors, 2, milliseconds) <= 0)
    return false;
  bool any = false;
  std::string* const texts[] = {&output_, &errors_};
  for (int i = 0; i < 2; ++i) {
    if (descriptors[i].revents == 0)
      continue;
    char bytes[4096];
    const ssize_t count = read(descriptors[i].fd, bytes, sizeof bytes);
    if (count <= 0) {
      int& closed = i == 0 ? output_descriptor_ : error_descriptor_;
      close(closed);
      closed = -1;
      continue;
    }
    texts[i]->append(bytes, static_cast<size_t>(count));
    any = true;
  }
  return any || output_descriptor_ >= 0 || error_descriptor_ >= 0;
}

void ChildProcess::drain() {
  while (read_some(0)) {
  }
}

std::string ChildProcess::wait_for_line(std::string_view text) {
  while (true) {
    size_t end;
    while ((end = output_.find('\n', searched_)) != std::string::npos) {
      std::string line = output_.substr(searched_, end - searched_);
      searched_ = end + 1;
      if (line.find(text) != std::string::npos)
        return line;
    }
    if (output_descriptor_ < 0 || !read_some(deadline_milliseconds)) {
      ADD_FAILURE() << "no line with \"" << text << "\"; there were:\n" << output_ << errors_;
      return {};
    }
  }
}

bool ChildProcess::has_line(std::string_view text) {
  drain();
  return output_.find(text) != std::string::npos;
}

int ChildProcess::unread_output() const {
  int count = 0;
  return ioctl(output_descriptor_, FIONREAD, &count) == 0 ? count : 0;
}

int ChildProcess::unread_errors() const {
  int count = 0;
  return ioctl(error_descriptor_, FIONREAD, &count) == 0 ? count : 0;
}

bool ChildProcess::running() {
  int status = 0;
  if (!status_ && waitpid(pid_, &status, WNOHANG) == pid_)
    note_end(status);
  return !status_;
}

void ChildProcess::note_end(int status) {
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

int ChildProcess::wait_for_exit() {
  if (status_)
    return *status_;
  // Its streams end with the program.
  while (output_descriptor_ >= 0 || error_descriptor_ >= 0) {
    if (!read_some(deadline_milliseconds))
      break;
  }
  if (output_descriptor_ >= 0 || error_descriptor_ >= 0) {
    ADD_FAILURE() << "the program does not end";
    kill(pid_, SIGKILL);
  }
  int status = 0;
  waitpid(pid_, &status, 0);
  note_end(status);
  return *status_;
}

const std::string& ChildProcess::output() {
  drain();
  return output_;
}

const std::string& ChildProcess::errors() {
  drain();
  return errors_;
}

void ChildProcess::forget_output() {
  drain();
  output_.clear();
  searched_ = 0;
}

}  // namespace ondex::test
