// SPDX-License-Identifier: MIT
#include "appkit/WindowSystemScope.h"

namespace cocoa {

namespace {
thread_local WindowSystem* current_system = nullptr;
}  // namespace

WindowSystemScope::WindowSystemScope(WindowSystem* system) : outer_(current_system) {
  current_system = system;
}
WindowSystemScope::~WindowSystemScope() {
  current_system = outer_;
}
WindowSystem* WindowSystemScope::current() {
  return current_system;
}

}  // namespace cocoa
