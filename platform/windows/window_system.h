// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "foundation/NSGeometry.h"

/// All that a port to another window system must supply.
///
/// Coordinates: positions and sizes are in points, y grows upwards from a window's lower left corner, and
/// screen positions from the lower left of the screen. Pixels are device pixels, top row first: a window of
/// w × h points at scale s has ceil(w·s) × ceil(h·s) of them. Of a window that others make too large to be
/// drawn, only a middle part with its proportions counts as the window, for frames and locations too; what is
/// around it is grey.
/// Everything is called and calls back on one thread. Nothing here waits for an answer of the window manager.

namespace cocoa {

enum class WindowEventType {
  mouse_down,
  mouse_up,
  mouse_dragged,  ///< moved while a button that went down in this window is held, wherever the pointer is
  mouse_moved,
  mouse_entered,
  mouse_exited,
  scroll_wheel,
  key_down,
  key_up,
};

/// Bits of WindowEvent::modifiers; their values are those of the platform's modifier flags.
enum WindowModifiers : uint32_t {
  modifier_shift = 1U << 17,
  modifier_control = 1U << 18,
  modifier_option = 1U << 19,
  modifier_command = 1U << 20,
};

struct WindowEvent {
  WindowEventType type = WindowEventType::mouse_moved;
  /// In the window: the lower left corner of the device pixel under the pointer, so that every pixel of a
  /// view has its location inside the view.
  NSPoint location;
  int button = 0;  ///< 0 left, 1 right, 2 middle
  /// 1 on a single press, 2 on the second of two within 0.5 s and 5 points, and so on; the same on release.
  int click_count = 0;
  /// Motion since the event before: x positive to the right, y positive downwards. On scroll_wheel: the
  /// turn, y positive away from the user, x positive to the left, 1.0 a notch, fractions from
  /// smooth-scrolling devices.
  CGFloat delta_x = 0;
  CGFloat delta_y = 0;
  uint32_t modifiers = 0;
  double timestamp = 0;    ///< seconds, of the window system's clock
  uint32_t keysym = 0;     ///< X keysym of the key, with its level applied
  std::string characters;  ///< what the key types, in UTF-8; empty for none
  bool is_repeat = false;
};

/// What a window tells its owner. None of these may be called from inside a call on the window but present().
class PlatformWindowDelegate {
 public:
  virtual ~PlatformWindowDelegate() = default;
  virtual void windowReceived(const WindowEvent& event) = 0;
  /// Size or scale changed, or the pixels were lost: everything must be drawn again.
  virtual void windowMustRedraw() = 0;
  virtual void windowMoved() = 0;
  /// Its manager or its host has taken it off the screen, with or without an end: minimised it, shaded it,
  /// shown the desktop, hidden the host's own window. While a popup of it shows, told before a key of that.
  virtual void windowWasHidden() = 0;
  virtual void windowBecameKey() = 0;
  virtual void windowResignedKey() = 0;
  /// The user asks to close the window; it stays until its owner closes it.
  virtual void windowShouldClose() = 0;
  /// The window was destroyed from outside, or the connection was lost. Only destruction is left to do.
  virtual void windowGone() = 0;
};

enum class WindowKind {
  titled,    ///< a top-level window with frame and title
  embedded,  ///< a child of a host's window
  popup,     ///< without frame, above its parent, with translucent pixels where the system can
  panel,     ///< titled, above its parent's top-level window
};

class PlatformWindow;

struct WindowOptions {
  WindowKind kind = WindowKind::titled;
  NSRect frame = {};  ///< in the screen; of an embedded window, in its parent; the origin is advice
  std::string title = {};
  PlatformWindow* parent = nullptr;  ///< of a popup or panel; must outlive the window
  uint64_t host_window = 0;          ///< of an embedded window: the host's own
  /// Others may give the window any size of at least half the first one, best with its proportions.
  bool resizable = false;
};

/// Memory that a frame is drawn into: 32-bit pixels, premultiplied, alpha in the highest byte.
struct Pixels {
  uint8_t* data = nullptr;
  int width = 0;
  int height = 0;
  size_t bytes_per_row = 0;
  bool operator==(const Pixels&) const = default;
  explicit operator bool() const { return data != nullptr; }
};

/// A frame to be read: its rows of 32-bit pixels one after the other, premultiplied, alpha in the highest
/// byte.
struct Frame {
  const uint32_t* pixels = nullptr;
  int width = 0;
  int height = 0;
  explicit operator bool() const { return pixels != nullptr; }
};

/// Device pixels from the top left.
struct PixelRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool operator==(const PixelRect&) const = default;
};

