// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <bitset>
#include <cstdint>
#include <string>

struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace cocoa {

class X11Connection;

/// What a key means under the layout that the user has chosen.
class X11Keyboard {
 public:
  /// Waits for the server. Without XKB keys mean nothing, after a line in the log.
  explicit X11Keyboard(X11Connection& connection);
  ~X11Keyboard();
  X11Keyboard(const X11Keyboard&) = delete;
  X11Keyboard& operator=(const X11Keyboard&) = delete;

  struct Key {
    uint32_t keysym = 0;
    std::string characters;
    bool is_repeat = false;
  };
  /// `state` is the event's own: it tells modifiers and layout even of keys that were pressed elsewhere.
  Key press(xcb_keycode_t code, uint16_t state);
  Key release(xcb_keycode_t code, uint16_t state);
  /// The keyboard goes to another window; no key counts as held any more.
  void forgetHeldKeys() { held_.reset(); }

  /// Takes an event of the XKB extension; false for any other. Reads the keymap anew, waiting for the server,
  /// when the user has plugged in or set up a keyboard.
  bool handle(const xcb_generic_event_t& event);

 private:
  Key keyAt(xcb_keycode_t code, uint16_t state);
  void selectEvents();
  void readKeymap();

  X11Connection& connection_;
  uint8_t first_event_ = 0;
  xkb_context* context_ = nullptr;
  xkb_keymap* keymap_ = nullptr;
  xkb_state* state_ = nullptr;
  int32_t device_ = -1;
  std::bitset<256> held_;
};

}  // namespace cocoa
