// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "appkit/NSWindow.h"
#include "appkit/private/menu_list.h"

namespace cocoa {

class NSPopUpButtonCell;

/// Where an open list goes.
struct MenuPlace {
  NSRect frame;          ///< on the screen
  CGFloat scrolled = 0;  ///< how much of the list lies above it
};

/// Puts a list of that size beside nothing but over the control, so that what lies `middle` below its top is
/// level with the control's own middle; moved as far as it must be to lie on the screen, and cut to the
/// screen when it is too tall for it.
MenuPlace place_menu(NSRect control, NSSize list, CGFloat middle, NSRect screen);

/// A list on the screen, from its opening to a choice or its closing: fed with the events of the control's
/// window and of its own.
///
/// Opened by a press, it lives on that press alone: dragging lights what is under the pointer, and the
/// release chooses it or, beside the list, closes. A press that is released at once and on the spot leaves
/// the list open; then, as when it was opened without a press, it takes the pointer, and the keys of the
/// control's window, until a click or a key chooses or closes it. The window has the keys meanwhile, if need
/// be for that time only; the list never has. It also closes when the window loses them to another program,
/// moves or goes off the screen.
class MenuTracking : public NSObject, private NSWindowDelegate, private EventTracker {
 public:
  MenuTracking(NSPopUpButtonCell& cell, std::function<void()> closed);
  ~MenuTracking() override;

  /// False when there is nowhere to show the list.
  bool open(NSRect frame, NSView& view);
  /// Without a choice.
  void close() { finish(nullptr); }
  /// Takes the list off the screen and tells nobody.
  void cancel();

 private:
  bool trackEvent(NSEvent* event) override;
  void trackingMustEnd() override { close(); }
  void windowIsGoing() override;
  void viewLeftWindow(NSView* view) override;
  /// The list's own, destroyed by others.
  void windowWillClose(NSWindow*) override;

  void stayOpen();
  void pointerMoved(NSPoint where);
  void pressed(NSEvent* event, NSPoint where);
  bool released(NSEvent* event, NSPoint where);
  void turned(NSEvent* event);
  void keyPressed(NSEvent* event);
  void step(int from, int direction);
  void light(int index);
  void search(NSEvent* event);
  void scrollAlong(int direction);
  void finish(NSMenuItem* chosen);
  /// Takes the item that is lit, if it may be.
  void chooseLit();
  NSPoint inList(const NSEvent* event) const;
  /// In the points in which the control's window and the list lie.
  static NSPoint onScreen(const NSEvent* event);

  WeakRef<NSPopUpButtonCell> cell_;
  std::function<void()> closed_;
  WeakRef<NSWindow> control_window_;
  WeakRef<NSView> view_;
  Ref<NSWindow> window_;
  Ref<MenuList> list_;

  bool holds_press_ = false;  ///< the press that opened the list goes on
  bool has_moved_ = false;    ///< away from where it began
  NSPoint pressed_at_;        ///< on the screen
  double pressed_time_ = 0;
  bool pressed_in_list_ = false;
  bool lit_by_key_ = false;
  bool took_keys_ = false;  ///< for the control's window
  std::string typed_;
  double typed_time_ = 0;
  int scroll_direction_ = 0;
  CFRunLoop::AttachmentRef scroll_timer_;
};

}  // namespace cocoa
