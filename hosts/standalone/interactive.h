// SPDX-License-Identifier: MIT
#pragma once

#include "standalone/options.h"

namespace ondex {

/// Opens the editor on the X display and serves it and standard input until the end; the program's exit
/// status.
int run_interactive(const Options& options);

}  // namespace ondex
