// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "appkit/NSWindow.h"
#include "windows/headless.h"

namespace cocoa {

/// A headless window system, and turns of the run loop when asked.
class WindowFixture : public testing::Test {
 protected:
  void turn() {
    system.dispatch();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
  }
  HeadlessWindow& shown() { return *system.newestWindow(); }

  NSAutoreleasePool pool;
  HeadlessWindowSystem system;
};

}  // namespace cocoa
