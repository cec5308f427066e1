// SPDX-License-Identifier: MIT
#include <stdlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "build_paths.h"
#include "trial.h"

// As in tests/leak_sanitizer.supp.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerInitialize(int*, char***) {
  setenv("FONTCONFIG_FILE", ondex::test::source_path("tests/fonts.conf").c_str(), 1);
  return 0;
}

/// The bytes decide what a user and a host do in the world that this is compiled for.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size) {
  using namespace ondex::trial;
  if (const auto faults = run_trial(World::ONDEX_TRIAL_WORLD, {bytes, size})) {
    std::fputs(faults->c_str(), stderr);
    std::abort();
  }
  return 0;
}
