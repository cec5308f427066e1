// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "appkit/NSWindow.h"
#include "windows/headless.h"

namespace ondex::test {

/// A view of 80 × 40 points in a window that somebody sees, at one pixel a point.
template <typename View>
class Redisplay : public testing::Test {
 protected:
  Redisplay() {
    window->setWindowSystem(&system);
    window->contentView()->addSubview(view.get());
    window->orderFront(nullptr);
    turn();
  }
  ~Redisplay() override { window->close(); }

  /// The parts of the window that are drawn again because of `change`, in pixels from its upper left.
  template <typename Change>
  std::vector<cocoa::PixelRect> drawn_after(const Change& change) {
    system.newestWindow()->clearPresented();
    change();
    turn();
    std::vector<cocoa::PixelRect> drawn;
    for (const auto& frame : system.newestWindow()->presented())
      drawn.insert(drawn.end(), frame.begin(), frame.end());
    return drawn;
  }

  const std::vector<cocoa::PixelRect> all_of_it = {{10, 40, 80, 40}};
  const std::vector<cocoa::PixelRect> nothing;

 private:
  void turn() {
    system.dispatch();
    cocoa::CFRunLoopRunInMode(cocoa::kCFRunLoopDefaultMode, 0, false);
  }

  const cocoa::NSAutoreleasePool pool;
  cocoa::HeadlessWindowSystem system;
  const cocoa::Ref<cocoa::NSWindow> window =
      cocoa::make<cocoa::NSWindow>(cocoa::NSMakeRect(0, 0, 200, 100), 0U);

 protected:
  const cocoa::Ref<View> view = cocoa::make<View>(cocoa::NSMakeRect(10, 20, 80, 40));
};

}  // namespace ondex::test
