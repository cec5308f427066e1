// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

/// The system log: one line a message, to standard error and to whoever listens.

namespace cocoa {

/// Logs one message; the text is the format, as printf's. Newline is added. Control characters, of which
/// names of files may be full, are written as visible_text() does. Any thread.
void NSLog(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// While it lives, messages logged on this thread go to `hook` instead of standard error, such as to a
/// host's own log, which need not be the same for two editors in one process. The innermost hook wins.
class NSLogHook {
 public:
  explicit NSLogHook(std::function<void(std::string_view message)> hook);
  ~NSLogHook();
  NSLogHook(const NSLogHook&) = delete;
  NSLogHook& operator=(const NSLogHook&) = delete;

 private:
  friend void NSLog(const char* format, ...);
  std::function<void(std::string_view)> hook_;
  NSLogHook* outer_;
};

}  // namespace cocoa
