// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

/// Arithmetic about a server that needs no server.

namespace cocoa {

/// Device pixels a point as the desktop wants it: the Xft.dpi of the resources on the root window over 96,
/// between 1 and 3; 1 when they do not say. Fractions are allowed.
double scale_of_resources(std::string_view resources);

/// How many rows of `width` 32-bit pixels go into one PutImage request of a server that takes requests of up
/// to `longest_request` units of 4 bytes. At least one.
int rows_a_request(int width, size_t longest_request);

}  // namespace cocoa
