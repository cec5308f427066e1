// SPDX-License-Identifier: MIT
#include "windows/private/x11_shared_memory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

#include "foundation/file_size_limit.h"
#include "windows/private/x11_connection.h"

namespace cocoa {

std::unique_ptr<X11SharedMemory> X11SharedMemory::make(X11Connection& connection, size_t size) {
  if (!may_make_file(size))
    return nullptr;
  UniqueFd descriptor(memfd_create("ondex pixels", MFD_CLOEXEC));
  if (!descriptor)
    return nullptr;
  void* data = MAP_FAILED;
  // Taken at once: running out of memory later would be a bus error in the middle of drawing.
  if (posix_fallocate(descriptor.get(), 0, static_cast<off_t>(size)) == 0)
    data = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor.get(), 0);
  if (data == MAP_FAILED)
    return nullptr;
  return std::unique_ptr<X11SharedMemory>(new X11SharedMemory(connection, data, size, std::move(descriptor)));
}

X11SharedMemory::X11SharedMemory(X11Connection& connection, void* data, size_t size, UniqueFd descriptor)
    : connection_(connection), data_(data), size_(size), segment_(xcb_generate_id(connection.get())) {
  // The request takes the descriptor over.
  xcb_shm_attach_fd(connection.get(), segment_, descriptor.release(), 0);
}

X11SharedMemory::~X11SharedMemory() {
  xcb_shm_detach(connection_.get(), segment_);
  munmap(data_, size_);
}

namespace {
/// Descriptors travel over local sockets only; the attempt over another would end the connection.
bool is_local(xcb_connection_t* connection) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  const int socket = xcb_get_file_descriptor(connection);
  return getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
         address.ss_family == AF_UNIX;
}

/// From version 1.2 on the server takes memory by descriptor.
bool takes_descriptors(xcb_connection_t* connection) {
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_shm_id);
  if (!extension || !extension->present)
    return false;
  const XcbPtr<xcb_shm_query_version_reply_t> version(
      xcb_shm_query_version_reply(connection, xcb_shm_query_version(connection), nullptr));
  return version &&
         (version->major_version > 1 || (version->major_version == 1 && version->minor_version >= 2));
}
}  // namespace

bool server_shares_memory(X11Connection& connection) {
  xcb_connection_t* c = connection.get();
  if (!is_local(c) || !takes_descriptors(c))
    return false;
  const auto memory = X11SharedMemory::make(connection, sizeof(uint32_t));
  if (!memory)
    return false;
  auto* pixel = static_cast<volatile uint32_t*>(memory->data());
  *pixel = 0;

  constexpr uint32_t sample = 0x00a5c35a;
  const uint8_t depth = connection.opaqueVisual().depth;
  const xcb_pixmap_t pixmap = xcb_generate_id(c);
  xcb_create_pixmap(c, depth, pixmap, connection.root(), 1, 1);
  const xcb_gcontext_t gc = xcb_generate_id(c);
  xcb_create_gc(c, gc, pixmap, XCB_GC_FOREGROUND, &sample);
  const xcb_rectangle_t whole{0, 0, 1, 1};
  xcb_poly_fill_rectangle(c, pixmap, gc, 1, &whole);
  const auto cookie =
      xcb_shm_get_image(c, pixmap, 0, 0, 1, 1, ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, memory->segment(), 0);
  xcb_generic_error_t* error = nullptr;
  const XcbPtr<xcb_shm_get_image_reply_t> reply(xcb_shm_get_image_reply(c, cookie, &error));
  const XcbPtr<xcb_generic_error_t> owned_error(error);
  xcb_free_gc(c, gc);
  xcb_free_pixmap(c, pixmap);
  return reply && (*pixel & 0x00ffffff) == sample;
}

}  // namespace cocoa
