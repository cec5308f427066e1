// SPDX-License-Identifier: MIT
#include "knob/private/knob_colors.h"

#include <cmath>

#include "drawing/shading.h"

namespace ondex {

using cocoa::CGFloat;

namespace {

void blend(const void* info, CGFloat first, CGFloat second, CGFloat* out) {
  const auto& colors = *static_cast<const two_color_info*>(info);
  out[0] = colors.r0 * first + colors.r1 * second;
  out[1] = colors.g0 * first + colors.g1 * second;
  out[2] = colors.b0 * first + colors.b1 * second;
  out[3] = colors.a0 * first + colors.a1 * second;
}

}  // namespace

void two_color_span_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  constexpr double eight_pi = 25.132741228718345;
  const CGFloat c = std::abs(std::cos(static_cast<float>(*in * eight_pi)));
  blend(info, c, 1 - c, out);
}

void body_panel_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  const CGFloat s = std::abs(1 - 2 * *in);
  blend(info, s, 1 - s, out);
}

void knob_shine_evaluate(void* info, const CGFloat* in, CGFloat* out) {
  const float distance = std::abs(static_cast<float>(*in - CGFloat(0.5)));
  const CGFloat s = 1 - 4 * static_cast<CGFloat>(std::pow(distance, 0.75F));
  blend(info, 1 - s, s, out);
}

}  // namespace ondex
