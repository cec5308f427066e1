// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

/// A constant text, such as a run loop's mode or one of the names of a preference domain.
using CFStringRef = const char*;

}  // namespace cocoa
