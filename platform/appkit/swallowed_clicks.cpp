// SPDX-License-Identifier: MIT
#include "appkit/private/swallowed_clicks.h"

#include <algorithm>
#include <utility>

namespace cocoa {

bool SwallowedClicks::press(int button, double time, bool ends_child) {
  const auto ended_at = std::exchange(child_ended_at_, std::nullopt);
  if (!ends_child && ended_at != time)
    return false;
  held_.push_back(button);
  return true;
}

bool SwallowedClicks::isHeld(int button) const {
  return std::ranges::find(held_, button) != held_.end();
}

}  // namespace cocoa
