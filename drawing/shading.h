// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"
#include "quartz/CGOwned.h"

/// Shaded fills: a surface whose colour at each point is given by a rule, a small plain function of one
/// number t in [0, 1], handed two colours to work with. A fill is made in three steps: a function of rule and
/// colours, a shading of function and place, a fill of shading and outline.
///
/// What cannot be made is logged, "Error: couldn't create function for shading." or "Error: couldn't create
/// shading.", and not drawn; the context stays as it was. Nothing but the colour space outlives a call. Main
/// thread only.

namespace ondex {

/// The colours that a rule gets as its info: two of red, green, blue and alpha in [0, 1], not premultiplied.
struct two_color_info {
  cocoa::CGFloat r0, g0, b0, a0;
  cocoa::CGFloat r1, g1, b1, a1;
};

/// Two greys with their alphas.
constexpr two_color_info greys(double first, double first_alpha, double second, double second_alpha) {
  const auto f = static_cast<cocoa::CGFloat>(first);
  const auto s = static_cast<cocoa::CGFloat>(second);
  return {f, f, f, static_cast<cocoa::CGFloat>(first_alpha),
          s, s, s, static_cast<cocoa::CGFloat>(second_alpha)};
}

/// Two opaque colours, of a radial span.
struct two_color_rgb_info {
  cocoa::CGFloat rA, gA, bA;
  cocoa::CGFloat rB, gB, bB;
};

/// Frees the record that a shading function owns; null is nothing.
void release_two_color_info(void* info);

/// The device RGB colour space of every shading; made on first use and kept.
cocoa::CGColorSpaceRef device_RGB_color_space();

/// The context of the view that is being drawn; null, which draws nothing, outside drawing.
cocoa::CGContextRef current_port();

/// Null when they could not be made.
using Function = cocoa::CGOwned<cocoa::CGFunction>;
using Shading = cocoa::CGOwned<cocoa::CGShading>;

/// A shading function of the rule `evaluate`, which owns a copy of `colors`; the rule gets a null info when
/// `colors` is null. A function that cannot be made is logged by those who make a shading of it.
Function create_shader_function(cocoa::CGFunctionEvaluateCallback evaluate, const two_color_info* colors);
/// The same for the radial span (menu_rules) from colour A to colour B, red, green and blue each.
Function create_radial_shader_function(const cocoa::CGFloat (&color_a)[3],
                                       const cocoa::CGFloat (&color_b)[3]);

/// t runs along a line from `start` to `end`, neither end extended. Null, and a line in the log, when
/// `function` is null or there is no shading of it.
Shading create_axial_shading(const Function& function, cocoa::CGPoint start, cocoa::CGPoint end);
/// The same with t running from one circle to another.
struct Circle {
  cocoa::CGPoint centre;
  cocoa::CGFloat radius;
};
Shading create_radial_shading(const Function& function, Circle start, Circle end);

/// Fill a rectangle; the ellipse inscribed in a rectangle; what a rectangle and such an ellipse have in
/// common. A null shading draws nothing.
void fill_rect(cocoa::CGContextRef context, cocoa::CGRect rect, const Shading& shading);
void fill_ellipse(cocoa::CGContextRef context, cocoa::CGRect ellipse, const Shading& shading);
void fill_rect_and_ellipse(cocoa::CGContextRef context, cocoa::CGRect rect, cocoa::CGRect ellipse,
                           const Shading& shading);

/// Fills the band between the perpendiculars through `start` and a point `width` to its right, as high as the
/// clip, with t running from the first to the second. False when it cannot.
bool fill_band(cocoa::CGContextRef context, const Function& function, cocoa::CGPoint start,
               cocoa::CGFloat width);

/// Fills a rectangle with t running from its bottom to its top.
void fill_rect_upwards(cocoa::CGContextRef context, cocoa::CGRect rect,
                       cocoa::CGFunctionEvaluateCallback evaluate, const two_color_info* colors);

}  // namespace ondex
