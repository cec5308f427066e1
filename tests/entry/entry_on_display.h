// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon-keysyms.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "appkit/NSWindow.h"
#include "editor_fixture.h"
#include "pasteboard_client.h"
#include "windows/x11.h"
#include "x_server.h"

namespace ondex::test {

/// X keysyms.
namespace key {
inline constexpr uint32_t enter = XKB_KEY_Return, keypad_enter = XKB_KEY_KP_Enter, escape = XKB_KEY_Escape,
                          backspace = XKB_KEY_BackSpace;
inline constexpr uint32_t left = XKB_KEY_Left, shift = XKB_KEY_Shift_L, control = XKB_KEY_Control_L;
}  // namespace key

/// The editor on an X server, in a window of its own or of a host, and a user who works it.
class EntryOnDisplay : public EditorFixture {
 protected:
  void SetUp() override { ASSERT_FALSE(server.display().empty()) << "Xvfb did not start"; }
  void TearDown() override {
    window = nullptr;
    editor = nullptr;
    system.reset();
  }

  void start_manager() {
    manager = std::make_unique<test_support::WindowManager>(server.display());
    ASSERT_TRUE(manager->started());
    user.share_with_manager();
  }
  /// In a host's window when there is one, else in a titled window.
  void show_editor(xcb_window_t host = XCB_WINDOW_NONE) {
    system = cocoa::make_x11_window_system(server.display().c_str());
    ASSERT_TRUE(system);
    open();
    const unsigned style = host ? cocoa::NSBorderlessWindowMask : cocoa::NSTitledWindowMask;
    window = cocoa::make<cocoa::NSWindow>(cocoa::NSRect{{120, 120}, editor->frame().size}, style);
    window->setWindowSystem(system.get());
    if (host)
      window->setHostWindow(host);
    window->setContentView(editor.get());
    if (host) {
      window->orderFront(nullptr);
    } else {
      window->makeKeyAndOrderFront(nullptr);
    }
    ASSERT_TRUE(until([this] { return user.viewable(id()); }));
  }

  bool until(const std::function<bool()>& condition) {
    return test_support::wait_until(
        [&] {
          pass();
          return condition();
        },
        {system->descriptor(), user.descriptor()});
  }
  void pass() {
    const cocoa::NSAutoreleasePool cycle;
    system->dispatch();
    clock.advance(0.01);
    turn();
    if (program_answers)
      program.serve();
  }

  xcb_window_t id() { return static_cast<xcb_window_t>(window->platformWindow()->nativeHandle()); }
  cocoa::NSWindow* panel() { return editor->_text_entry_popup_view->window(); }
  cocoa::NSTextField& field() { return *editor->_text_entry_popup_view->_entry_field; }
  xcb_window_t panel_id() { return static_cast<xcb_window_t>(panel()->platformWindow()->nativeHandle()); }
  std::string typed() { return field().editedText().text(); }

  /// A point of the editor on the screen.
  void point_at(double x, double y) {
    const auto place = user.geometry(id());
    user.point(place.x + static_cast<int>(x), place.y + place.height - 1 - static_cast<int>(y));
  }
  void open_entry() {
    // The middle of the left rate, a parameter from 0 to 20.
    point_at(183, 83);
    user.double_click();
    ASSERT_TRUE(until([this] { return panel() && panel()->isKeyWindow(); }));
  }
  void type(std::string_view text) {
    for (const char character : text)
      user.type_key(static_cast<unsigned char>(character));
  }
  void type_with(uint32_t modifier, uint32_t keysym) {
    user.press_key(modifier);
    user.type_key(keysym);
    user.release_key(modifier);
  }
  bool closes() {
    return until([this] { return !panel(); });
  }

  test_support::XServer server;
  test_support::XClient user{server.display()};
  test_support::PasteboardClient program{server.display()};
  bool program_answers = true;
  std::unique_ptr<test_support::WindowManager> manager;
  std::unique_ptr<cocoa::WindowSystem> system;
  cocoa::Ref<cocoa::NSWindow> window;
};

}  // namespace ondex::test
