// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

#include "build_paths.h"

namespace ondex::test {

/// A copy of the program in a folder, with interface files of its own beside it, which may be spoilt.
inline std::string copy_program(const std::string& program, const std::filesystem::path& folder) {
  const std::filesystem::path copy = folder / "ondex";
  std::filesystem::copy_file(program, copy);
  std::filesystem::copy(source_path("resources"), folder / "resources");
  return copy.string();
}

}  // namespace ondex::test
