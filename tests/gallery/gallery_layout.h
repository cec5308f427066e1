// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/NSGeometry.h"

/// Where the controls of the gallery are, for the program that shows them and for the tests that reach for
/// them.

namespace ondex::test::gallery {

inline constexpr cocoa::NSSize size = {560, 380};

inline constexpr cocoa::NSRect label = {{20, 339}, {120, 14}};
inline constexpr cocoa::NSRect button = {{180, 336}, {160, 20}};
inline constexpr cocoa::NSRect menu = {{20, 293}, {120, 14}};
inline constexpr cocoa::NSRect pop_up = {{180, 290}, {120, 20}};
inline constexpr cocoa::NSRect tall_menu = {{360, 293}, {120, 14}};
inline constexpr cocoa::NSRect readout = {{20, 234}, {139, 26}};
inline constexpr cocoa::NSRect other_readout = {{180, 234}, {139, 26}};
inline constexpr cocoa::NSRect knob = {{20, 90}, {130, 130}};
inline constexpr cocoa::NSRect box = {{8, 78}, {326, 204}};
inline constexpr cocoa::NSRect graph = {{180, 90}, {140, 130}};
inline constexpr cocoa::NSRect panel = {{350, 30}, {190, 235}};

constexpr cocoa::NSPoint centre(cocoa::NSRect rect) {
  return {rect.origin.x + rect.size.width / 2, rect.origin.y + rect.size.height / 2};
}

/// Of the lists of the menus.
inline constexpr const char* waves[] = {"Sine", "Triangle", "Square", "Noise"};
inline constexpr int tall_menu_items = 100;

}  // namespace ondex::test::gallery
