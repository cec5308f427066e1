// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "windows/private/x11_connection.h"
#include "windows/private/x11_keyboard.h"
#include "windows/private/x11_pasteboards.h"
#include "windows/private/x11_pointer.h"
#include "windows/private/x11_window.h"
#include "windows/x11.h"

namespace cocoa {

/// Takes the events of one connection to the windows that they are for.
class X11WindowSystem : public WindowSystem {
 public:
  X11WindowSystem(std::unique_ptr<X11Connection> connection, const X11Options& options);
  ~X11WindowSystem() override;

  std::unique_ptr<PlatformWindow> makeWindow(const WindowOptions& options,
                                             PlatformWindowDelegate& delegate) override;
  bool dispatch() override;
  int descriptor() const override { return connection_->descriptor(); }
  bool connected() const override { return connected_; }
  double defaultScale() const override { return scale_; }
  void offerText(Pasteboard pasteboard, std::string text) override;
  void requestText(Pasteboard pasteboard, UseText use) override;
  NSSize screenSize() const override;

  X11Connection& connection() { return *connection_; }
  X11Keyboard& keyboard() { return keyboard_; }
  const X11PointingDevices& pointingDevices() const { return devices_; }
  bool sharesMemory() const { return shares_memory_; }
  int screenWidth() const { return screen_width_; }
  int screenHeight() const { return screen_height_; }
  /// Seconds of an event's time, which unlike it never goes back when the server's counter wraps around.
  double secondsOf(xcb_timestamp_t time);

  void add(X11Window& window) { windows_[window.id()] = &window; }
  void remove(const X11Window& window);
  /// Null when the window has been destroyed or is gone: to be asked again after every call of an owner.
  X11Window* find(xcb_window_t id) const;
  /// From a later dispatch calls `use` with the reply to a window's request of that number, or null after an
  /// error, unless the window has gone by then.
  using UseReply = void (*)(X11Window& window, const void* reply, uint32_t sequence);
  void expectFor(const X11Window& window, unsigned int sequence, UseReply use);
  /// A popup has, or no longer has, the keys: presses outside of it matter, or no longer do.
  void popupKeyChanged();
  /// Whether popups are told of presses anywhere.
  bool watchesPresses() const { return watches_presses_; }
  /// Gives the keys to a window, or to another one if the server refuses: windows go and hide at any time.
  void giveKeyTo(xcb_window_t window, xcb_window_t otherwise, xcb_timestamp_t time);
  /// Calls `use` with every window that there is by the time of its turn.
  void forEachWindow(const std::function<void(X11Window&)>& use);

 private:
  void handle(const xcb_generic_event_t& event);
  bool handleExtension(const xcb_generic_event_t& event);
  void handleXInput(const xcb_ge_generic_event_t& event);
  bool handlePointing(const xcb_generic_event_t& event);
  bool handleStructure(const xcb_generic_event_t& event);
  void handleConfigure(const xcb_generic_event_t& event);
  void handleOther(const xcb_generic_event_t& event);
  void handleError(const xcb_generic_error_t& error);
  void handlePress(const X11Pointer& pointer, bool down);
  void handleMotion(const X11Pointer& pointer);
  void handleTurn(const X11Pointer& pointer, ScrollTurn turn);
  void handlePressAnywhere(const xcb_input_raw_button_press_event_t& press);
  void flushMotion();
  void loseConnection();

  std::unique_ptr<X11Connection> connection_;
  X11Keyboard keyboard_;
  X11PointingDevices devices_;
  X11Pasteboards pasteboards_;
  std::map<xcb_window_t, X11Window*> windows_;
  double scale_;
  int screen_width_;
  int screen_height_;
  uint8_t shm_opcode_ = 0;
  uint8_t shm_first_event_ = 0;
  bool shares_memory_ = false;
  bool connected_ = true;
  bool watches_presses_ = false;
  struct {
    uint32_t sequence = 0;
    xcb_window_t otherwise = XCB_WINDOW_NONE;
  } key_given_;                       ///< by the last request of giveKeyTo()
  std::optional<X11Pointer> motion_;  ///< the last of a row of motions, not yet told
  xcb_timestamp_t last_time_ = 0;
  int64_t milliseconds_ = 0;  ///< last_time_ without wrapping
  std::set<std::pair<uint8_t, uint8_t>> logged_errors_;
};

}  // namespace cocoa
