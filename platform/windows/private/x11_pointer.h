// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <cstdint>
#include <map>

#include "windows/scroll_valuators.h"

namespace cocoa {

class X11Connection;

/// What a pointer event says, whichever of the two protocols told it. Device pixels, y downwards.
struct X11Pointer {
  xcb_window_t window = 0;
  double x = 0;  ///< in the window
  double y = 0;
  double root_x = 0;  ///< on the screen; fractions from devices finer than the pixels
  double root_y = 0;
  uint16_t state = 0;        ///< modifiers and buttons held before the event, as XCB_KEY_BUT_MASK_*
  xcb_timestamp_t time = 0;  ///< milliseconds
  unsigned int button = 0;   ///< the server's number, of a press or release
  bool emulated = false;     ///< made by the server out of another kind of motion
};

X11Pointer pointer_of(const xcb_button_press_event_t& event);
X11Pointer pointer_of(const xcb_motion_notify_event_t& event);
X11Pointer pointer_of(const xcb_enter_notify_event_t& event);
X11Pointer pointer_of(const xcb_input_button_press_event_t& event);

/// The devices that move the pointer, through XInput 2: without it wheels turn in whole notches only.
class X11PointingDevices {
 public:
  /// Not usable when not `wanted` or when the server knows no version from 2.1 on. Waits for the server.
  X11PointingDevices(X11Connection& connection, bool wanted);

  bool usable() const { return opcode_ != 0; }
  /// Whether `event` comes from XInput 2.
  bool sent(const xcb_generic_event_t& event) const;
  /// Has presses, releases and motion over the window told through XInput 2 instead of the core protocol.
  void select(xcb_window_t window) const;

  /// Has presses anywhere on the screen told, as XCB_INPUT_RAW_BUTTON_PRESS, without taking them from
  /// anybody.
  void watchAllPresses(bool watch) const;
  /// Has all that the pointer does on the screen told to the window, in the protocol in which windows are
  /// told of it here, unless another program holds the pointer. May wait for the server.
  void grabFor(xcb_window_t window) const;
  void ungrab() const;

  void handleChange(const xcb_input_device_changed_event_t& event);
  /// How far the event turns the wheel.
  ScrollTurn turnOf(const xcb_input_motion_event_t& event);
  /// The wheel may have been turned over another window.
  void forgetPositions();

 private:
  void readDevices();
  xcb_input_device_id_t pointer() const;

  X11Connection& connection_;
  uint8_t opcode_ = 0;
  std::map<xcb_input_device_id_t, ScrollValuators> wheels_;
};

}  // namespace cocoa
