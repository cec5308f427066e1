// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

namespace ondex::trial {

/// What is done in a trial, a line each, and what is found wrong.
class Trace {
 public:
  /// From now on the one that a process tells that dies, and a new limit to the time.
  Trace();
  ~Trace();
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;

  void note(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// What follows the first one is of no interest: the trial ends.
  void fault(const char* format, ...) __attribute__((format(printf, 2, 3)));
  bool failed() const { return failed_; }
  /// A fault unless `holds`.
  void expect(bool holds, const char* what) {
    if (!holds)
      fault("%s", what);
  }
  /// All of it.
  const std::string& text() const { return text_; }

  /// From now on the process, when it dies or spends more than `seconds` of the processor's time on one
  /// trial, says before what was done in the trial.
  static void reportDeaths(unsigned seconds);
  /// What the trial is called there.
  static void setTitle(std::string_view name);

 private:
  void add(const char* mark, const char* format, va_list arguments) __attribute__((format(printf, 3, 0)));

  std::string text_;
  bool failed_ = false;
};

}  // namespace ondex::trial
