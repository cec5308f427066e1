// SPDX-License-Identifier: MIT
#include "appkit/NSWindow.h"

#include <utility>

#include "appkit/NSEvent.h"
#include "appkit/private/NSWindow_parts.h"

namespace cocoa {

const Class NSWindow::class_ = {
    .name = "NSWindow",
    .superclass = &NSResponder::class_,
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSWindow>(decoder)); }};

NSWindow::NSWindow(NSRect content_rect, unsigned style_mask)
    : frame_(content_rect), style_mask_(style_mask), parts_(std::make_unique<Parts>(*this)) {
  setContentView(make<NSView>(NSRect{{0, 0}, content_rect.size}).get());
}

NSWindow::~NSWindow() {
  parts_->events.windowIsGoing();
  before_waiting_.reset();
  if (NSWindow* const parent = parentWindow())
    parent->removeChildWindow(this);
  parts_->owned.windowIsGoing();
  parts_->children.windowIsGoing();
  // The view may be in another window by now.
  if (content_view_ && content_view_->window() == this) {
    content_view_->moveToWindow(nullptr);
    content_view_->tellPlaceChanged();
  }
  parts_->display.forget();
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
  parts_->display.markAll();
}

void NSWindow::setFrame_display(NSRect frame, bool display) {
  const NSPoint moved = {frame.origin.x - frame_.origin.x, frame.origin.y - frame_.origin.y};
  const bool resized = frame.size != frame_.size;
  frame_ = frame;
  if (resized)
    content_view_->setFrameSize(frame.size);
  if (platform_)
    platform_->setFrame(parts_->place.frameOnScreen());
  if (resized)
    parts_->display.markAll();
  parts_->children.move(moved.x, moved.y);
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
  if (const NSWindow* other = parentWindow() ? parentWindow() : ownerWindow())
    return other->windowSystem();
  return WindowSystemScope::current();
}

WindowOptions NSWindow::platformOptions() {
  WindowOptions options;
  options.frame = parts_->place.frameOnScreen();
  options.title = title_;
  options.host_window = host_window_;
  options.resizable = parts_->place.fit().scales();
  if (NSWindow* above = parentWindow() ? parentWindow() : ownerWindow(); above && above->realize())
    options.parent = above->platform_.get();
  if (isEmbedded()) {
    options.kind = WindowKind::embedded;
  } else if ((style_mask_ & NSTitledWindowMask) == 0) {
    options.kind = WindowKind::popup;
  } else {
    options.kind = options.parent || level_ > 0 ? WindowKind::panel : WindowKind::titled;
  }
  return options;
}

/// Makes the window system's window, once.
bool NSWindow::realize() {
  if (stage_ == Stage::gone)
    leaveWindowSystem();
  if (platform_)
    return true;
  WindowSystem* system = windowSystem();
  if (!system)
    return false;
  if (ownerWindow() && ownerWindow()->platform_)
    frame_.origin = parts_->place.originAtOwner();
  platform_ = system->makeWindow(platformOptions(), *this);
  if (!platform_)
    return false;
  shown_by_ = system;
  before_waiting_ = CFRunLoopGetCurrent()->addBeforeWaiting([this] { displayIfNeeded(); });
  parts_->place.fitContent();
  parts_->display.markAll();
  return true;
}

/// The window system's window goes; the next time it is shown it gets a new one.
void NSWindow::leaveWindowSystem() {
  // A child's is a popup over it, and cannot outlive it.
  parts_->children.leaveWindowSystem();
  // It was the way to the window system for those that it owns, too.
  parts_->owned.leaveWindowSystem();
  if (stage_ == Stage::gone)
    stage_ = Stage::off_screen;
  shown_by_ = nullptr;
  before_waiting_.reset();
  parts_->display.forget();
  platform_.reset();
}

void NSWindow::orderFront(NSObject*) {
  if (!realize())
    return;
  stage_ = Stage::on_screen;
  platform_->show();
  for (const Ref<NSWindow>& child : childWindows())
    child->orderFront(nullptr);
}

void NSWindow::makeKeyAndOrderFront(NSObject* sender) {
  orderFront(sender);
  if (!platform_ || !canBecomeKeyWindow())
    return;
  parts_->keys.ask();
  platform_->makeKey();
}

void NSWindow::orderOut(NSObject*) {
  const Ref<NSWindow> self(this);
  if (!isVisible())
    return;
  parts_->events.endTracking();
  parts_->events.endMoving();
  stage_ = Stage::off_screen;
  if (platform_)
    platform_->hide();
  parts_->children.orderOut();
  resignKeyWindow();
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
  parts_->owned.close();
  if (released_when_closed_)
    release();
}

// Other windows

void NSWindow::addChildWindow_ordered(NSWindow* child, NSWindowOrderingMode) {
  const Ref<NSWindow> added(child);
  if (parts_->children.add(child) && isVisible())
    child->orderFront(nullptr);
}

void NSWindow::removeChildWindow(NSWindow* child) {
  parts_->children.remove(child);
}

NSWindow* NSWindow::parentWindow() const {
  return parts_->children.parent();
}

const std::vector<Ref<NSWindow>>& NSWindow::childWindows() const {
  return parts_->children.all();
}

void NSWindow::setOwnerWindow(NSWindow* owner) {
  parts_->owned.setOwner(owner);
}

NSWindow* NSWindow::ownerWindow() const {
  return parts_->owned.owner();
}

const std::vector<NSWindow*>& NSWindow::ownedWindows() const {
  return parts_->owned.all();
}

