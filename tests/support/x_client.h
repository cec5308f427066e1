// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace test_support {

/// Another client of an X server: what a user's hands, a host or a window manager's own tools do, and eyes.
/// Everything waits for the server, so that it has happened when the call returns.
class XClient {
 public:
  explicit XClient(const std::string& display);
  ~XClient();
  XClient(const XClient&) = delete;
  XClient& operator=(const XClient&) = delete;

  xcb_connection_t* connection() const { return connection_; }
  xcb_window_t root() const { return root_; }
  xcb_atom_t atom(std::string_view name);
  void sync();

  // The user's hands, through XTEST. Positions are on the screen.
  void point(int x, int y);
  /// A window manager looks at a press before a program is given it, and holds back all that comes behind:
  /// from now on a press waits until it has let go. What follows a release waits until it has seen that: of
  /// the motions that it has not read yet a manager that moves a window takes the last, be it behind the
  /// release.
  void share_with_manager() { managed_ = true; }
  /// 1 left, 2 middle, 3 right, 4 to 7 the wheel: up, down, left, right.
  void press(int button);
  void release(int button);
  void click(int button);
  void double_click(int button = 1);
  void press_key(xcb_keysym_t keysym);
  void release_key(xcb_keysym_t keysym);
  void type_key(xcb_keysym_t keysym);

  // A host and a manager's tools.
  xcb_window_t make_window(int x, int y, int width, int height, bool override_redirect = true);
  void destroy(xcb_window_t window);
  void map(xcb_window_t window);
  void unmap(xcb_window_t window);
  void move(xcb_window_t window, int x, int y);
  void resize(xcb_window_t window, int width, int height);
  void raise(xcb_window_t window);
  void focus(xcb_window_t window);
  void select_input(xcb_window_t window, uint32_t event_mask);
  /// A WM_PROTOCOLS message such as "WM_DELETE_WINDOW", to the window itself.
  void send_protocol(xcb_window_t window, std::string_view protocol);
  /// A message about the window, such as "_NET_CLOSE_WINDOW".
  void send_to_manager(xcb_window_t window, std::string_view type, uint32_t value = 0);
  void iconify(xcb_window_t window);
  /// Until the window manager has done all that it was asked for before now.
  bool wait_for_manager();
  /// Until the program that owns the window has done all that it was sent before now: it is pinged, and its
  /// answer looked for among the events on the root window. False when it does not answer.
  bool wait_for_owner(xcb_window_t window);
  void set_property(xcb_window_t window, std::string_view name, xcb_atom_t type, std::string_view text);
  void set_property(xcb_window_t window, std::string_view name, xcb_atom_t type,
                    const std::vector<uint32_t>& words);

  // Eyes.
  /// Red, green and blue as 0xRRGGBB; none outside or where the window does not show.
  std::optional<uint32_t> pixel(xcb_window_t window, int x, int y);
  /// All pixels of a window's upper left `width` × `height` as 0xFFRRGGBB, top row first; empty as above.
  std::vector<uint32_t> pixels(xcb_window_t window, int width, int height);
  xcb_window_t focused();
  bool viewable(xcb_window_t window);
  bool exists(xcb_window_t window);
  xcb_window_t parent_of(xcb_window_t window);
  std::vector<xcb_window_t> children(xcb_window_t window);
  struct Geometry {
    int x, y, width, height;  ///< on the screen
    bool operator==(const Geometry&) const = default;
  };
  Geometry geometry(xcb_window_t window);
  std::string text_property(xcb_window_t window, std::string_view name);
  std::vector<uint32_t> property(xcb_window_t window, std::string_view name);
  bool has_window_manager();
  /// How many clients the server has, this one among them.
  uint32_t client_count();
  /// How many resources of each type the client has that owns `resource`, by the type's name.
  std::map<std::string, uint32_t> resources_of_client(uint32_t resource);
  /// The next event that this client selected; null when none has come.
  xcb_generic_event_t* poll_event() { return xcb_poll_for_event(connection_); }
  int descriptor() const { return xcb_get_file_descriptor(connection_); }

 private:
  void send(int type, int detail, int x = 0, int y = 0);
  void fake(int type, int detail, int x = 0, int y = 0);
  int keycode_of(xcb_keysym_t keysym);
  std::string name_of(xcb_atom_t atom);

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  uint32_t pings_ = 0;
  bool managed_ = false;
  bool released_ = false;  ///< a button, since the pointer was moved
};

}  // namespace test_support
