// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "quartz/CGContext.h"
#include "quartz/private/color_model.h"
#include "quartz/private/compositor.h"
#include "quartz/private/counted.h"
#include "quartz/private/coverage.h"
#include "quartz/private/lines.h"
#include "quartz/private/matrix.h"
#include "quartz/private/path_data.h"
#include "quartz/private/pixels.h"
#include "quartz/private/rasterizer.h"
#include "quartz/private/shading_source.h"

/// Private to this room: what a context consists of.
///
/// Everything that is drawn takes one road: a shape becomes coverage, and a source paints through it and the
/// clip, which is coverage too. A shadow is coverage made of both, painted through the clip that was in force
/// when it was set.

namespace cocoa {

struct ShadowState {
  Rgba color;
  double dx = 0;  ///< device pixels, downwards positive
  double dy = 0;
  double blur = 0;   ///< device pixels
  Coverage landing;  ///< the clip in force when it was set
  Coverage casting;  ///< what clips added later leave of that which casts it
};

struct GraphicsState {
  Matrix ctm;  ///< from user space to device pixels
  Coverage clip;

  Rgba fill;
  Rgba stroke;
  double alpha = 1;
  Pen pen;
  bool antialias = true;
  bool has_shadow = false;
  ShadowState shadow;
};

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};

/// A shape in one colour.
struct PlainShape {
  Coverage shape;
  FineColor color;
};

/// What is drawn on: the bitmap, or a transparency layer. A layer of one plain shape is that shape, with all
/// its precision: it has no pixels until something else is drawn on it.
struct Target {
  /// Of a layer, or a bitmap that nobody brought memory for.
  std::unique_ptr<uint32_t, FreeMemory> memory;
  PixelView pixels;        ///< its bounds are the part of the bitmap that it stands for
  PixelBounds painted;     ///< nothing was drawn outside of it
  size_t first_state = 0;  ///< states up to it belong to the targets below
  std::optional<PlainShape> only = std::nullopt;  ///< all that a layer without pixels has

  /// Gives it pixels without colour.
  void allocate() {
    const PixelBounds& bounds = pixels.bounds;
    // Of fresh memory nothing is touched where nothing is drawn.
    memory.reset(static_cast<uint32_t*>(std::calloc(
        static_cast<size_t>(bounds.width()) * static_cast<size_t>(bounds.height()), sizeof(uint32_t))));
    if (!memory)
      std::abort();
    pixels.data = memory.get();
  }
};

/// A shape and what fills it.
struct Part {
  Coverage shape;
  Source& source;
};

struct CGContext : Counted {
  /// Draws into memory that the caller keeps, or, when it is null, into its own.
  CGContext(const PixelView& bitmap, double device_pixels_a_point);

  GraphicsState& state() { return states.back(); }
  const GraphicsState& state() const { return states.back(); }
  Target& target() { return targets.back(); }
  const Target& target() const { return targets.back(); }

  /// Intersects the clip.
  void clip(const Coverage& coverage);
  /// What the path covers, at least as far as it can be seen.
  Coverage fill_coverage(const PathData& shape, FillRule rule);
  /// The same for its stroke.
  Coverage stroke_coverage(const PathData& shape);
  /// The alpha of the state is applied on top.
  FineColor fine(const Rgba& color) const { return fine_color(color, state().alpha); }

  /// Draws one object of several parts, later ones over earlier ones, with one shadow, through the clip.
  void draw(std::span<const Part> parts);
  void draw(const Coverage& shape, Source& source) {
    const Part part{shape, source};
    draw({&part, 1});
  }
  /// Pixels to draw on. Gives a layer its own.
  const PixelView& pixels();

  /// Takes the current path away, leaving an empty one. The result holds until the next call.
  const PathData& take_path();
  /// What can be seen of an object without limits, itself or by its shadow.
  PixelBounds visible_bounds() const;

  double scale;  ///< device pixels a point
  Matrix base;   ///< from base space to device pixels
  std::vector<Target> targets;
  std::vector<GraphicsState> states;
  PathData path;

 private:
  /// Stroked when there is a pen.
  Coverage shape_coverage(const PathData& shape, FillRule rule, const Pen* pen);
  /// Of the outline, at least of what is needed.
  Coverage outline_coverage(FillRule rule, PixelBounds needed);
  void cast_shadow(std::span<const Part> parts);
  /// Where it falls, at least as far as it can be seen.
  Coverage soft_shadow(std::span<const Part> parts);

  PathData taken_;
  PathData placed_;
  Lines lines_;
  Polygon outline_;
  Rasterizer rasterizer_;
  CoverageCache coverage_;
  CoverageCache::Key key_;  ///< of what is looked for in it
};

const PathData& path_data_of(const CGPath& path);

}  // namespace cocoa
