// SPDX-License-Identifier: MIT
#include "appkit/NSGraphicsContext.h"

namespace cocoa {

namespace {
thread_local NSGraphicsContext* current = nullptr;
}

NSGraphicsContext* NSGraphicsContext::currentContext() {
  return current;
}

NSGraphicsContext::Scope::Scope(CGContextRef port) : context_(port), outer_(current) {
  current = &context_;
}
NSGraphicsContext::Scope::~Scope() {
  current = outer_;
}

}  // namespace cocoa
