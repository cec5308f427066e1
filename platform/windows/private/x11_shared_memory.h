// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cstddef>
#include <memory>

#include "foundation/UniqueFd.h"

namespace cocoa {

class X11Connection;

/// Memory that the server reads pixels from without their being sent. It has no name: the server gets it as a
/// descriptor along with the request, so that it lasts as long as either side needs it, however they end.
class X11SharedMemory {
 public:
  /// Null when the system has none left. The server attaches without answering: if it cannot, an error comes.
  static std::unique_ptr<X11SharedMemory> make(X11Connection& connection, size_t size);
  ~X11SharedMemory();
  X11SharedMemory(const X11SharedMemory&) = delete;
  X11SharedMemory& operator=(const X11SharedMemory&) = delete;

  void* data() const { return data_; }
  xcb_shm_seg_t segment() const { return segment_; }

 private:
  X11SharedMemory(X11Connection& connection, void* data, size_t size, UniqueFd descriptor);

  X11Connection& connection_;
  void* data_;
  size_t size_;
  xcb_shm_seg_t segment_;
};

/// Whether the server can be given memory, tried by having it write something. Waits for the server.
bool server_shares_memory(X11Connection& connection);

}  // namespace cocoa
