// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace ondex::test {

/// Absolute paths, named relative to the source tree and to the build's folder. They are functions, not
/// macros, so that what is compiled does not depend on where the checkout lies.
std::string source_path(const std::string& relative);
std::string build_path(const std::string& relative = {});

}  // namespace ondex::test
