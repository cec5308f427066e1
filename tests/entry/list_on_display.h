// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "appkit/NSPopUpButton.h"
#include "appkit/NSWindow.h"
#include "windows/x11.h"
#include "x_client.h"
#include "x_server.h"

namespace ondex::test {

/// A button that opens a list, on an X server, in a window of its own or of a host, and a user who works it.
class ListOnDisplay : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_FALSE(server.display().empty()) << "Xvfb did not start";
    user.point(1200, 700);
  }
  void TearDown() override {
    window = nullptr;
    button = nullptr;
    system.reset();
  }
  void start_manager() {
    manager = std::make_unique<test_support::WindowManager>(server.display());
    ASSERT_TRUE(manager->started());
    user.share_with_manager();
  }
  /// 300 × 200 points, with the button around (70, 40).
  void show_window(xcb_window_t host = XCB_WINDOW_NONE) {
    system = cocoa::make_x11_window_system(server.display().c_str());
    ASSERT_TRUE(system);
    button = cocoa::make<cocoa::NSPopUpButton>(cocoa::NSMakeRect(20, 30, 100, 20));
    for (const char* title : {"Sine", "Square", "Noise"})
      button->addItemWithTitle(title);
    window = cocoa::make<cocoa::NSWindow>(cocoa::NSMakeRect(200, 300, 300, 200), cocoa::NSTitledWindowMask);
    window->setWindowSystem(system.get());
    window->setHostWindow(host);
    window->contentView()->addSubview(button.get());
    if (host) {
      window->orderFront(nullptr);
    } else {
      window->makeKeyAndOrderFront(nullptr);
    }
    ASSERT_TRUE(until([this] { return user.viewable(id()) && window->platformWindow()->viewable(); }));
  }
  bool until(const std::function<bool()>& condition) {
    return test_support::wait_until(
        [&] {
          const cocoa::NSAutoreleasePool cycle;
          system->dispatch();
          cocoa::CFRunLoopRunInMode(cocoa::kCFRunLoopDefaultMode, 0, false);
          return condition();
        },
        {system->descriptor(), user.descriptor()});
  }
  xcb_window_t id() const { return static_cast<xcb_window_t>(window->platformWindow()->nativeHandle()); }
  bool list_shows() { return button->cell()->isOpen() && !window->childWindows().empty(); }
  /// By a click that leaves it open, with everything that it does by itself done.
  void open_list() {
    const auto place = user.geometry(id());
    user.point(place.x + 70, place.y + place.height - 1 - 40);
    user.click(1);
    ASSERT_TRUE(until([this] { return list_shows() && window->isKeyWindow(); }));
  }

  test_support::XServer server;
  test_support::XClient user{server.display()};
  std::unique_ptr<test_support::WindowManager> manager;
  std::unique_ptr<cocoa::WindowSystem> system;
  cocoa::Ref<cocoa::NSWindow> window;
  cocoa::Ref<cocoa::NSPopUpButton> button;
};

}  // namespace ondex::test
