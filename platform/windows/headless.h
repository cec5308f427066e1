// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/Clock.h"
#include "windows/pointer_tracker.h"
#include "windows/window_system.h"

/// Windows without a display: their pixels lie in memory, and whoever holds the window system plays the user,
/// the window manager and the server. For tests and for drawing the editor into a picture.

namespace cocoa {

class HeadlessWindow;

class HeadlessWindowSystem : public WindowSystem {
 public:
  /// Times of events come from `clock`, which must outlive the window system.
  explicit HeadlessWindowSystem(const Clock& clock = Clock::system(), double scale = 1,
                                NSSize screen_size = {1280, 800});
  ~HeadlessWindowSystem() override;

  std::unique_ptr<PlatformWindow> makeWindow(const WindowOptions& options,
                                             PlatformWindowDelegate& delegate) override;
  /// Delivers all that was injected, and what was injected meanwhile.
  bool dispatch() override;
  int descriptor() const override { return -1; }
  bool connected() const override { return connected_; }
  double defaultScale() const override { return default_scale_; }
  /// All headless window systems of the process are programs beside each other that share the pasteboards.
  void offerText(Pasteboard pasteboard, std::string text) override;
  void requestText(Pasteboard pasteboard, UseText use) override;

  /// What is offered; none when nobody does.
  static std::optional<std::string> offeredText(Pasteboard pasteboard);
  /// Whoever offered texts has gone.
  static void clearPasteboards();
  NSSize screenSize() const override { return screen_size_; }

  void setDefaultScale(double scale) { default_scale_ = scale; }

  /// The windows there are, in the order in which they were made.
  const std::vector<HeadlessWindow*>& windows() const { return windows_; }
  /// The window made last that has not gone; null when there is none.
  HeadlessWindow* newestWindow() const;
  HeadlessWindow* keyWindow() const { return key_window_; }
  /// The window that has grabbed the pointer, to which all that the user does with it over any window goes;
  /// null without one.
  HeadlessWindow* pointerOwner() const { return pointer_owner_; }

  enum class Delivery {
    queued,   ///< what is injected waits for dispatch(), as it would in a server's queue
    at_once,  ///< it is delivered before the injecting call returns; what windows do to themselves still
              ///< waits
  };
  void setDelivery(Delivery delivery) { delivery_ = delivery; }
  /// Whether something waits for dispatch().
  bool hasQueued() const { return !queue_.empty() || (owners_answer_ && !requests_.empty()); }

  /// The user goes to another program: no window is key any more.
  void loseKey();
  /// The server goes: every window is gone, and none can be made.
  void loseConnection();
  /// Whether whoever offers texts answers; until then requests wait.
  void setOwnersAnswer(bool answer) { owners_answer_ = answer; }
  /// From now on a window manager gives the keys to a window that is pressed, before the window hears of it.
  void setPressesGiveKeys(bool give) { presses_give_keys_ = give; }
  /// From now on makeWindow() answers null.
  void refuseWindows(bool refuse) { refuses_ = refuse; }

 private:
  friend class HeadlessWindow;
  /// dispatch() calls `deliver` with the window, if it still lives by then.
  void post(uint64_t window, std::function<void(HeadlessWindow&)> deliver);
  /// The same for what comes from outside, which may be delivered at once.
  void inject(uint64_t window, std::function<void(HeadlessWindow&)> deliver);
  HeadlessWindow* find(uint64_t window) const;
  void remove(HeadlessWindow& window);
  /// Tells the window that was key, then the one that is now.
  void giveKeyTo(uint64_t window);
  /// The window is about to be told of a press.
  void pressComes(const HeadlessWindow& window, double time);

  struct Posted {
    uint64_t window;
    std::function<void(HeadlessWindow&)> deliver;
  };

  const Clock& clock_;
  double default_scale_;
  NSSize screen_size_;
  std::vector<HeadlessWindow*> windows_;
  std::deque<Posted> queue_;
  struct TextRequest {
    Pasteboard pasteboard;
    UseText use;
  };
  std::deque<TextRequest> requests_;
  Delivery delivery_ = Delivery::queued;
  HeadlessWindow* key_window_ = nullptr;
  HeadlessWindow* pointer_owner_ = nullptr;
  uint64_t last_handle_ = 0;
  bool connected_ = true;
  bool refuses_ = false;
  bool owners_answer_ = true;
  bool presses_give_keys_ = false;
};

class HeadlessWindow : public PlatformWindow {
 public:
  HeadlessWindow(HeadlessWindowSystem& system, WindowOptions options, PlatformWindowDelegate& delegate,
                 uint64_t handle);
  ~HeadlessWindow() override;

