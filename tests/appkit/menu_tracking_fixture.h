// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon-keysyms.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

#include "appkit/NSPopUpButton.h"
#include "appkit/NSWindow.h"
#include "manual_clock.h"
#include "recording_host.h"
#include "windows/headless.h"

namespace ondex::test {

/// A pop-up button in a window, its left at 340 and its middle at 240 on the screen.
class MenuTracking : public testing::Test {
 protected:
  MenuTracking() {
    cocoa::CFRunLoopGetCurrent()->setClock(&clock);
    for (const char* title : {"Sine", "Square", "Noise"})
      button->addItemWithTitle(title);
    button->setTarget_action(host.get(), edited_selector);
    window->setWindowSystem(&system);
    window->contentView()->addSubview(button.get());
    window->makeKeyAndOrderFront(nullptr);
    turn();
  }
  ~MenuTracking() override {
    window = nullptr;
    cocoa::CFRunLoopGetCurrent()->setClock(nullptr);
  }
  void turn() {
    const cocoa::NSAutoreleasePool turn_pool;
    system.dispatch();
    cocoa::CFRunLoopRunInMode(cocoa::kCFRunLoopDefaultMode, 0, false);
  }
  cocoa::HeadlessWindow& main_window() { return *system.windows().front(); }
  cocoa::HeadlessWindow& list() { return *system.newestWindow(); }
  bool open() { return system.windows().size() == 2; }
  /// The middle of a line of the list of three, with the second selected, in the button's window.
  static cocoa::NSPoint line(int index) { return {70, static_cast<cocoa::CGFloat>(58 - 18 * index)}; }
  /// The same in the list's window.
  static cocoa::NSPoint line_in_list(int index) { return {30, static_cast<cocoa::CGFloat>(49 - 18 * index)}; }

  void press(cocoa::NSPoint where) {
    main_window().press(where);
    turn();
  }
  void drag(cocoa::NSPoint where) {
    main_window().drag_to(where);
    turn();
  }
  void release() {
    main_window().release();
    turn();
  }
  void click_button() {
    press(on_button);
    clock.advance(0.1);
    release();
    clock.advance(1);
  }
  void click_in_list(cocoa::NSPoint where) {
    list().press(where);
    turn();
    if (open())
      list().release();
    turn();
  }
  void key(uint32_t keysym, std::string_view characters = "") {
    system.keyWindow()->key_down(keysym, characters);
    turn();
  }
  void type(std::string_view text) {
    system.keyWindow()->type(text);
    turn();
  }

  static constexpr uint32_t key_return = XKB_KEY_Return;
  static constexpr uint32_t key_escape = XKB_KEY_Escape;
  static constexpr uint32_t key_home = XKB_KEY_Home;
  static constexpr uint32_t key_up = XKB_KEY_Up;
  static constexpr uint32_t key_down = XKB_KEY_Down;
  static constexpr uint32_t key_end = XKB_KEY_End;
  static constexpr cocoa::NSPoint on_button = {100, 40};
  cocoa::NSAutoreleasePool pool;
  ManualClock clock{1000};
  cocoa::HeadlessWindowSystem system{clock};
  cocoa::Ref<RecordingHost> host = cocoa::make<RecordingHost>();
  cocoa::Ref<cocoa::NSWindow> window =
      cocoa::make<cocoa::NSWindow>(cocoa::NSMakeRect(300, 200, 400, 300), cocoa::NSTitledWindowMask);
  cocoa::Ref<cocoa::NSPopUpButton> button =
      cocoa::make<cocoa::NSPopUpButton>(cocoa::NSMakeRect(40, 30, 132, 20));
};

}  // namespace ondex::test
