// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace cocoa {

struct XcbFree {
  void operator()(void* reply) const { std::free(reply); }
};

/// A reply, event or error that the client library allocated.
template <typename T>
using XcbPtr = std::unique_ptr<T, XcbFree>;

}  // namespace cocoa
