// SPDX-License-Identifier: MIT
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
constexpr int32_t one = 255 << one_bits;
/// A step of the grid as a height.
constexpr int32_t one_step = one >> GridPoint::bits;

constexpr int place_bits = 36;
constexpr double places_in_pixel = 0x1p36;

constexpr int64_t place_of(int32_t on_grid) {
  return int64_t{on_grid} << (place_bits - GridPoint::bits);
}
int64_t place_of(double x) {
  return static_cast<int64_t>(x * places_in_pixel);
}

/// To the nearest number: the library's rounding is too slow here.
int32_t rounded(double v) {
  constexpr double magic = 0x1.8p52;
  return static_cast<int32_t>(std::bit_cast<int64_t>(v + magic));
}

/// What makes a sum the nearest byte. Halves go up, also those that rounding left a little short.
constexpr int32_t nearest = (1 << (one_bits - 1)) + 64;

}  // namespace

void Rasterizer::draw(const Polygon& polygon, FillRule rule, PixelBounds area, uint8_t* bytes,
                      size_t bytes_per_row) {
  if (area.empty())
    return;
  rule_bits_ = rule == FillRule::even_odd ? 1 : -1;
  area_ = area;
  width_ = static_cast<uint64_t>(area.width());
  cells_.assign(static_cast<size_t>(area.width()) + 1, 0);
  set_edges(polygon);
  before_all_.left = before_all_.right = INT64_MIN;
  behind_all_.left = behind_all_.right = INT64_MAX;
  active_.resize(edges_.size() + 2);
  active_[0] = &before_all_;
  active_end_ = active_.data() + 1;
  for (int row = area.y0; row < area.y1; ++row, bytes += bytes_per_row) {
    go_to_row(row);
    if (active_end_ == active_.data() + 1) {
      std::memset(bytes, 0, static_cast<size_t>(area.width()));
      continue;
    }
    sweep();
    write_row(bytes);
  }
}

void Rasterizer::set_edges(const Polygon& polygon) {
  edges_.clear();
  first_in_row_.assign(static_cast<size_t>(area_.height()), -1);
  size_t begin = 0;
  for (const size_t end : polygon.ends()) {
    GridPoint from = polygon.points()[end - 1];
    for (size_t i = begin; i < end; ++i) {
      const GridPoint to = polygon.points()[i];
      add_edge(from, to);
      from = to;
    }
    begin = end;
  }
}

void Rasterizer::add_edge(GridPoint from, GridPoint to) {
  const int32_t direction = from.y < to.y ? 1 : from.y > to.y ? -1 : 0;
  if (direction < 0)
    std::swap(from, to);
  const int32_t fraction = from.y & (GridPoint::pixel - 1);
  const int first_row = from.y >> GridPoint::bits;
  const int last_row = (to.y - (direction != 0 ? 1 : 0)) >> GridPoint::bits;
  // One along the row covers nothing, but holds together what it connects within the row.
  if (last_row < area_.y0 || first_row >= area_.y1 || (direction == 0 && fraction == 0))
    return;
  Edge e{place_of(from.x), place_of(to.x), 0, 0, 0, to.y - from.y, fraction, direction, last_row, to, 0};
  if (first_row < last_row) {
    const double slope = (static_cast<double>(to.x) - from.x) / (static_cast<double>(to.y) - from.y);
    e.height = GridPoint::pixel - fraction;
    e.next_x = e.x + place_of(slope * e.height / GridPoint::pixel);
    if (first_row + 1 < last_row)
      e.step = place_of(slope);
  }
  const int passed = area_.y0 - first_row;
  if (passed > 0) {
    // As if the rows above had been gone through.
    e.next_x += (passed - 1) * e.step;
    e.x = e.next_x;
    e.top = 0;
    e.height = last_row > area_.y0 ? GridPoint::pixel : to.y - area_.y0 * GridPoint::pixel;
    e.next_x = last_row > area_.y0 ? e.x + e.step : place_of(to.x);
  }
  int32_t& first = first_in_row_[static_cast<size_t>(std::max(passed, 0) + first_row - area_.y0)];
  e.next = first;
  first = static_cast<int32_t>(edges_.size());
  edges_.push_back(e);
}

