// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"

/// Colour rules of the knob's shadings, as the functions of Quartz shadings call them.
///
/// `info` points to a two_color_info, `in` to the shading's parameter t, 0 to 1; `out` receives red, green,
/// blue and alpha.

namespace ondex {

/// Rings: eight cycles from the first colour to the second and back.
/// c × first + (1 - c) × second with c = |cos(8π t)|, in single precision.
void two_color_span_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);
/// The first colour at both ends, the second in the middle.
/// s × first + (1 - s) × second with s = |1 - 2t|.
void body_panel_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);
/// A narrow band of the second colour in the middle; further out than about 0.16 from there the alpha is
/// negative, which the function's range makes 0.
/// (1 - s) × first + s × second with s = 1 - 4 |t - 0.5|^0.75, the power in single precision.
void knob_shine_evaluate(void* info, const cocoa::CGFloat* in, cocoa::CGFloat* out);

}  // namespace ondex
