// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSColor.h"

/// The two display colours, kept for the user on this host in the preference store as archived NSColors.

namespace ondex {

struct ColorPreference {
  const char* key;
  double red, green, blue, alpha;  ///< the default, device RGB
};

/// Of labels and of the readouts' descriptions.
inline constexpr ColorPreference info_color_preference = {"com.kelvane.gyrand_info_color", 0.0, 0.15, 0.8,
                                                          1.0};
/// Of the readouts' values and of the graphs' text.
inline constexpr ColorPreference readout_color_preference = {"com.kelvane.gyrand_readout_color", 0.8, 0.65,
                                                             0.2, 1.0};

cocoa::Ref<cocoa::NSColor> default_color(const ColorPreference& preference);

/// The stored colour; the default when nothing is stored or what is stored is not an archived colour, which
/// is left as it is.
cocoa::Ref<cocoa::NSColor> preferred_color(const ColorPreference& preference);

/// Stores a colour under the preference's key, in memory: editors of this process that are opened from now on
/// show it. synchronize_color_preferences() writes it to disk; false when it cannot at the moment.
void store_color(const ColorPreference& preference, const cocoa::NSColor& color);
bool synchronize_color_preferences();

/// Makes the next reading see what other processes have stored meanwhile. What could not be written before is
/// tried again.
void refresh_color_preferences();

/// Stores both defaults unless both keys are present in the store as it is now, whatever their values are:
/// one alone is a store that somebody half cleared, and is overwritten too. False when they cannot be written
/// at the moment; nothing is then kept to be written, as the store may be another one when it can be.
bool seed_color_preferences();
/// The same at such a later moment: a colour that somebody has stored meanwhile stays, and is success.
bool seed_empty_color_preferences();

}  // namespace ondex
