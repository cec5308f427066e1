// SPDX-License-Identifier: MIT
#pragma once

#include "quartz/CGContext.h"

namespace cocoa {

/// Where views draw. While a view's drawRect runs, the current context draws in the view's coordinates.
class NSGraphicsContext {
 public:
  /// The context of the view that is being drawn on this thread; null outside drawing.
  static NSGraphicsContext* currentContext();
  CGContextRef graphicsPort() const { return port_; }

  /// Makes a context current while it lives; they nest.
  class Scope;

 private:
  explicit NSGraphicsContext(CGContextRef port) : port_(port) {}
  CGContextRef port_;  ///< not retained: outlived by whoever opened the scope
};

class NSGraphicsContext::Scope {
 public:
  explicit Scope(CGContextRef port);
  ~Scope();
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

 private:
  NSGraphicsContext context_;
  NSGraphicsContext* outer_;
};

}  // namespace cocoa
