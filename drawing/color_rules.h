// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"

/// The colour rules of the shaded surfaces. Each is a shading function's callback: `info` points to the
/// colours of the fill (and may be null where a rule reads none), `in` to t in [0, 1]; `out` gets red, green,
/// blue and alpha, not premultiplied. What leaves [0, 1] is clamped by the function's range.
///
/// Rules of one name differ by the class that draws with them. tri(t) = 1 - |1 - 2t| rises from 0 at both
/// ends to 1 in the middle. Cosines are taken in single precision: the argument is narrowed to float, the
/// result widened.

namespace ondex {

/// The capsule: labels, readouts and, where they have no rule of their own, the title button, menu and graph.
namespace capsule_rules {

/// The body: grey 0.1 tri(t), opaque. Reads no colours.
void bg_panel_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

/// An end cap: v² of the first colour and 1 - v² of the second with v = cos(t pi/2), opaque.
void bg_sidebars_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

/// The glass band: grey tri(t) with alpha 0.15 (1 - u²), u = 3.333333 (t - 0.35) - 0.5, from t = 0.35 to 0.65
/// and none elsewhere. Its hard edges are part of the look. Reads no colours.
void shine_overlay_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

}  // namespace capsule_rules

namespace button_rules {

/// tri(t) times the first colour, its channels rotated (red from green, green from blue, blue from red), with
/// the first colour's alpha. Of a grey the rotation shows nothing.
void bg_panel_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

/// The capsule's band with its alpha multiplied by the first colour's.
void shine_overlay_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

}  // namespace button_rules

namespace graph_rules {

/// The capsule's band from t = 0.15 to 0.85 with the same u, its alpha multiplied by the second colour's. The
/// alpha is negative outside 0.2 to 0.8, so that the band that shows ends softly there.
void shine_overlay_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

}  // namespace graph_rules

namespace menu_rules {

/// 1 - s of colour A and s of colour B of a two_color_rgb_info, opaque: s = t below 0.15 and t² from there
/// up, a step in the colour.
void two_color_span_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

}  // namespace menu_rules

namespace panel_rules {

/// half_ramp(t) and ridge(t) times the first colour, with its alpha.
void bg_panel_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);
void bg_sidebars_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

}  // namespace panel_rules

/// A background's strength, (tri(t) + 1) / 2: from half at the sides to full in the middle.
cocoa::CGFloat half_ramp(cocoa::CGFloat t);
/// A background's rim: 0.75 (1 - |cos(pi t)|) + 0.25, brightest along its middle.
cocoa::CGFloat ridge(cocoa::CGFloat t);

}  // namespace ondex
