// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "standalone/effect.h"

namespace ondex {

/// What --screenshot renders.
enum class Shown { editor, entry, preferences, colors };

struct Options {
  std::optional<std::string> screenshot;
  std::optional<double> scale;
  Shown shown = Shown::editor;
  unsigned entry_of = 0;  ///< the parameter whose numeric entry is shown
  std::vector<ParameterChange> changes;
  bool help = false;
  bool version = false;
};

/// Reads the program's arguments, of which the first is its name. An option's value may be the next argument
/// or follow a '='. Not from two threads at once.
cocoa::Result<Options> read_options(std::span<char* const> arguments);

/// What --help prints.
std::string help_text();
std::string version_text();

}  // namespace ondex
