// SPDX-License-Identifier: MIT
#include "quartz/private/compositor.h"

#include <algorithm>
#include <array>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace cocoa {

namespace {

constexpr uint32_t whole = 65535;
constexpr uint32_t half = 128;

/// Of 16-bit fractions, downwards.
constexpr uint32_t scaled(uint32_t value, uint32_t fraction) {
  return value * fraction >> 16;
}

/// What is not covered, as a fraction: taken away from a colour it leaves all of it where that is 0.
constexpr uint32_t uncovered(uint8_t coverage) {
  return (255U - coverage) * 257;
}

uint32_t blended(uint32_t below, const FineColor& color, uint32_t away) {
  const auto covered = [away](uint32_t v) { return v - scaled(v, away); };
  const uint32_t alpha = covered(color.channel[3]);
  const uint32_t rest = whole - alpha - (alpha >> 8);
  uint32_t result = 0;
  for (uint32_t i = 0; i < 4; ++i) {
    const uint32_t under = below >> (8 * i) << 8 & 0xFF00;
    result |= ((covered(color.channel[i]) + scaled(under, rest) + half) >> 8) << (8 * i);
  }
  return result;
}

#if defined(__SSE2__)

constexpr bool blocks = true;

// Two pixels fill a register of 16-bit numbers.

__m128i subtract_part(__m128i values, __m128i away) {
  return _mm_sub_epi16(values, _mm_mulhi_epu16(values, away));
}

__m128i rest_of(__m128i colors) {
  const __m128i alpha = _mm_shufflehi_epi16(_mm_shufflelo_epi16(colors, 0xFF), 0xFF);
  return _mm_sub_epi16(_mm_sub_epi16(_mm_set1_epi16(-1), alpha), _mm_srli_epi16(alpha, 8));
}

/// To the nearest of a pixel's numbers.
__m128i narrowed(__m128i colors) {
  return _mm_srli_epi16(_mm_add_epi16(colors, _mm_set1_epi16(half)), 8);
}

__m128i over(__m128i colors, __m128i below, __m128i rest) {
  return narrowed(_mm_add_epi16(colors, _mm_mulhi_epu16(below, rest)));
}

__m128i load(const void* from) {
  return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

/// Four pixels at a time; says how many it did.
template <bool is_one, bool is_covered>
size_t blend_blocks(uint32_t* pixels, size_t count, const FineColor* colors, const uint8_t* coverage) {
  const __m128i zero = _mm_setzero_si128();
  __m128i low = _mm_setzero_si128();
  __m128i high = _mm_setzero_si128();
  __m128i one_rest = _mm_setzero_si128();
  if (is_one) {
    low = high = _mm_set1_epi64x(static_cast<long long>(std::bit_cast<uint64_t>(*colors)));
    one_rest = rest_of(low);
  }
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    uint32_t four = 0xFFFFFFFF;
    if (is_covered) {
      std::memcpy(&four, coverage + i, sizeof four);
      if (four == 0)
        continue;
    }
    if (!is_one) {
      low = load(colors + i);
      high = load(colors + i + 2);
      const __m128i opaque = _mm_set1_epi16(static_cast<int16_t>(FineColor::full));
      constexpr int alphas = 0xC0C0;
      if (!is_covered &&
          (_mm_movemask_epi8(_mm_cmpeq_epi16(_mm_and_si128(low, high), opaque)) & alphas) == alphas) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i),
                         _mm_packus_epi16(narrowed(low), narrowed(high)));
        continue;
      }
      // Most of a layer is empty.
      if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_or_si128(low, high), zero)) == 0xFFFF)
        continue;
    }
    const __m128i below = load(pixels + i);
    const __m128i below_low = _mm_unpacklo_epi8(zero, below);
    const __m128i below_high = _mm_unpackhi_epi8(zero, below);
    __m128i result_low;
    __m128i result_high;
    if (four == 0xFFFFFFFF) {
      result_low = over(low, below_low, is_one ? one_rest : rest_of(low));
      result_high = over(high, below_high, is_one ? one_rest : rest_of(high));
    } else {
      __m128i away = _mm_cvtsi32_si128(static_cast<int>(~four));
      away = _mm_unpacklo_epi8(away, away);
      away = _mm_unpacklo_epi16(away, away);
      const __m128i covered_low = subtract_part(low, _mm_unpacklo_epi32(away, away));
      const __m128i covered_high = subtract_part(high, _mm_unpackhi_epi32(away, away));
      result_low = over(covered_low, below_low, rest_of(covered_low));
      result_high = over(covered_high, below_high, rest_of(covered_high));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + i), _mm_packus_epi16(result_low, result_high));
  }
  return i;
}

