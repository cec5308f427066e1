#include "appkit/NSWindow.h"

#include <algorithm>
#include <utility>

#include "appkit/NSEvent.h"

namespace cocoa {

const Class NSWindow::class_ = {
    .name = "NSWindow",
    .superclass = &NSResponder::class_,
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSWindow>(decoder)); }};

namespace {

thread_local WindowSystem* current_system = nullptr;
}  // namespace

WindowSystemScope::WindowSystemScope(WindowSystem* system) : outer_(current_system) {
  current_system = system;
}
WindowSystemScope::~WindowSystemScope() {
  current_system = outer_;
}
WindowSystem* WindowSystemScope::current() {
  return current_system;
}

NSWindow::NSWindow(NSRect content_rect, unsigned style_mask) : frame_(content_rect), style_mask_(style_mask) {
  setContentView(make<NSView>(NSRect{{0, 0}, content_rect.size}).get());
}

NSWindow::~NSWindow() {
  if (event_tracker_)
    event_tracker_->windowIsGoing();
  before_waiting_.reset();
  if (parent_)
    parent_->removeChildWindow(this);
  closeServants();
  while (!servants_.empty())
    servants_.back()->setServedWindow(nullptr);
  if (served_)
    std::erase(served_->servants_, this);
  // A child that goes off the screen may make its delegate remove it.
  for (const Ref<NSWindow>& child : std::exchange(children_, {})) {
    child->orderOut(nullptr);
    child->parent_ = nullptr;
    // A popup lives in its parent's window system and cannot outlive it.
    child->platform_.reset();
  }
  // The view may be in another window by now.
  if (content_view_ && content_view_->window() == this) {
    content_view_->moveToWindow(nullptr);
    content_view_->tellPlaceChanged();
  }
  CGContextRelease(context_);
}

void NSWindow::setContentView(NSView* view) {
  if (!view || content_view_ == view)
    return;
  const Ref<NSView> added(view);
  // The view may have been the last to hold the window.
  const Ref<NSWindow> self(this);
  view->removeFromSuperview();
  const Ref<NSView> before = std::exchange(content_view_, added);
  if (before) {
    before->moveToWindow(nullptr);
    before->tellPlaceChanged();
  }
  view->setFrame({{0, 0}, frame_.size});
  view->moveToWindow(this);
  view->tellPlaceChanged();
  markAll();
}

void NSWindow::setFrame_display(NSRect frame, bool display) {
  const NSPoint moved = {frame.origin.x - frame_.origin.x, frame.origin.y - frame_.origin.y};
  const bool resized = frame.size != frame_.size;
  frame_ = frame;
  if (resized)
    content_view_->setFrameSize(frame.size);
  if (platform_)
    platform_->setFrame(frameOnScreen());
  if (resized)
    markAll();
  for (const Ref<NSWindow>& child : children_) {
    child->setFrame_display(NSOffsetRect(child->frame_, moved.x, moved.y), false);
  }
  if (display)
    displayIfNeeded();
}

void NSWindow::setContentSize(NSSize size) {
  setFrame_display({frame_.origin, size}, false);
}

void NSWindow::setTitle(std::string_view title) {
  title_ = title;
  if (platform_)
    platform_->setTitle(title);
}

WindowSystem* NSWindow::windowSystem() const {
  if (system_ || shown_by_)
    return system_ ? system_ : shown_by_;
  if (const NSWindow* other = parent_ ? parent_ : served_)
    return other->windowSystem();
  return current_system;
}

/// Makes the window system's window, once.
bool NSWindow::realize() {
  if (gone_)
    leaveWindowSystem();
  if (platform_)
    return true;
  WindowSystem* system = windowSystem();
  if (!system)
    return false;
  if (served_ && served_->platform_)
    placeAtServed();
  WindowOptions options;
  options.frame = frameOnScreen();
  options.title = title_;
  options.host_window = host_window_;
  options.resizable = scales_to_fit_;
  if (NSWindow* above = parent_ ? parent_ : served_; above && above->realize())
    options.parent = above->platform_.get();
  if (host_window_ != 0) {
    options.kind = WindowKind::embedded;
  } else if ((style_mask_ & NSTitledWindowMask) == 0) {
    options.kind = WindowKind::popup;
  } else {
    options.kind = options.parent || level_ > 0 ? WindowKind::panel : WindowKind::titled;
  }
  platform_ = system->makeWindow(options, *this);
  if (!platform_)
    return false;
  shown_by_ = system;
  before_waiting_ = CFRunLoopGetCurrent()->addBeforeWaiting([this] { displayIfNeeded(); });
  fitContent();
  markAll();
  return true;
}

