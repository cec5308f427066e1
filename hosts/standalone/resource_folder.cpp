// SPDX-License-Identifier: MIT
#include "standalone/private/resource_folder.h"

#include <filesystem>

namespace ondex {

std::string resource_folder() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path folder = program.parent_path();
  const std::filesystem::path beside = folder / "resources";
  if (std::filesystem::is_directory(beside, error))
    return beside.string();
  return (folder / ONDEX_INSTALLED_RESOURCES).lexically_normal().string();
}

}  // namespace ondex
