// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "preferences_fixture.h"

namespace ondex::test {
namespace {

using namespace cocoa;
using testing::HasSubstr;

TEST_F(PreferencesTest, ADiskThatNobodyCanWriteToIsReportedAndNothingIsLost) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  const char* const before = getenv("XDG_CONFIG_HOME");
  ASSERT_TRUE(before);
  const std::string folder = before;
  setenv("XDG_CONFIG_HOME", "/proc/ondex", 1);
  change(controller, controller._info_color_well, rgb(1, 0, 0).get());
  EXPECT_THAT(log, testing::Contains(HasSubstr("cannot be written")));
  EXPECT_TRUE(controller.window()->isVisible());
  log.clear();
  // Editors of this process show it all the same.
  make_editor();
  expect_color(*preferred_color(info_color_preference), 1, 0, 0);
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  change(controller, controller._readout_color_well, rgb(0, 1, 0).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(1, 0, 0))) << "written as soon as it can be";
  EXPECT_EQ(on_disk(readout_color_preference), archived(*rgb(0, 1, 0)));
}

/// Files of this process cannot grow beyond 64 bytes while it lives.
class FullDisk {
 public:
  FullDisk() {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit full = {.rlim_cur = 64, .rlim_max = before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, SIG_DFL);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

TEST_F(PreferencesTest, AFullDiskIsReportedAndLeavesTheOldColours) {
  KV_Ondex_Preference_Controller& controller = open_preferences();
  {
    const FullDisk full;
    change(controller, controller._info_color_well, rgb(1, 0, 0).get());
    EXPECT_EQ(on_disk(info_color_preference), archived(*default_color(info_color_preference)));
  }
  EXPECT_THAT(log, testing::Contains(HasSubstr("cannot be written")));
  change(controller, controller._info_color_well, rgb(0, 0, 1).get());
  EXPECT_EQ(on_disk(info_color_preference), archived(*rgb(0, 0, 1)));
}

// Two processes

/// In a child: with every byte that comes, the next colour of one well is changed; once it is on disk, which
/// takes a while where the other process is writing at the moment, a byte goes back.
[[noreturn]] void change_on_demand(ManualClock& clock, int commands, int answers, bool info) {
  const auto controller = make<KV_Ondex_Preference_Controller>();
  const bool loaded = controller->window() != nullptr;
  NSColorWell* well = info ? controller->_info_color_well : controller->_readout_color_well;
  uint8_t round = 0;
  while (loaded && read(commands, &round, 1) == 1) {
    const Ref<NSColor> color = rgb(round / 255.0, info ? 1 : 0, 0);
    well->setColor(color.get());
    controller->changeColor(well);
    while (on_disk(info ? info_color_preference : readout_color_preference) != archived(*color)) {
      clock.advance(0.2);
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
    }
    if (write(answers, &round, 1) != 1)
      break;
  }
  _exit(0);
}

TEST_F(PreferencesTest, TwoProcessesThatChangeDifferentColoursAtTheSameMomentLoseNothing) {
  struct Process {
    pid_t id = -1;
    int commands[2] = {-1, -1};
    int answers[2] = {-1, -1};
  } processes[2];
  for (Process& process : processes) {
    ASSERT_EQ(pipe(process.commands) + pipe(process.answers), 0);
    process.id = fork();
    if (process.id == 0) {
      for (const Process& each : processes)
        close(each.commands[1]);
      change_on_demand(clock, process.commands[0], process.answers[1], &process == processes);
    }
    close(process.commands[0]);
    close(process.answers[1]);
  }
  constexpr int rounds = 200;
  for (uint8_t round = 1; round <= rounds; ++round) {
    for (const Process& process : processes)
      ASSERT_EQ(write(process.commands[1], &round, 1), 1);
    uint8_t answer = 0;
    for (const Process& process : processes)
      ASSERT_EQ(read(process.answers[0], &answer, 1), 1);
    ASSERT_EQ(on_disk(info_color_preference), archived(*rgb(round / 255.0, 1, 0))) << int{round};
    ASSERT_EQ(on_disk(readout_color_preference), archived(*rgb(round / 255.0, 0, 0))) << int{round};
  }
  for (const Process& process : processes) {
    close(process.commands[1]);
    close(process.answers[0]);
    waitpid(process.id, nullptr, 0);
  }
}

}  // namespace
}  // namespace ondex::test
