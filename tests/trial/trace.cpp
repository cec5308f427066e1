// SPDX-License-Identifier: MIT
#include "trace.h"

#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <utility>

// Of the sanitizers' run time, where there is one: their reports do not end in a signal.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace ondex::trial {

namespace {

const Trace* current = nullptr;
std::array<char, 80> title = {};
unsigned longest_trial = 0;

void say(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    if (written <= 0)
      return;
    text.remove_prefix(static_cast<size_t>(written));
  }
}

void report_death() {
  const Trace* const dying = std::exchange(current, nullptr);
  if (!dying)
    return;
  say(title.data());
  say(" died or hung in the last of:\n");
  say(dying->text());
}

void die(int signal) {
  report_death();
  std::signal(signal == SIGPROF ? SIGABRT : signal, SIG_DFL);
  raise(signal == SIGPROF ? SIGABRT : signal);
}

void limit_time(unsigned seconds) {
  const itimerval limit = {.it_interval = {}, .it_value = {static_cast<time_t>(seconds), 0}};
  setitimer(ITIMER_PROF, &limit, nullptr);
}

}  // namespace

Trace::Trace() {
  current = this;
  // The handler reads it at any moment: it is not to move.
  text_.reserve(size_t{1} << 16);
  limit_time(longest_trial);
}

Trace::~Trace() {
  current = nullptr;
  limit_time(0);
}

void Trace::setTitle(std::string_view name) {
  std::snprintf(title.data(), title.size(), "%.*s", static_cast<int>(name.size()), name.data());
}

void Trace::reportDeaths(unsigned seconds) {
  longest_trial = seconds;
  std::signal(SIGPROF, die);
  if (__sanitizer_set_death_callback) {
    __sanitizer_set_death_callback(report_death);
    // The sanitizers see to all other signals but this one.
    std::signal(SIGABRT, die);
    return;
  }
  for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
    std::signal(signal, die);
}

void Trace::add(const char* mark, const char* format, va_list arguments) {
  std::array<char, 400> line{};
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it misses that whoever calls has begun the list
  std::vsnprintf(line.data(), line.size(), format, arguments);
  if (text_.size() + line.size() + 8 > text_.capacity())
    return;
  text_ += mark;
  text_ += line.data();
  text_ += '\n';
}

void Trace::note(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  add("  ", format, arguments);
  va_end(arguments);
}

void Trace::fault(const char* format, ...) {
  failed_ = true;
  va_list arguments;
  va_start(arguments, format);
  add("FAULT: ", format, arguments);
  va_end(arguments);
}

}  // namespace ondex::trial
