// SPDX-License-Identifier: MIT
#include "drawing/color_rules.h"

#include <cmath>
#include <numbers>

#include "drawing/shading.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr CGFloat pi = std::numbers::pi_v<CGFloat>;

CGFloat tri(CGFloat t) {
  return CGFloat(1) - std::abs(CGFloat(1) - CGFloat(2) * t);
}

/// The cosine in single precision.
CGFloat cosine(CGFloat angle) {
  return static_cast<CGFloat>(std::cos(static_cast<float>(angle)));
}

/// The glass band's alpha from `start` to `end`, 0 elsewhere.
CGFloat band_alpha(CGFloat t, CGFloat start, CGFloat end) {
  if (t < start || t > end)
    return 0;
  const CGFloat u = (t - CGFloat(0.35)) * CGFloat(3.333333) - CGFloat(0.5);
  return (CGFloat(1) - u * u) * CGFloat(0.15);
}

CGFloat capsule_band_alpha(CGFloat t) {
  return band_alpha(t, CGFloat(0.35), CGFloat(0.65));
}

void set_grey(CGFloat* out, CGFloat grey, CGFloat alpha) {
  out[0] = out[1] = out[2] = grey;
  out[3] = alpha;
}

const two_color_info& colors_of(const void* info) {
  return *static_cast<const two_color_info*>(info);
}

void set_tint(CGFloat* out, CGFloat strength, const two_color_info& colors) {
  out[0] = strength * colors.r0;
  out[1] = strength * colors.g0;
  out[2] = strength * colors.b0;
  out[3] = colors.a0;
}

}  // namespace

CGFloat half_ramp(CGFloat t) {
  return (tri(t) + CGFloat(1)) * CGFloat(0.5);
}

CGFloat ridge(CGFloat t) {
  return (CGFloat(1) - std::abs(cosine(pi * t))) * CGFloat(0.75) + CGFloat(0.25);
}

void capsule_rules::bg_panel_evaluate(void*, const CGFloat* in, CGFloat* out) {
  set_grey(out, CGFloat(0.1) * tri(*in), 1);
}

void capsule_rules::bg_sidebars_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  const two_color_info& colors = colors_of(info);
  const CGFloat v = cosine(*in * (pi / 2));
  const CGFloat first = v * v;
  const CGFloat second = CGFloat(1) - first;
  out[0] = first * colors.r0 + second * colors.r1;
  out[1] = first * colors.g0 + second * colors.g1;
  out[2] = first * colors.b0 + second * colors.b1;
  out[3] = 1;
}

void capsule_rules::shine_overlay_evaluate(void*, const CGFloat* in, CGFloat* out) {
  set_grey(out, tri(*in), capsule_band_alpha(*in));
}

void button_rules::bg_panel_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  const two_color_info& colors = colors_of(info);
  const CGFloat k = tri(*in);
  out[0] = k * colors.g0;
  out[1] = k * colors.b0;
  out[2] = k * colors.r0;
  out[3] = colors.a0;
}

void button_rules::shine_overlay_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  set_grey(out, tri(*in), capsule_band_alpha(*in) * colors_of(info).a0);
}

void graph_rules::shine_overlay_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  set_grey(out, tri(*in), band_alpha(*in, CGFloat(0.15), CGFloat(0.85)) * colors_of(info).a1);
}

void menu_rules::two_color_span_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  const auto& colors = *static_cast<const two_color_rgb_info*>(info);
  const CGFloat t = *in;
  const CGFloat s = t < CGFloat(0.15) ? t : t * t;
  out[0] = (CGFloat(1) - s) * colors.rA + s * colors.rB;
  out[1] = (CGFloat(1) - s) * colors.gA + s * colors.gB;
  out[2] = (CGFloat(1) - s) * colors.bA + s * colors.bB;
  out[3] = 1;
}

void panel_rules::bg_panel_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  set_tint(out, half_ramp(*in), colors_of(info));
}

void panel_rules::bg_sidebars_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  set_tint(out, ridge(*in), colors_of(info));
}

}  // namespace ondex
