// SPDX-License-Identifier: MIT
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

/// One module as the build sees it.
struct Module {
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

std::vector<Module> all_modules() {
  std::vector<Module> modules;
  std::ifstream list(ONDEX_MODULES);
  std::string line;
  while (std::getline(list, line)) {
    std::istringstream words(line);
    std::string dirs;
    std::string folder;
    Module module;
    words >> module.name >> dirs >> folder;
    std::istringstream parts(dirs);
    for (std::string dir; std::getline(parts, dir, ':');)
      module.include_dirs.push_back(dir);
    module.public_headers = headers_in(folder, module.name + "/");
    module.private_headers = headers_in(fs::path(folder) / "private", module.name + "/private/");
    modules.push_back(module);
  }
  return modules;
}

/// Which of the headers the compiler finds for sources of `module`.
std::set<std::string> found_from(const Module& module, const std::vector<std::string>& headers) {
  const fs::path probe = fs::path(testing::TempDir()) / ("headers_seen_by_" + module.name + ".cpp");
  std::ofstream source(probe);
  for (const std::string& header : headers)
    source << "#if __has_include(\"" << header << "\")\nfound " << header << "\n#endif\n";
  source.close();
  std::string command = std::string(ONDEX_COMPILER) + " -E -P";
  for (const std::string& dir : module.include_dirs)
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

/// From the ground up: whose public headers each module may include besides its own.
const std::map<std::string, std::set<std::string>>& neighbours() {
  static const std::set<std::string> appkit = {"appkit", "windows", "text_editing", "quartz", "foundation"};
  static const auto with = [](std::set<std::string> modules, const std::set<std::string>& more) {
    modules.insert(more.begin(), more.end());
    return modules;
  };
  static const std::set<std::string> controls = with(appkit, {"drawing"});
  static const std::set<std::string> editor =
      with(controls, {"editor", "parameter_control", "knob", "response_graph", "scale_type", "audio_unit"});
  static const std::map<std::string, std::set<std::string>> map = {
      {"unicode", {}},
      {"foundation", {"unicode"}},
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

TEST(Modules, EveryOneHasItsPlace) {
  std::set<std::string> built;
  for (const Module& module : all_modules())
    built.insert(module.name);
  std::set<std::string> known;
  for (const auto& [module, others] : neighbours())
    known.insert(module);
  EXPECT_EQ(built, known);
}

TEST(Modules, OneIncludesThePublicHeadersOfItsNeighboursAndNothingElse) {
  const std::vector<Module> modules = all_modules();
  std::vector<std::string> headers;
  for (const Module& module : modules) {
    headers.insert(headers.end(), module.public_headers.begin(), module.public_headers.end());
    headers.insert(headers.end(), module.private_headers.begin(), module.private_headers.end());
  }
  ASSERT_GT(headers.size(), 150U);
  for (const Module& module : modules) {
    ASSERT_TRUE(neighbours().contains(module.name)) << module.name;
    std::set<std::string> allowed(module.private_headers.begin(), module.private_headers.end());
    for (const Module& other : modules) {
      if (other.name == module.name || neighbours().at(module.name).contains(other.name))
        allowed.insert(other.public_headers.begin(), other.public_headers.end());
    }
    const std::set<std::string> found = found_from(module, headers);
    EXPECT_EQ(without(found, allowed), std::set<std::string>{}) << "are found from " << module.name;
    EXPECT_EQ(without(allowed, found), std::set<std::string>{}) << "are not found from " << module.name;
  }
}

// What a control must never see, by name.
TEST(Modules, AKnobKnowsNothingOfServersFilesAndMenus) {
  for (const Module& module : all_modules()) {
    if (module.name != "knob")
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
    EXPECT_EQ(found_from(module, inner), std::set<std::string>{});
    EXPECT_EQ(found_from(module, {"appkit/NSView.h", "drawing/capsule.h"}).size(), 2U);
  }
}

}  // namespace
}  // namespace ondex::test
