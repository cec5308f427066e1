// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSObject.h"

namespace cocoa {

class NSEvent;

/// What can receive events. An event that an object does not handle goes to its next responder.
class NSResponder : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  virtual void mouseDown(NSEvent* event);
  virtual void mouseDragged(NSEvent* event);
  virtual void mouseUp(NSEvent* event);
  virtual void rightMouseDown(NSEvent* event);
  virtual void rightMouseUp(NSEvent* event);
  virtual void scrollWheel(NSEvent* event);
  virtual void keyDown(NSEvent* event);
  virtual void keyUp(NSEvent* event);

  virtual bool acceptsFirstResponder() const { return false; }
  /// Whether the object agrees to receive, or to give up, the keys.
  virtual bool becomeFirstResponder() { return true; }
  virtual bool resignFirstResponder() { return true; }
  /// To the first responder of a window that starts, or stops, receiving keys.
  virtual void becomeKeyWindow() {}
  virtual void resignKeyWindow() {}
  /// The user wants out of what is going on here: Escape. Goes on to the next responder.
  virtual void cancelOperation(NSObject* sender);

  /// Who gets what this object does not handle; not retained.
  virtual NSResponder* nextResponder() const { return nullptr; }
};

}  // namespace cocoa