void NSWindow::orderFront(NSObject*) {
  if (!realize())
    return;
  visible_ = true;
  platform_->show();
  for (const Ref<NSWindow>& child : children_)
    child->orderFront(nullptr);
}

void NSWindow::makeKeyAndOrderFront(NSObject* sender) {
  orderFront(sender);
  if (!platform_ || !canBecomeKeyWindow())
    return;
  asked_for_key_ = !key_;
  platform_->makeKey();
}

void NSWindow::orderOut(NSObject*) {
  const Ref<NSWindow> self(this);
  if (!visible_)
    return;
  endTracking();
  moving_.reset();
  visible_ = false;
  if (platform_)
    platform_->hide();
  orderOutChildren();
  resignKeyWindow();
}

/// Children lie on the screen by themselves and would stay there alone.
void NSWindow::orderOutChildren() {
  for (const Ref<NSWindow>& child : std::vector<Ref<NSWindow>>(children_)) {
    child->orderOut(nullptr);
    // Given up by its delegate, it may wait for a pool that drains after the window system has gone.
    if (!child->parent_)
      child->platform_.reset();
  }
}

void NSWindow::performClose(NSObject*) {
  const Ref<NSWindow> self(this);
  if (!delegate_ || delegate_->windowShouldClose(this))
    close();
}

void NSWindow::close() {
  const Ref<NSWindow> self(this);
  if (delegate_)
    delegate_->windowWillClose(this);
  orderOut(nullptr);
  closeServants();
  if (released_when_closed_)
    release();
}

void NSWindow::addChildWindow_ordered(NSWindow* child, NSWindowOrderingMode) {
  if (!child || child == this || child->parent_ == this)
    return;
  for (const NSWindow* ancestor = this; ancestor; ancestor = ancestor->parent_) {
    if (ancestor == child)
      return;
  }
  const Ref<NSWindow> added(child);
  if (child->parent_)
    child->parent_->removeChildWindow(child);
  child->parent_ = this;
  children_.push_back(added);
  if (visible_)
    child->orderFront(nullptr);
}

void NSWindow::removeChildWindow(NSWindow* child) {
  const auto found = std::find_if(children_.begin(), children_.end(),
                                  [child](const Ref<NSWindow>& each) { return each.get() == child; });
  if (found == children_.end())
    return;
  const Ref<NSWindow> removed = *found;
  children_.erase(found);
  removed->parent_ = nullptr;
}

NSPoint NSWindow::convertBaseToScreen(NSPoint point) const {
  return {point.x + frame_.origin.x, point.y + frame_.origin.y};
}

NSPoint NSWindow::convertScreenToBase(NSPoint point) const {
  return {point.x - frame_.origin.x, point.y - frame_.origin.y};
}

NSRect NSWindow::screenBounds() const {
  if (!platform_)
    return {};
  const NSRect screen = platform_->screenBounds();
  const NSPoint origin = platform_->screenFrame().origin;
  const auto fit = static_cast<CGFloat>(fit_);
  return NSMakeRect(frame_.origin.x + (screen.origin.x - origin.x) / fit - fit_origin_.x,
                    frame_.origin.y + (screen.origin.y - origin.y) / fit - fit_origin_.y,
                    screen.size.width / fit, screen.size.height / fit);
}

bool NSWindow::makeFirstResponder(NSResponder* responder) {
  NSResponder* old = first_responder_.get();
  if (old == responder)
    return true;
  if (old && !old->resignFirstResponder())
    return false;
  first_responder_ = WeakRef<NSResponder>();
  if (!responder)
    return true;
  if (!responder->acceptsFirstResponder() || !responder->becomeFirstResponder())
    return false;
  first_responder_ = WeakRef<NSResponder>(responder);
  return true;
}

void NSWindow::contentViewLeaves(const NSView* view) {
  if (content_view_ == view)
    setContentView(make<NSView>(view->bounds()).get());
}

/// A view that leaves its window has no more claim on the keys and on a drag.
void NSWindow::viewLeft(NSView* view) {
  if (event_tracker_)
    event_tracker_->viewLeftWindow(view);
  if (pressed_view_.get() == view)
    pressed_view_ = WeakRef<NSView>();
  if (first_responder_.get() == view)
    first_responder_ = WeakRef<NSResponder>();
}

