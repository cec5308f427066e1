// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "appkit/NSView.h"

namespace ondex::test {

/// Premultiplied ARGB pixels, top row first.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<uint32_t> pixels;
};

/// What a view and its subviews draw, on nothing, at `scale` device pixels a point.
Picture picture_of(cocoa::NSView& view, double scale);
/// A PNG file; an empty picture when it cannot be read.
Picture read_picture(const std::string& path);
bool write_picture(const Picture& picture, const std::string& path);

/// How many pixels differ by more than `tolerance` (of 255) in some channel; all when the sizes differ.
size_t differing_pixels(const Picture& a, const Picture& b, int tolerance);

/// Checks a picture against the file committed under that name. When they do not agree, the picture itself
/// and one of the differences are written into the build's folder and named in the failure. Run with
/// ONDEX_UPDATE_PICTURES=1 in the environment, the committed file is written instead.
void expect_committed_picture(const Picture& picture, const std::string& name);

}  // namespace ondex::test