/// As many colours of pixels as blocks of four have; says how many those are. Channels of both come in the
/// same order.
size_t widen_blocks(const uint32_t* pixels, size_t count, FineColor* colors) {
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    const __m128i four = load(pixels + i);
    auto* const to = reinterpret_cast<__m128i*>(colors + i);
    _mm_storeu_si128(to, _mm_unpacklo_epi8(_mm_setzero_si128(), four));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(_mm_setzero_si128(), four));
  }
  return i;
}

#else

constexpr bool blocks = false;

size_t widen_blocks(const uint32_t*, size_t, FineColor*) {
  return 0;
}

template <bool is_one, bool is_covered>
size_t blend_blocks(uint32_t*, size_t, const FineColor*, const uint8_t*) {
  return 0;
}

#endif

template <bool is_one, bool is_covered>
void blend(uint32_t* pixels, size_t count, const FineColor* colors, const uint8_t* coverage) {
  size_t i = blend_blocks<is_one, is_covered>(pixels, count, colors, coverage);
  if (i == count)
    return;
  // Behind blocks comes one that ends with the row and leaves those before as they are.
  if (blocks && is_covered && i > 0) {
    std::array<uint8_t, 4> last{};
    const size_t from = count - last.size();
    std::memcpy(last.data(), coverage + from, last.size());
    std::memset(last.data(), 0, i - from);
    blend_blocks<is_one, true>(pixels + from, last.size(), is_one ? colors : colors + from, last.data());
    return;
  }
  // Many parts of rows are short. What is left is a block too, of which the rest is not kept, unless it is
  // one.
  if (const size_t rest = count - i; blocks && rest > 1) {
    std::array<uint32_t, 4> last_pixels{};
    std::array<FineColor, 4> last_colors{};
    std::array<uint8_t, 4> last_coverage{};
    for (size_t k = 0; k < rest; ++k) {
      last_pixels[k] = pixels[i + k];
      if (!is_one)
        last_colors[k] = colors[i + k];
      if (is_covered)
        last_coverage[k] = coverage[i + k];
    }
    blend_blocks<is_one, is_covered>(last_pixels.data(), last_pixels.size(),
                                     is_one ? colors : last_colors.data(), last_coverage.data());
    for (size_t k = 0; k < rest; ++k)
      pixels[i + k] = last_pixels[k];
    return;
  }
  for (; i < count; ++i)
    pixels[i] = blended(pixels[i], colors[is_one ? 0 : i], is_covered ? uncovered(coverage[i]) : 0);
}

void widen(const uint32_t* pixels, size_t count, FineColor* colors) {
  for (size_t i = widen_blocks(pixels, count, colors); i < count; ++i) {
    for (uint32_t k = 0; k < 4; ++k)
      colors[i].channel[k] = static_cast<uint16_t>(pixels[i] >> (8 * k) << 8);
  }
}

void fill(uint32_t* pixels, size_t count, uint32_t pixel) {
  // So many at a time fill registers.
  constexpr size_t block = 16;
  size_t i = 0;
  for (; i + block <= count; i += block) {
    for (size_t k = 0; k < block; ++k)
      pixels[i + k] = pixel;
  }
  for (; i < count; ++i)
    pixels[i] = pixel;
}