// Place

NSPoint NSWindow::convertBaseToScreen(NSPoint point) const {
  return {point.x + frame_.origin.x, point.y + frame_.origin.y};
}

NSPoint NSWindow::convertScreenToBase(NSPoint point) const {
  return {point.x - frame_.origin.x, point.y - frame_.origin.y};
}

NSRect NSWindow::screenBounds() const {
  return parts_->place.screenBounds();
}

void NSWindow::setContentScalesToFit() {
  parts_->place.setContentScalesToFit();
}

NSPoint NSWindow::originFor(NSRect owner, NSSize) const {
  return {NSMinX(owner) + (NSWidth(owner) - NSWidth(frame_)) / 2,
          NSMinY(owner) + (NSHeight(owner) - NSHeight(frame_)) / 2};
}

// The keys and other events

bool NSWindow::isKeyWindow() const {
  return parts_->keys.isKey();
}

bool NSWindow::claimsKey() const {
  return parts_->keys.isClaimed();
}

void NSWindow::becomeKeyWindow() {
  parts_->keys.become();
}

void NSWindow::resignKeyWindow() {
  parts_->keys.resign();
}

void NSWindow::giveUpKey() {
  const Ref<NSWindow> self(this);
  resignKeyWindow();
  if (platform_)
    platform_->giveUpKey();
}

bool NSWindow::makeFirstResponder(NSResponder* responder) {
  return parts_->keys.makeFirstResponder(responder);
}

NSResponder* NSWindow::firstResponder() const {
  return parts_->keys.firstResponder();
}

void NSWindow::setInitialFirstResponder(NSView* view) {
  parts_->keys.setInitialFirstResponder(view);
}

void NSWindow::selectNextKeyView(NSObject*) {
  parts_->keys.selectKeyView(true);
}

void NSWindow::selectPreviousKeyView(NSObject*) {
  parts_->keys.selectKeyView(false);
}

void NSWindow::contentViewLeaves(const NSView* view) {
  if (content_view_ == view)
    setContentView(make<NSView>(view->bounds()).get());
}

void NSWindow::viewLeft(NSView* view) {
  parts_->events.viewLeft(view);
  parts_->keys.viewLeft(view);
}

NSEvent* NSWindow::currentEvent() const {
  return parts_->events.currentEvent();
}

void NSWindow::sendEvent(NSEvent* event) {
  parts_->events.send(event);
}

void NSWindow::setEventTracker(EventTracker* tracker) {
  parts_->events.setTracker(tracker);
}

void NSWindow::removeEventTracker(const EventTracker* tracker) {
  parts_->events.removeTracker(tracker);
}

// Drawing

double NSWindow::backingScaleFactor() const {
  return platform_ ? platform_->scale() * parts_->place.fit().factor() : 1.0;
}

bool NSWindow::viewsNeedDisplay() const {
  return parts_->display.isNeeded();
}

void NSWindow::setNeedsDisplayInRect(NSRect rect) {
  parts_->display.mark(rect);
}

void NSWindow::displayIfNeeded() {
  parts_->display.displayIfNeeded();
}

void NSWindow::drawWithChildren(CGContextRef context) {
  CGContextSaveGState(context);
  parts_->display.drawContent(context, content_view_->bounds());
  CGContextRestoreGState(context);
  for (const Ref<NSWindow>& child : childWindows()) {
    if (!child->isVisible())
      continue;
    CGContextSaveGState(context);
    CGContextTranslateCTM(context, child->frame_.origin.x - frame_.origin.x,
                          child->frame_.origin.y - frame_.origin.y);
    child->drawWithChildren(context);
    CGContextRestoreGState(context);
  }
}

// What the window system tells

void NSWindow::windowReceived(const WindowEvent& event) {
  const Ref<NSWindow> self(this);
  const auto ns_event = make<NSEvent>(parts_->place.fit().inContent(event), this);
  parts_->events.deliver(ns_event.get());
}

void NSWindow::windowBecameKey() {
  becomeKeyWindow();
}

void NSWindow::windowResignedKey() {
  resignKeyWindow();
}

void NSWindow::windowMustRedraw() {
  const NSRect frame = platform_->frame();
  if (parts_->place.fit().scales() || parts_->place.followsParent() || castsShadow()) {
    parts_->place.fitContent();
  } else if (frame.size != frame_.size) {
    frame_ = frame;
    content_view_->setFrameSize(frame.size);
  }
  parts_->display.markAll();
}

void NSWindow::windowMoved() {
  parts_->events.endTracking();
  // A child has been put there by its parent's move.
  if (parts_->place.followsParent())
    return;
  const NSPoint origin = platform_->frame().origin;
  const NSPoint moved = {origin.x - frame_.origin.x, origin.y - frame_.origin.y};
  frame_.origin = origin;
  parts_->children.move(moved.x, moved.y);
}

void NSWindow::windowWasHidden() {
  const Ref<NSWindow> self(this);
  parts_->events.endTracking();
  // They would stay on the screen alone, and hear keys that nobody sees the effect of.
  parts_->children.orderOut();
}

void NSWindow::windowShouldClose() {
  performClose(nullptr);
}

void NSWindow::windowGone() {
  const Ref<NSWindow> self(this);
  parts_->events.endTracking();
  stage_ = Stage::gone;
  parts_->children.orderOut();
  resignKeyWindow();
  if (delegate_)
    delegate_->windowWillClose(this);
  parts_->owned.close();
}

}  // namespace cocoa
