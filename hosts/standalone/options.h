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

/// Reads the arguments after the program's name. An empty error means success.
std::string read_options(std::span<const char* const> arguments, Options& options);

/// What --help prints.
std::string help_text();
std::string version_text();

}  // namespace ondex