void Rasterizer::go_to_row(int row) {
  Edge** end = active_.data() + 1;
  for (Edge* const* edge = end; edge < active_end_; ++edge) {
    Edge& e = **edge;
    if (row > e.last_row)
      continue;
    e.x = e.next_x;
    if (row < e.last_row) {
      e.height = GridPoint::pixel;
      e.top = 0;
      e.next_x += e.step;
    } else {
      e.height = e.end.y - row * GridPoint::pixel;
      e.top = 0;
      e.next_x = place_of(e.end.x);
    }
    set_bounds(e);
    // Nearly in order from the row before.
    insert(e, end++);
  }
  Edge** const begin = end;
  for (int32_t i = first_in_row_[static_cast<size_t>(row - area_.y0)]; i >= 0;
       i = edges_[static_cast<size_t>(i)].next) {
    set_bounds(edges_[static_cast<size_t>(i)]);
    *end++ = &edges_[static_cast<size_t>(i)];
  }
  // Those of a long line of text begin by the thousand, the last one first.
  constexpr ptrdiff_t few = 32;
  if (end - begin > few) {
    const auto in_order = [](const Edge* a, const Edge* b) { return a->left < b->left; };
    std::stable_sort(begin, end, in_order);
    std::inplace_merge(active_.data() + 1, begin, end, in_order);
  } else {
    for (Edge** edge = begin; edge < end; ++edge)
      insert(**edge, edge);
  }
  *end = &behind_all_;
  active_end_ = end;
}

void Rasterizer::set_bounds(Edge& edge) {
  edge.left = std::min(edge.x, edge.next_x);
  edge.right = std::max(edge.x, edge.next_x);
}

inline void Rasterizer::insert(Edge& edge, Edge** end) {
  for (; end[-1]->left > edge.left; --end)
    *end = end[-1];
  *end = &edge;
}

void Rasterizer::sweep() {
  const Place end = Place{area_.x1} << place_bits;
  int winding = 0;
  const Edge* const* edge = active_.data() + 1;
  while ((*edge)->left < end) {
    const Edge* const* const first = edge++;
    Place right = (*first)->right;
    if ((*edge)->left > right) {
      winding = add_edge_in_order(**first, winding);
      continue;
    }
    do {
      right = std::max(right, (*edge)->right);
      ++edge;
    } while ((*edge)->left <= right);
    winding = add_group(first, edge, right, winding);
  }
}

void Rasterizer::write_row(uint8_t* out) {
  const int width = area_.width();
  int32_t* cells = cells_.data();
  cells[0] += nearest;
  int32_t sum = 0;
  int x = 0;
#if defined(__SSE2__)
  __m128i before = _mm_setzero_si128();
  // Four sums; only the last of those before counts.
  const auto sums = [&](int at) {
    auto* const four = reinterpret_cast<__m128i*>(cells + at);
    __m128i v = _mm_loadu_si128(four);
    _mm_storeu_si128(four, _mm_setzero_si128());
    v = _mm_add_epi32(v, _mm_slli_si128(v, 4));
    v = _mm_add_epi32(v, _mm_slli_si128(v, 8));
    v = _mm_add_epi32(v, _mm_shuffle_epi32(before, 0xFF));
    before = v;
    return _mm_srli_epi32(v, one_bits);
  };
  constexpr int many = 16;
  for (; x + many <= width; x += many) {
    const auto load = [&](int at) {
      return _mm_loadu_si128(reinterpret_cast<const __m128i*>(cells + x + at));
    };
    const __m128i any = _mm_or_si128(_mm_or_si128(load(0), load(4)), _mm_or_si128(load(8), load(12)));
    __m128i bytes;
    // Most of a row lies between edges.
    if (_mm_movemask_epi8(_mm_cmpeq_epi32(any, _mm_setzero_si128())) == 0xFFFF) {
      bytes = _mm_srli_epi32(_mm_shuffle_epi32(before, 0xFF), one_bits);
      bytes = _mm_packs_epi32(bytes, bytes);
      bytes = _mm_packus_epi16(bytes, bytes);
    } else {
      const __m128i first = sums(x);
      const __m128i second = sums(x + 4);
      const __m128i third = sums(x + 8);
      bytes = _mm_packus_epi16(_mm_packs_epi32(first, second), _mm_packs_epi32(third, sums(x + 12)));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x), bytes);
  }
  sum = _mm_cvtsi128_si32(_mm_shuffle_epi32(before, 0xFF));
#endif
  for (; x < width; ++x) {
    sum += cells[x];
    cells[x] = 0;
    out[x] = static_cast<uint8_t>(sum >> one_bits);
  }
  cells[width] = 0;
}

int Rasterizer::add_group(const Edge* const* first, const Edge* const* last, Place right, int winding) {
  if (last - first == 2 && is_chain(**first, *first[1])) {
    add_edge_in_order(**first, winding);
    return add_edge_in_order(*first[1], winding);
  }
  if (is_in_order(first, last)) {
    for (; first < last; ++first)
      winding = add_edge_in_order(**first, winding);
    return winding;
  }
  int32_t net = 0;
  for (const Edge* const* edge = first; edge < last; ++edge)
    net += (*edge)->direction * (*edge)->height;
  const int winding_behind = winding + net / GridPoint::pixel;
  added_ = 0;
  add_bands(first, last, winding);
  // Rounding leaves nothing over for the rest of the row.
  const int64_t end = (right >> place_bits) + 1;
  const auto cell = std::clamp<int64_t>(end, area_.x0, area_.x1) - area_.x0;
  const int sign = int{inside(winding_behind)} - int{inside(winding)};
  cells_[static_cast<size_t>(cell)] += sign * one - added_;
  return winding_behind;
}