class PlatformWindow {
 public:
  virtual ~PlatformWindow() = default;

  /// Maps the window above its siblings. A popup shows at once, a titled window when its manager agrees.
  virtual void show() = 0;
  virtual void hide() = 0;
  /// Whether somebody may see it. Windows that nobody sees are not drawn.
  virtual bool viewable() const = 0;
  virtual void makeKey() = 0;
  /// Gives the keys back to who had them before, when this window is key.
  virtual void giveUpKey() = 0;
  virtual bool isKey() const = 0;
  /// The timestamp of the last press, anywhere on the screen, that came while this popup had the keys or had
  /// asked for them. None before, and of other windows.
  virtual std::optional<double> pressSeenAt() const { return std::nullopt; }
  virtual void setTitle(std::string_view title) = 0;
  virtual void setFrame(NSRect frame) = 0;
  /// Has the window manager move the window along with the pointer while the button that is pressed is held.
  /// What the pointer does meanwhile is told late or never, the release too. False when there is none that
  /// can.
  virtual bool letManagerMove() { return false; }
  /// Where it was asked to be or was last seen, in the coordinates of WindowOptions::frame.
  virtual NSRect frame() const = 0;
  /// Where it is in the screen at this moment: a host moves its window without telling the one embedded in
  /// it. May ask the window system and wait for the answer; for the moment at which a popup opens.
  virtual NSRect screenFrame() const { return frame(); }
  /// The screen that it is on, in points.
  virtual NSRect screenBounds() const = 0;
  /// Device pixels a point.
  virtual double scale() const = 0;

  /// From now on all that the pointer does anywhere on the screen is told to this window, which must show:
  /// for a list that closes when something else is clicked. Ends with releasePointer(), with hide() and with
  /// the window. Another program may hold the pointer; then nothing happens.
  virtual void grabPointer() = 0;
  virtual void releasePointer() = 0;

  /// The window's pixels, kept from frame to frame. None while the window system still reads the last frame
  /// (then it calls for another pass of the run loop when it is done) and none for a window without area.
  virtual Pixels pixels() = 0;
  /// What was presented, to be read until the next call on the window; none before the first time.
  virtual Frame shownFrame() const = 0;
  /// Shows what was drawn in `damage`.
  virtual void present(std::span<const PixelRect> damage) = 0;
  /// The window system's own number for it: an X11 window ID; 0 without a display.
  virtual uint64_t nativeHandle() const = 0;
};

/// Where texts are left for others to take.
enum class Pasteboard {
  copied,    ///< by Copy and Cut, for Paste
  selected,  ///< by being selected, for the middle button
};

class WindowSystem {
 public:
  virtual ~WindowSystem() = default;
  /// Null, after a line in the log, when the window system refuses.
  virtual std::unique_ptr<PlatformWindow> makeWindow(const WindowOptions& options,
                                                     PlatformWindowDelegate& delegate) = 0;
  /// Delivers what has come, without waiting; whether there was anything.
  virtual bool dispatch() = 0;
  /// Readable when there is something to dispatch; -1 without a display.
  virtual int descriptor() const = 0;
  /// False once the connection is lost: every window has been told that it is gone.
  virtual bool connected() const = 0;
  /// The scale of new windows.
  virtual double defaultScale() const = 0;

  /// Offers UTF-8 text to every program, this one included, until somebody offers another.
  virtual void offerText(Pasteboard pasteboard, std::string text) = 0;
  /// Calls `use` once from a later dispatch() with what is offered, as it comes: others' bytes need not be
  /// UTF-8. None when nobody offers text, when it is too much for a field, or when its owner does not answer
  /// in time; never when the window system goes before.
  using UseText = std::function<void(std::optional<std::string> text)>;
  virtual void requestText(Pasteboard pasteboard, UseText use) = 0;
  /// In points of that scale.
  virtual NSSize screenSize() const = 0;
};

}  // namespace cocoa
