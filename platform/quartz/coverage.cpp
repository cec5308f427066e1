// SPDX-License-Identifier: MIT
#include "quartz/private/coverage.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <utility>

namespace cocoa {

namespace {

uint64_t hash_of(const CoverageCache::Key& key) {
  uint64_t hash = key.size();
  for (const double v : key)
    hash = (std::rotl(hash, 23) ^ std::bit_cast<uint64_t>(v)) * 0x9E3779B97F4A7C15U;
  return hash;
}

}  // namespace

uint64_t next_serial() {
  static std::atomic<uint64_t> last{0};
  return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

size_t CoverageRows::bytes() const {
  return sizeof *this + runs_.capacity() * sizeof(Run) + ends_.capacity() * sizeof(size_t) +
         bytes_.capacity();
}

Coverage row_coverage(CoverageRows rows, int x, int y) {
  const PixelBounds bounds = rows.bounds();
  return moved({bounds, std::make_shared<const CoverageRows>(std::move(rows)), 0, 0}, x, y);
}

Coverage byte_coverage(PixelBounds bounds, const uint8_t* bytes) {
  CoverageRows rows;
  for (int y = bounds.y0; y < bounds.y1; ++y, bytes += bounds.width())
    rows.add_row(bytes, bounds.width());
  return row_coverage(std::move(rows), bounds.x0, bounds.y0);
}

Coverage moved(Coverage coverage, int dx, int dy) {
  return {moved_by(coverage.bounds, dx, dy), std::move(coverage.rows), coverage.x + dx, coverage.y + dy};
}

Coverage intersection(const Coverage& a, const Coverage& b) {
  const PixelBounds bounds = intersection(a.bounds, b.bounds);
  if (bounds.empty())
    return box_coverage({});
  if (!a.rows || !b.rows) {
    const Coverage& with_rows = a.rows ? a : b;
    return {bounds, with_rows.rows, with_rows.x, with_rows.y};
  }
  CoveredRows both(a, b);
  CoverageRows rows;
  for (int y = bounds.y0; y < bounds.y1; ++y) {
    for (const CoveredPart& part : both.row(y))
      rows.add_run(part.x0 - bounds.x0, part.x1 - bounds.x0, part.coverage);
    rows.end_row();
  }
  return row_coverage(std::move(rows), bounds.x0, bounds.y0);
}

const Coverage* CoverageCache::find(const Key& key) {
  const uint64_t hash = hash_of(key);
  for (Entry& entry : entries_) {
    if (entry.hash == hash && entry.key == key) {
      entry.last_use = ++uses_;
      return &entry.coverage;
    }
  }
  return nullptr;
}

size_t CoverageCache::Entry::bytes() const {
  return sizeof(Entry) + key.size() * sizeof(double) + (coverage.rows ? coverage.rows->bytes() : 0);
}

void CoverageCache::keep(const Key& key, const Coverage& coverage) {
  Entry entry{hash_of(key), key, coverage, ++uses_};
  if (entry.bytes() > most_bytes / 4)
    return;
  make_room(entry.bytes());
  bytes_ += entry.bytes();
  entries_.push_back(std::move(entry));
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
