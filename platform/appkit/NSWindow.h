// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "appkit/EventTracker.h"
#include "appkit/NSView.h"
#include "appkit/WindowSystemScope.h"
#include "foundation/CFRunLoop.h"
#include "quartz/CGContext.h"
#include "windows/window_system.h"

namespace cocoa {

enum NSWindowStyleMask : unsigned {
  NSBorderlessWindowMask = 0,
  NSTitledWindowMask = 1,
  NSClosableWindowMask = 2
};
enum NSWindowOrderingMode : int { NSWindowAbove = 1, NSWindowOut = 0, NSWindowBelow = -1 };

/// What a window tells its delegate. The argument is the window.
class NSWindowDelegate {
 public:
  virtual ~NSWindowDelegate() = default;
  virtual bool windowShouldClose(NSWindow*) { return true; }
  virtual void windowWillClose(NSWindow*) {}
  virtual void windowDidBecomeKey(NSWindow*) {}
  virtual void windowDidResignKey(NSWindow*) {}
};

/// A window and the views in it.
///
/// It is shown by the window system given to it, by its parent window's, or by the one whose scope is current
/// on the thread when it is first ordered in; without any it stays off the screen. What views mark as needing
/// display is drawn once at the end of a pass of the run loop, into the window system's pixels, and only
/// while somebody may see it.
class NSWindow : public NSResponder, private PlatformWindowDelegate {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// initWithContentRect:styleMask:. The rectangle is the content's, in the screen.
  NSWindow(NSRect content_rect, unsigned style_mask);
  /// Of an interface file: contentRect, titled and closable of styleMask, title, movableByWindowBackground,
  /// releasedWhenClosed and visibleAtLaunch, of which the last two are YES when absent. A window that is
  /// visible at launch shows when it awakes.
  explicit NSWindow(InterfaceDecoder& decoder);
  ~NSWindow() override;
  /// Takes the content view.
  void applyInterface(InterfaceDecoder& decoder) override;
  void awakeFromNib() override;

  void setWindowSystem(WindowSystem* system) { system_ = system; }
  /// Shows the window inside a host's window instead of on the screen. Before it is first ordered in.
  void setHostWindow(uint64_t host_window) { host_window_ = host_window; }

  NSView* contentView() const { return content_view_.get(); }
  /// Takes the view, which is resized to the content's size, from where it was. A window whose content is
  /// taken away has an empty view for it.
  void setContentView(NSView* view);
  NSRect frame() const { return frame_; }
  void setFrame_display(NSRect frame, bool display);
  void setContentSize(NSSize size);
  /// From now on the content keeps its size in points, and is drawn as large as fits, with its proportions
  /// kept, in whatever size the window system gives the window. For an editor in a host that resizes it.
  void setContentScalesToFit();
  void setTitle(std::string_view title);
  const std::string& title() const { return title_; }

  /// Whether dragging a view that answers yes to mouseDownCanMoveWindow moves the window, unless that lies in
  /// a host's. Off at first. A drag that moves the window is not told to the view.
  void setMovableByWindowBackground(bool movable) { movable_by_background_ = movable; }
  bool isMovableByWindowBackground() const { return movable_by_background_; }

  void setOpaque(bool opaque) { opaque_ = opaque; }
  bool isOpaque() const { return opaque_; }
  /// Shown around borderless windows that are not opaque.
  void setHasShadow(bool has_shadow) { has_shadow_ = has_shadow; }
  bool hasShadow() const { return has_shadow_; }
  /// Above 0 (see CGWindowLevelForKey) the window stays over those of other programs. Before it is first
  /// ordered in.
  void setLevel(int level) { level_ = level; }
  int level() const { return level_; }
  /// Releases the window once when it closes; off at first: owners here hold references.
  void setReleasedWhenClosed(bool released) { released_when_closed_ = released; }
  bool isReleasedWhenClosed() const { return released_when_closed_; }

  /// Not retained.
  void setDelegate(NSWindowDelegate* delegate) { delegate_ = delegate; }
  NSWindowDelegate* delegate() const { return delegate_; }

  bool isVisible() const { return stage_ == Stage::on_screen; }
  bool isKeyWindow() const;
  /// Whether it is key or has asked to be: the window system takes its time.
  bool claimsKey() const;
  /// Borderless windows take no keys unless a subclass says so.
  virtual bool canBecomeKeyWindow() const { return style_mask_ != NSBorderlessWindowMask; }
  void makeKeyAndOrderFront(NSObject* sender);
  /// Gives the keys back to who had them before, as a click elsewhere does.
  void giveUpKey();
  /// The window has, or no longer has or claims, the keys: tells the first responder, then the delegate.
  void becomeKeyWindow() override;
  void resignKeyWindow() override;
  void orderFront(NSObject* sender);
  void orderOut(NSObject* sender);
  /// As the close button does: asks the delegate first.
  void performClose(NSObject* sender);
  void close();

