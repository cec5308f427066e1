#include <gmock/gmock.h>
#include <stdlib.h>

#include "build_paths.h"

// As in leak_sanitizer.supp, for the tests themselves. The sanitizer, a shared library, asks for it by name:
// the name must be visible.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

int main(int argc, char** argv) {
  // Pictures are compared: they are drawn with the fonts that the tests name, on every machine. And whatever
  // a test stores, the user's own preferences stay as they are.
  setenv("FONTCONFIG_FILE", ondex::test::source_path("tests/fonts.conf").c_str(), 1);
  // For the programs that a test runs.
  setenv(
      "LSAN_OPTIONS",
      ("print_suppressions=0:suppressions=" + ondex::test::source_path("tests/leak_sanitizer.supp")).c_str(),
      0);
  setenv("XDG_CONFIG_HOME", ondex::test::build_path("test-config").c_str(), 1);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
