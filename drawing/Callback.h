// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "appkit/NSView.h"

namespace ondex {

/// A control's target and action.
///
/// The host is retained, so that it is there when the control sends; but not while the control lies inside
/// it: a view owns its subviews, and a window its content, and one that they owned in turn could never go.
/// Then it is held weakly. The control may be put into its host, and taken out again, at any time.
class Callback {
 public:
  /// Replaces both; ignored unless both are non-null. `control` is the view that will send.
  void set(cocoa::SEL selector, cocoa::NSObject* host, cocoa::NSView& control);
  /// Sends the selector to the host with `sender` as the only object; does nothing without a host.
  void send(cocoa::NSObject* sender) const;
  cocoa::NSObject* host() const;
  cocoa::SEL selector() const { return selector_; }

 private:
  class Host;
  cocoa::SEL selector_;
  std::shared_ptr<Host> host_;
};

}  // namespace ondex
