// SPDX-License-Identifier: MIT
#include "quartz/private/png_file.h"

#include <fcntl.h>
#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <span>
#include <vector>

#include "foundation/UniqueFd.h"

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

/// libpng's own writing would remove the file after an error, be it a FIFO or a device of somebody else's.
Result<void> write_file(std::span<const uint8_t> bytes, const char* path) {
  UniqueFd file(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!file)
    return Failure{std::strerror(errno)};
  while (!bytes.empty()) {
    // A signal is to end the waiting for a FIFO's reader: it must not be lost on a write that was half done.
    const ssize_t count = write(file.get(), bytes.data(), std::min<size_t>(bytes.size(), PIPE_BUF));
    if (count < 0)
      return Failure{std::strerror(errno)};
    bytes = bytes.subspan(static_cast<size_t>(count));
  }
  // Some file systems tell only now that they could not write.
  if (close(file.release()) != 0)
    return Failure{std::strerror(errno)};
  return {};
}

}  // namespace

Result<void> write_png(const PixelView& pixels, const char* path) {
  if (pixels.bounds.empty())
    return Failure{"it has no pixels"};
  const bool with_alpha = !is_opaque(pixels);
  const std::vector<uint8_t> channels = channels_of(pixels, with_alpha);
  // libpng's simple interface: its jumps on errors stay within it.
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(pixels.bounds.width());
  image.height = static_cast<png_uint_32>(pixels.bounds.height());
  image.format = with_alpha ? PNG_FORMAT_BGRA : PNG_FORMAT_BGR;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::vector<uint8_t> bytes(size);
  if (png_image_write_to_memory(&image, bytes.data(), &size, 0, channels.data(), 0, nullptr) == 0)
    return Failure{image.message};
  bytes.resize(size);
  return write_file(bytes, path);
}

}  // namespace cocoa
