// SPDX-License-Identifier: MIT
#include "session.h"

#include <charconv>
#include <cmath>
#include <sstream>
#include <string_view>

namespace ondex::test {

using test_support::wait_until;

namespace {

std::optional<Written> read_written(std::string_view line) {
  Written written;
  const size_t blank = line.find(' ');
  const char* const end = line.data() + line.size();
  const auto id = std::from_chars(line.data(), line.data() + std::min(blank, line.size()), written.id);
  if (blank == std::string_view::npos || id.ptr != line.data() + blank)
    return std::nullopt;
  const auto value = std::from_chars(line.data() + blank + 1, end, written.value);
  return value.ec == std::errc() && value.ptr == end ? std::optional(written) : std::nullopt;
}

}  // namespace

void SessionTest::SetUp() {
  ASSERT_FALSE(server.display().empty()) << "Xvfb did not start";
  if (!managed)
    return;
  manager = std::make_unique<test_support::WindowManager>(server.display());
  ASSERT_TRUE(manager->started()) << "openbox did not start";
  user.share_with_manager();
}

void SessionTest::launch(std::vector<std::string> arguments, const Environment& environment) {
  arguments.insert(arguments.begin(), program_file);
  Environment all = environment;
  all.try_emplace("DISPLAY", server.display());
  all.try_emplace("XDG_CONFIG_HOME", folder.path().string());
  program = std::make_unique<ChildProcess>(ChildProcess::Setup{std::move(arguments), all});
}

void SessionTest::start(std::vector<std::string> arguments, const Environment& environment) {
  launch(std::move(arguments), environment);
  wait_for_window();
  EXPECT_TRUE(!managed || user.wait_for_manager());
  settle();
  // The controls have been told the effect's values by the time that the first picture may be made.
  wait_for_picture();
  program->forget_output();
}

void SessionTest::wait_for_window() {
  const bool shown = wait_until([this] {
    window = find_window(user.root());
    return window != XCB_WINDOW_NONE && user.viewable(window);
  });
  ASSERT_TRUE(shown) << program->errors();
}

void SessionTest::expect_quiet_end() {
  command("quit");
  EXPECT_EQ(program->wait_for_exit(), 0);
  EXPECT_EQ(program->errors(), "");
}

xcb_window_t SessionTest::find_window(xcb_window_t under) {
  for (const xcb_window_t child : user.children(under)) {
    if (user.text_property(child, "_NET_WM_NAME") == "KV Ondex" &&
        !user.property(child, "_NET_WM_PID").empty())
      return child;
    if (const xcb_window_t found = find_window(child))
      return found;
  }
  return XCB_WINDOW_NONE;
}

void SessionTest::point(Position at) {
  const auto frame = user.geometry(window);
  pointer_ = {frame.x + std::floor(at.x * scale), frame.y + frame.height - 1 - std::floor(at.y * scale)};
  user.point(static_cast<int>(pointer_.x), static_cast<int>(pointer_.y));
}

void SessionTest::press(Position at, int button) {
  point(at);
  press_again(button);
}

void SessionTest::click(Position at, int button) {
  press(at, button);
  release(button);
}

void SessionTest::press_again(int button) {
  user.press(button);
}

void SessionTest::clicks(Position at, int count) {
  point(at);
  for (int i = 0; i < count; ++i) {
    press_again();
    release();
  }
}

void SessionTest::move_by(int right, int up) {
  pointer_ = {pointer_.x + right, pointer_.y - up};
  user.point(static_cast<int>(pointer_.x), static_cast<int>(pointer_.y));
  // The program tells only the last of a row of motions: each is to count by itself.
  settle();
}

void SessionTest::wheel(Position at, int button) {
  point(at);
  user.click(button);
}

Position SessionTest::told(Position at) const {
  return {std::floor(at.x * scale) / scale, std::floor(at.y * scale) / scale};
}

void SessionTest::settle() {
  EXPECT_TRUE(user.wait_for_owner(window)) << "the program does not answer; it said:\n" << program->errors();
}

Writes SessionTest::written() {
  settle();
  std::istringstream lines(program->output());
  program->forget_output();
  Writes writes;
  for (std::string line; std::getline(lines, line);) {
    constexpr std::string_view head = "parameter ";
    if (line.rfind(head, 0) != 0)
      continue;
    if (const auto written = read_written(std::string_view(line).substr(head.size()))) {
      writes.push_back(*written);
    } else {
      ADD_FAILURE() << "not to be read: " << line;
    }
  }
  return writes;
}

std::string SessionTest::value_of(unsigned id) {
  const std::string head = "value " + std::to_string(id) + " ";
  command("get " + std::to_string(id));
  const std::string line = program->wait_for_line(head);
  return line.substr(std::min(line.size(), head.size()));
}

void SessionTest::wait_for_picture() {
  // Commands wait for the picture before them.
  command("screenshot " + (folder.path() / "picture.png").string());
  value_of(0);
}

Picture SessionTest::screenshot() {
  wait_for_picture();
  return read_picture((folder.path() / "picture.png").string());
}

Picture SessionTest::on_screen() {
  const auto frame = user.geometry(window);
  return {frame.width, frame.height, user.pixels(window, frame.width, frame.height)};
}

bool SessionTest::comes_to_show(const Picture& picture) {
  return wait_until([&] {
    const Picture seen = on_screen();
    return seen.width == picture.width && seen.height == picture.height && seen.pixels == picture.pixels;
  });
}

}  // namespace ondex::test
