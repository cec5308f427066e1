// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "child_process.h"
#include "picture.h"
#include "temporary_folder.h"

namespace ondex::test {
namespace {

/// A picture of the README and what the program is asked for it.
struct ReadmePicture {
  std::string file;
  std::vector<std::string> arguments;
};

std::vector<std::string> with_sound_set(std::vector<std::string> arguments) {
  for (const char* setting : {"0=4.5", "1=6", "2=0.8", "3=2", "4=1.5", "5=3", "6=0.75"}) {
    arguments.emplace_back("--set");
    arguments.emplace_back(setting);
  }
  return arguments;
}

class ReadmePictures : public testing::TestWithParam<ReadmePicture> {};

TEST_P(ReadmePictures, AreWhatTheProgramDraws) {
  const TemporaryFolder folder;
  const std::string file = (folder.path() / "picture.png").string();
  std::vector<std::string> arguments = {ONDEX_PROGRAM, "--screenshot", file, "--scale", "2"};
  const ReadmePicture& wanted = GetParam();
  arguments.insert(arguments.end(), wanted.arguments.begin(), wanted.arguments.end());
  ChildProcess program({arguments, {{"DISPLAY", std::nullopt}, {"XDG_CONFIG_HOME", folder.path().string()}}});
  ASSERT_EQ(program.wait_for_exit(), 0) << program.errors();
  expect_committed_picture(read_picture(file), "docs/pictures/" + wanted.file);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheProgram, ReadmePictures,
    testing::Values(ReadmePicture{"editor.png", with_sound_set({})},
                    ReadmePicture{"numeric_entry.png", with_sound_set({"--show", "popup:3"})},
                    ReadmePicture{"preferences.png", {"--show", "preferences"}},
                    ReadmePicture{"colors.png", {"--show", "colors"}}),
    [](const auto& test) { return test.param.file.substr(0, test.param.file.find('.')); });

}  // namespace
}  // namespace ondex::test
