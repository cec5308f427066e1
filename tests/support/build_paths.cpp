// SPDX-License-Identifier: MIT
#include "build_paths.h"

namespace ondex::test {

std::string source_path(const std::string& relative) {
  return std::string(ONDEX_SOURCE_DIR "/") + relative;
}

std::string build_path(const std::string& relative) {
  return relative.empty() ? ONDEX_BINARY_DIR : std::string(ONDEX_BINARY_DIR "/") + relative;
}

}  // namespace ondex::test
