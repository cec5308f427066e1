// SPDX-License-Identifier: MIT
#include "picture.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "appkit/NSGraphicsContext.h"
#include "build_paths.h"
#include "quartz/CGBitmapContext.h"
#include "windows/pixel_geometry.h"

namespace ondex::test {

using namespace cocoa;

namespace {

/// Rasterisers of two versions may round differently along edges.
constexpr int channel_tolerance = 8;
constexpr size_t pixels_a_difference = 2000;

CGContextRef context_on(Picture& picture, double scale) {
  const auto width = static_cast<size_t>(picture.width);
  return CGBitmapContextCreateWithScale(picture.pixels.data(), width, static_cast<size_t>(picture.height),
                                        width * 4, scale);
}

int difference(uint32_t a, uint32_t b) {
  int most = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const auto channel = [shift](uint32_t pixel) { return static_cast<int>((pixel >> shift) & 0xFF); };
    most = std::max(most, std::abs(channel(a) - channel(b)));
  }
  return most;
}

Picture differences(const Picture& a, const Picture& b) {
  Picture result = a;
  for (size_t i = 0; i < a.pixels.size(); ++i) {
    const bool differs = i >= b.pixels.size() || difference(a.pixels[i], b.pixels[i]) > channel_tolerance;
    result.pixels[i] = differs ? 0xFFFF0000U : 0xFF000000U | ((a.pixels[i] >> 2) & 0x3F3F3FU);
  }
  return result;
}

uint32_t premultiplied(uint32_t pixel) {
  const uint32_t alpha = pixel >> 24;
  uint32_t result = alpha << 24;
  for (int shift = 0; shift < 24; shift += 8)
    result |= (((pixel >> shift & 0xFF) * alpha + 127) / 255) << shift;
  return result;
}

}  // namespace

Picture picture_of(NSView& view, double scale) {
  Picture picture;
  picture.width = device_pixels(NSWidth(view.bounds()), scale);
  picture.height = device_pixels(NSHeight(view.bounds()), scale);
  picture.pixels.resize(static_cast<size_t>(picture.width) * static_cast<size_t>(picture.height));
  CGContextRef context = context_on(picture, scale);
  {
    const NSGraphicsContext::Scope scope(context);
    view.drawTree(view.bounds());
  }
  CGContextRelease(context);
  return picture;
}

Picture read_picture(const std::string& path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, path.c_str()))
    return {};
  image.format = PNG_FORMAT_BGRA;
  Picture picture;
  picture.width = static_cast<int>(image.width);
  picture.height = static_cast<int>(image.height);
  picture.pixels.resize(size_t{image.width} * image.height);
  if (!png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr))
    return {};
  for (uint32_t& pixel : picture.pixels)
    pixel = premultiplied(pixel);
  return picture;
}

bool write_picture(const Picture& picture, const std::string& path) {
  Picture copy = picture;
  CGContextRef context = context_on(copy, 1);
  const bool written = CGBitmapContextWritePNG(context, path.c_str());
  CGContextRelease(context);
  return written;
}

size_t differing_pixels(const Picture& a, const Picture& b, int tolerance) {
  if (a.width != b.width || a.height != b.height)
    return std::max(a.pixels.size(), b.pixels.size());
  size_t count = 0;
  for (size_t i = 0; i < a.pixels.size(); ++i)
    count += difference(a.pixels[i], b.pixels[i]) > tolerance ? 1 : 0;
  return count;
}

void expect_committed_picture(const Picture& picture, const std::string& name) {
  const std::string committed_path = source_path(name);
  if (std::getenv("ONDEX_UPDATE_PICTURES")) {
    ASSERT_TRUE(write_picture(picture, committed_path));
    return;
  }
  const Picture committed = read_picture(committed_path);
  ASSERT_FALSE(committed.pixels.empty()) << committed_path << " cannot be read";
  const size_t differing = differing_pixels(picture, committed, channel_tolerance);
  if (differing <= picture.pixels.size() / pixels_a_difference)
    return;
  const std::string folder = build_path("pictures/");
  const std::string file = std::filesystem::path(name).filename().string();
  std::filesystem::create_directories(folder);
  write_picture(picture, folder + file);
  write_picture(differences(picture, committed), folder + "difference-" + file);
  ADD_FAILURE() << differing << " pixels differ from " << name << "; see " << folder << file << " and "
                << folder << "difference-" << file;
}

}  // namespace ondex::test
