// SPDX-License-Identifier: MIT
#include "jalv.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <xcb/xcb.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace ondex::test {

using test_support::wait_until;
using test_support::XClient;

namespace {

constexpr int editor_width = 860;
constexpr int editor_height = 352;
/// The middle of the depth's readout.
constexpr int depth_x = 430;
constexpr int depth_y = 303;

constexpr const char* preset_manifest = R"(
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .
<urn:ondex-test:one> a pset:Preset ; lv2:appliesTo <urn:kelvane:ondex> ;
	rdfs:label "One" ; rdfs:seeAlso <one.ttl> .
)";
constexpr const char* preset = R"(
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
<urn:ondex-test:one> a pset:Preset ; lv2:appliesTo <urn:kelvane:ondex> ;
	lv2:port [ lv2:symbol "left_tremolo_rate" ; pset:value 7.0 ] ,
		[ lv2:symbol "tremolo_depth" ; pset:value 0.75 ] ,
		[ lv2:symbol "right_tremolo_mod_index" ; pset:value 3.5 ] .
)";

std::string text_of_file(const std::filesystem::path& path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

}  // namespace

JalvDesktop::JalvDesktop() {
  write_bundles();
}

std::string JalvDesktop::problem() {
  if (!manager_.started())
    return "no X server or window manager";
  return sound_.started() ? "" : "no sound server: " + sound_.errors();
}

SoundServer::Environment JalvDesktop::environment() const {
  const std::string home = folder_.path().string();
  SoundServer::Environment variables = SoundServer::for_clients();
  variables.merge(SoundServer::Environment{{"DISPLAY", server.display()},
                                           {"HOME", home},
                                           {"XDG_CONFIG_HOME", home},
                                           {"XDG_DATA_HOME", home},
                                           {"XDG_CACHE_HOME", home},
                                           {"XDG_RUNTIME_DIR", home},
                                           {"WAYLAND_DISPLAY", std::nullopt},
                                           {"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
                                           {"NO_AT_BRIDGE", "1"},
                                           {"LC_ALL", "C.UTF-8"},
                                           {"LV2_PATH", home + "/lv2:/usr/lib/lv2"}});
  return variables;
}

void JalvDesktop::write_bundles() const {
  const auto bundles = folder_.path() / "lv2";
  std::filesystem::create_directories(bundles / "preset.lv2");
  std::ofstream(bundles / "preset.lv2" / "manifest.ttl") << preset_manifest;
  std::ofstream(bundles / "preset.lv2" / "one.ttl") << preset;
  std::filesystem::copy(ONDEX_BUNDLE, bundles / "ondex.lv2", std::filesystem::copy_options::recursive);
  std::string ports = text_of_file(bundles / "ondex.lv2" / "ondex.ttl");
  const std::string ours = "lv2:default 0.5";
  if (const size_t at = ports.find(ours); at != std::string::npos)
    ports.replace(at, ours.size(), "lv2:default 0.25");
  std::ofstream(bundles / "ondex.lv2" / "ondex.ttl") << ports;
}

std::unique_ptr<ChildProcess> JalvDesktop::run(const std::string& program) {
  return std::make_unique<ChildProcess>(
      ChildProcess::Setup{{"/usr/bin/" + program, "urn:kelvane:ondex"}, environment()});
}

void JalvDesktop::collect(xcb_window_t window, std::vector<xcb_window_t>& found) {
  for (const xcb_window_t child : user.children(window)) {
    const XClient::Geometry geometry = user.geometry(child);
    // A host's own windows can have that size too; the editor's asks to be embedded.
    if (geometry.width == editor_width && geometry.height == editor_height && user.viewable(child) &&
        user.children(child).empty() && user.property(child, "_XEMBED_INFO") == std::vector<uint32_t>{1, 1}) {
      found.push_back(child);
    } else {
      collect(child, found);
    }
  }
}

std::vector<xcb_window_t> JalvDesktop::editors_now() {
  std::vector<xcb_window_t> found;
  collect(user.root(), found);
  return found;
}

std::vector<xcb_window_t> JalvDesktop::editors(size_t count) {
  std::vector<xcb_window_t> found;
  wait_until([&] {
    found = editors_now();
    return found.size() == count;
  });
  return found;
}

xcb_window_t JalvDesktop::top_level_of(xcb_window_t editor) {
  xcb_window_t window = editor;
  while (window != XCB_WINDOW_NONE && user.property(window, "WM_STATE").empty())
    window = user.parent_of(window);
  return window;
}

Picture JalvDesktop::grab(xcb_window_t window) {
  xcb_connection_t* c = user.connection();
  xcb_get_image_reply_t* reply = xcb_get_image_reply(
      c, xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, editor_width, editor_height, ~0U),
      nullptr);
  if (!reply)
    return {};
  Picture picture{editor_width, editor_height, {}};
  const auto* pixels = reinterpret_cast<const uint32_t*>(xcb_get_image_data(reply));
  std::transform(pixels, pixels + picture.width * ptrdiff_t{picture.height},
                 std::back_inserter(picture.pixels), [](uint32_t pixel) { return pixel | 0xff000000U; });
  free(reply);
  return picture;
}

