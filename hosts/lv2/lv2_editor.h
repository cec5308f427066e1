// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "appkit/NSWindow.h"
#include "audio_unit/effect_instance.h"
#include "foundation/CFRunLoop.h"
#include "foundation/Clock.h"
#include "foundation/NSBundle.h"
#include "foundation/NSLog.h"
#include "lv2_ui/echo_filter.h"
#include "lv2_ui/gesture_tracker.h"
#include "lv2_ui/gesture_window.h"
#include "lv2_ui/host_features.h"
#include "windows/window_system.h"

namespace ondex {

/// The machine's clock, which can be set forward.
class EditorClock : public cocoa::Clock {
 public:
  double now() const override { return cocoa::Clock::system().now() + skipped_; }
  void skip(double seconds) { skipped_ = skipped_ + seconds; }

 private:
  std::atomic<double> skipped_ = 0;
};

/// Plays an Audio Unit host to one editor, on behalf of an LV2 host: the parameters of the effect that the
/// editor edits are the plug-in's ports.
///
/// Shares nothing with other editors but the classes: the connection to the display, the run loop and the log
/// are its own. The host's calls may come on any threads, one at a time; calls from inside its own calls to
/// the host are expected, end() among them: whoever calls the editor holds it until the call returns.
class LV2Editor : private cocoa::NSWindowDelegate {
 public:
  /// The host's end.
  struct Host {
    LV2UI_Write_Function write = nullptr;
    LV2UI_Controller controller = nullptr;
    HostFeatures features;
    HostLog log;
  };

  /// `resources` is the folder of the interface files. Null, after a line in the log, when there is nothing
  /// to show or nowhere to show it. Otherwise the window is there, in the host's shown and with its size.
  static std::shared_ptr<LV2Editor> open(Host host, const std::string& resources);
  ~LV2Editor() override;
  /// The host wants no more of the editor: its gestures end, its windows close, and it hears nothing from
  /// then on.
  void end();
  LV2Editor(const LV2Editor&) = delete;
  LV2Editor& operator=(const LV2Editor&) = delete;

  /// The X11 window.
  uint64_t window() const { return window_number_; }

  void portEvent(uint32_t port, uint32_t size, uint32_t format, const void* buffer);
  /// One pass of the run loop, or none while there is no memory. False when the window has gone or was closed
  /// by the user.
  bool idle();
  /// False when there is no window to show any more.
  bool show();
  bool hide();
  /// The host's wish, in pixels. False when it makes no sense or cannot be met.
  bool resize(int width, int height);

 private:
  class Scope;
  explicit LV2Editor(Host host);
  /// To the display. False, after a line in the log, without one.
  bool connect();
  bool makeWindow(const std::string& resources);
  void tellSize() const;
  /// Whether there is enough for what a host's call may do; a line in the log when that ends.
  bool hasMemory();
  void runOnce();
  bool windowShouldClose(cocoa::NSWindow* window) override;
  void windowWillClose(cocoa::NSWindow* window) override;

  void write(unsigned parameter, float value);
  void tellTouch(unsigned parameter, bool begins);
  void takeSettled();
  std::optional<unsigned> parameterOfPort(uint32_t port) const;
  /// The event's float; none, after a line in the log, when it is not of a finite number.
  std::optional<float> checkedValue(uint32_t port, uint32_t size, uint32_t format, const void* buffer);
  enum class Complaint { port, format, size, not_a_number, out_of_range };
  /// Whether that is to be said of the port: for the first time, and not of thousands of ports.
  bool isNew(Complaint complaint, uint32_t port);

  Host host_;
  EditorClock clock_;
  cocoa::CFRunLoop loop_;
  GestureTracker gestures_;
  std::array<EchoFilter, parameter_count> echoes_;
  std::set<std::pair<Complaint, uint32_t>> complaints_;
  std::unique_ptr<cocoa::EffectInstance> effect_;
  cocoa::Ref<cocoa::NSBundle> bundle_;
  std::unique_ptr<cocoa::WindowSystem> window_system_;
  cocoa::CFRunLoop::AttachmentRef dispatcher_;
  cocoa::Ref<GestureWindow> window_;
  uint64_t window_number_ = 0;
  bool first_idle_ = true;
  bool in_pass_ = false;
  bool lacks_memory_ = false;
  bool user_closes_ = false;
  bool ended_ = false;   ///< there is no host any more
  bool closed_ = false;  ///< by the user, or gone
  bool gone_ = false;    ///< destroyed by others, or with its display
};

}  // namespace ondex