uint16_t fine(double value) {
  return static_cast<uint16_t>(value * FineColor::full + 0.5);  // NOLINT(bugprone-incorrect-roundings)
}

}  // namespace

FineColor fine_color(const Rgba& color, double alpha) {
  const double a = color.alpha * alpha;
  return {{fine(color.blue * a), fine(color.green * a), fine(color.red * a), fine(a)}};
}

FineColor faded(FineColor color, double alpha) {
  for (uint16_t& channel : color.channel)
    channel = static_cast<uint16_t>(std::lround(channel * alpha));
  return color;
}

PictureSource::PictureSource(const PixelView& pixels, double alpha)
    : pixels_(pixels), transparency_(static_cast<uint32_t>(std::lround((1 - alpha) * whole))) {}

Colors PictureSource::row(int y, int x0, int x1) {
  const auto count = static_cast<size_t>(x1 - x0);
  colors_.resize(std::max(colors_.size(), count));
  widen(pixels_.at(x0, y), count, colors_.data());
  if (transparency_ > 0) {
    auto* const to = reinterpret_cast<uint16_t*>(colors_.data());
    for (size_t i = 0; i < 4 * count; ++i)
      to[i] = static_cast<uint16_t>(to[i] - scaled(to[i], transparency_));
  }
  return {colors_.data(), false};
}

void blend_row(uint32_t* pixels, size_t count, const Colors& colors, const uint8_t* coverage) {
  if (colors.pixels && !coverage) {
    std::copy_n(colors.pixels, count, pixels);
  } else if (!colors.is_one) {
    coverage ? blend<false, true>(pixels, count, colors.first, coverage)
             : blend<false, false>(pixels, count, colors.first, nullptr);
  } else if (colors.first->is_nothing()) {
    return;
  } else if (coverage) {
    blend<true, true>(pixels, count, colors.first, coverage);
  } else if (colors.first->is_opaque()) {
    fill(pixels, count, colors.first->pixel());
  } else {
    blend<true, false>(pixels, count, colors.first, nullptr);
  }
}

void clear_row(uint32_t* pixels, size_t count, const uint8_t* coverage) {
  for (size_t i = 0; i < count; ++i) {
    const uint32_t rest = coverage ? 255U - coverage[i] : 0;
    uint32_t result = 0;
    for (uint32_t shift = 0; shift < 32; shift += 8)
      result |= (((pixels[i] >> shift & 0xFF) * rest + 127) / 255) << shift;
    pixels[i] = result;
  }
}

void paint(const PixelView& pixels, const Coverage& shape, const Coverage& clip, Source& source) {
  CoveredRows rows(shape, clip, pixels.bounds);
  for (int y = rows.bounds().y0; y < rows.bounds().y1; ++y) {
    const std::span<const CoveredPart> parts = rows.row(y);
    for (size_t first = 0; first < parts.size();) {
      // Parts side by side get their colours together.
      size_t last = first;
      while (last + 1 < parts.size() && parts[last + 1].x0 == parts[last].x1)
        ++last;
      const int x0 = parts[first].x0;
      const Colors colors = source.row(y, x0, parts[last].x1);
      for (; first <= last; ++first) {
        const CoveredPart& part = parts[first];
        blend_row(pixels.at(part.x0, y), static_cast<size_t>(part.x1 - part.x0), colors.from(part.x0 - x0),
                  part.coverage);
      }
    }
  }
}

void clear(const PixelView& pixels, const Coverage& shape, const Coverage& clip) {
  CoveredRows rows(shape, clip, pixels.bounds);
  for (int y = rows.bounds().y0; y < rows.bounds().y1; ++y) {
    for (const CoveredPart& part : rows.row(y))
      clear_row(pixels.at(part.x0, y), static_cast<size_t>(part.x1 - part.x0), part.coverage);
  }
}

}  // namespace cocoa
