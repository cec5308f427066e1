// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "quartz/private/pixels.h"

/// Private to this room: how much of each pixel a shape, or a clip, covers.

namespace cocoa {

/// A number that none got before, of any thread.
uint64_t next_serial();

/// Rows of coverage in runs of pixels: most of a shape is covered wholly, most of what is around it not at
/// all. They grow row by row until they are shared.
class CoverageRows {
 public:
  struct Run {
    int x0;
    int x1;
    uint32_t at;  ///< of its bytes, 255 for all of a pixel; `whole` without any
  };
  static constexpr uint32_t whole = UINT32_MAX;

  /// A run of the row, behind those that it has; without bytes it is covered wholly.
  void add_run(int x0, int x1, const uint8_t* bytes);
  void end_row() { ends_.push_back(runs_.size()); }
  /// A row from column 0 on.
  void add_row(const uint8_t* bytes, int count);

  std::span<const Run> row(int y) const {
    const size_t first = y > 0 ? ends_[static_cast<size_t>(y) - 1] : 0;
    return std::span(runs_).subspan(first, ends_[static_cast<size_t>(y)] - first);
  }
  const uint8_t* bytes_of(const Run& run) const { return run.at == whole ? nullptr : bytes_.data() + run.at; }

  /// Where anything is covered.
  const PixelBounds& bounds() const { return bounds_; }
  /// Of memory.
  size_t bytes() const;
  /// A number that no others have.
  uint64_t serial() const { return serial_; }

 private:
  std::vector<Run> runs_;
  std::vector<size_t> ends_;
  std::vector<uint8_t> bytes_;
  PixelBounds bounds_;
  uint64_t serial_ = next_serial();
};

/// Shapes are all of a box of pixels, or rows that say how much of each.
struct Coverage {
  PixelBounds bounds;                        ///< nothing outside of it is covered
  std::shared_ptr<const CoverageRows> rows;  ///< null when all of the bounds are covered
  int x = 0;                                 ///< the pixel that the rows begin with
  int y = 0;
};

/// All of a box.
inline Coverage box_coverage(PixelBounds bounds) {
  return {bounds, nullptr, 0, 0};
}
/// Rows that begin with that pixel.
Coverage row_coverage(CoverageRows rows, int x, int y);
/// Of a byte for each pixel of the bounds, row by row.
Coverage byte_coverage(PixelBounds bounds, const uint8_t* bytes);

/// Of the same shape elsewhere.
Coverage moved(Coverage coverage, int dx, int dy);

/// What both cover.
Coverage intersection(const Coverage& a, const Coverage& b);

/// Multiplies coverage, of 255, to the nearest.
void multiply(uint8_t* coverage, const uint8_t* by, size_t count);

/// Pixels side by side in a row and their coverage, which is null for all of them.
struct CoveredPart {
  int x0;
  int x1;
  const uint8_t* coverage;
};

/// What two coverages have in common, row by row. They must outlive it.
class CoveredRows {
 public:
  CoveredRows(const Coverage& a, const Coverage& b, const PixelBounds& area = everywhere);
  /// The rows that there are, and what none reaches beyond.
  const PixelBounds& bounds() const { return bounds_; }
  /// From left to right; valid until the next call.
  std::span<const CoveredPart> row(int y);

 private:
  /// The bytes of both, where the first may be null for all.
  const uint8_t* product(const uint8_t* bytes, const uint8_t* others, int x0, int x1);

  PixelBounds bounds_;
  const Coverage& one_;
  const Coverage& other_;  ///< has no rows unless both have
  std::vector<CoveredPart> parts_;
  std::vector<uint8_t> products_;
};

/// Coverage that may be asked for again, that which was used last.
class CoverageCache {
 public:
  /// All that the coverage depends on.
  using Key = std::vector<double>;

  /// Null when it is not known. Valid until something is kept.
  const Coverage* find(const Key& key);
  /// Of a key that is not known. The largest are not kept.
  void keep(const Key& key, const Coverage& coverage);

  /// Of all keys and their coverage.
  static constexpr size_t most_bytes = 1 << 19;

 private:
  struct Entry {
    uint64_t hash;
    Key key;
    Coverage coverage;
    uint64_t last_use;
    size_t bytes() const;
  };
  void make_room(size_t bytes);

  std::vector<Entry> entries_;
  size_t bytes_ = 0;
  uint64_t uses_ = 0;
};

}  // namespace cocoa
