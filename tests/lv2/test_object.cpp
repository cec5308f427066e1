// SPDX-License-Identifier: MIT
// What the tools of the linker say of the user interface's shared object.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include "child_process.h"
#include "temporary_folder.h"

namespace ondex::test {
namespace {

std::string output_of(const std::vector<std::string>& arguments) {
  ChildProcess process({arguments, {}});
  EXPECT_EQ(process.wait_for_exit(), 0) << process.errors();
  return process.output();
}

TEST(UiObjectFile, ExportsItsDescriptorAndNothingElse) {
  std::istringstream lines(output_of({ONDEX_NM, "--dynamic", "--defined-only", ONDEX_UI}));
  std::set<std::string> names;
  for (std::string line; std::getline(lines, line);)
    names.insert(line.substr(line.find_last_of(' ') + 1));
  EXPECT_EQ(names, std::set<std::string>{"lv2ui_descriptor"});
}

TEST(UiObjectFile, IsBoundWhenItIsLoadedAndNeverUnloaded) {
  const std::string flags = output_of({ONDEX_READELF, "--dynamic", "--wide", ONDEX_UI});
  EXPECT_NE(flags.find("BIND_NOW"), std::string::npos);
  EXPECT_NE(flags.find("NODELETE"), std::string::npos);
}

TEST(UiObjectFile, HasNothingToDoWithXlib) {
  const std::string needed = output_of({ONDEX_READELF, "--dynamic", "--wide", ONDEX_UI});
  EXPECT_EQ(needed.find("libX11.so"), std::string::npos);
  EXPECT_NE(needed.find("libxcb.so"), std::string::npos);
}

#ifndef ONDEX_SANITIZED

TEST(UiObjectFile, ContainsNoSignalProcessing) {
  const std::string names = output_of({ONDEX_NM, "--demangle", ONDEX_UI});
  EXPECT_NE(names.find("KVOndexView::"), std::string::npos);
  EXPECT_EQ(names.find("ondex::Tremolo"), std::string::npos);
  EXPECT_EQ(names.find("ondex::Oscillator"), std::string::npos);
}

TEST(UiObjectFile, IsSmall) {
  const TemporaryFolder folder;
  const auto stripped = folder.path() / "ondex_ui.so";
  output_of({ONDEX_STRIP, "-o", stripped.string(), ONDEX_UI});
  EXPECT_LT(std::filesystem::file_size(stripped), 400U * 1024);
}

#endif

}  // namespace
}  // namespace ondex::test
