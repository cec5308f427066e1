// SPDX-License-Identifier: MIT
#include "windows/private/x11_properties.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "windows/private/x11_connection.h"

namespace cocoa {

namespace {
/// In bytes: more than any title bar shows. A request longer than the server takes ends the connection.
constexpr size_t longest_title = 1024;

/// The beginning of a text in UTF-8 that has at most that many bytes, up to the end of a character.
std::string_view beginning(std::string_view text, size_t most) {
  if (text.size() <= most)
    return text;
  size_t end = most;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80U)
    --end;
  return text.substr(0, end);
}

void set_text(X11Connection& connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
              std::string_view text) {
  xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                      static_cast<uint32_t>(text.size()), text.data());
}

void set_words(X11Connection& connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
               std::span<const uint32_t> words) {
  xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
                      static_cast<uint32_t>(words.size()), words.data());
}

std::string name_of_this_machine() {
  std::array<char, 256> name{};
  if (gethostname(name.data(), name.size() - 1) != 0)
    return {};
  return name.data();
}

void send_to_root(X11Connection& connection, const xcb_client_message_event_t& message) {
  xcb_send_event(connection.get(), 0, connection.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
}

void set_owner(X11Connection& connection, xcb_window_t window) {
  constexpr std::string_view instance_and_class("ondex\0Ondex\0", 12);
  set_text(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, instance_and_class);
  // The process means something only together with the machine that it runs on.
  const std::string machine = name_of_this_machine();
  if (machine.empty())
    return;
  set_text(connection, window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, machine);
  const std::array process{static_cast<uint32_t>(getpid())};
  set_words(connection, window, connection.atoms().net_wm_pid, XCB_ATOM_CARDINAL, process);
}
}  // namespace

