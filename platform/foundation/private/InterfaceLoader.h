// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "foundation/NSObject.h"

namespace cocoa {

/// Finds a class by its name; null when there is none.
using ClassLookup = std::function<const Class*(std::string_view name)>;

/// Loads an interface file from its text, as NSBundle's loadNibNamed_owner documents. `file` is what log
/// lines call it.
bool load_interface(const std::string& file, std::string_view text, const ClassLookup& classes,
                    NSObject* owner);

}  // namespace cocoa