  void show() override;
  void hide() override;
  bool viewable() const override { return shown_ && !obscured_ && !hidden_ && !gone_; }
  void makeKey() override;
  void giveUpKey() override { postGivingKeyBack(); }
  bool isKey() const override { return system_.key_window_ == this; }
  std::optional<double> pressSeenAt() const override { return press_seen_at_; }
  void setTitle(std::string_view title) override { options_.title = title; }
  void setFrame(NSRect frame) override;
  NSRect frame() const override;
  NSRect screenFrame() const override;
  NSRect screenBounds() const override { return {{}, system_.screen_size_}; }
  double scale() const override { return scale_; }
  void grabPointer() override { system_.pointer_owner_ = this; }
  void releasePointer() override;
  Pixels pixels() override;
  Frame shownFrame() const override;
  void present(std::span<const PixelRect> damage) override;
  /// Numbers from 1 on: a window of this kind has one too, so that owners can be told apart.
  uint64_t nativeHandle() const override { return handle_; }

  WindowKind kind() const { return options_.kind; }
  const std::string& title() const { return options_.title; }
  PlatformWindow* parent() const { return options_.parent; }
  uint64_t hostWindow() const { return options_.host_window; }
  bool gone() const { return gone_; }

  // The user. Locations are in the window, in points, as events tell them.
  void press(NSPoint where, int button = 0, uint32_t modifiers = 0);
  /// Moves with a button held. The pointer may leave the window, which still gets its events.
  void drag_to(NSPoint where, uint32_t modifiers = 0);
  /// Where the pointer is.
  void release(int button = 0, uint32_t modifiers = 0);
  void move_to(NSPoint where, uint32_t modifiers = 0);
  /// Turns the wheel where the pointer is, in notches: y positive away from the user, x to the left.
  void scroll(double dx, double dy, uint32_t modifiers = 0);
  void key_down(uint32_t keysym, std::string_view characters, uint32_t modifiers = 0, bool repeat = false);
  void key_up(uint32_t keysym, std::string_view characters = {}, uint32_t modifiers = 0);
  /// Presses and releases the key of every character of an ASCII text.
  void type(std::string_view text);

  // The window manager, the server and the host.
  void requestClose();
  void move(NSPoint origin);
  void resize(NSSize size);
  void setScale(double scale);
  void destroyFromOutside();
  /// Others cover all of the window.
  void setObscured(bool obscured);
  /// Its host or its manager takes it off the screen, or puts it back.
  void setHidden(bool hidden);
  void loseKey();
  /// Others uncovered a part: it is shown from the kept pixels, and nobody is told.
  void expose(const PixelRect& part);
  /// The kept pixels are lost; the owner is asked to draw everything again.
  void losePixels();
  /// The window system still reads the last frame: pixels() answers none until it is set to false.
  void setReading(bool reading) { reading_ = reading; }
  /// Where the host's window is in the screen, for an embedded window.
  void setHostOrigin(NSPoint origin) { host_origin_ = origin; }

  /// What one present() was told to show.
  using Damage = std::vector<PixelRect>;
  const std::vector<Damage>& presented() const { return presented_; }
  void clearPresented() { presented_.clear(); }
  /// The pixel at a place as the user sees it: what was presented, not what was merely drawn. Premultiplied
  /// ARGB; 0 outside.
  uint32_t shownPixel(int x, int y) const;

 private:
  friend class HeadlessWindowSystem;
  void post(std::function<void(HeadlessWindow&)> deliver) { system_.post(handle_, std::move(deliver)); }
  void inject(std::function<void(HeadlessWindow&)> deliver) { system_.inject(handle_, std::move(deliver)); }
  /// The window that is told of the pointer instead of this one, if another has grabbed it; `where` becomes
  /// the place in that one.
  HeadlessWindow* pointerGrabber(NSPoint& where) const;
  PointerSample sampleAt(NSPoint where, uint32_t modifiers) const;
  void postCrossing(const PointerSample& sample);
  void postKey(WindowEventType type, uint32_t keysym, std::string_view characters, uint32_t modifiers,
               bool repeat);
  void postGivingKeyBack();
  void becomeVisible();
  void becomeGone();
  /// Makes room for the size and scale there are; whether the pixels were lost over it.
  bool allocate();
  void copyToShown(const PixelRect& part);

  HeadlessWindowSystem& system_;
  PlatformWindowDelegate& delegate_;
  WindowOptions options_;
  uint64_t handle_;
  double scale_;
  NSPoint host_origin_;
  PointerTracker pointer_;
  NSPoint pointer_location_;  ///< as injected last; may be ahead of what was delivered
  bool wants_to_show_ = false;
  bool wants_key_ = false;  ///< as soon as it shows
  std::optional<double> press_seen_at_;
  bool shown_ = false;
  bool obscured_ = false;
  bool hidden_ = false;
  bool gone_ = false;
  bool reading_ = false;
  bool has_frame_ = false;
  uint64_t key_before_ = 0;  ///< becomes key again when this window goes
  int width_ = 0;
  int height_ = 0;
  NSRect margin_;  ///< points, from the window to what is drawn: origin and what it is smaller by
  std::vector<uint32_t> drawn_;
  std::vector<uint32_t> shown_pixels_;
  std::vector<Damage> presented_;
};

}  // namespace cocoa
