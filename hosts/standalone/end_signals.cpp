// SPDX-License-Identifier: MIT
#include "standalone/private/end_signals.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>

namespace ondex {

namespace {

volatile std::sig_atomic_t has_come_through = 0;

/// A signal may come just before the call that is to be interrupted: the alarm catches that one.
void note_end(int) {
  has_come_through = 1;
  alarm(1);
}

void interrupt_again(int) {
  alarm(1);
}

sigset_t end_signals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  return signals;
}

/// Without SA_RESTART, so that calls are interrupted.
void handle(int signal, void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  sigaction(signal, &action, nullptr);
}

}  // namespace

void EndSignals::hold_back() {
  const sigset_t signals = end_signals();
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  handle(SIGINT, note_end);
  handle(SIGTERM, note_end);
  handle(SIGALRM, interrupt_again);
  descriptor_ = cocoa::UniqueFd(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
  // A reader of our output may go; that is no reason to end.
  std::signal(SIGPIPE, SIG_IGN);
}

bool EndSignals::came_through() {
  return has_come_through != 0;
}

EndSignals::Interruptible::Interruptible() {
  const sigset_t signals = end_signals();
  sigprocmask(SIG_UNBLOCK, &signals, &outside_);
}

EndSignals::Interruptible::~Interruptible() {
  sigprocmask(SIG_SETMASK, &outside_, nullptr);
  if (sigismember(&outside_, SIGTERM) == 1)
    alarm(0);
}

void write_text(int descriptor, std::string_view text) {
  const EndSignals::Interruptible interruptible;
  while (!text.empty() && !EndSignals::came_through()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<size_t>(count));
    } else if (errno == EAGAIN) {
      // Others that share the descriptor may have set it so.
      pollfd writable = {descriptor, POLLOUT, 0};
      poll(&writable, 1, -1);
    } else if (errno != EINTR) {
      return;
    }
  }
}

}  // namespace ondex
