// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon-keysyms.h>

#include <gtest/gtest.h>

#include "entry_panel.h"
#include "foundation/CFRunLoop.h"
#include "manual_clock.h"
#include "parameter_control/KV_Ondex_Parameter_Control_View.h"
#include "recording_host.h"
#include "windows/headless.h"

namespace ondex::test {

/// X keysyms.
inline constexpr uint32_t enter_key = XKB_KEY_Return;
inline constexpr uint32_t keypad_enter_key = XKB_KEY_KP_Enter;
inline constexpr uint32_t escape_key = XKB_KEY_Escape;
inline constexpr uint32_t backspace_key = XKB_KEY_BackSpace;
inline constexpr uint32_t tab_key = XKB_KEY_Tab;
inline constexpr uint32_t left_tab_key = XKB_KEY_ISO_Left_Tab;

/// A readout of 20 to 20000, at 1000.1, whose panel has been opened by a double click.
class EntryOnScreen : public testing::Test {
 protected:
  EntryOnScreen() {
    cocoa::CFRunLoopGetCurrent()->setClock(&clock);
    cocoa::HeadlessWindowSystem::clearPasteboards();
    window->setWindowSystem(&system);
    window->contentView()->addSubview(readout.get());
    readout->set_callback_onObject(edited_selector, host.get());
    readout->set_pop_up_view(panel.get());
    readout->set_values_minimum_maximum_default_value_scale_type(20, 20000, 20, 1);
    readout->set_current_value(1000.1);
    window->makeKeyAndOrderFront(nullptr);
    turn();
    open();
  }
  ~EntryOnScreen() override {
    window = nullptr;
    cocoa::CFRunLoopGetCurrent()->setClock(nullptr);
  }
  void turn() {
    const cocoa::NSAutoreleasePool turn_pool;
    system.dispatch();
    cocoa::CFRunLoopRunInMode(cocoa::kCFRunLoopDefaultMode, 0, false);
  }
  /// Waits for dispatch().
  void double_click(cocoa::NSPoint where) {
    clock.advance(10);
    for (int click = 0; click < 2; ++click) {
      editor_window().press(where);
      editor_window().release();
    }
  }
  void open() {
    double_click(on_readout);
    turn();
    ASSERT_TRUE(is_open());
  }
  cocoa::HeadlessWindow& editor_window() { return *system.windows().front(); }
  cocoa::HeadlessWindow& panel_window() { return *system.newestWindow(); }
  bool is_open() { return system.windows().size() == 2; }
  void type(std::string_view text) {
    panel_window().type(text);
    turn();
  }
  void press(uint32_t keysym) {
    panel_window().key_down(keysym, "");
    turn();
  }

  static constexpr cocoa::NSPoint on_readout = {100, 45};
  static constexpr cocoa::NSPoint beside = {350, 250};
  cocoa::NSAutoreleasePool pool;
  ManualClock clock{1000};
  cocoa::HeadlessWindowSystem system{clock};
  cocoa::Ref<RecordingHost> host = cocoa::make<RecordingHost>();
  cocoa::Ref<EntryPanel> panel = cocoa::make<EntryPanel>();
  cocoa::Ref<cocoa::NSWindow> window =
      cocoa::make<cocoa::NSWindow>(cocoa::NSMakeRect(300, 200, 400, 300), cocoa::NSTitledWindowMask);
  cocoa::Ref<KV_Ondex_Parameter_Control_View> readout =
      cocoa::make<KV_Ondex_Parameter_Control_View>(cocoa::NSMakeRect(40, 30, 132, 36));
};

}  // namespace ondex::test
