#include "quartz/png_file.h"

#include <png.h>

#include <algorithm>
#include <vector>

namespace cocoa {

namespace {

/// Of a premultiplied channel.
uint8_t plain(uint32_t value, uint32_t alpha) {
  return static_cast<uint8_t>(alpha == 0 ? 0 : std::min(255U, (value * 255 + alpha / 2) / alpha));
}

/// Blue, green, red, and alpha where wanted, not premultiplied.
std::vector<uint8_t> channels_of(const PixelView& pixels, bool with_alpha) {
  std::vector<uint8_t> channels;
  for (int y = pixels.bounds.y0; y < pixels.bounds.y1; ++y) {
    const uint32_t* row = pixels.row(y);
    for (int x = 0; x < pixels.bounds.width(); ++x) {
      const uint32_t pixel = row[x];
      const uint32_t alpha = pixel >> 24;
      for (const int shift : {0, 8, 16})
        channels.push_back(plain(pixel >> shift & 0xFF, alpha));
      if (with_alpha)
        channels.push_back(static_cast<uint8_t>(alpha));
    }
  }
  return channels;
}

bool is_opaque(const PixelView& pixels) {
  for (int y = pixels.bounds.y0; y < pixels.bounds.y1; ++y) {
    const uint32_t* row = pixels.row(y);
    if (std::any_of(row, row + pixels.bounds.width(), [](uint32_t pixel) { return pixel >> 24 != 255; }))
      return false;
  }
  return true;
}

}  // namespace

std::string write_png(const PixelView& pixels, const char* path) {
  if (pixels.bounds.empty())
    return "it has no pixels";
  const bool with_alpha = !is_opaque(pixels);
  const std::vector<uint8_t> channels = channels_of(pixels, with_alpha);
  // libpng's simple interface: its jumps on errors stay within it.
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(pixels.bounds.width());
  image.height = static_cast<png_uint_32>(pixels.bounds.height());
  image.format = with_alpha ? PNG_FORMAT_BGRA : PNG_FORMAT_BGR;
  const bool written = png_image_write_to_file(&image, path, 0, channels.data(), 0, nullptr) != 0;
  return written ? std::string() : image.message;
}

}  // namespace cocoa
