// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

class WindowSystem;

/// While it lives, windows without a window system of their own are shown by this one. A host opens a scope
/// around everything it does with views on behalf of one editor. They nest.
class WindowSystemScope {
 public:
  explicit WindowSystemScope(WindowSystem* system);
  ~WindowSystemScope();
  WindowSystemScope(const WindowSystemScope&) = delete;
  WindowSystemScope& operator=(const WindowSystemScope&) = delete;
  static WindowSystem* current();

 private:
  WindowSystem* outer_;
};

}  // namespace cocoa
