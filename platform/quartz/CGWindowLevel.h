#pragma once

#include <cstdint>

namespace cocoa {

/// Heights at which windows lie above each other, by their keys; the keys' order is not that of the levels.
enum CGWindowLevelKey : int32_t {
  kCGNormalWindowLevelKey = 4,
  kCGFloatingWindowLevelKey = 5,
  kCGPopUpMenuWindowLevelKey = 11,
};

/// The normal level for keys that nobody here asks for.
constexpr int32_t CGWindowLevelForKey(CGWindowLevelKey key) {
  switch (key) {
    case kCGFloatingWindowLevelKey:
      return 3;
    case kCGPopUpMenuWindowLevelKey:
      return 101;
    default:
      return 0;
  }
}

}  // namespace cocoa
