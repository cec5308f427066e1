// SPDX-License-Identifier: MIT
#include "windows/private/x11_atoms.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "windows/private/x11_reply.h"

namespace cocoa {

namespace {
struct NamedAtom {
  xcb_atom_t X11Atoms::*field;
  std::string_view name;
};

constexpr std::array named_atoms{
    NamedAtom{&X11Atoms::utf8_string, "UTF8_STRING"},
    NamedAtom{&X11Atoms::utf8_text, "text/plain;charset=utf-8"},
    NamedAtom{&X11Atoms::clipboard, "CLIPBOARD"},
    NamedAtom{&X11Atoms::targets, "TARGETS"},
    NamedAtom{&X11Atoms::timestamp, "TIMESTAMP"},
    NamedAtom{&X11Atoms::wm_protocols, "WM_PROTOCOLS"},
    NamedAtom{&X11Atoms::wm_delete_window, "WM_DELETE_WINDOW"},
    NamedAtom{&X11Atoms::wm_state, "WM_STATE"},
    NamedAtom{&X11Atoms::net_active_window, "_NET_ACTIVE_WINDOW"},
    NamedAtom{&X11Atoms::net_supported, "_NET_SUPPORTED"},
    NamedAtom{&X11Atoms::net_wm_moveresize, "_NET_WM_MOVERESIZE"},
    NamedAtom{&X11Atoms::net_supporting_wm_check, "_NET_SUPPORTING_WM_CHECK"},
    NamedAtom{&X11Atoms::net_wm_name, "_NET_WM_NAME"},
    NamedAtom{&X11Atoms::net_wm_pid, "_NET_WM_PID"},
    NamedAtom{&X11Atoms::net_wm_ping, "_NET_WM_PING"},
    NamedAtom{&X11Atoms::net_wm_state, "_NET_WM_STATE"},
    NamedAtom{&X11Atoms::net_wm_state_above, "_NET_WM_STATE_ABOVE"},
    NamedAtom{&X11Atoms::net_wm_state_hidden, "_NET_WM_STATE_HIDDEN"},
    NamedAtom{&X11Atoms::net_wm_state_shaded, "_NET_WM_STATE_SHADED"},
    NamedAtom{&X11Atoms::net_wm_window_type, "_NET_WM_WINDOW_TYPE"},
    NamedAtom{&X11Atoms::net_wm_window_type_normal, "_NET_WM_WINDOW_TYPE_NORMAL"},
    NamedAtom{&X11Atoms::net_wm_window_type_dialog, "_NET_WM_WINDOW_TYPE_DIALOG"},
    NamedAtom{&X11Atoms::net_wm_window_type_popup_menu, "_NET_WM_WINDOW_TYPE_POPUP_MENU"},
    NamedAtom{&X11Atoms::xembed_info, "_XEMBED_INFO"},
};

xcb_intern_atom_cookie_t ask_for(xcb_connection_t* connection, std::string_view name) {
  return xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.data());
}

xcb_atom_t answer_of(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
  const XcbPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}
}  // namespace

X11Atoms intern_atoms(xcb_connection_t* connection, int screen_number) {
  std::array<xcb_intern_atom_cookie_t, named_atoms.size()> cookies{};
  for (size_t i = 0; i < cookies.size(); ++i)
    cookies[i] = ask_for(connection, named_atoms[i].name);
  const auto compositor = ask_for(connection, "_NET_WM_CM_S" + std::to_string(screen_number));

  X11Atoms atoms;
  for (size_t i = 0; i < cookies.size(); ++i)
    atoms.*named_atoms[i].field = answer_of(connection, cookies[i]);
  atoms.compositor = answer_of(connection, compositor);
  return atoms;
}

}  // namespace cocoa
