#include "quartz/private/rasterizer.h"

#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace cocoa {

namespace {

/// A whole pixel, in units of the sums of coverage.
constexpr int one_bits = 22;
constexpr double one = 255 << one_bits;

/// To the nearest number: the library's rounding is too slow here.
int32_t rounded(double v) {
  constexpr double magic = 0x1.8p52;
  return static_cast<int32_t>(std::bit_cast<int64_t>(v + magic));
}

/// What makes a sum the nearest byte. Halves go up, also those that rounding left a little short.
constexpr int nearest = (1 << (one_bits - 1)) + 64;

int floor_of(double v) {
  const int whole = static_cast<int>(v);
  return whole - (static_cast<double>(whole) > v ? 1 : 0);
}

}  // namespace

void Rasterizer::draw(const Polygon& polygon, FillRule rule, PixelBounds area, uint8_t* bytes,
                      size_t bytes_per_row) {
  if (area.empty())
    return;
  rule_ = rule;
  area_ = area;
  cells_.assign(static_cast<size_t>(area.width()) + 1, 0);
  set_edges(polygon);
  active_.clear();
  for (int row = area.y0; row < area.y1; ++row, bytes += bytes_per_row) {
    cut_edges(row);
    if (active_.empty()) {
      std::memset(bytes, 0, static_cast<size_t>(area.width()));
      continue;
    }
    sort_entries();
    sweep(bytes);
  }
}

void Rasterizer::set_edges(const Polygon& polygon) {
  edges_.clear();
  first_in_row_.assign(static_cast<size_t>(area_.height()), -1);
  size_t begin = 0;
  for (const size_t end : polygon.ends()) {
    for (size_t i = begin; i < end; ++i)
      add_edge(polygon.points()[i], polygon.points()[i + 1 < end ? i + 1 : begin]);
    begin = end;
  }
  pieces_.resize(edges_.size());
}

void Rasterizer::add_edge(DevicePoint from, DevicePoint to) {
  const int direction = from.y < to.y ? 1 : from.y > to.y ? -1 : 0;
  if (direction < 0)
    std::swap(from, to);
  if (!(to.y > area_.y0 && from.y < area_.y1))
    return;
  // One along the row covers nothing, but holds together what it connects within the row.
  if (direction == 0 && from.y == std::floor(from.y))
    return;
  const int row = std::max(floor_of(from.y), area_.y0) - area_.y0;
  int& first = first_in_row_[static_cast<size_t>(row)];
  const double slope = direction == 0 ? 0 : (to.x - from.x) / (to.y - from.y);
  edges_.push_back({from.x, from.y, to.x, to.y, slope, direction, first});
  first = static_cast<int>(edges_.size()) - 1;
}

void Rasterizer::cut_edges(int row) {
  const double top = row;
  const double bottom = row + 1;
  const auto cut = [&](int index) {
    const Edge& e = edges_[static_cast<size_t>(index)];
    Piece& p = pieces_[static_cast<size_t>(index)];
    p.direction = e.direction;
    p.top = e.y0 > top ? e.y0 - top : 0;
    p.x_top = e.y0 >= top ? e.x0 : e.x0 + (top - e.y0) * e.slope;
    p.bottom = e.y1 < bottom ? e.y1 - top : 1;
    p.x_bottom = e.y1 <= bottom ? e.x1 : e.x0 + (bottom - e.y0) * e.slope;
    return Entry{std::min(p.x_top, p.x_bottom), std::max(p.x_top, p.x_bottom), index};
  };
  size_t kept = 0;
  for (const Entry& entry : active_) {
    if (edges_[static_cast<size_t>(entry.edge)].y1 > top)
      active_[kept++] = cut(entry.edge);
  }
  active_.resize(kept);
  for (int i = first_in_row_[static_cast<size_t>(row - area_.y0)]; i >= 0;
       i = edges_[static_cast<size_t>(i)].next)
    active_.push_back(cut(i));
}

void Rasterizer::sort_entries() {
  // Nearly in order from the row before.
  for (size_t i = 1; i < active_.size(); ++i) {
    const Entry entry = active_[i];
    size_t k = i;
    for (; k > 0 && active_[k - 1].left > entry.left; --k)
      active_[k] = active_[k - 1];
    active_[k] = entry;
  }
}

