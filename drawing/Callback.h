#pragma once

#include "appkit/NSView.h"

namespace ondex {

/// A control's target and action.
///
/// The host is retained, so that it is there when the control sends; but not when the control lies inside it:
/// a view owns its subviews, and one that they owned in turn could never go. Then it is held weakly.
class Callback {
 public:
  /// Replaces both; ignored unless both are non-null. `control` is the view that will send.
  void set(cocoa::SEL selector, cocoa::NSObject* host, const cocoa::NSView& control);
  /// Sends the selector to the host with `sender` as the only object; does nothing without a host.
  void send(cocoa::NSObject* sender) const;
  cocoa::NSObject* host() const { return retained_host_ ? retained_host_.get() : enclosing_host_.get(); }
  cocoa::SEL selector() const { return selector_; }

 private:
  cocoa::SEL selector_;
  cocoa::Ref<cocoa::NSObject> retained_host_;
  cocoa::WeakRef<cocoa::NSObject> enclosing_host_;
};

}  // namespace ondex
