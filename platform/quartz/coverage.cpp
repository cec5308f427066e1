#include "quartz/private/coverage.h"

#include <algorithm>
#include <array>
#include <bit>

namespace cocoa {

namespace {

/// Beyond this many pixels a shape is not kept: what is drawn often is smaller.
constexpr int64_t most_pixels = 1 << 17;

uint64_t hash_of(const Polygon& polygon) {
  uint64_t hash = polygon.ends().size();
  for (const GridPoint& p : polygon.points())
    hash = (std::rotl(hash, 23) ^ std::bit_cast<uint64_t>(p)) * 0x9E3779B97F4A7C15U;
  return hash;
}

Coverage moved(Coverage coverage, int dx, int dy) {
  const auto by = [=](PixelBounds b) { return PixelBounds{b.x0 + dx, b.y0 + dy, b.x1 + dx, b.y1 + dy}; };
  return {by(coverage.bounds), std::move(coverage.bytes), by(coverage.stored)};
}

}  // namespace

Coverage intersection(const Coverage& a, const Coverage& b) {
  const PixelBounds bounds = intersection(a.bounds, b.bounds);
  if (bounds.empty())
    return box_coverage({});
  if (!a.bytes || !b.bytes) {
    const Coverage& with_bytes = a.bytes ? a : b;
    return {bounds, with_bytes.bytes, with_bytes.stored};
  }
  const auto width = static_cast<size_t>(bounds.width());
  std::vector<uint8_t> bytes(width * static_cast<size_t>(bounds.height()));
  uint8_t* row = bytes.data();
  for (int y = bounds.y0; y < bounds.y1; ++y, row += width) {
    std::copy_n(a.at(bounds.x0, y), width, row);
    multiply(row, b.at(bounds.x0, y), width);
  }
  return byte_coverage(bounds, std::move(bytes));
}

void multiply(uint8_t* coverage, const uint8_t* by, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const auto product = static_cast<uint16_t>(coverage[i] * by[i] + 128);
    coverage[i] = static_cast<uint8_t>((product + (product >> 8)) >> 8);
  }
}

const uint8_t* first_covered(const uint8_t* coverage, const uint8_t* last) {
  std::array<uint64_t, 4> words{};
  for (; last - coverage >= ptrdiff_t{sizeof words}; coverage += sizeof words) {
    std::memcpy(words.data(), coverage, sizeof words);
    if ((words[0] | words[1] | words[2] | words[3]) != 0)
      break;
  }
  uint64_t word = 0;
  for (; last - coverage >= ptrdiff_t{sizeof word}; coverage += sizeof word) {
    std::memcpy(&word, coverage, sizeof word);
    if (word != 0)
      break;
  }
  return std::find_if(coverage, last, [](uint8_t v) { return v != 0; });
}

size_t CoverageCache::Entry::bytes() const {
  return sizeof(Entry) + coverage.bytes->size() + shape.points().size() * sizeof(GridPoint);
}

Coverage CoverageCache::find(Polygon& polygon, FillRule rule, bool smooth, PixelBounds needed) {
  const PixelBounds bounds = polygon.bounds();
  if (polygon.empty() || intersection(bounds, needed).empty())
    return box_coverage({});
  if (polygon.is_whole_pixels())
    return box_coverage(bounds);
  // Wherever the shape is, the same numbers give the same coverage.
  const int x = bounds.x0;
  const int y = bounds.y0;
  polygon.move(-x, -y);
  const PixelBounds shape{0, 0, bounds.width(), bounds.height()};
  if (int64_t{shape.width()} * shape.height() > most_pixels) {
    const PixelBounds area{needed.x0 - x, needed.y0 - y, needed.x1 - x, needed.y1 - y};
    return moved(make(polygon, rule, smooth, intersection(shape, area)), x, y);
  }
  const uint64_t hash = hash_of(polygon);
  const auto known = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
    return entry.hash == hash && entry.rule == rule && entry.smooth == smooth && entry.shape == polygon;
  });
  if (known != entries_.end()) {
    known->last_use = ++uses_;
    return moved(known->coverage, x, y);
  }
  Entry entry{hash, polygon, rule, smooth, make(polygon, rule, smooth, shape), ++uses_};
  make_room(entry.bytes());
  bytes_ += entry.bytes();
  return moved(entries_.emplace_back(std::move(entry)).coverage, x, y);
}

namespace {

/// Cuts off what is not covered around the rest.
void trim(Coverage& coverage) {
  const PixelBounds all = coverage.bounds;
  PixelBounds covered{all.x1, all.y1, all.x0, all.y0};
  for (int y = all.y0; y < all.y1; ++y) {
    const uint8_t* row = coverage.at(all.x0, y);
    const uint8_t* last = row + all.width();
    // Only what widens the box matters of a row.
    const uint8_t* left = first_covered(row, last);
    if (left == last)
      continue;
    while (last[-1] == 0)
      --last;
    covered.x0 = std::min(covered.x0, all.x0 + static_cast<int>(left - row));
    covered.x1 = std::max(covered.x1, all.x0 + static_cast<int>(last - row));
    covered.y0 = std::min(covered.y0, y);
    covered.y1 = y + 1;
  }
  coverage.bounds = covered.empty() ? PixelBounds{} : covered;
}

}  // namespace

Coverage CoverageCache::make(const Polygon& polygon, FillRule rule, bool smooth, PixelBounds area) {
  const auto width = static_cast<size_t>(area.width());
  std::vector<uint8_t> bytes(width * static_cast<size_t>(area.height()));
  rasterizer_.draw(polygon, rule, area, bytes.data(), width);
  if (!smooth) {
    for (uint8_t& byte : bytes)
      byte = byte < 128 ? 0 : 255;
  }
  Coverage coverage = byte_coverage(area, std::move(bytes));
  trim(coverage);
  return coverage;
}

void CoverageCache::make_room(size_t bytes) {
  while (!entries_.empty() && bytes_ + bytes > most_bytes) {
    const auto oldest =
        std::min_element(entries_.begin(), entries_.end(),
                         [](const Entry& a, const Entry& b) { return a.last_use < b.last_use; });
    bytes_ -= oldest->bytes();
    if (oldest != entries_.end() - 1)
      *oldest = std::move(entries_.back());
    entries_.pop_back();
  }
}

}  // namespace cocoa
