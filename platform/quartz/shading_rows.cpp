// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "quartz/private/shading_source.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// What a shading does for every pixel of a row.

namespace cocoa {

namespace {

/// So many pixels at a time are worked on side by side.
constexpr int block = 16;

/// The nearest entries of the table. One that is not inside of it, but for its ends, may come out as any that
/// is neither.
void find_entries(const double* places, int32_t* entries) {
  constexpr double steps = ShadingSource::table_steps;
#if defined(__SSE2__)
  for (int i = 0; i < block; i += 2) {
    const __m128d scaled =
        _mm_add_pd(_mm_mul_pd(_mm_loadu_pd(places + i), _mm_set1_pd(steps)), _mm_set1_pd(0.5));
    const __m128d within = _mm_max_pd(_mm_min_pd(scaled, _mm_set1_pd(steps)), _mm_setzero_pd());
    _mm_storel_epi64(reinterpret_cast<__m128i*>(entries + i), _mm_cvttpd_epi32(within));
  }
#else
  for (int i = 0; i < block; ++i) {
    const double scaled = places[i] * steps + 0.5;
    const double below = scaled < steps ? scaled : steps;
    entries[i] = static_cast<int32_t>(below > 0 ? below : 0);
  }
#endif
}

}  // namespace

void ShadingSource::add_to_table(FineColor& entry) {
  entry = color(static_cast<double>(&entry - shading_.table.data()) / table_steps);
}

const FineColor& ShadingSource::table_color(double t) {
  // The library's rounding, which minds signs and modes, is too slow here.
  FineColor& entry = shading_.table[static_cast<size_t>(t * table_steps + 0.5)];
  if (entry.channel[3] == unknown_color.channel[3])
    add_to_table(entry);
  return entry;
}

void ShadingSource::color_places(const double* places, int x, int y, int count, FineColor* to) {
  int32_t entries[block];
  find_entries(places, entries);
  FineColor* const table = shading_.table.data();
  for (int i = 0; i < count; ++i) {
    // Those at an end may lie beyond it.
    if (entries[i] > 0 && entries[i] < table_steps) {
      FineColor& entry = table[entries[i]];
      if (entry.channel[3] == unknown_color.channel[3])
        add_to_table(entry);
      to[i] = entry;
      continue;
    }
    double t = places[i];
    to[i] = is_painted(x + i, y, t) ? table_color(t) : FineColor{};
  }
}

template <typename Place>
void ShadingSource::fill(int y, int x0, int x1, const Place& place) {
  for (int x = x0; x < x1; x += block) {
    double places[block];
    for (int i = 0; i < block; ++i)
      places[i] = place(x + i);
    color_places(places, x, y, std::min(block, x1 - x), colors_.data() + (x - x0));
  }
}

void ShadingSource::fill_axial(int y, int x0, int x1) {
  const double start = slope_y_ * (y + 0.5) + offset_;
  const double slope = slope_x_;
  fill(y, x0, x1, [=](int x) { return slope * (x + 0.5) + start; });
}

/// Circles around one centre: the place is that of the one through the point.
void ShadingSource::fill_rings(int y, int x0, int x1) {
  const Matrix& m = to_user_;
  const double step_x = m.xx;
  const double step_y = m.yx;
  const double from_x = m.xy * (y + 0.5) + m.x0 - static_cast<double>(shading_.start.x);
  const double from_y = m.yy * (y + 0.5) + m.y0 - static_cast<double>(shading_.start.y);
  const double r0 = shading_.start_radius;
  const double dr = dr_;
  fill(y, x0, x1, [=](int x) {
    const double px = step_x * (x + 0.5) + from_x;
    const double py = step_y * (x + 0.5) + from_y;
    return (std::sqrt(px * px + py * py) - r0) / dr;
  });
}

}  // namespace cocoa
