// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>

#include "windows/private/repeated_question.h"
#include "windows/private/x11_connection.h"
#include "windows/private/x11_window_place.h"

namespace cocoa {

class X11Window;

/// Asks the server to put a window somewhere, and finds out where others have put it.
class X11WindowPlacement {
 public:
  /// See X11WindowPlace.
  X11WindowPlacement(X11Window& window, double scale, int parent_height, bool in_host)
      : window_(window), place_(scale, parent_height, in_host) {}

  X11WindowPlace& place() { return place_; }
  const X11WindowPlace& place() const { return place_; }
  /// Asks for the place and size there are. Does not flush.
  void request();
  /// The number of the request that made the window.
  void setRequestedBy(uint32_t sequence) { requested_by_ = sequence; }
  /// Whether what comes with that number was on its way when something else was asked for.
  bool isOutdated(uint32_t sequence) const;

  // By others. The owner hears of it last, and may destroy the window.
  void handlePosition(const xcb_configure_notify_event_t& event);
  void handleReparent(const xcb_reparent_notify_event_t& event);

  /// The frame in the screen at this moment. Waits for the server where others may have moved it unnoticed.
  NSRect screenFrame() const;
  /// Where the upper left corner is on the screen, by what is known.
  X11Connection::Place knownOrigin() const;
  /// Asks where an embedded window is on the screen; the answer comes with a later dispatch.
  void askForScreenPlace(double now);

 private:
  /// The answer is the position; of an embedded window, which has one in its host, its place on the screen.
  void askForOrigin();
  void setPosition(int x, int y);
  void setScreenPlace(int x, int y);

  X11Window& window_;
  X11WindowPlace place_;
  uint32_t requested_by_ = 0;  ///< the number of our last request
  bool reparented_ = false;    ///< a manager's frame is around it, so that positions are told in two ways
  /// Where the window was on the screen when somebody asked last, in device pixels.
  mutable X11Connection::Place on_screen_{0, 0};
  RepeatedQuestion question_{1.0 / 60};
};

}  // namespace cocoa
