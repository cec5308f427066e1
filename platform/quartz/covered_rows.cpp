// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "quartz/private/coverage.h"

namespace cocoa {

namespace {

constexpr int word = sizeof(uint64_t);

uint64_t word_at(const uint8_t* bytes) {
  uint64_t result = 0;
  std::memcpy(&result, bytes, word);
  return result;
}

}  // namespace

void CoverageRows::add_run(int x0, int x1, const uint8_t* bytes) {
  runs_.push_back({x0, x1, bytes ? static_cast<uint32_t>(bytes_.size()) : whole});
  if (bytes)
    bytes_.insert(bytes_.end(), bytes, bytes + (x1 - x0));
  const auto y = static_cast<int>(ends_.size());
  bounds_ = union_of(bounds_, {x0, y, x1, y + 1});
}

void CoverageRows::add_row(const uint8_t* bytes, int count) {
  // Shorter stretches of nothing or all take less among their neighbours' bytes than runs of their own.
  constexpr int worth_a_run = 4 * word;
  const auto add_bytes = [&](int first, int last) {
    while (first < last && bytes[first] == 0)
      ++first;
    while (first < last && bytes[last - 1] == 0)
      --last;
    if (first < last)
      add_run(first, last, bytes + first);
  };
  int begin = 0;
  const int end = count - count % word;
  for (int x = 0; x < end;) {
    const uint64_t pixels = word_at(bytes + x);
    const int first = x;
    x += word;
    // Neither nothing nor all.
    if (pixels + 1 > 1)
      continue;
    while (x < end && word_at(bytes + x) == pixels)
      x += word;
    if (x - first < worth_a_run)
      continue;
    add_bytes(begin, first);
    if (pixels != 0)
      add_run(first, x, nullptr);
    begin = x;
  }
  add_bytes(begin, count);
  end_row();
}

void multiply(uint8_t* coverage, const uint8_t* by, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const auto product = static_cast<uint16_t>(coverage[i] * by[i] + 128);
    coverage[i] = static_cast<uint8_t>((product + (product >> 8)) >> 8);
  }
}

CoveredRows::CoveredRows(const Coverage& a, const Coverage& b, const PixelBounds& area)
    : bounds_(intersection(area, intersection(a.bounds, b.bounds))),
      one_(a.rows ? a : b),
      other_(a.rows ? b : a),
      parts_(1, {bounds_.x0, bounds_.x1, nullptr}) {
  if (bounds_.empty()) {
    bounds_ = {};
  } else if (other_.rows) {
    products_.resize(static_cast<size_t>(bounds_.width()));
  }
}

std::span<const CoveredPart> CoveredRows::row(int y) {
  if (!one_.rows)
    return parts_;
  const std::span<const CoverageRows::Run> runs = one_.rows->row(y - one_.y);
  const CoverageRows::Run box{bounds_.x0 - other_.x, bounds_.x1 - other_.x, CoverageRows::whole};
  const std::span<const CoverageRows::Run> others =
      other_.rows ? other_.rows->row(y - other_.y) : std::span(&box, 1);
  parts_.resize(std::max(parts_.size(), runs.size() + others.size()));
  CoveredPart* part = parts_.data();
  auto other = others.begin();
  for (auto run = runs.begin(); run != runs.end() && other != others.end();) {
    const int end = run->x1 + one_.x;
    const int other_end = other->x1 + other_.x;
    const int begin = std::max(run->x0 + one_.x, other->x0 + other_.x);
    const int x0 = std::max(begin, bounds_.x0);
    const int x1 = std::min(std::min(end, other_end), bounds_.x1);
    if (x0 < x1) {
      const uint8_t* bytes = one_.rows->bytes_of(*run);
      if (bytes)
        bytes += x0 - one_.x - run->x0;
      if (other->at != CoverageRows::whole)
        bytes = product(bytes, other_.rows->bytes_of(*other) + (x0 - other_.x - other->x0), x0, x1);
      *part++ = {x0, x1, bytes};
    }
    end < other_end ? ++run : ++other;
  }
  return {parts_.data(), part};
}

const uint8_t* CoveredRows::product(const uint8_t* bytes, const uint8_t* others, int x0, int x1) {
  if (!bytes)
    return others;
  uint8_t* const products = products_.data() + (x0 - bounds_.x0);
  const auto count = static_cast<size_t>(x1 - x0);
  std::copy_n(bytes, count, products);
  multiply(products, others, count);
  return products;
}

}  // namespace cocoa
