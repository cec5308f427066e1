// SPDX-License-Identifier: MIT
#include "foundation/weak_outlets.h"

#include <string>

#include "foundation/NSLog.h"

namespace cocoa {

void log_missing_outlets(const NSObject& self, std::span<const WeakOutlet> weak_outlets) {
  for (const WeakOutlet& each : weak_outlets) {
    if (!each.get(self)) {
      NSLog("%s: outlet %s is not connected.", std::string(self.isa().name).c_str(),
            std::string(each.outlet.name).c_str());
    }
  }
}

}  // namespace cocoa
