// SPDX-License-Identifier: MIT
#include "appkit/NSWindowController.h"

#include "foundation/NSBundle.h"
#include "foundation/NSLog.h"

namespace cocoa {

namespace {

constexpr Outlet outlets[] = {{"window", [](NSObject& self, NSObject* value) {
                                 auto* window = dynamic_cast<NSWindow*>(value);
                                 if (value && !window)
                                   return false;
                                 static_cast<NSWindowController&>(self).setWindow(window);
                                 return true;
                               }}};

}  // namespace

const Class NSWindowController::class_ = {
    .name = "NSWindowController", .superclass = &NSResponder::class_, .outlets = outlets};

NSWindowController::~NSWindowController() {
  close();
}

NSWindow* NSWindowController::window() {
  if (window_ || loading_ || window_nib_name_.empty())
    return window_.get();
  loading_ = true;
  windowWillLoad();
  const bool loaded = loadWindow();
  loading_ = false;
  if (loaded)
    windowDidLoad();
  return window_.get();
}

bool NSWindowController::loadWindow() {
  // What the file makes and nobody keeps goes here, not with the next pass of the run loop.
  const NSAutoreleasePool pool;
  const NSBundle* bundle = NSBundle::bundleForClass(isa());
  if (!bundle) {
    NSLog("%.*s: there is no bundle to load its window from.", static_cast<int>(isa().name.size()),
          isa().name.data());
    return false;
  }
  if (!bundle->loadNibNamed_owner(window_nib_name_, this))
    return false;
  if (!window_)
    NSLog("%s.xib: connects no window to its owner.", window_nib_name_.c_str());
  return static_cast<bool>(window_);
}

void NSWindowController::setWindow(NSWindow* window) {
  if (window)
    window->setReleasedWhenClosed(false);
  window_ = window;
}

void NSWindowController::showWindow(NSObject* sender) {
  const Ref<NSWindow> shown(window());
  if (!shown)
    return;
  const auto* view = dynamic_cast<const NSView*>(sender);
  if (view && view->window())
    shown->setOwnerWindow(view->window());
  shown->makeKeyAndOrderFront(sender);
}

void NSWindowController::close() {
  if (window_)
    window_->close();
}

}  // namespace cocoa
