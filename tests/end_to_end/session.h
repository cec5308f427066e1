// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "build_paths.h"
#include "child_process.h"
#include "expectations.h"
#include "interface_map.h"
#include "picture.h"
#include "temporary_folder.h"
#include "x_client.h"
#include "x_server.h"

namespace ondex::test {

/// The program in a desktop of its own, and a user with mouse, keyboard and eyes.
class SessionTest : public testing::Test {
 protected:
  using Environment = std::map<std::string, std::optional<std::string>>;

  void SetUp() override;

  /// Starts the program, ours or a copy of it, on the desktop.
  void launch(std::vector<std::string> arguments = {}, const Environment& environment = {});
  /// The same, until its window is there and the first picture drawn.
  void start(std::vector<std::string> arguments = {}, const Environment& environment = {});
  /// Until the window is there.
  void wait_for_window();
  /// Sends "quit" and expects a good end with nothing on standard error.
  void expect_quiet_end();

  // The user's hands, in points of the editor.
  void point(Position at);
  void press(Position at, int button = 1);
  void release(int button = 1) { user.release(button); }
  void click(Position at, int button = 1);
  /// Where the pointer is.
  void press_again(int button = 1);
  void clicks(Position at, int count);
  void double_click(Position at) { clicks(at, 2); }
  /// With the button held: by a distance in whole device pixels.
  void move_by(int right, int up);
  void wheel(Position at, int button);
  /// As the controls are told it: the lower left corner of the device pixel that holds it.
  Position told(Position at) const;

  /// Until the program has dealt with every gesture so far.
  void settle();
  /// The parameter lines since the last call, once every gesture so far has been dealt with.
  Writes written();
  /// Sends a command that is answered with "value", and returns the value.
  std::string value_of(unsigned id);
  void command(const std::string& line) { program->write(line + "\n"); }

  /// The picture that the program writes, once every host change so far shows.
  Picture screenshot();
  /// What the X server shows of the window.
  Picture on_screen();
  /// Whether the window comes to show that picture.
  bool comes_to_show(const Picture& picture);

  Area of(const Parameter& parameter) const { return map.control(parameter.outlet); }
  Area knob() const { return map.control("_knob"); }

  InterfaceMap map{source_path("resources/KVOndexView.xib")};
  TemporaryFolder folder;
  test_support::XServer server{{"-screen", "0", "1920x1080x24"}};
  std::unique_ptr<test_support::WindowManager> manager;
  test_support::XClient user{server.display()};
  std::unique_ptr<ChildProcess> program;
  std::string program_file = ONDEX_PROGRAM;
  xcb_window_t window = XCB_WINDOW_NONE;
  double scale = 1;  ///< device pixels a point, as the test expects it
  bool managed = true;

 private:
  xcb_window_t find_window(xcb_window_t under);
  void wait_for_picture();
  Position pointer_;  ///< on the screen
};

/// On a server without a window manager.
class BareSessionTest : public SessionTest {
 protected:
  BareSessionTest() { managed = false; }
};

/// How far up and right of an area's lower left corner, as parts of its size.
inline Position within(const Area& area, double right, double up) {
  return {area.x + area.width * right, area.y + area.height * up};
}

}  // namespace ondex::test
