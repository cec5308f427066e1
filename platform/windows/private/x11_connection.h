// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "foundation/UniqueFd.h"
#include "windows/private/x11_atoms.h"
#include "windows/private/x11_reply.h"
#include "windows/private/x11_visuals.h"

namespace cocoa {

/// One connection to an X server, with what every window asks of it. Knows no windows.
///
/// Errors come in as events and harm nobody. After the connection is lost every request is a no-op.
class X11Connection {
 public:
  /// Null after a line in the log. Waits for the server.
  static std::unique_ptr<X11Connection> open(const char* display_name);
  ~X11Connection();
  X11Connection(const X11Connection&) = delete;
  X11Connection& operator=(const X11Connection&) = delete;

  xcb_connection_t* get() const { return connection_; }
  xcb_window_t root() const { return screen_->root; }
  const xcb_screen_t& screen() const { return *screen_; }
  const X11Atoms& atoms() const { return atoms_; }
  /// For windows that cover what is behind them; there always is one.
  const X11Visual& opaqueVisual() const { return opaque_; }
  /// For windows with translucent pixels; there may be none.
  const X11Visual& translucentVisual() const { return translucent_; }
  /// In units of 4 bytes.
  size_t longestRequest() const { return longest_request_; }
  bool lost() const { return xcb_connection_has_error(connection_) != 0; }

  /// Readable when there is something to dispatch, which the connection's own descriptor is not always: a
  /// flush or an answer waited for takes events in from it along the way.
  int descriptor() const { return poll_.get(); }
  /// Makes descriptor() readable until the next beginDispatch().
  void wake();
  void beginDispatch();
  /// The next event that has come in; null when there is none. The first call after beginDispatch() reads
  /// what the server has sent, so that a flood of events cannot keep the dispatch busy for ever.
  XcbPtr<xcb_generic_event_t> nextEvent();
  /// Sends what is buffered. To be called once after a row of requests.
  void flush();
  /// Stops watching a lost connection.
  void ignoreFromNowOn();

  /// Calls `use` from collectReplies() with the reply to the request of that number, or null after an error.
  void expect(unsigned int sequence, std::function<void(const void* reply)> use);
  /// Whether any came.
  bool collectReplies();

  /// What tells whether somebody may see a window inside `leader`, the top-level window that its manager
  /// knows: the numbers of three requests, in that order, of which the replies are for the functions below.
  struct SeenQuestion {
    unsigned int attributes;
    unsigned int icccm_state;
    unsigned int ewmh_state;
  };
  SeenQuestion askWhetherSeen(xcb_window_t window, xcb_window_t leader) const;

  // These wait for the server.

  /// The same; true for a window that is no more.
  bool isSeen(xcb_window_t window, xcb_window_t leader);

  /// Whether somebody blends the windows of our screen, so that translucent ones may be used.
  bool hasCompositor();
  bool hasWindowManager();
  /// Whether the window manager says that it understands messages of that type.
  bool managerUnderstands(xcb_atom_t message);
  /// The window that a window manager knows as its own among `window` and those that it lies in: the one to
  /// be transient for. A host hands out a window deep inside its own.
  xcb_window_t topLevelOf(xcb_window_t window);
  /// Where the window's upper left corner is on the screen, in device pixels; none for one that is gone.
  struct Place {
    int x;
    int y;
  };
  std::optional<Place> originOf(xcb_window_t window);
  /// The text of a property of the root window.
  std::string rootProperty(xcb_atom_t property);

 private:
  explicit X11Connection(xcb_connection_t* connection);
  bool makePollable();
  bool chooseVisuals();
  bool hasProperty(xcb_window_t window, xcb_atom_t property);
  /// Events and replies that were taken in aside must not wait for the server to send more.
  void noticeWhatWasTakenIn();
  bool takeInReplies();

  xcb_connection_t* connection_;
  const xcb_screen_t* screen_ = nullptr;
  X11Atoms atoms_;
  X11Visual opaque_;
  X11Visual translucent_;
  size_t longest_request_ = 0;
  UniqueFd poll_;
  UniqueFd wake_;
  bool read_server_ = false;
  std::deque<XcbPtr<xcb_generic_event_t>> taken_in_;

  struct Expected {
    unsigned int sequence;
    std::function<void(const void*)> use;
    XcbPtr<void> reply = nullptr;
  };
  std::deque<Expected> expected_;  ///< in the order of the requests, which is that of the replies
  std::deque<Expected> arrived_;
};

/// Of the reply to a request for attributes; null is a window that is no more, and none of these.
bool is_viewable(const void* attributes);
/// Of WM_STATE.
bool is_iconic(const void* icccm_state);
/// Of _NET_WM_STATE: also when it is shaded.
bool is_hidden(const void* ewmh_state, const X11Atoms& atoms);

}  // namespace cocoa
