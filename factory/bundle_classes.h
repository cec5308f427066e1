// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "foundation/NSObject.h"

namespace ondex {

/// The classes of this executable that interface files and hosts know by name: what a bundle is made with.
std::span<const cocoa::Class* const> bundle_classes();

}  // namespace ondex
