// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "child_process.h"
#include "picture.h"
#include "sound_server.h"
#include "temporary_folder.h"
#include "x_client.h"
#include "x_server.h"

namespace ondex::test {

/// A desktop with window manager and sound server of its own, where jalv finds the plug-in with other
/// defaults than the editor's own, a depth of 0.25, and a preset.
class JalvDesktop {
 public:
  JalvDesktop();
  /// What keeps jalv from running here; empty when nothing does.
  std::string problem();

  /// Qt opens no window wider than two thirds of the screen.
  test_support::XServer server{{"-screen", "0", "1600x1000x24"}};
  test_support::XClient user{server.display()};

  /// Runs `program`, which is jalv.gtk3 or jalv.qt5, with the plug-in.
  std::unique_ptr<ChildProcess> run(const std::string& program);
  /// Waits for so many editors on the screen; their windows, as they were opened. Fewer when they do not
  /// come.
  std::vector<xcb_window_t> editors(size_t count);
  /// The window of jalv's own that holds an editor.
  xcb_window_t top_level_of(xcb_window_t editor);

  /// Waits until an editor is, pixel by pixel, what the program `ondex` draws for these values.
  bool shows(xcb_window_t editor, const std::vector<std::string>& changes);
  /// Waits until the effect of a JACK client plays with this depth, a number as text.
  bool plays_depth(const std::string& client, double depth);
  /// Waits until the sound server has missed a client that was killed.
  bool loses_client(const std::string& client);

  void drag_depth(xcb_window_t editor, int points_up);
  /// From jalv's menu; false when that does not open.
  bool choose_preset(xcb_window_t editor);
  /// By the button of the window that holds the editor; jalv's exit status.
  int close(ChildProcess& jalv, xcb_window_t editor);

 private:
  SoundServer::Environment environment() const;
  std::vector<xcb_window_t> editors_now();
  void collect(xcb_window_t window, std::vector<xcb_window_t>& found);
  size_t windows_on_screen();
  Picture grab(xcb_window_t window);
  Picture reference(const std::vector<std::string>& changes);
  void write_bundles() const;

  TemporaryFolder folder_;
  test_support::WindowManager manager_{server.display()};
  SoundServer sound_{environment()};
  std::map<std::vector<std::string>, Picture> references_;
};

}  // namespace ondex::test
