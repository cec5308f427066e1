// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

/// Files and archives in which anything lies deeper are refused: nobody nests so, and each level takes stack
/// where it is read or removed.
inline constexpr int kMaximumDepth = 64;

}  // namespace cocoa
