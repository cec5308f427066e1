#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "standalone/effect.h"

namespace ondex {

struct Options {
  std::optional<std::string> screenshot;
  std::optional<double> scale;
  std::optional<unsigned> entry_of;  ///< the parameter whose numeric entry the picture shows open
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
