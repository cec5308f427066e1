// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstdlib>

#include "build_paths.h"

int main(int argc, char** argv) {
  // Pictures are compared: they are drawn with the fonts that the tests name, on every machine. And whatever
  // a test stores, the user's own preferences stay as they are.
  setenv("FONTCONFIG_FILE", ondex::test::source_path("tests/fonts.conf").c_str(), 1);
  setenv("XDG_CONFIG_HOME", ondex::test::build_path("test-config").c_str(), 1);
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
