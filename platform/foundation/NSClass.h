// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

#include "foundation/NSObject.h"

/// The platform's own classes by name, such as NSView and NSBox. Classes of an executable are known to its
/// bundle only, so that two plug-ins in one process cannot take each other's. Any thread.

namespace cocoa {

/// Makes classes known by their names, for good. Saying so again changes nothing; a second class of a name
/// already taken is logged and ignored. The classes must outlive the process's use of them, as constants do.
void NSRegisterClasses(std::span<const Class* const> classes);

/// The registered class of that name, or null.
const Class* NSClassFromString(std::string_view name);

}  // namespace cocoa
