// SPDX-License-Identifier: MIT
#include "appkit/private/window_move.h"

namespace cocoa {

bool WindowMove::drag(PlatformWindow& window, double right, double up) {
  if (!move_->begun) {
    move_->begun = true;
    move_->by_manager = window.letManagerMove();
  }
  if (move_->by_manager)
    return false;
  // All of the way each time: rounding must not add up.
  move_->right += right;
  move_->up += up;
  NSRect frame = window.frame();
  frame.origin = {move_->from.x + static_cast<CGFloat>(move_->right),
                  move_->from.y + static_cast<CGFloat>(move_->up)};
  window.setFrame(frame);
  return true;
}

}  // namespace cocoa
