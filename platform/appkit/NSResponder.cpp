// SPDX-License-Identifier: MIT
#include "appkit/NSResponder.h"

namespace cocoa {

const Class NSResponder::class_ = {.name = "NSResponder", .superclass = &NSObject::class_};

namespace {
void pass_on(const NSResponder& from, NSEvent* event, void (NSResponder::*message)(NSEvent*)) {
  if (NSResponder* next = from.nextResponder())
    (next->*message)(event);
}
}  // namespace

void NSResponder::cancelOperation(NSObject* sender) {
  if (NSResponder* next = nextResponder())
    next->cancelOperation(sender);
}
void NSResponder::mouseDown(NSEvent* event) {
  pass_on(*this, event, &NSResponder::mouseDown);
}
void NSResponder::mouseDragged(NSEvent* event) {
  pass_on(*this, event, &NSResponder::mouseDragged);
}
void NSResponder::mouseUp(NSEvent* event) {
  pass_on(*this, event, &NSResponder::mouseUp);
}
void NSResponder::rightMouseDown(NSEvent* event) {
  pass_on(*this, event, &NSResponder::rightMouseDown);
}
void NSResponder::rightMouseUp(NSEvent* event) {
  pass_on(*this, event, &NSResponder::rightMouseUp);
}
void NSResponder::scrollWheel(NSEvent* event) {
  pass_on(*this, event, &NSResponder::scrollWheel);
}
void NSResponder::keyDown(NSEvent* event) {
  pass_on(*this, event, &NSResponder::keyDown);
}
void NSResponder::keyUp(NSEvent* event) {
  pass_on(*this, event, &NSResponder::keyUp);
}

}  // namespace cocoa
