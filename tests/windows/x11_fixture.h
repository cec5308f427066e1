// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "recorder.h"
#include "windows/x11.h"
#include "x_client.h"
#include "x_server.h"

namespace cocoa {

/// A server, a user on it, and a window system of ours.
class X11Test : public testing::Test {
 protected:
  explicit X11Test(const std::vector<std::string>& server_arguments = {}) : server(server_arguments) {}

  void SetUp() override {
    ASSERT_FALSE(server.display().empty()) << "Xvfb did not start";
    connect({});
  }

  void connect(const X11Options& options) {
    other.reset();
    window.reset();
    system = make_x11_window_system(server.display().c_str(), options);
    ASSERT_TRUE(system);
  }

  /// Dispatches until `condition` holds.
  bool until(const std::function<bool()>& condition) {
    return test_support::wait_until(
        [&] {
          system->dispatch();
          return condition();
        },
        {system->descriptor(), user.descriptor()});
  }

  /// Dispatches until everything that the server sent before now has been delivered: a message from
  /// another client takes its place behind all of it.
  void settle() {
    Recorder nobody;
    const auto marker = system->makeWindow({.kind = WindowKind::popup, .frame = {{}, {1, 1}}}, nobody);
    user.send_protocol(id(*marker), "WM_DELETE_WINDOW");
    EXPECT_TRUE(until([&] { return nobody.count("close") > 0; }));
  }

  /// A shown window of 200 × 100 points, the upper left corner of which is at (100, 50) on the screen.
  PlatformWindow& open(WindowKind kind = WindowKind::titled) { return open(window, recorder, kind); }
  PlatformWindow& open(std::unique_ptr<PlatformWindow>& place, Recorder& listener, WindowKind kind,
                       NSRect frame = NSMakeRect(100, 650, 200, 100)) {
    place = system->makeWindow({.kind = kind,
                                .frame = frame,
                                .title = "Tremolo",
                                .parent = &place == &other ? window.get() : nullptr},
                               listener);
    EXPECT_TRUE(place);
    place->show();
    EXPECT_TRUE(until([&] { return place->viewable(); }));
    settle();
    listener.clear();
    return *place;
  }

  static xcb_window_t id(const PlatformWindow& of) { return static_cast<xcb_window_t>(of.nativeHandle()); }

  /// As soon as the server has read the frame before.
  void fill(PlatformWindow& of, uint32_t color) {
    ASSERT_TRUE(until([&] { return static_cast<bool>(of.pixels()); }));
    const Pixels pixels = of.pixels();
    for (int y = 0; y < pixels.height; ++y) {
      auto* row = reinterpret_cast<uint32_t*>(pixels.data + static_cast<size_t>(y) * pixels.bytes_per_row);
      std::fill_n(row, pixels.width, color);
    }
  }
  static void present(PlatformWindow& of, PixelRect damage = {0, 0, 32767, 32767}) {
    of.present({&damage, 1});
  }

  test_support::XServer server;
  test_support::XClient user{server.display()};
  Recorder recorder;
  Recorder other_recorder;
  std::unique_ptr<WindowSystem> system;
  std::unique_ptr<PlatformWindow> window;
  std::unique_ptr<PlatformWindow> other;
};

/// The same with a window manager.
class ManagedX11Test : public X11Test {
 protected:
  void SetUp() override {
    X11Test::SetUp();
    manager = std::make_unique<test_support::WindowManager>(server.display());
    ASSERT_TRUE(manager->started());
    user.share_with_manager();
  }
  std::unique_ptr<test_support::WindowManager> manager;
};

}  // namespace cocoa