bool Rasterizer::is_chain(const Edge& a, const Edge& b) {
  return a.direction == b.direction && (a.top == b.top + b.height || b.top == a.top + a.height);
}

bool Rasterizer::is_in_order(const Edge* const* first, const Edge* const* last) {
  for (; first + 1 < last; ++first) {
    const Edge& a = **first;
    const Edge& b = *first[1];
    if (a.top != b.top || a.height != b.height || a.x > b.x || a.next_x > b.next_x)
      return false;
  }
  return true;
}

inline int Rasterizer::add_edge_in_order(const Edge& edge, int winding) {
  const int winding_behind = winding + edge.direction;
  const bool before = inside(winding);
  if (inside(winding_behind) != before) {
    const int32_t all = edge.height * one_step;
    add_line(edge.left, edge.right, before ? -all : all);
  }
  return winding_behind;
}

void Rasterizer::add_bands(const Edge* const* first, const Edge* const* last, int winding) {
  heights_.clear();
  for (const Edge* const* edge = first; edge < last; ++edge) {
    for (const int32_t height : {(*edge)->top, (*edge)->top + (*edge)->height}) {
      if (std::find(heights_.begin(), heights_.end(), height) == heights_.end())
        heights_.push_back(height);
    }
  }
  std::sort(heights_.begin(), heights_.end());
  for (size_t band = 0; band + 1 < heights_.size(); ++band) {
    const int32_t top = heights_[band];
    const int32_t bottom = heights_[band + 1];
    spans_.clear();
    for (const Edge* const* edge = first; edge < last; ++edge) {
      const Edge& e = **edge;
      if (e.direction == 0 || e.top > top || e.top + e.height < bottom)
        continue;
      const double x = static_cast<double>(e.x) / places_in_pixel;
      const double slope = (static_cast<double>(e.next_x) / places_in_pixel - x) / e.height;
      spans_.push_back({x + (top - e.top) * slope, x + (bottom - e.top) * slope, e.direction});
    }
    add_band(static_cast<double>(bottom - top) / GridPoint::pixel, winding);
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
  const int32_t all = rounded(height * one);
  for (const Span& s : spans_) {
    const bool before = inside(winding);
    winding += s.direction;
    if (inside(winding) == before)
      continue;
    const int32_t part = before ? -all : all;
    added_ += part;
    add_line(place_of(std::min(s.top, s.bottom)), place_of(std::max(s.top, s.bottom)), part);
  }
}

inline void Rasterizer::add_line(Place left, Place right, int32_t all) {
  const auto first = static_cast<uint64_t>((left >> place_bits) - area_.x0);
  if ((left ^ right) >> place_bits != 0 || first >= width_) {
    add_long_line(left, right, all);
    return;
  }
  // What lies left of the line's middle comes with the next pixel only.
  constexpr int fraction_bits = 24;
  const Place middle = (left + right) >> (place_bits - fraction_bits + 1) & ((1 << fraction_bits) - 1);
  const auto later = static_cast<int32_t>(all * middle >> fraction_bits);
  int32_t* const cell = cells_.data() + first;
  cell[0] += all - later;
  cell[1] += later;
}

void Rasterizer::add_long_line(Place left, Place right, int32_t all) {
  const auto first = static_cast<int>(left >> place_bits);
  const auto last = static_cast<int>(right >> place_bits);
  if (first >= area_.x1)
    return;
  if (last < area_.x0) {
    cells_[0] += all;
    return;
  }
  // From the first pixel on.
  const Place origin = Place{first} << place_bits;
  const double begin = static_cast<double>(left - origin) / places_in_pixel;
  const double end = static_cast<double>(right - origin) / places_in_pixel;
  // The height that lies left of x grows evenly from `begin` to `end`; a pixel's coverage is its mean there.
  const double growth = all / (end - begin);
  int32_t* cell = cells_.data() + (std::max(first, area_.x0) - area_.x0);
  int32_t before = 0;
  const auto add = [&](double covered) {
    const int32_t now = rounded(covered);
    *cell++ += now - before;
    before = now;
  };
  if (first >= area_.x0)
    add((1 - begin) * (1 - begin) / 2 * growth);
  for (int x = std::max(first + 1, area_.x0); x < std::min(last, area_.x1); ++x)
    add((x - first + 0.5 - begin) * growth);
  if (last < area_.x1) {
    const double beyond = end - (last - first);
    add(all - beyond * beyond / 2 * growth);
    add(all);
  }
}

}  // namespace cocoa
