// SPDX-License-Identifier: MIT
#include "standalone/private/command_input.h"

#include <unistd.h>

#include <cerrno>
#include <limits>

#include "standalone/standard_streams.h"

namespace ondex {

namespace {

/// What is typed while another job is in the foreground is that one's: nobody says when this one gets there.
constexpr double foreground_check_interval = 0.25;

}  // namespace

int CommandInput::descriptor(double now) const {
  return open_ && now >= background_until_ ? STDIN_FILENO : -1;
}

double CommandInput::again(double now) const {
  return open_ && now < background_until_ ? background_until_ : std::numeric_limits<double>::infinity();
}

bool CommandInput::read(double now) {
  background_until_ = 0;
  char bytes[4096];
  const bool background = reads_in_background(STDIN_FILENO);
  const ssize_t count = background ? -1 : ::read(STDIN_FILENO, bytes, sizeof bytes);
  if (count > 0) {
    lines_.append({bytes, static_cast<size_t>(count)});
  } else if (background || (count < 0 && errno == EIO && reads_in_background(STDIN_FILENO))) {
    background_until_ = now + foreground_check_interval;
  } else if (count == 0 || (errno != EINTR && errno != EAGAIN)) {
    // The end of the input leaves the window open.
    open_ = false;
  }
  if (!lines_.overlong())
    return true;
  lines_.drop_overlong();
  return false;
}

}  // namespace ondex
