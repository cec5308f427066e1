// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ondex {

/// The folder of the interface files: "resources" beside the program, or where they are installed.
std::string resource_folder();

}  // namespace ondex
