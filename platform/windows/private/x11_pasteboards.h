// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "windows/window_system.h"

namespace cocoa {

class X11Connection;

/// The texts that programs of an X server offer each other: CLIPBOARD and PRIMARY.
class X11Pasteboards {
 public:
  explicit X11Pasteboards(X11Connection& connection) : connection_(connection) {}
  X11Pasteboards(const X11Pasteboards&) = delete;
  X11Pasteboards& operator=(const X11Pasteboards&) = delete;

  /// `time` is the server's, of the user's act.
  void offer(Pasteboard pasteboard, std::string text, xcb_timestamp_t time);
  /// `now` in seconds, as of tellUnanswered().
  void request(Pasteboard pasteboard, WindowSystem::UseText use, xcb_timestamp_t time, double now);

  /// Takes an event of a selection; false for any other.
  bool handle(const xcb_generic_event_t& event);
  /// Tells what needs no answer of others: our own text, and that nobody answered in time. Whether anybody
  /// was told.
  bool tellUnanswered(double now);

 private:
  struct Offer {
    std::string text;
    xcb_timestamp_t since;
  };
  /// Each lives in a window of its own, so that an owner who goes on sending what we no longer want notices
  /// that nobody is there.
  struct Request {
    Pasteboard pasteboard;
    WindowSystem::UseText use;
    xcb_timestamp_t time;
    double deadline;
    bool asked_for_latin1 = false;
  };
  struct Answer {
    WindowSystem::UseText use;
    std::optional<std::string> text;
  };

  xcb_atom_t selectionOf(Pasteboard pasteboard) const;
  std::optional<Offer>* offerOf(xcb_atom_t selection);
  xcb_window_t makeWindow() const;
  void convert(xcb_window_t window, const Request& request, xcb_atom_t target) const;
  void handleClear(const xcb_selection_clear_event_t& event);
  void handleRequest(const xcb_selection_request_event_t& event);
  bool serve(const Offer& offer, xcb_window_t requestor, xcb_atom_t property, xcb_atom_t target) const;
  void handleNotify(const xcb_selection_notify_event_t& event);
  void handleProperty(xcb_window_t window, const xcb_get_property_reply_t* reply);
  void finish(xcb_window_t window, std::optional<std::string> text);

  X11Connection& connection_;
  xcb_window_t owner_ = XCB_WINDOW_NONE;  ///< made with the first offer
  std::array<std::optional<Offer>, 2> offers_;
  std::map<xcb_window_t, Request> requests_;
  std::deque<Answer> own_answers_;
};

}  // namespace cocoa
