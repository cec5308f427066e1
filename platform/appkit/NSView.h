// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "appkit/NSResponder.h"

namespace cocoa {

class NSView;
class NSWindow;

enum NSAutoresizingMask : unsigned {
  NSViewNotSizable = 0,
  NSViewMinXMargin = 1,
  NSViewWidthSizable = 2,
  NSViewMaxXMargin = 4,
  NSViewMinYMargin = 8,
  NSViewHeightSizable = 16,
  NSViewMaxYMargin = 32,
};

/// Hears when a view has come to lie in other views or another window than before, or no longer lies in some:
/// also when it was one around the view that was moved.
class NSViewPlaceObserver {
 public:
  virtual ~NSViewPlaceObserver() = default;
  /// A view around this one may be in its destructor.
  virtual void viewPlaceChanged(const NSView& view) = 0;
};

/// A rectangle of a window that draws itself and receives events.
///
/// A view's frame is in its superview's coordinates, its bounds start at (0, 0); y grows upwards. A view owns
/// its subviews; superview and window are plain pointers, cleared when those go.
class NSView : public NSResponder {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// initWithFrame:
  explicit NSView(NSRect frame);
  /// initWithCoder:, for the views that interface files know by themselves.
  explicit NSView(InterfaceDecoder& decoder);
  ~NSView() override;
  /// Reads what an interface file says of every view: subviews, autoresizing, visibility.
  void applyInterface(InterfaceDecoder& decoder) override;

  NSRect frame() const { return frame_; }
  NSRect bounds() const { return {{0, 0}, frame_.size}; }
  void setFrame(NSRect frame);
  void setFrameOrigin(NSPoint origin);
  /// Lets subviews follow as their autoresizing masks say.
  virtual void setFrameSize(NSSize size);
  void setAutoresizingMask(unsigned mask) { autoresizing_mask_ = mask; }
  unsigned autoresizingMask() const { return autoresizing_mask_; }

  NSView* superview() const { return superview_; }
  NSWindow* window() const { return window_; }
  /// Back to front.
  const std::vector<Ref<NSView>>& subviews() const { return subviews_; }
  /// Puts the view in front of its siblings; one that already is a subview is brought to the front.
  virtual void addSubview(NSView* view);
  /// A window's content leaves the window.
  void removeFromSuperview();
  bool isDescendantOf(const NSView* other) const;
  virtual void viewDidMoveToWindow() {}
  /// Not retained: it is told for as long as others hold it.
  void addPlaceObserver(const std::shared_ptr<NSViewPlaceObserver>& observer);

  void setHidden(bool hidden);
  bool isHidden() const { return hidden_; }
  /// Whether the view paints every pixel of its bounds, so that nothing behind it need be drawn.
  virtual bool isOpaque() const { return false; }

  /// Asks for a redraw of all of it on this pass of the run loop.
  void setNeedsDisplay(bool needed);
  void setNeedsDisplayInRect(NSRect rect);
  /// Draws the view's bounds; `dirty` is what must be painted at least.
  virtual void drawRect(NSRect dirty) { (void)dirty; }
  /// Draws the view and its subviews back to front into the current context, whose origin is the view's.
  /// `dirty` in the view's coordinates; the context's clip must lie inside it.
  void drawTree(NSRect dirty);

  /// The front-most view at a point of the superview's coordinates, or null.
  virtual NSView* hitTest(NSPoint point);
  /// From the coordinates of `view`, or of the window when null.
  NSPoint convertPoint_fromView(NSPoint point, const NSView* view) const;
  NSPoint convertPoint_toView(NSPoint point, const NSView* view) const;
  NSRect convertRect_toView(NSRect rect, const NSView* view) const;

  /// Whether a press here may drag the window; of plain views, those that let the window shine through.
  virtual bool mouseDownCanMoveWindow() const { return !isOpaque(); }
  NSResponder* nextResponder() const override;

 private:
  friend class NSWindow;
  /// For a redraw of the whole view, whatever it asks for itself.
  void markAll();
  NSPoint originInWindow() const;
  NSRect visibleRectInWindow(NSRect rect) const;
  void moveToWindow(NSWindow* window);
  void tellPlaceChanged();
  const NSView* frontOpaqueCover(NSRect dirty) const;
  void draw(NSRect dirty, const NSView*& first);
  void resizeInSuperview(NSSize old_size, NSSize new_size);

  NSRect frame_;
  NSView* superview_ = nullptr;
  NSWindow* window_ = nullptr;
  std::vector<Ref<NSView>> subviews_;
  std::vector<std::weak_ptr<NSViewPlaceObserver>> place_observers_;
  unsigned autoresizing_mask_ = NSViewNotSizable;
  bool hidden_ = false;
};

}  // namespace cocoa
