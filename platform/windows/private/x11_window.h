// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "windows/private/x11_key_focus.h"
#include "windows/private/x11_parent_probe.h"
#include "windows/private/x11_surface.h"
#include "windows/private/x11_visibility.h"
#include "windows/private/x11_window_placement.h"
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
  bool viewable() const override { return visibility_.isSeen() && !isGone(); }
  void makeKey() override;
  void giveUpKey() override;
  bool isKey() const override { return focus_.isKey(); }
  std::optional<double> pressSeenAt() const override { return focus_.pressSeenAt(); }
  void setTitle(std::string_view title) override;
  void setFrame(NSRect frame) override;
  NSRect frame() const override { return place().frame(); }
  NSRect screenFrame() const override { return placement_.screenFrame(); }
  NSRect screenBounds() const override;
  double scale() const override { return place().scale(); }
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
  bool isGone() const { return life_ == Life::gone; }
  /// The window that a popup lies over, or that a panel belongs to; null without one, or after it has gone.
  X11Window* parent() const { return parent_probe_.parent(); }
  PlatformWindowDelegate& delegate() { return delegate_; }
  X11WindowSystem& system() { return system_; }
  const X11WindowPlace& place() const { return placement_.place(); }
  X11WindowPlacement& placement() { return placement_; }
  X11Visibility& visibility() { return visibility_; }
  X11ParentProbe& parentProbe() { return parent_probe_; }
  X11Surface& surface() { return *surface_; }
  X11KeyFocus& keyFocus() { return focus_; }
  const X11KeyFocus& keyFocus() const { return focus_; }
  /// Has the server told the events that are to be told now.
  void selectEvents();

  // Events of the server.
  void handleExpose(const xcb_expose_event_t& event);
  void handleConfigure(const xcb_configure_notify_event_t& event, uint32_t sequence);
  void handleMap();
  void handleUnmap();
  void handleMessage(const xcb_client_message_event_t& event);
  void handleKey(const xcb_key_press_event_t& event, bool down);
  void handleButton(const X11Pointer& pointer, bool down);
  void handleMotion(const X11Pointer& pointer);
  void handleTurn(const X11Pointer& pointer, ScrollTurn turn);
  void handleCrossing(const X11Pointer& pointer, bool in);
  /// `changed` shows something new in `damage`, by its device pixels, that may show through this window.
  void handleNewsBelow(const X11Window& changed, std::span<const PixelRect> damage);
  /// A place on the screen, in device pixels.
  bool covers(int x, int y) const { return visibility_.isShown() && place().covers(x, y); }
  /// The window no longer exists.
  void handleGone();
  /// The window that it lies in, the screen or the host's, has another height.
  void parentHasHeight(int height);
  /// Tells what could not be told from inside a call.
  void tellDeferred();

 private:
  enum class Life {
    unborn,  ///< the server has not yet made it, or has refused to
    alive,   ///< from create() on
    gone,    ///< from handleGone() on; there is nothing of it at the server any more
  };

  X11Window(X11WindowSystem& system, const WindowOptions& options, PlatformWindowDelegate& delegate);
  bool create();
  void describe(const std::string& title);
  uint32_t eventMask() const;
  /// Whether a manager, if there is one, puts a frame around it.
  bool isManageable() const { return kind_ == WindowKind::titled || kind_ == WindowKind::panel; }
  /// Makes the pixels as many as are drawn.
  void resizeSurface();
  /// Has the parent's pixels show through from where it is now, if nobody else sees to it.
  void lieOverParent();
  /// Any of them may destroy the window.
  void tell(const std::vector<WindowEvent>& events);

  X11WindowSystem& system_;
  X11Connection& connection_;
  PlatformWindowDelegate& delegate_;
  WindowKind kind_;
  bool resizable_;
  xcb_window_t id_;
  xcb_window_t host_ = XCB_WINDOW_NONE;
  bool blends_itself_ = false;  ///< a popup with translucent pixels on a screen without translucent windows
  bool has_margin_ = false;
  bool must_redraw_ = false;
  Life life_ = Life::unborn;
  std::unique_ptr<X11Surface> surface_;
  X11ParentProbe parent_probe_;
  X11WindowPlacement placement_;
  X11Visibility visibility_;
  X11WindowPointer pointer_;
  X11KeyFocus focus_;
};

}  // namespace cocoa