void set_title(X11Connection& connection, xcb_window_t window, std::string_view whole) {
  const X11Atoms& atoms = connection.atoms();
  const std::string_view title = beginning(whole, longest_title);
  const bool ascii =
      std::all_of(title.begin(), title.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  set_text(connection, window, XCB_ATOM_WM_NAME, ascii ? xcb_atom_t{XCB_ATOM_STRING} : atoms.utf8_string,
           title);
  set_text(connection, window, atoms.net_wm_name, atoms.utf8_string, title);
}

void set_fixed_size(X11Connection& connection, xcb_window_t window, int width, int height, WindowKind kind) {
  xcb_size_hints_t hints{};
  xcb_icccm_size_hints_set_size(&hints, 0, width, height);
  xcb_icccm_size_hints_set_base_size(&hints, width, height);
  xcb_icccm_size_hints_set_min_size(&hints, width, height);
  xcb_icccm_size_hints_set_max_size(&hints, width, height);
  // Positions are of the content, not of the frame that the manager puts around it.
  xcb_icccm_size_hints_set_win_gravity(&hints, XCB_GRAVITY_STATIC);
  // A panel knows where it belongs; the place of the editor is for the manager to choose.
  if (kind == WindowKind::panel)
    hints.flags |= XCB_ICCCM_SIZE_HINT_P_POSITION;
  xcb_icccm_set_wm_normal_hints(connection.get(), window, &hints);
}

void set_natural_size(X11Connection& connection, xcb_window_t window, int width, int height,
                      WindowKind kind) {
  xcb_size_hints_t hints{};
  xcb_icccm_size_hints_set_size(&hints, 0, width, height);
  xcb_icccm_size_hints_set_min_size(&hints, (width + 1) / 2, (height + 1) / 2);
  xcb_icccm_size_hints_set_aspect(&hints, width, height, width, height);
  // Hosts take the base size for the one that the window wants; window managers would take it away from both
  // sides before they compare the proportions.
  if (kind == WindowKind::embedded)
    xcb_icccm_size_hints_set_base_size(&hints, width, height);
  xcb_icccm_size_hints_set_win_gravity(&hints, XCB_GRAVITY_STATIC);
  xcb_icccm_set_wm_normal_hints(connection.get(), window, &hints);
}

void set_identity(X11Connection& connection, xcb_window_t window, WindowKind kind,
                  xcb_window_t transient_for) {
  const X11Atoms& atoms = connection.atoms();
  if (kind == WindowKind::embedded) {
    // Version 1, and mapped: hosts that honour the flag show nothing without it.
    constexpr std::array<uint32_t, 2> info{1, 1};
    set_words(connection, window, atoms.xembed_info, atoms.xembed_info, info);
    return;
  }
  set_owner(connection, window);
  const xcb_atom_t type = kind == WindowKind::panel   ? atoms.net_wm_window_type_dialog
                          : kind == WindowKind::popup ? atoms.net_wm_window_type_popup_menu
                                                      : atoms.net_wm_window_type_normal;
  set_words(connection, window, atoms.net_wm_window_type, XCB_ATOM_ATOM, {&type, 1});
  if (transient_for != XCB_WINDOW_NONE)
    set_words(connection, window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, {&transient_for, 1});
  if (kind == WindowKind::popup)
    return;
  const std::array protocols{atoms.wm_delete_window, atoms.net_wm_ping};
  set_words(connection, window, atoms.wm_protocols, XCB_ATOM_ATOM, protocols);
  xcb_icccm_wm_hints_t hints{};
  xcb_icccm_wm_hints_set_input(&hints, 1);
  xcb_icccm_wm_hints_set_normal(&hints);
  xcb_icccm_set_wm_hints(connection.get(), window, &hints);
}

void set_above(X11Connection& connection, xcb_window_t window) {
  const X11Atoms& atoms = connection.atoms();
  set_words(connection, window, atoms.net_wm_state, XCB_ATOM_ATOM, {&atoms.net_wm_state_above, 1});
}

void answer_ping(X11Connection& connection, const xcb_client_message_event_t& ping) {
  xcb_client_message_event_t answer = ping;
  answer.response_type = XCB_CLIENT_MESSAGE;
  answer.window = connection.root();
  send_to_root(connection, answer);
}

void announce_withdrawal(X11Connection& connection, xcb_window_t window) {
  xcb_unmap_notify_event_t unmapped{};
  unmapped.response_type = XCB_UNMAP_NOTIFY;
  unmapped.event = connection.root();
  unmapped.window = window;
  // An event takes 32 bytes on its way, whatever its type has.
  std::array<char, 32> bytes{};
  std::copy_n(reinterpret_cast<const char*>(&unmapped), sizeof unmapped, bytes.begin());
  xcb_send_event(connection.get(), 0, connection.root(),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, bytes.data());
}

namespace {
void send_move(X11Connection& connection, xcb_window_t window, int x, int y, uint32_t direction) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = connection.atoms().net_wm_moveresize;
  constexpr uint32_t left_button = 1;
  constexpr uint32_t from_an_application = 1;
  message.data.data32[0] = static_cast<uint32_t>(x);
  message.data.data32[1] = static_cast<uint32_t>(y);
  message.data.data32[2] = direction;
  message.data.data32[3] = left_button;
  message.data.data32[4] = from_an_application;
  send_to_root(connection, message);
}
}  // namespace

void ask_to_move(X11Connection& connection, xcb_window_t window, int x, int y) {
  constexpr uint32_t move = 8;
  send_move(connection, window, x, y, move);
}

void ask_to_stop_moving(X11Connection& connection, xcb_window_t window) {
  constexpr uint32_t cancel = 11;
  send_move(connection, window, 0, 0, cancel);
}

void ask_to_activate(X11Connection& connection, xcb_window_t window) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = connection.atoms().net_active_window;
  constexpr uint32_t from_an_application = 1;
  message.data.data32[0] = from_an_application;
  message.data.data32[1] = XCB_CURRENT_TIME;
  send_to_root(connection, message);
}

}  // namespace cocoa
