// SPDX-License-Identifier: MIT
#include <xcb/xcbext.h>

#include <algorithm>
#include <cstdint>
#include <span>

#include "windows/private/x11_connection.h"

// Whether somebody may see a window. Managers unmap what they hide, or say so in a property and leave it to a
// compositor; hosts unmap a window that ours lies in.

namespace cocoa {

namespace {
std::span<const uint32_t> words_of(const void* property) {
  const auto* reply = static_cast<const xcb_get_property_reply_t*>(property);
  if (!reply || reply->format != 32)
    return {};
  return {static_cast<const uint32_t*>(xcb_get_property_value(reply)),
          static_cast<size_t>(xcb_get_property_value_length(reply)) / sizeof(uint32_t)};
}
}  // namespace

bool is_viewable(const void* attributes) {
  return !attributes || static_cast<const xcb_get_window_attributes_reply_t*>(attributes)->map_state ==
                            XCB_MAP_STATE_VIEWABLE;
}

bool is_iconic(const void* icccm_state) {
  constexpr uint32_t iconic = 3;
  const auto words = words_of(icccm_state);
  return !words.empty() && words.front() == iconic;
}

bool is_hidden(const void* ewmh_state, const X11Atoms& atoms) {
  return std::ranges::any_of(words_of(ewmh_state), [&atoms](uint32_t state) {
    return state == atoms.net_wm_state_hidden || state == atoms.net_wm_state_shaded;
  });
}

X11Connection::SeenQuestion X11Connection::askWhetherSeen(xcb_window_t window, xcb_window_t leader) const {
  constexpr uint32_t most = 64;
  return {xcb_get_window_attributes(connection_, window).sequence,
          xcb_get_property(connection_, 0, leader, atoms_.wm_state, atoms_.wm_state, 0, 2).sequence,
          xcb_get_property(connection_, 0, leader, atoms_.net_wm_state, XCB_ATOM_ATOM, 0, most).sequence};
}

bool X11Connection::isSeen(xcb_window_t window, xcb_window_t leader) {
  const SeenQuestion question = askWhetherSeen(window, leader);
  const auto answer = [this](unsigned int sequence) {
    return XcbPtr<void>(xcb_wait_for_reply(connection_, sequence, nullptr));
  };
  const auto attributes = answer(question.attributes);
  const auto icccm_state = answer(question.icccm_state);
  const auto ewmh_state = answer(question.ewmh_state);
  noticeWhatWasTakenIn();
  return is_viewable(attributes.get()) && !is_iconic(icccm_state.get()) &&
         !is_hidden(ewmh_state.get(), atoms_);
}

}  // namespace cocoa
