// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSObject.h"

namespace cocoa {

/// An object that sends an action to a target when the user works it, as controls and menu items do, so that
/// interface files can connect it.
class ActionSource {
 public:
  /// The target is not retained. The selector is the one of the target's own action table. A class whose
  /// target and action are set one by one implements this by setting both.
  virtual void setTarget_action(NSObject* target, SEL action) = 0;

 protected:
  ~ActionSource() = default;
};

}  // namespace cocoa
