// SPDX-License-Identifier: MIT
#include "foundation/NSLog.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>

#include "foundation/visible_text.h"

namespace cocoa {

namespace {
thread_local NSLogHook* innermost_hook = nullptr;
}

NSLogHook::NSLogHook(std::function<void(std::string_view)> hook)
    : hook_(std::move(hook)), outer_(innermost_hook) {
  innermost_hook = this;
}

NSLogHook::~NSLogHook() {
  innermost_hook = outer_;
}

void NSLog(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  std::string message(length > 0 ? static_cast<size_t>(length) : 0, '\0');
  if (length > 0)
    std::vsnprintf(message.data(), message.size() + 1, format, again);
  va_end(again);
  va_end(arguments);
  message = visible_text(message);

  if (innermost_hook) {
    innermost_hook->hook_(message);
    return;
  }
  // One write a line, so that lines of several threads do not mix.
  message += '\n';
  std::fwrite(message.data(), 1, message.size(), stderr);
}

}  // namespace cocoa
