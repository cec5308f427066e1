// SPDX-License-Identifier: MIT
#include "standalone/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <initializer_list>

namespace ondex {

bool open_standard_streams() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF)
      continue;
    // The lowest number that is free, which is this one: those below are open by now.
    if (open("/dev/null", descriptor == STDIN_FILENO ? O_RDONLY : O_WRONLY) != descriptor)
      return false;
  }
  return true;
}

void ignore_terminal_stops() {
  std::signal(SIGTTIN, SIG_IGN);
  std::signal(SIGTTOU, SIG_IGN);
}

bool reads_in_background(int descriptor) {
  const pid_t foreground = tcgetpgrp(descriptor);
  return foreground >= 0 && foreground != getpgrp();
}

}  // namespace ondex