void Rasterizer::sweep(uint8_t* out) {
  int winding = 0;
  const Entry* const last = active_.data() + active_.size();
  for (const Entry* entry = active_.data(); entry < last && entry->left < area_.x1;) {
    const Entry* const begin = entry;
    double right = entry++->right;
    for (; entry < last && entry->left <= right; ++entry)
      right = std::max(right, entry->right);
    add_group(begin, entry, right, winding);
  }
  write_row(out);
}

void Rasterizer::write_row(uint8_t* out) {
  const int width = area_.width();
  int32_t* cells = cells_.data();
  int32_t sum = 0;
  int x = 0;
#if defined(__SSE2__)
  const __m128i half = _mm_set1_epi32(nearest);
  __m128i before = _mm_setzero_si128();
  const auto load = [cells](int at) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(cells + at)); };
  const auto is_zero = [](__m128i v) {
    return _mm_movemask_epi8(_mm_cmpeq_epi32(v, _mm_setzero_si128())) == 0xFFFF;
  };
  while (x + 4 <= width) {
    // Most of a row lies between edges.
    constexpr int many = 16;
    if (x + many <= width &&
        is_zero(_mm_or_si128(_mm_or_si128(load(x), load(x + 4)), _mm_or_si128(load(x + 8), load(x + 12))))) {
      std::memset(out + x, (_mm_cvtsi128_si32(before) + nearest) >> one_bits, many);
      x += many;
      continue;
    }
    for (const int end = std::min(x + many, width - width % 4); x < end; x += 4) {
      __m128i sums = load(x);
      if (is_zero(sums)) {
        sums = before;
      } else {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(cells + x), _mm_setzero_si128());
        sums = _mm_add_epi32(sums, _mm_slli_si128(sums, 4));
        sums = _mm_add_epi32(sums, _mm_slli_si128(sums, 8));
        sums = _mm_add_epi32(sums, before);
        before = _mm_shuffle_epi32(sums, 0xFF);
      }
      const __m128i levels = _mm_srli_epi32(_mm_add_epi32(sums, half), one_bits);
      const __m128i words = _mm_packs_epi32(levels, levels);
      const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
      std::memcpy(out + x, &bytes, sizeof bytes);
    }
  }
  sum = _mm_cvtsi128_si32(before);
#endif
  for (; x < width; ++x) {
    sum += cells[x];
    cells[x] = 0;
    out[x] = static_cast<uint8_t>((sum + nearest) >> one_bits);
  }
  cells[width] = 0;
}

void Rasterizer::add_group(const Entry* first, const Entry* last, double right, int& winding) {
  const int before = inside(winding);
  if (last - first == 1) {
    const Piece& p = pieces_[static_cast<size_t>(first->edge)];
    winding += p.direction;
    if (const int sign = inside(winding) - before)
      add_line(p.x_top, p.x_bottom, p.bottom - p.top, sign);
    return;
  }
  double net = 0;
  for (const Entry* entry = first; entry < last; ++entry) {
    const Piece& p = pieces_[static_cast<size_t>(entry->edge)];
    net += p.direction * (p.bottom - p.top);
  }
  added_ = 0;
  add_bands(first, last, winding);
  winding += static_cast<int>(std::lround(net));
  // Rounding leaves nothing over for the rest of the row.
  const int end = std::clamp(floor_of(right) + 1, area_.x0, area_.x1);
  cells_[static_cast<size_t>(end - area_.x0)] += (inside(winding) - before) * static_cast<int>(one) - added_;
}

