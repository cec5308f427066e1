// SPDX-License-Identifier: MIT
#include "windows/private/x11_keyboard.h"

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

// A field of this C header bears the name of a C++ keyword.
#ifdef __clang__
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <utility>

#include "foundation/NSLog.h"
#include "windows/private/x11_connection.h"

namespace cocoa {

X11Keyboard::X11Keyboard(X11Connection& connection) : connection_(connection) {
  context_ = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  const bool has_xkb = xkb_x11_setup_xkb_extension(
      connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
      XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &first_event_, nullptr);
  if (has_xkb)
    device_ = xkb_x11_get_core_keyboard_device_id(connection.get());
  if (!context_ || device_ < 0) {
    NSLog("The X display has no XKB keyboard; keys will not be understood.");
    return;
  }
  readKeymap();
  selectEvents();
}

X11Keyboard::~X11Keyboard() {
  xkb_state_unref(state_);
  xkb_keymap_unref(keymap_);
  xkb_context_unref(context_);
}

void X11Keyboard::readKeymap() {
  xkb_keymap* keymap =
      xkb_x11_keymap_new_from_device(context_, connection_.get(), device_, XKB_KEYMAP_COMPILE_NO_FLAGS);
  if (!keymap)
    return;
  xkb_state_unref(std::exchange(state_, xkb_state_new(keymap)));
  xkb_keymap_unref(std::exchange(keymap_, keymap));
}

void X11Keyboard::selectEvents() {
  xcb_connection_t* c = connection_.get();
  const auto device = static_cast<xcb_xkb_device_spec_t>(device_);
  constexpr uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
  constexpr uint16_t parts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                             XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_VIRTUAL_MODS;
  xcb_xkb_select_events_details_t details{};
  details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
  details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
  xcb_xkb_select_events_aux(c, device, events, 0, 0, parts, parts, &details);
  // A key that is held then repeats its press alone, so that repetitions can be told from typing fast.
  constexpr uint32_t repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
  const auto cookie = xcb_xkb_per_client_flags(c, device, repeat, repeat, 0, 0, 0);
  xcb_discard_reply(c, cookie.sequence);
}

bool X11Keyboard::handle(const xcb_generic_event_t& event) {
  if (device_ < 0 || (event.response_type & 0x7f) != first_event_)
    return false;
  // All events of the extension have one number; the second byte says which it is.
  if (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY)
    readKeymap();
  return true;
}

X11Keyboard::Key X11Keyboard::keyAt(xcb_keycode_t code, uint16_t state) {
  if (!state_)
    return {};
  // Bits 0 to 7 are the modifiers in force, 13 and 14 the layout.
  const xkb_mod_mask_t modifiers = state & 0xffU;
  const xkb_layout_index_t layout = (state >> 13U) & 3U;
  xkb_state_update_mask(state_, modifiers, 0, 0, 0, 0, layout);
  Key key;
  key.keysym = xkb_state_key_get_one_sym(state_, code);
  const int length = xkb_state_key_get_utf8(state_, code, nullptr, 0);
  if (length > 0) {
    key.characters.resize(static_cast<size_t>(length) + 1);
    xkb_state_key_get_utf8(state_, code, key.characters.data(), key.characters.size());
    key.characters.resize(static_cast<size_t>(length));
  }
  return key;
}

X11Keyboard::Key X11Keyboard::press(xcb_keycode_t code, uint16_t state) {
  Key key = keyAt(code, state);
  key.is_repeat = held_.test(code);
  held_.set(code);
  return key;
}

X11Keyboard::Key X11Keyboard::release(xcb_keycode_t code, uint16_t state) {
  held_.reset(code);
  return keyAt(code, state);
}

}  // namespace cocoa
