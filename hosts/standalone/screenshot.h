// SPDX-License-Identifier: MIT
#pragma once

#include "standalone/options.h"

namespace ondex {

/// Renders the editor without a display and writes the picture; the program's exit status.
int run_screenshot(const Options& options);

}  // namespace ondex
