#include <algorithm>
#include <cmath>

#include "appkit/NSWindow.h"

namespace cocoa {

void NSWindow::setServedWindow(NSWindow* served) {
  if (served_ == served)
    return;
  for (const NSWindow* each = served; each; each = each->served_) {
    if (each == this)
      return;
  }
  const Ref<NSWindow> self(this);
  // The window system that showed it may go with the window that it served.
  orderOut(nullptr);
  leaveWindowSystem();
  if (served_)
    std::erase(served_->servants_, this);
  served_ = served;
  if (served)
    served->servants_.push_back(this);
}

void NSWindow::closeServants() {
  // Closing one may let go of it or of others.
  std::vector<WeakRef<NSWindow>> all(servants_.begin(), servants_.end());
  for (const WeakRef<NSWindow>& servant : all) {
    if (servant)
      servant.get()->close();
  }
}

/// The window system's window goes; the next time it is shown it gets a new one.
void NSWindow::leaveWindowSystem() {
  // A child's is a popup over it, and cannot outlive it.
  for (const Ref<NSWindow>& child : std::vector<Ref<NSWindow>>(children_)) {
    child->orderOut(nullptr);
    child->leaveWindowSystem();
  }
  // It was the way to the window system for those that serve it, too.
  const std::vector<WeakRef<NSWindow>> all(servants_.begin(), servants_.end());
  for (const WeakRef<NSWindow>& each : all) {
    if (const Ref<NSWindow> servant = each.get()) {
      servant->orderOut(nullptr);
      servant->leaveWindowSystem();
    }
  }
  gone_ = false;
  shown_by_ = nullptr;
  before_waiting_.reset();
  CGContextRelease(context_);
  context_ = nullptr;
  context_pixels_ = {};
  damage_ = Damage();
  platform_.reset();
}

NSPoint NSWindow::originFor(NSRect served, NSSize) const {
  return {NSMinX(served) + (NSWidth(served) - NSWidth(frame_)) / 2,
          NSMinY(served) + (NSHeight(served) - NSHeight(frame_)) / 2};
}

/// Near the served window, and on the screen as far as it fits.
void NSWindow::placeAtServed() {
  const NSSize screen = windowSystem()->screenSize();
  const NSPoint origin = originFor(served_->platform_->screenFrame(), screen);
  const auto fitted = [](CGFloat position, CGFloat extent, CGFloat available) {
    return std::floor(std::max(CGFloat(0), std::min(position, available - extent)));
  };
  frame_.origin = {fitted(origin.x, NSWidth(frame_), screen.width),
                   fitted(origin.y, NSHeight(frame_), screen.height)};
}

}  // namespace cocoa
