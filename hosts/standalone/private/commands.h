// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "standalone/effect.h"

namespace ondex {

enum class CommandKind { none, set, get, list, screenshot, quit };

/// One line of standard input.
struct Command {
  CommandKind kind = CommandKind::none;
  ParameterChange change;  ///< of set; get uses its id
  std::string file;        ///< of screenshot
};

/// Reads a line; an empty one is no command.
cocoa::Result<Command> read_command(std::string_view line);

}  // namespace ondex
