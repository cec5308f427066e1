#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "windows/private/x11_key_focus.h"
#include "windows/private/x11_surface.h"
#include "windows/private/x11_window_place.h"
#include "windows/private/x11_window_pointer.h"
#include "windows/window_system.h"

namespace cocoa {

class X11Connection;
class X11WindowSystem;

/// One window of an X server. Handlers of events call the owner last of all, because it may destroy the
/// window.
class X11Window : public PlatformWindow {
 public:
  /// Null after a line in the log. Waits for the server.
  static std::unique_ptr<X11Window> make(X11WindowSystem& system, const WindowOptions& options,
                                         PlatformWindowDelegate& delegate);
  ~X11Window() override;

  void show() override;
  void hide() override;
  bool viewable() const override;
  void makeKey() override;
  void giveUpKey() override;
  bool isKey() const override { return focus_.isKey(); }
  std::optional<double> pressSeenAt() const override { return focus_.pressSeenAt(); }
  void setTitle(std::string_view title) override;
  void setFrame(NSRect frame) override;
  NSRect frame() const override { return place_.frame(); }
  NSRect screenFrame() const override;
  NSRect screenBounds() const override;
  double scale() const override { return place_.scale(); }
  bool letManagerMove() override;
  void grabPointer() override;
  void releasePointer() override;
  Pixels pixels() override { return surface_->pixels(); }
  Frame shownFrame() const override { return surface_->shownFrame(); }
  void present(std::span<const PixelRect> damage) override;
  uint64_t nativeHandle() const override { return id_; }

  xcb_window_t id() const { return id_; }
  /// The window that this one is embedded in; XCB_WINDOW_NONE for others.
  xcb_window_t host() const { return host_; }
  bool isPopup() const { return kind_ == WindowKind::popup; }
  bool isEmbedded() const { return kind_ == WindowKind::embedded; }
  bool isShown() const { return shown_; }
  /// The window that a popup lies over, or that a panel belongs to; null without one, or after it has gone.
  X11Window* parent() const;
  /// Whether it is the parent or the top-level window that the parent lies in.
  bool liesOver(xcb_window_t window) const { return window == parent_ || window == leader_; }
  PlatformWindowDelegate& delegate() { return delegate_; }
  X11WindowSystem& system() { return system_; }
  const X11WindowPlace& place() const { return place_; }
  X11Surface& surface() { return *surface_; }
  X11KeyFocus& keyFocus() { return focus_; }
  const X11KeyFocus& keyFocus() const { return focus_; }
  /// Has the server told the events that are to be told now.
  void selectEvents();

  // Events of the server, in x11_window_events.cpp.
  void handleExpose(const xcb_expose_event_t& event);
  void handleConfigure(const xcb_configure_notify_event_t& event, uint32_t sequence);
  void handleReparent(const xcb_reparent_notify_event_t& event);
  void handleMap();
  void handleUnmap();
  void handleVisibility(const xcb_visibility_notify_event_t& event);
  void handleProperty(const xcb_property_notify_event_t& event);
  void handleMessage(const xcb_client_message_event_t& event);
  void handleKey(const xcb_key_press_event_t& event, bool down);
  void handleButton(const X11Pointer& pointer, bool down);
  void handleMotion(const X11Pointer& pointer);
  void handleTurn(const X11Pointer& pointer, ScrollTurn turn);
  void handleCrossing(const X11Pointer& pointer, bool in);
  /// `parent` shows something new in `damage`, by its device pixels, that may show through this window.
  void handleNewsBelow(const X11Window& parent, std::span<const PixelRect> damage);
  /// A place on the screen, in device pixels.
  bool covers(int x, int y) const { return shown_ && place_.covers(x, y); }
  /// The window no longer exists.
  void handleGone();
  /// The window that it lies in, the screen or the host's, has another height.
  void parentHasHeight(int height);
  /// Asks whether the host's windows show; the answer comes with a later dispatch.
  void askWhetherHostShows(double now);
  /// Asks where the embedded window is that this popup lies over, and whether it shows: the server tells
  /// nobody when a host moves or hides.
  void watchParent(double now);
  /// Tells what could not be told from inside a call.
  void tellDeferred();

 private:
  X11Window(X11WindowSystem& system, const WindowOptions& options, PlatformWindowDelegate& delegate);
  bool create();
  void describe(const std::string& title);
  uint32_t eventMask() const;
  /// Whether a manager, if there is one, puts a frame around it.
  bool isManageable() const { return kind_ == WindowKind::titled || kind_ == WindowKind::panel; }
  /// Makes the pixels as many as are drawn.
  void resizeSurface();
  void configure();
  /// Has the parent's pixels show through from where it is now, if nobody else sees to it.
  void lieOverParent();
  void askWhetherParentIsSeen(double now);
  /// The same now; waits for the server.
  bool parentIsSeen() const;
  /// The owner of the parent may well destroy this window.
  void tellParentHidden();
  void askForScreenPlace(double now);
  void askForPosition();
  void setPosition(int x, int y);
  /// Any of them may destroy the window.
  void tell(const std::vector<WindowEvent>& events);

  X11WindowSystem& system_;
  X11Connection& connection_;
  PlatformWindowDelegate& delegate_;
  WindowKind kind_;
  bool resizable_;
  /// Of a popup or panel, by its number: an owner may well close the parent first.
  xcb_window_t parent_ = XCB_WINDOW_NONE;
  /// The top-level window that the parent is or lies in.
  xcb_window_t leader_ = XCB_WINDOW_NONE;
  xcb_window_t id_;
  xcb_window_t host_ = XCB_WINDOW_NONE;
  bool blends_itself_ = false;  ///< a popup with translucent pixels on a screen without translucent windows
  X11WindowPlace place_;
  bool has_margin_ = false;
  /// Where an embedded window was on the screen when somebody asked last, in device pixels.
  mutable int screen_x_ = 0;
  mutable int screen_y_ = 0;
  uint32_t configured_by_ = 0;  ///< the number of our last request for a position or size
  std::unique_ptr<X11Surface> surface_;
  X11WindowPointer pointer_;
  X11KeyFocus focus_;
  bool reparented_ = false;  ///< a manager's frame is around it, so that positions are told in two ways
  bool shown_ = false;       ///< by its owner
  bool mapped_ = false;      ///< by the server
  bool obscured_ = false;
  bool iconic_ = false;
  bool host_shows_ = true;
  bool asked_host_ = false;
  double host_asked_at_ = 0;
  bool gone_ = false;
  bool asked_parent_ = false;
  bool parent_hidden_ = false;
  bool parent_was_seen_ = false;
  double parent_asked_at_ = 0;
  bool asked_place_ = false;
  double place_asked_at_ = 0;
  bool must_redraw_ = false;
};

}  // namespace cocoa