Picture JalvDesktop::reference(const std::vector<std::string>& changes) {
  Picture& picture = references_[changes];
  if (picture.pixels.empty()) {
    const std::string file = (folder_.path() / "reference.png").string();
    std::vector<std::string> command{ONDEX_PROGRAM, "--scale", "1", "--screenshot", file};
    for (const std::string& change : changes)
      command.insert(command.end(), {"--set", change});
    ChildProcess({command, environment()}).wait_for_exit();
    picture = read_picture(file);
  }
  return picture;
}

bool JalvDesktop::shows(xcb_window_t editor, const std::vector<std::string>& changes) {
  const Picture expected = reference(changes);
  return !expected.pixels.empty() &&
         wait_until([&] { return differing_pixels(grab(editor), expected, 0) == 0; });
}

bool JalvDesktop::plays_depth(const std::string& client, double depth) {
  // The right side is at rest, in the middle of its swing.
  std::ostringstream line;
  line << "gain " << 1 - depth / 2 << '\n';
  ChildProcess probe({{HEARD_GAIN, client + ":right_in", client + ":right_out"}, environment(), SIGTERM});
  return wait_until([&] { return probe.has_line(line.str()); });
}

int JalvDesktop::close(ChildProcess& jalv, xcb_window_t editor) {
  user.send_protocol(top_level_of(editor), "WM_DELETE_WINDOW");
  return jalv.wait_for_exit();
}

bool JalvDesktop::loses_client(const std::string& client) {
  return wait_until([&] { return !sound_.has_client(client); });
}

void JalvDesktop::drag_depth(xcb_window_t editor, int points_up) {
  const XClient::Geometry place = user.geometry(editor);
  user.point(place.x + depth_x, place.y + depth_y);
  user.press(1);
  for (int step = 1; step <= 5; ++step)
    user.point(place.x + depth_x, place.y + depth_y - points_up * step / 5);
  user.release(1);
}

size_t JalvDesktop::windows_on_screen() {
  const auto windows = user.children(user.root());
  return static_cast<size_t>(std::count_if(windows.begin(), windows.end(),
                                           [this](xcb_window_t window) { return user.viewable(window); }));
}

bool JalvDesktop::choose_preset(xcb_window_t editor) {
  constexpr xcb_keysym_t alt = XKB_KEY_Alt_L;
  constexpr xcb_keysym_t up = XKB_KEY_Up;
  constexpr xcb_keysym_t enter = XKB_KEY_Return;
  const xcb_window_t top_level = top_level_of(editor);
  user.send_to_manager(top_level, "_NET_ACTIVE_WINDOW", 2);
  // GTK hands the focus on to a window of its own inside.
  if (!wait_until([&] {
        const xcb_window_t focused = user.focused();
        return focused == top_level || user.parent_of(focused) == top_level;
      }))
    return false;
  const size_t before = windows_on_screen();
  user.press_key(alt);
  user.type_key('p');
  user.release_key(alt);
  if (!wait_until([&] { return windows_on_screen() > before; }))
    return false;
  // Upwards from the menu's first entry comes the last.
  user.type_key(up);
  user.type_key(enter);
  return true;
}

}  // namespace ondex::test
