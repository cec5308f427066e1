#include "appkit/NSEvent.h"
#include "appkit/NSWindow.h"

namespace cocoa {

/// Whether a press on the view may be the beginning of moving the window. Inside a host's window it never is.
bool NSWindow::isMovedBy(const NSView& view) const {
  return movable_by_background_ && host_window_ == 0 && view.mouseDownCanMoveWindow();
}

void NSWindow::beginMoving() {
  if (platform_)
    moving_ = Moving{.from = platform_->frame().origin};
}

void NSWindow::moveAlong(const NSEvent& event) {
  if (!platform_)
    return;
  if (!moving_->begun) {
    moving_->begun = true;
    moving_->by_manager = platform_->letManagerMove();
  }
  if (moving_->by_manager)
    return;
  // All of the way each time: rounding must not add up.
  moving_->right += static_cast<double>(event.deltaX()) * fit_;
  moving_->up -= static_cast<double>(event.deltaY()) * fit_;
  NSRect frame = platform_->frame();
  frame.origin = {moving_->from.x + static_cast<CGFloat>(moving_->right),
                  moving_->from.y + static_cast<CGFloat>(moving_->up)};
  platform_->setFrame(frame);
  windowMoved();
}

}  // namespace cocoa
