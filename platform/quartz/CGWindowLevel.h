// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// In which order windows lie over each other: those of a higher level always above those of a lower one.

namespace cocoa {

using CGWindowLevel = int32_t;

enum CGWindowLevelKey : int32_t {
  kCGNormalWindowLevelKey = 4,
  kCGFloatingWindowLevelKey = 5,
  kCGStatusWindowLevelKey = 9,
  kCGPopUpMenuWindowLevelKey = 11,
};

/// The level that the system gives to windows of a kind; the normal one, 0, for a key that is none of these.
constexpr CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key) {
  switch (key) {
    case kCGFloatingWindowLevelKey:
      return 3;
    case kCGStatusWindowLevelKey:
      return 25;
    case kCGPopUpMenuWindowLevelKey:
      return 101;
    case kCGNormalWindowLevelKey:
      break;
  }
  return 0;
}

}  // namespace cocoa
