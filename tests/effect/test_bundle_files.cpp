// SPDX-License-Identifier: MIT
// What the tools of LV2, of the linker and of the build say of the bundle's files.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "build_paths.h"
#include "child_process.h"
#include "temporary_folder.h"

namespace ondex::test {
namespace {

using std::filesystem::path;

const path bundle = ONDEX_LV2_BUNDLE;

/// A program run to its end.
struct Result {
  explicit Result(const ChildProcess::Setup& setup) {
    ChildProcess process(setup);
    status = process.wait_for_exit();
    output = process.output();
    errors = process.errors();
  }
  int status;
  std::string output;
  std::string errors;
};

std::set<std::string> file_names(const path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.insert(entry.path().filename());
  return names;
}

/// What lv2_validate says of all descriptions in a folder.
Result validate(const path& folder) {
  std::vector<std::string> arguments = {ONDEX_LV2_VALIDATE};
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".ttl")
      arguments.push_back(entry.path());
  }
  return Result({arguments, {}});
}

/// The last words of the lines.
std::set<std::string> last_words(const std::string& text) {
  std::set<std::string> words;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    words.insert(line.substr(line.find_last_of(' ') + 1));
  return words;
}

TEST(EffectFiles, AreValid) {
  const Result result = validate(bundle);
  EXPECT_EQ(result.status, 0) << result.output << result.errors;
  EXPECT_EQ(result.errors.find("error"), std::string::npos) << result.errors;
  EXPECT_NE((result.output + result.errors).find("Found 0 errors"), std::string::npos);
}

TEST(EffectFiles, WouldNotBeValidWithAMistake) {
  const TemporaryFolder folder;
  std::filesystem::copy(bundle, folder.path());
  std::ofstream(folder.path() / "ondex.ttl", std::ios::app) << "<urn:kelvane:ondex> lv2:mistake 1 .\n";
  EXPECT_NE(validate(folder.path()).status, 0);
}

TEST(EffectFiles, AreInstalledIntoThePathOfChoice) {
  const TemporaryFolder folder;
  const Result result({{ONDEX_CMAKE, "--install", build_path(), "--component", "lv2"},
                       {{"DESTDIR", folder.path().string()}}});
  ASSERT_EQ(result.status, 0) << result.errors;
  const path installed = folder.path() / path(ONDEX_INSTALLED_LV2_PATH).relative_path() / "ondex.lv2";
  EXPECT_EQ(file_names(installed), file_names(bundle));
  EXPECT_TRUE(file_names(installed).contains("manifest.ttl"));
  EXPECT_TRUE(file_names(installed).contains("ondex.so"));
  EXPECT_TRUE(file_names(installed).contains("ondex.ttl"));
}

TEST(EffectObject, ExportsItsDescriptorAndNothingElse) {
  const Result result({{ONDEX_NM, "--dynamic", "--defined-only", ONDEX_EFFECT}, {}});
  EXPECT_EQ(last_words(result.output), std::set<std::string>{"lv2_descriptor"}) << result.errors;
}

#ifndef ONDEX_SANITIZED
// The sanitizers bring their own library, and what it needs.

TEST(EffectObject, NeedsTheCLibraryAlone) {
  const Result result({{ONDEX_READELF, "--dynamic", ONDEX_EFFECT}, {}});
  std::istringstream lines(result.output);
  std::set<std::string> needed;
  for (std::string line; std::getline(lines, line);) {
    if (line.find("(NEEDED)") != std::string::npos)
      needed.insert(line.substr(line.find('[')));
  }
  EXPECT_EQ(needed, (std::set<std::string>{"[libc.so.6]", "[libm.so.6]"}));
}

TEST(EffectObject, IsBoundWhenItIsLoaded) {
  const Result result({{ONDEX_READELF, "--dynamic", ONDEX_EFFECT}, {}});
  EXPECT_NE(result.output.find("BIND_NOW"), std::string::npos) << result.output;
}

// Besides what instances are made of and go with, only the sine and moves of memory: no function that could
// wait, lock, or draw anything.
TEST(EffectObject, CanCallNothingThatHasNoPlaceInRealTime) {
  const Result result(
      {{ONDEX_NM, "--dynamic", "--undefined-only", "--without-symbol-versions", ONDEX_EFFECT}, {}});
  std::set<std::string> called = last_words(result.output);
  EXPECT_TRUE(called.contains("sin"));
  for (const char* allowed :
       {"sin", "malloc", "free", "memset", "memcpy", "memmove", "__stack_chk_fail", "__cxa_finalize",
        "__gmon_start__", "_ITM_registerTMCloneTable", "_ITM_deregisterTMCloneTable"})
    called.erase(allowed);
  EXPECT_EQ(called, std::set<std::string>{});
}
#endif

}  // namespace
}  // namespace ondex::test
