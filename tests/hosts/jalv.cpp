#include "jalv.h"

#include <unistd.h>
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
  sound_ = std::make_unique<ChildProcess>(ChildProcess::Setup{
      {"/usr/bin/jackd", "-n", *environment()["JACK_DEFAULT_SERVER"], "-r", "-d", "dummy", "-p", "1024"},
      environment()});
  ready_ = manager_.started() && wait_until([this] {
             return ChildProcess({{"/usr/bin/jack_lsp"}, environment()}).wait_for_exit() == 0;
           });
}

std::map<std::string, std::optional<std::string>> JalvDesktop::environment() const {
  const std::string home = folder_.path().string();
  return {{"DISPLAY", server.display()},
          {"HOME", home},
          {"XDG_CONFIG_HOME", home},
          {"XDG_DATA_HOME", home},
          {"XDG_CACHE_HOME", home},
          {"XDG_RUNTIME_DIR", home},
          {"WAYLAND_DISPLAY", std::nullopt},
          {"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
          {"NO_AT_BRIDGE", "1"},
          {"LC_ALL", "C.UTF-8"},
          {"LV2_PATH", home + "/lv2:/usr/lib/lv2"},
          {"JACK_DEFAULT_SERVER", "ondex-" + std::to_string(getpid())},
          {"JACK_NO_START_SERVER", "1"},
          {"JACK_NO_AUDIO_RESERVATION", "1"}};
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
  std::transform(pixels, pixels + editor_width * editor_height, std::back_inserter(picture.pixels),
                 [](uint32_t pixel) { return pixel | 0xff000000U; });
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
  ChildProcess probe({{HEARD_GAIN, client + ":right_in", client + ":right_out"}, environment()});
  return wait_until([&] { return probe.has_line(line.str()); });
}

void JalvDesktop::drag_depth(xcb_window_t editor, int points_up) {
  const XClient::Geometry place = user.geometry(editor);
  user.point(place.x + depth_x, place.y + depth_y);
  user.press(1);
  for (int step = 1; step <= 5; ++step)
    user.point(place.x + depth_x, place.y + depth_y - points_up * step / 5);
  user.release(1);
}

void JalvDesktop::choose_preset(xcb_window_t editor) {
  constexpr xcb_keysym_t alt = 0xffe9;
  constexpr xcb_keysym_t up = 0xff52;
  constexpr xcb_keysym_t enter = 0xff0d;
  const xcb_window_t top_level = top_level_of(editor);
  user.send_to_manager(top_level, "_NET_ACTIVE_WINDOW", 2);
  wait_until([&] { return user.focused() == top_level; });
  const size_t before = user.children(user.root()).size();
  user.press_key(alt);
  user.type_key('p');
  user.release_key(alt);
  // The menu is a window of the root's; upwards from its first entry comes the last.
  wait_until([&] { return user.children(user.root()).size() > before; });
  user.type_key(up);
  user.type_key(enter);
}

}  // namespace ondex::test
