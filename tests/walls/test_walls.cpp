#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace ondex::test {
namespace {

namespace fs = std::filesystem;

/// One room as the build sees it.
struct Room {
  std::string name;
  std::vector<std::string> include_dirs;  ///< that its sources are compiled with
  std::vector<std::string> public_headers;
  std::vector<std::string> private_headers;
};

std::vector<std::string> headers_in(const fs::path& folder, const std::string& prefix) {
  std::vector<std::string> headers;
  if (!fs::is_directory(folder))
    return headers;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".h")
      headers.push_back(prefix + entry.path().filename().string());
  }
  return headers;
}

std::vector<Room> all_rooms() {
  std::vector<Room> rooms;
  std::ifstream list(ONDEX_ROOMS);
  std::string line;
  while (std::getline(list, line)) {
    std::istringstream words(line);
    std::string dirs;
    std::string folder;
    Room room;
    words >> room.name >> dirs >> folder;
    std::istringstream parts(dirs);
    for (std::string dir; std::getline(parts, dir, ':');)
      room.include_dirs.push_back(dir);
    room.public_headers = headers_in(folder, room.name + "/");
    room.private_headers = headers_in(fs::path(folder) / "private", room.name + "/private/");
    rooms.push_back(room);
  }
  return rooms;
}

/// Which of the headers the compiler finds for sources of `room`.
std::set<std::string> found_from(const Room& room, const std::vector<std::string>& headers) {
  const fs::path probe = fs::path(testing::TempDir()) / ("walls_of_" + room.name + ".cpp");
  std::ofstream source(probe);
  for (const std::string& header : headers)
    source << "#if __has_include(\"" << header << "\")\nfound " << header << "\n#endif\n";
  source.close();
  std::string command = std::string(ONDEX_COMPILER) + " -E -P";
  for (const std::string& dir : room.include_dirs)
    command += " -I'" + dir + "'";
  std::FILE* output = popen((command + " '" + probe.string() + "'").c_str(), "r");
  std::set<std::string> found;
  std::array<char, 512> line{};
  while (std::fgets(line.data(), line.size(), output)) {
    const std::string text(line.data());
    if (text.starts_with("found "))
      found.insert(text.substr(6, text.find('\n') - 6));
  }
  EXPECT_EQ(pclose(output), 0) << command;
  fs::remove(probe);
  return found;
}

std::set<std::string> without(std::set<std::string> some, const std::set<std::string>& others) {
  std::erase_if(some, [&others](const std::string& one) { return others.contains(one); });
  return some;
}

/// The house from the ground up: whose public headers each room may include besides its own.
const std::map<std::string, std::set<std::string>>& neighbours() {
  static const std::set<std::string> appkit = {"appkit", "windows", "text_editing", "quartz", "foundation"};
  static const auto with = [](std::set<std::string> rooms, const std::set<std::string>& more) {
    rooms.insert(more.begin(), more.end());
    return rooms;
  };
  static const std::set<std::string> controls = with(appkit, {"drawing"});
  static const std::set<std::string> editor =
      with(controls, {"editor", "parameter_control", "knob", "response_graph", "audio_unit"});
  static const std::map<std::string, std::set<std::string>> map = {
      {"foundation", {}},
      {"unicode", {}},
      {"scale_type", {}},
      {"effect", {}},
      {"audio_unit", {"foundation"}},
      {"windows", {"foundation"}},
      {"text_editing", {"unicode"}},
      {"quartz", {"foundation", "unicode"}},
      {"appkit", appkit},
      {"drawing", appkit},
      {"parameter_control", with(controls, {"scale_type"})},
      {"knob", with(controls, {"scale_type"})},
      {"response_graph", controls},
      {"editor", editor},
      {"factory", editor},
      {"hosting", editor},
      {"standalone", with(editor, {"hosting", "factory"})},
      {"lv2_ui", with(editor, {"hosting", "factory"})},
  };
  return map;
}

TEST(Walls, EveryRoomHasAPlaceInTheHouse) {
  std::set<std::string> built;
  for (const Room& room : all_rooms())
    built.insert(room.name);
  std::set<std::string> known;
  for (const auto& [room, others] : neighbours())
    known.insert(room);
  EXPECT_EQ(built, known);
}

TEST(Walls, ARoomIncludesThePublicHeadersOfItsNeighboursAndNothingElse) {
  const std::vector<Room> rooms = all_rooms();
  std::vector<std::string> headers;
  for (const Room& room : rooms) {
    headers.insert(headers.end(), room.public_headers.begin(), room.public_headers.end());
    headers.insert(headers.end(), room.private_headers.begin(), room.private_headers.end());
  }
  ASSERT_GT(headers.size(), 150U);
  for (const Room& room : rooms) {
    ASSERT_TRUE(neighbours().contains(room.name)) << room.name;
    std::set<std::string> allowed(room.private_headers.begin(), room.private_headers.end());
    for (const Room& other : rooms) {
      if (other.name == room.name || neighbours().at(room.name).contains(other.name))
        allowed.insert(other.public_headers.begin(), other.public_headers.end());
    }
    const std::set<std::string> found = found_from(room, headers);
    EXPECT_EQ(without(found, allowed), std::set<std::string>{}) << "are found from " << room.name;
    EXPECT_EQ(without(allowed, found), std::set<std::string>{}) << "are not found from " << room.name;
  }
}

// What a control must never see, by name.
TEST(Walls, AKnobKnowsNothingOfServersFilesAndMenus) {
  for (const Room& room : all_rooms()) {
    if (room.name != "knob")
      continue;
    const std::vector<std::string> inner = {"windows/private/x11_window.h",
                                            "windows/x11_window.h",
                                            "quartz/private/color_model.h",
                                            "quartz/color_model.h",
                                            "foundation/private/InterfaceLoad.h",
                                            "foundation/InterfaceLoad.h",
                                            "appkit/private/menu_tracking.h",
                                            "appkit/menu_tracking.h",
                                            "editor/KVOndexView.h",
                                            "audio_unit/AudioUnit.h"};
    EXPECT_EQ(found_from(room, inner), std::set<std::string>{});
    EXPECT_EQ(found_from(room, {"appkit/NSView.h", "drawing/capsule.h"}).size(), 2U);
  }
}

}  // namespace
}  // namespace ondex::test
