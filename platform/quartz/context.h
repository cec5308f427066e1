#pragma once

#include <cairo.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "quartz/CGContext.h"
#include "quartz/color_model.h"
#include "quartz/counted.h"
#include "quartz/matrix.h"
#include "quartz/path_data.h"
#include "quartz/pixels.h"
#include "quartz/shading_painter.h"

/// Private to this room: what a context consists of.
///
/// Cairo draws; it keeps the clip too. But a shadow lands in an older clip than the one that shapes what
/// casts it, so the context remembers the path of each clip in order, and can clip to any run of them.

namespace cocoa {

struct ShadowState {
  Rgba color;
  double dx = 0;  ///< device pixels, downwards positive
  double dy = 0;
  double blur = 0;        ///< device pixels
  size_t clip_count = 0;  ///< how many clips were in force when it was set
};

struct GraphicsState {
  cairo_matrix_t ctm = identity_matrix;  ///< from user space to device pixels
  size_t clip_count = 0;
  PixelBounds clip_bounds;
  /// The clip is the whole of clip_bounds.
  bool clip_is_bounds = true;

  ColorModel fill_model = ColorModel::rgb;
  ColorModel stroke_model = ColorModel::rgb;
  Rgba fill;
  Rgba stroke;
  double alpha = 1;
  double line_width = 1;
  double miter_limit = 10;
  cairo_line_cap_t cap = CAIRO_LINE_CAP_BUTT;
  cairo_line_join_t join = CAIRO_LINE_JOIN_MITER;
  bool antialias = true;
  bool has_shadow = false;
  ShadowState shadow;
};

struct ClipPath {
  PathData path;
  cairo_fill_rule_t rule = CAIRO_FILL_RULE_WINDING;
  bool antialias = true;
  PixelBounds bounds;
  bool is_bounds = false;  ///< the whole of bounds
};

/// How much of each pixel a shape covers.
struct ShapeMask {
  ClipPath shape;
  Surface coverage;  ///< of shape.bounds, in device pixels
  /// That of a row of device pixels, from shape.bounds.x0 on.
  const uint8_t* row(int y) const {
    return cairo_image_surface_get_data(coverage.get()) +
           static_cast<ptrdiff_t>(y - shape.bounds.y0) * cairo_image_surface_get_stride(coverage.get());
  }
};

/// What is drawn on: the bitmap, or a transparency layer, which has no pixels until something is drawn on it.
struct Target {
  std::vector<uint32_t> memory;  ///< of a layer
  Surface surface;
  Cairo cr;                ///< in device pixels of the bitmap
  PixelBounds bounds;      ///< the part of the bitmap that the surface stands for
  size_t first_clip = 0;   ///< clips before it belong to the targets below
  size_t first_state = 0;  ///< states up to it belong to the targets below
};

/// Draws an object in device pixels, without its clip, on whatever it is given.
using DrawObject = std::function<void(cairo_t*)>;

/// Pixels to be drawn in their places.
struct Picture {
  const std::vector<uint32_t>& pixels;
  PixelBounds bounds;
  double alpha = 1;                 ///< on top of that of the pixels
  const ShapeMask* mask = nullptr;  ///< what they are drawn through, besides clips to whole pixels
};

struct CGContext : Counted {
  CGContext(Surface bitmap, double device_pixels_a_point);

  GraphicsState& state() { return states.back(); }
  const GraphicsState& state() const { return states.back(); }
  Target& target() { return targets.back(); }
  const Target& target() const { return targets.back(); }
  /// To draw with. Gives a layer its pixels.
  cairo_t* cr() {
    if (!targets.back().cr)
      make_layer();
    return targets.back().cr.get();
  }

  /// Intersects the clip with `clip_path`, and with the antialiasing of the state.
  void clip(const PathData& clip_path, cairo_fill_rule_t rule);
  /// The mask of the one shape that the clips from `first` on have besides whole pixels; null when there is
  /// none, or more, or a very large one. It is the same whatever part of the shape is to be drawn. Holds
  /// until the next call.
  const ShapeMask* mask_of_clips(size_t first);
  /// Lets `on` clip to the clips from `first` up to `last`, not with it.
  void apply_clips(cairo_t* on, size_t first, size_t last) const;
  /// What these clips leave of `within`.
  PixelBounds bounds_of_clips(size_t first, size_t last, PixelBounds within) const;

  /// Gives the innermost layer its pixels, with the saved states and clips that have come up since it began.
  void make_layer();

  /// Takes the current path away, leaving an empty one. The result holds until the next call.
  const PathData& take_path();

  double scale;         ///< device pixels a point
  cairo_matrix_t base;  ///< from base space to device pixels
  std::vector<Target> targets;
  std::vector<GraphicsState> states;
  std::vector<ClipPath> clips;  ///< those in force come first; the rest keep their memory for later
  PathData path;
  PathData taken;
  std::vector<uint32_t> scratch;  ///< pixels of a shading on their way through the clip
  ColorTable color_table;

  /// Pixels without colour, in memory that was given back before if possible.
  std::vector<uint32_t> lend(PixelBounds bounds);
  void give_back(std::vector<uint32_t> memory);

 private:
  std::vector<std::vector<uint32_t>> spare_;
  std::vector<ShapeMask> masks_;  ///< those used last come first
};

/// An ARGB surface on memory for as many pixels, which are drawn on in device pixels.
Surface surface_on(std::vector<uint32_t>& memory, PixelBounds bounds);

/// What can be seen of an object without limits, itself or by its shadow.
PixelBounds picture_bounds(const CGContext& context);

/// Casts the shadow that the state asks for. `extents` holds all that `draw` paints.
void cast_shadow(CGContext& context, PixelBounds extents, const DrawObject& draw);

/// The same for a picture: Cairo is slow to make a mask of one. False when that would not do, because there
/// are other clips than the picture's mask, or the shadow is sharp and moves by parts of a pixel.
bool cast_shadow_of_picture(CGContext& context, const Picture& picture);

/// Draws one object with its shadow, through the clip.
template <typename Draw>
void paint_object(CGContext& context, PixelBounds extents, const Draw& draw) {
  if (intersection(extents, picture_bounds(context)).empty())
    return;
  if (context.state().has_shadow)
    cast_shadow(context, extents, std::ref(draw));
  draw(context.cr());
}

/// Sets the source to a colour, with the state's alpha on top.
void set_source(cairo_t* cr, const Rgba& color, double alpha);

const PathData& path_data_of(const CGPath& path);

/// A context on a surface that the context owns from now on; null when Cairo could not make one.
CGContextRef CGContextCreateOn(Surface bitmap, double scale);

}  // namespace cocoa
