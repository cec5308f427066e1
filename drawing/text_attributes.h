// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSColor.h"
#include "appkit/NSFont.h"
#include "foundation/NSDictionary.h"

namespace ondex {

/// Attributes of a centred text, mutable so that the colour can be replaced.
cocoa::Ref<cocoa::NSMutableDictionary> centred_text_attributes(cocoa::NSFont* font, cocoa::NSColor* color);

}  // namespace ondex
