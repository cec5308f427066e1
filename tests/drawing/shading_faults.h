// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "foundation/NSLog.h"

/// Makes chosen steps of shaded fills fail. The linker puts this program's own malloc and
/// CGShadingCreateAxial in the way of the real ones (see CMakeLists.txt), so the code under test knows
/// nothing of it.

namespace ondex::test {

/// While it lives, the nth (from 1) colour record that would be allocated, or axial shading that would be
/// made, is not.
class FailingRecord {
 public:
  explicit FailingRecord(int nth);
  ~FailingRecord();
  FailingRecord(const FailingRecord&) = delete;
  FailingRecord& operator=(const FailingRecord&) = delete;
};

/// The same for the first record of a radial span.
class FailingRgbRecord {
 public:
  FailingRgbRecord();
  ~FailingRgbRecord();
  FailingRgbRecord(const FailingRgbRecord&) = delete;
  FailingRgbRecord& operator=(const FailingRgbRecord&) = delete;
};

class FailingShading {
 public:
  explicit FailingShading(int nth);
  ~FailingShading();
  FailingShading(const FailingShading&) = delete;
  FailingShading& operator=(const FailingShading&) = delete;
};

/// What is logged while it lives.
class LoggedLines {
 public:
  LoggedLines() : hook_([this](std::string_view line) { lines.emplace_back(line); }) {}
  std::vector<std::string> lines;

 private:
  cocoa::NSLogHook hook_;
};

inline constexpr const char* no_function = "Error: couldn't create function for shading.";
inline constexpr const char* no_shading = "Error: couldn't create shading.";

}  // namespace ondex::test