void NSWindow::windowReceived(const WindowEvent& event) {
  const Ref<NSWindow> self(this);
  const auto ns_event = make<NSEvent>(inContent(event), this);
  NSEvent* const outer = std::exchange(current_event_, ns_event.get());
  sendEvent(ns_event.get());
  current_event_ = outer;
}

void NSWindow::sendEvent(NSEvent* event) {
  if (event_tracker_ && event_tracker_->trackEvent(event)) {
    if (event->type() == WindowEventType::mouse_up && event->buttonNumber() == 0)
      pressed_view_ = WeakRef<NSView>();
    return;
  }
  switch (event->type()) {
    case WindowEventType::key_down:
    case WindowEventType::key_up: {
      const Ref<NSResponder> receiver(first_responder_ ? first_responder_.get() : this);
      if (event->type() == WindowEventType::key_down) {
        receiver->keyDown(event);
      } else {
        receiver->keyUp(event);
      }
      return;
    }
    default:
      mouseEvent(event);
  }
}

void NSWindow::setEventTracker(EventTracker* tracker) {
  endTracking();
  event_tracker_ = tracker;
}

void NSWindow::removeEventTracker(const EventTracker* tracker) {
  if (event_tracker_ == tracker)
    event_tracker_ = nullptr;
}

void NSWindow::endTracking() {
  if (event_tracker_)
    event_tracker_->trackingMustEnd();
}

void NSWindow::mouseEvent(NSEvent* event) {
  if (swallows(*event))
    return;
  const bool left = event->buttonNumber() == 0;
  const bool held =
      event->type() == WindowEventType::mouse_dragged || event->type() == WindowEventType::mouse_up;
  // What was pressed gets the drag and the release, wherever the pointer has gone.
  const Ref<NSView> view(held && left ? pressed_view_.get()
                                      : content_view_->hitTest(event->locationInWindow()));
  if (!view) {
    // The room around the content for its shadow belongs to what is behind it.
    if (event->type() == WindowEventType::mouse_down && castsShadow())
      giveUpKey();
    return;
  }
  switch (event->type()) {
    case WindowEventType::mouse_down:
      if (!left)
        return view->rightMouseDown(event);
      pressed_view_ = WeakRef<NSView>(view.get());
      if (isMovedBy(*view))
        beginMoving();
      if (view->acceptsFirstResponder())
        makeFirstResponder(view.get());
      return view->mouseDown(event);
    case WindowEventType::mouse_dragged:
      if (left && moving_) {
        moveAlong(*event);
      } else if (left) {
        view->mouseDragged(event);
      }
      return;
    case WindowEventType::mouse_up:
      if (!left)
        return view->rightMouseUp(event);
      pressed_view_ = WeakRef<NSView>();
      moving_.reset();
      return view->mouseUp(event);
    case WindowEventType::scroll_wheel:
      return view->scrollWheel(event);
    default:
      return;
  }
}

void NSWindow::windowMustRedraw() {
  const NSRect frame = platform_->frame();
  if (scales_to_fit_ || followsParent() || castsShadow()) {
    fitContent();
  } else if (frame.size != frame_.size) {
    frame_ = frame;
    content_view_->setFrameSize(frame.size);
  }
  markAll();
}

void NSWindow::windowMoved() {
  endTracking();
  // A child has been put there by its parent's move.
  if (followsParent())
    return;
  const NSPoint origin = platform_->frame().origin;
  const NSPoint moved = {origin.x - frame_.origin.x, origin.y - frame_.origin.y};
  frame_.origin = origin;
  for (const Ref<NSWindow>& child : children_) {
    child->setFrame_display(NSOffsetRect(child->frame_, moved.x, moved.y), false);
  }
}

void NSWindow::windowWasHidden() {
  const Ref<NSWindow> self(this);
  endTracking();
  // They would stay on the screen alone, and hear keys that nobody sees the effect of.
  orderOutChildren();
}

void NSWindow::windowShouldClose() {
  performClose(nullptr);
}

void NSWindow::windowGone() {
  const Ref<NSWindow> self(this);
  endTracking();
  visible_ = false;
  gone_ = true;
  orderOutChildren();
  resignKeyWindow();
  if (delegate_)
    delegate_->windowWillClose(this);
  closeServants();
}

}  // namespace cocoa
