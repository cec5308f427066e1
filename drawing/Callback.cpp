#include "drawing/Callback.h"

namespace ondex {

using namespace cocoa;

void Callback::set(SEL selector, NSObject* host, const NSView& control) {
  if (!selector || !host)
    return;
  const auto* enclosing = dynamic_cast<const NSView*>(host);
  const bool owns_control = enclosing && control.isDescendantOf(enclosing);
  selector_ = selector;
  enclosing_host_ = owns_control ? WeakRef<NSObject>(host) : WeakRef<NSObject>();
  retained_host_ = owns_control ? Ref<NSObject>() : Ref<NSObject>(host);
}

void Callback::send(NSObject* sender) const {
  // Copies: the action may give the control another callback, or make it go.
  const Ref<NSObject> receiver(host());
  const SEL action = selector_;
  if (receiver)
    receiver->performSelector_withObject(action, sender);
}

}  // namespace ondex
