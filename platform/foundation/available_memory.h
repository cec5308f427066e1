// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace cocoa {

/// Whether the process could have that many bytes more at this moment. Nothing here can go on from an
/// allocation of a few bytes that fails, and neither can the libraries that text is drawn with: so what is
/// about to need memory asks first, and is not begun without. Cheap enough for every frame. Any thread.
bool has_memory(size_t bytes);

}  // namespace cocoa
