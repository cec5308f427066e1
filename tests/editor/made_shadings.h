// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "quartz/CGShading.h"

namespace ondex::test {

/// The functions of the axial shadings that are made while it lives, in order. The linker puts it in the way
/// of CGShadingCreateAxial (see CMakeLists.txt), so the code under test knows nothing of it.
class MadeShadings {
 public:
  MadeShadings();
  ~MadeShadings();
  MadeShadings(const MadeShadings&) = delete;
  MadeShadings& operator=(const MadeShadings&) = delete;

  /// Retained: none is at the address of one that has gone.
  std::vector<cocoa::CGFunctionRef> functions;
};

}  // namespace ondex::test