  /// A child is retained, shown with its parent, moves with it and stays above it. A borderless child lies
  /// in its parent's points: it is as much larger than they are as the parent's content is drawn.
  void addChildWindow_ordered(NSWindow* child, NSWindowOrderingMode place);
  void removeChildWindow(NSWindow* child);
  NSWindow* parentWindow() const;
  const std::vector<Ref<NSWindow>>& childWindows() const;

  /// Gives the window an owner on the screen, as an editor is of its preferences: it is shown by that one's
  /// window system, first near it, stays above its top-level window, and closes when that one closes or goes.
  /// Neither retains the other. Null makes it free; a change takes it off the screen.
  void setOwnerWindow(NSWindow* owner);
  NSWindow* ownerWindow() const;
  /// Those that this one is the owner of, in the order in which they came.
  const std::vector<NSWindow*>& ownedWindows() const;

  NSPoint convertBaseToScreen(NSPoint point) const;
  NSPoint convertScreenToBase(NSPoint point) const;
  /// The screen in the points of frame(): where a borderless child may lie and be seen. Asks the window
  /// system, which is the only one to know of an editor inside a host's window. Empty without its window.
  NSRect screenBounds() const;

  /// The event that is being delivered; null at other times.
  NSEvent* currentEvent() const;
  /// From now on events go to the tracker first, and no more to the one before, which must end. Not retained:
  /// a tracker that goes takes itself out.
  void setEventTracker(EventTracker* tracker);
  /// Ignored when it is not the one.
  void removeEventTracker(const EventTracker* tracker);

  /// Takes an event of the window system to the view that it is for. A subclass sees here all that the user
  /// does.
  virtual void sendEvent(NSEvent* event);

  bool makeFirstResponder(NSResponder* responder);
  NSResponder* firstResponder() const;
  /// Who becomes the first responder when the window becomes key and has none; not retained.
  void setInitialFirstResponder(NSView* view);
  /// Gives the keys to the next view in drawing order that accepts them, round and round.
  void selectNextKeyView(NSObject* sender);
  void selectPreviousKeyView(NSObject* sender);

  /// What shows the window, or would; null for none.
  WindowSystem* windowSystem() const;

  /// Makes the window system's window now, hidden, instead of when it is first ordered in; false, after a
  /// line in the log, when it refuses.
  bool realize();
  /// Device pixels a point of the content.
  double backingScaleFactor() const;
  /// The window of the window system behind this one; null until it is first ordered in, and after it has
  /// gone.
  PlatformWindow* platformWindow() const { return platform_.get(); }

  /// Whether something is marked that the next pass of the run loop, or a later one, is to draw.
  bool viewsNeedDisplay() const;
  /// Marks a rectangle of the content for drawing on this pass.
  void setNeedsDisplayInRect(NSRect rect);
  /// Draws what the window shows, its shadow and its child windows included, into a context whose origin is
  /// the content's.
  void drawWithChildren(CGContextRef context);
  /// Draws what is marked now, if the window is seen.
  void displayIfNeeded();

 protected:
  /// Where the window is put when it is first shown for its owner, whose content is at `owner` on a screen of
  /// that size: over its middle.
  virtual NSPoint originFor(NSRect owner, NSSize screen) const;

 private:
  friend class NSView;
  friend class ChildWindows;
  friend class EventRouter;
  friend class OwnedWindows;
  friend class WindowDisplay;
  friend class WindowKeys;
  friend class WindowPlace;

  enum class Stage {
    off_screen,  ///< next: on_screen
    on_screen,   ///< ordered in; next: off_screen
    gone,        ///< others destroyed the window system's window; next: off_screen, when it gets a new one
  };
  struct Parts;

  void windowReceived(const WindowEvent& event) override;
  void windowMustRedraw() override;
  void windowMoved() override;
  void windowWasHidden() override;
  void windowBecameKey() override;
  void windowResignedKey() override;
  void windowShouldClose() override;
  void windowGone() override;

  bool isEmbedded() const { return host_window_ != 0; }
  bool castsShadow() const { return has_shadow_ && !opaque_ && style_mask_ == NSBorderlessWindowMask; }
  WindowOptions platformOptions();
  void leaveWindowSystem();
  void viewLeft(NSView* view);
  void contentViewLeaves(const NSView* view);

  NSRect frame_;
  unsigned style_mask_;
  std::string title_;
  int level_ = 0;
  bool opaque_ = true;
  bool has_shadow_ = true;
  bool movable_by_background_ = false;
  bool released_when_closed_ = false;
  bool visible_at_launch_ = false;
  NSWindowDelegate* delegate_ = nullptr;
  WindowSystem* system_ = nullptr;
  WindowSystem* shown_by_ = nullptr;  ///< the scope that it is shown in does not last
  uint64_t host_window_ = 0;
  Stage stage_ = Stage::off_screen;
  Ref<NSView> content_view_;
  std::unique_ptr<Parts> parts_;
  std::unique_ptr<PlatformWindow> platform_;
  CFRunLoop::AttachmentRef before_waiting_;
};

}  // namespace cocoa