void Rasterizer::add_bands(const Entry* first, const Entry* last, int winding) {
  heights_.clear();
  for (const Entry* entry = first; entry < last; ++entry) {
    const Piece& p = pieces_[static_cast<size_t>(entry->edge)];
    for (const double height : {p.top, p.bottom}) {
      if (std::find(heights_.begin(), heights_.end(), height) == heights_.end())
        heights_.push_back(height);
    }
  }
  std::sort(heights_.begin(), heights_.end());
  for (size_t band = 0; band + 1 < heights_.size(); ++band) {
    const double top = heights_[band];
    const double bottom = heights_[band + 1];
    spans_.clear();
    for (const Entry* entry = first; entry < last; ++entry) {
      const Piece& p = pieces_[static_cast<size_t>(entry->edge)];
      if (p.direction == 0 || p.top > top || p.bottom < bottom)
        continue;
      const double slope = (p.x_bottom - p.x_top) / (p.bottom - p.top);
      spans_.push_back({p.top == top ? p.x_top : p.x_top + (top - p.top) * slope,
                        p.bottom == bottom ? p.x_bottom : p.x_top + (bottom - p.top) * slope, p.direction});
    }
    add_band(bottom - top, winding);
  }
}

void Rasterizer::add_band(double height, int winding) {
  const auto in_order = [](const Span& a, const Span& b) {
    return a.top < b.top || (a.top == b.top && a.bottom < b.bottom);
  };
  // Two lines cross once at most.
  const size_t most_crossings = spans_.size() * spans_.size();
  for (size_t crossings = 0; crossings <= most_crossings; ++crossings) {
    std::sort(spans_.begin(), spans_.end(), in_order);
    const double part = part_before_crossing();
    if (!(part < 1))
      break;
    split_spans(part);
    add_spans(height * part, winding);
    height *= 1 - part;
    spans_.swap(spans_below_);
  }
  add_spans(height, winding);
}

double Rasterizer::part_before_crossing() const {
  // The first to cross are neighbours.
  double part = 1;
  for (size_t i = 1; i < spans_.size(); ++i) {
    const double apart_above = spans_[i].top - spans_[i - 1].top;
    const double apart_below = spans_[i - 1].bottom - spans_[i].bottom;
    if (apart_above > 0 && apart_below > 0)
      part = std::min(part, apart_above / (apart_above + apart_below));
  }
  return part;
}

void Rasterizer::split_spans(double part) {
  // Lines that are closer than this where they are split meet there.
  constexpr double negligible = 1e-7;
  spans_below_ = spans_;
  for (size_t i = 0; i < spans_.size(); ++i) {
    Span& above = spans_[i];
    double x = above.top + (above.bottom - above.top) * part;
    if (i > 0 && x < spans_[i - 1].bottom + negligible)
      x = spans_[i - 1].bottom;
    above.bottom = spans_below_[i].top = x;
  }
}

void Rasterizer::add_spans(double height, int winding) {
  for (const Span& s : spans_) {
    const int before = inside(winding);
    winding += s.direction;
    if (const int sign = inside(winding) - before)
      added_ += add_line(s.top, s.bottom, height, sign);
  }
}

int32_t Rasterizer::add_line(double xa, double xb, double height, int sign) {
  const double left = std::min(xa, xb);
  const double right = std::max(xa, xb);
  if (left >= area_.x1)
    return 0;
  const double all = height * sign * one;
  const int32_t sum = rounded(all);
  if (right < area_.x0) {
    cells_[0] += sum;
    return sum;
  }
  const int first = floor_of(left);
  const int last = floor_of(right);
  int32_t* cell = cells_.data() + (std::max(first, area_.x0) - area_.x0);
  if (first == last) {
    const int32_t covered = rounded(all * (first + 1 - (left + right) / 2));
    cell[0] += covered;
    cell[1] += sum - covered;
    return sum;
  }
  // The height that lies left of x grows evenly from `left` to `right`; a pixel's coverage is its mean there.
  const double growth = all / (right - left);
  int32_t before = 0;
  const auto add = [&](double covered) {
    const int32_t now = rounded(covered);
    *cell++ += now - before;
    before = now;
  };
  if (first >= area_.x0)
    add((first + 1 - left) * (first + 1 - left) / 2 * growth);
  for (int x = std::max(first + 1, area_.x0); x < std::min(last, area_.x1); ++x)
    add((x + 0.5 - left) * growth);
  if (last < area_.x1) {
    add(all - (right - last) * (right - last) / 2 * growth);
    add(all);
  }
  return sum;
}

}  // namespace cocoa
