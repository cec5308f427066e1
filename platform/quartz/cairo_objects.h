#pragma once

#include <cairo.h>

#include <memory>

/// Private to this room: owners of Cairo's objects.

namespace cocoa {

struct CairoDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* cr) const { cairo_destroy(cr); }
};
using Surface = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using Cairo = std::unique_ptr<cairo_t, CairoDeleter>;

}  // namespace cocoa
