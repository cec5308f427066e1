// SPDX-License-Identifier: MIT
#include "drawing/Callback.h"

#include <utility>

#include "appkit/NSWindow.h"

namespace ondex {

using namespace cocoa;

namespace {

/// Whether the host owns the control, perhaps through others.
bool encloses(const NSObject* host, const NSView& control) {
  if (host == control.window())
    return true;
  const auto* view = dynamic_cast<const NSView*>(host);
  return view && control.isDescendantOf(view);
}

}  // namespace

class Callback::Host : public NSViewPlaceObserver {
 public:
  Host(NSObject* host, const NSView& control) : host_(host) { decide(control); }
  NSObject* get() const { return host_.get(); }
  void viewPlaceChanged(const NSView& control) override { decide(control); }

 private:
  void decide(const NSView& control) {
    NSObject* const host = host_.get();
    // Last of all: the host may go with it, and the control with the host.
    const Ref<NSObject> before = std::exchange(retained_, nullptr);
    if (!host)
      return;
    // It lets go of its subviews in its destructor, and is no host for what survives it.
    if (host->isGoing()) {
      host_ = WeakRef<NSObject>();
    } else if (!encloses(host, control)) {
      retained_ = host;
    }
  }

  WeakRef<NSObject> host_;
  Ref<NSObject> retained_;
};

void Callback::set(SEL selector, NSObject* host, NSView& control) {
  if (!selector || !host)
    return;
  selector_ = selector;
  const auto made = std::make_shared<Host>(host, control);
  control.addPlaceObserver(made);
  const auto before = std::exchange(host_, made);
}

NSObject* Callback::host() const {
  return host_ ? host_->get() : nullptr;
}

void Callback::send(NSObject* sender) const {
  // Copies: the action may give the control another callback, or make it go.
  const Ref<NSObject> receiver(host());
  const SEL action = selector_;
  if (receiver)
    receiver->performSelector_withObject(action, sender);
}

}  // namespace ondex
