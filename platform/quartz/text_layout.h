#pragma once

#include <pango/pangocairo.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "quartz/pixels.h"
#include "quartz/text.h"

/// Private to this room: text set into lines, and the lines' pictures, kept because the same few strings are
/// drawn over and over.

namespace cocoa {

struct GObjectDeleter {
  void operator()(void* object) const { g_object_unref(object); }
};
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

/// In points from the upper left of the text, y downwards.
struct TextLine {
  PangoLayoutLine* line = nullptr;  ///< belongs to the layout
  double x = 0;                     ///< where it starts, as aligned
  double baseline = 0;
  double bottom = 0;
  double width = 0;
  DeviceBox ink;  ///< from the start of the line's baseline
};

/// The coverage of the first lines, made for one scale and one fraction of a pixel.
struct TextMask {
  Surface surface;
  double scale_x = 0;
  double scale_y = 0;
  int quarter = 0;     ///< where the text starts within a device pixel, in quarters
  size_t lines = 0;    ///< how many of them it shows
  PixelBounds bounds;  ///< from the pixel that the text starts in and the pixel row of the first baseline
};

class TextLayout {
 public:
  /// Width in points; negative for no limit.
  TextLayout(PangoContext* context, std::string_view utf8, const TextStyle& style, double width);

  bool is_for(std::string_view utf8, const TextStyle& style, double width) const;
  const std::vector<TextLine>& lines() const { return lines_; }
  /// How many lines fit wholly into the height; at least one.
  size_t lines_within(double height) const;
  /// Adds the outlines of the first lines to the path of `cr`, in points from the upper left of the text.
  void add_outlines(cairo_t* cr, size_t count) const;
  /// Valid until the next call.
  const TextMask& mask(double scale_x, double scale_y, int quarter, size_t count);

  unsigned long last_use = 0;

 private:
  void set_lines();
  double start_of(const TextLine& line) const;
  TextMask make_mask(double scale_x, double scale_y, int quarter, size_t count) const;

  std::string text_;
  TextStyle style_;  ///< but for the colour
  double width_;
  GObjectPtr<PangoLayout> layout_;
  std::vector<TextLine> lines_;
  std::array<TextMask, 4> masks_;
  size_t next_mask_ = 0;
};

/// The layout from this thread's cache. Valid until the next call on the thread.
TextLayout& text_layout(std::string_view utf8, const TextStyle& style, double width);

}  // namespace cocoa
