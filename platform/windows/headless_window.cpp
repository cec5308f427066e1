// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include "windows/headless.h"
#include "windows/pixel_geometry.h"

namespace cocoa {

HeadlessWindow::HeadlessWindow(HeadlessWindowSystem& system, WindowOptions options,
                               PlatformWindowDelegate& delegate, uint64_t handle)
    : system_(system),
      delegate_(delegate),
      options_(std::move(options)),
      handle_(handle),
      scale_(system.default_scale_) {
  allocate();
}

HeadlessWindow::~HeadlessWindow() {
  const bool was_key = isKey();
  system_.remove(*this);
  if (was_key && key_before_) {
    system_.post(key_before_,
                 [&system = system_](HeadlessWindow& before) { system.giveKeyTo(before.handle_); });
  }
}

void HeadlessWindow::show() {
  wants_to_show_ = true;
  if (options_.kind == WindowKind::popup) {
    becomeVisible();
  } else {
    post([](HeadlessWindow& window) { window.becomeVisible(); });
  }
}

void HeadlessWindow::becomeVisible() {
  shown_ = wants_to_show_;
  if (shown_ && std::exchange(wants_key_, false))
    makeKey();
}

void HeadlessWindow::releasePointer() {
  if (system_.pointer_owner_ == this)
    system_.pointer_owner_ = nullptr;
}

void HeadlessWindow::hide() {
  releasePointer();
  wants_to_show_ = wants_key_ = shown_ = false;
  postGivingKeyBack();
  // Nobody will see the buttons come up once the window has gone from under them.
  post([](HeadlessWindow& window) {
    for (const int button : window.pointer_.held()) {
      window.system_.post(window.handle_, [button](HeadlessWindow& hidden) {
        if (const auto event = hidden.pointer_.release(hidden.pointer_.last(), button))
          hidden.delegate_.windowReceived(*event);
      });
    }
  });
}

void HeadlessWindow::makeKey() {
  if (!shown_) {
    wants_key_ = true;
    return;
  }
  post([](HeadlessWindow& window) {
    if (HeadlessWindow* before = window.system_.key_window_; before && before != &window)
      window.key_before_ = before->handle_;
    window.system_.giveKeyTo(window.handle_);
  });
}

void HeadlessWindow::postGivingKeyBack() {
  post([](HeadlessWindow& window) {
    if (window.isKey())
      window.system_.giveKeyTo(window.key_before_);
  });
}

void HeadlessWindow::setFrame(NSRect frame) {
  options_.frame = frame;
  if (allocate())
    post([](HeadlessWindow& window) { window.delegate_.windowMustRedraw(); });
}

NSRect HeadlessWindow::frame() const {
  const NSRect& all = options_.frame;
  return {{all.origin.x + margin_.origin.x, all.origin.y + margin_.origin.y},
          {all.size.width - margin_.size.width, all.size.height - margin_.size.height}};
}

NSRect HeadlessWindow::screenFrame() const {
  return options_.kind == WindowKind::embedded ? NSOffsetRect(frame(), host_origin_.x, host_origin_.y)
                                               : frame();
}

bool HeadlessWindow::allocate() {
  const NSSize all = options_.frame.size;
  const PixelRect window{0, 0, device_pixels(all.width, scale_), device_pixels(all.height, scale_)};
  const PixelRect drawn = drawn_part(window.width, window.height);
  const auto [x, y, width, height] = drawn;
  const auto points = [this](int pixels) { return static_cast<CGFloat>(pixels / scale_); };
  margin_ = {};
  if (drawn != window) {
    margin_ = {{points(x), all.height - points(y) - points(height)},
               {all.width - points(width), all.height - points(height)}};
  }
  if (width == width_ && height == height_)
    return false;
  width_ = width;
  height_ = height;
  drawn_.assign(static_cast<size_t>(width) * static_cast<size_t>(height), 0);
  shown_pixels_ = drawn_;
  has_frame_ = false;
  return true;
}

Pixels HeadlessWindow::pixels() {
  if (reading_ || gone_ || drawn_.empty())
    return {};
  return {reinterpret_cast<uint8_t*>(drawn_.data()), width_, height_,
          static_cast<size_t>(width_) * sizeof(uint32_t)};
}

Frame HeadlessWindow::shownFrame() const {
  return has_frame_ && !gone_ ? Frame{shown_pixels_.data(), width_, height_} : Frame{};
}

void HeadlessWindow::present(std::span<const PixelRect> damage) {
  if (gone_)
    return;
  presented_.emplace_back(damage.begin(), damage.end());
  has_frame_ = !drawn_.empty();
  for (const PixelRect& part : damage)
    copyToShown(part);
}

void HeadlessWindow::expose(const PixelRect& part) {
  inject([part](HeadlessWindow& window) { window.copyToShown(part); });
}

void HeadlessWindow::copyToShown(const PixelRect& part) {
  const PixelRect visible = clipped(part, width_, height_);
  for (int y = visible.y; y < visible.y + visible.height; ++y) {
    const auto from = drawn_.begin() + (static_cast<ptrdiff_t>(y) * width_ + visible.x);
    const auto to = shown_pixels_.begin() + (static_cast<ptrdiff_t>(y) * width_ + visible.x);
    std::copy_n(from, visible.width, to);
  }
}

uint32_t HeadlessWindow::shownPixel(int x, int y) const {
  if (x < 0 || y < 0 || x >= width_ || y >= height_)
    return 0;
  return shown_pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
}

void HeadlessWindow::losePixels() {
  inject([](HeadlessWindow& window) { window.delegate_.windowMustRedraw(); });
}

HeadlessWindow* HeadlessWindow::pointerGrabber(NSPoint& where) const {
  HeadlessWindow* owner = system_.pointer_owner_;
  if (!owner || owner == this)
    return nullptr;
  const NSPoint here = screenFrame().origin;
  const NSPoint there = owner->screenFrame().origin;
  where = {where.x + here.x - there.x, where.y + here.y - there.y};
  return owner;
}

PointerSample HeadlessWindow::sampleAt(NSPoint where, uint32_t modifiers) const {
  const NSPoint origin = screenFrame().origin;
  const double now = system_.clock_.now();
  PointerSample sample;
  sample.location = where;
  sample.screen_x = static_cast<double>(origin.x) + static_cast<double>(where.x);
  sample.screen_y = -(static_cast<double>(origin.y) + static_cast<double>(where.y));
  sample.modifiers = modifiers;
  sample.time = static_cast<uint32_t>(std::llround(now * 1000));
  sample.timestamp = now;
  return sample;
}

void HeadlessWindow::postCrossing(const PointerSample& sample) {
  pointer_location_ = sample.location;
  inject([sample](HeadlessWindow& window) {
    const NSRect bounds{{}, window.frame().size};
    const auto crossing = NSPointInRect(sample.location, bounds) ? window.pointer_.enter(sample)
                                                                 : window.pointer_.leave(sample);
    if (crossing)
      window.delegate_.windowReceived(*crossing);
  });
}

void HeadlessWindow::move_to(NSPoint where, uint32_t modifiers) {
  if (HeadlessWindow* grabber = pointerGrabber(where))
    return grabber->move_to(where, modifiers);
  const PointerSample sample = sampleAt(where, modifiers);
  const uint64_t handle = handle_;
  HeadlessWindowSystem& system = system_;
  postCrossing(sample);
  system.inject(handle, [sample](HeadlessWindow& window) {
    // Without a button held or a grab, only the window under the pointer hears of it.
    const bool grabbed = window.system_.pointer_owner_ == &window;
    if (grabbed || window.pointer_.inside() || !window.pointer_.held().empty())
      window.delegate_.windowReceived(window.pointer_.move(sample));
  });
}

void HeadlessWindow::drag_to(NSPoint where, uint32_t modifiers) {
  move_to(where, modifiers);
}

void HeadlessWindow::press(NSPoint where, int button, uint32_t modifiers) {
  if (HeadlessWindow* grabber = pointerGrabber(where))
    return grabber->press(where, button, modifiers);
  const PointerSample sample = sampleAt(where, modifiers);
  const uint64_t handle = handle_;
  HeadlessWindowSystem& system = system_;
  postCrossing(sample);
  system.inject(handle, [&system, handle, sample, button](HeadlessWindow& pressed) {
    system.pressComes(pressed, sample.timestamp);
    if (HeadlessWindow* window = system.find(handle))
      window->delegate_.windowReceived(window->pointer_.press(sample, button));
  });
}

void HeadlessWindow::release(int button, uint32_t modifiers) {
  NSPoint where = pointer_location_;
  if (HeadlessWindow* grabber = pointerGrabber(where)) {
    grabber->pointer_location_ = where;
    return grabber->release(button, modifiers);
  }
  const PointerSample sample = sampleAt(pointer_location_, modifiers);
  inject([sample, button](HeadlessWindow& window) {
    if (const auto event = window.pointer_.release(sample, button))
      window.delegate_.windowReceived(*event);
  });
}

void HeadlessWindow::scroll(double dx, double dy, uint32_t modifiers) {
  NSPoint where = pointer_location_;
  if (HeadlessWindow* grabber = pointerGrabber(where)) {
    grabber->pointer_location_ = where;
    return grabber->scroll(dx, dy, modifiers);
  }
  const PointerSample sample = sampleAt(pointer_location_, modifiers);
  inject([sample, turn = ScrollTurn{dx, dy}](HeadlessWindow& window) {
    window.delegate_.windowReceived(window.pointer_.scroll(sample, turn));
  });
}

void HeadlessWindow::postKey(WindowEventType type, uint32_t keysym, std::string_view characters,
                             uint32_t modifiers, bool repeat) {
  WindowEvent event;
  event.type = type;
  event.location = pointer_location_;
  event.modifiers = modifiers;
  event.timestamp = system_.clock_.now();
  event.keysym = keysym;
  event.characters = characters;
  event.is_repeat = repeat;
  inject([event](HeadlessWindow& window) { window.delegate_.windowReceived(event); });
}

void HeadlessWindow::key_down(uint32_t keysym, std::string_view characters, uint32_t modifiers, bool repeat) {
  postKey(WindowEventType::key_down, keysym, characters, modifiers, repeat);
}

void HeadlessWindow::key_up(uint32_t keysym, std::string_view characters, uint32_t modifiers) {
  postKey(WindowEventType::key_up, keysym, characters, modifiers, false);
}

void HeadlessWindow::type(std::string_view text) {
  const uint64_t handle = handle_;
  HeadlessWindowSystem& system = system_;
  for (const char character : text) {
    HeadlessWindow* window = system.find(handle);
    if (!window)
      return;
    const std::string characters(1, character);
    // The keysyms of Latin 1 are its characters.
    window->key_down(static_cast<unsigned char>(character), characters);
    if ((window = system.find(handle)))
      window->key_up(static_cast<unsigned char>(character), characters);
  }
}

void HeadlessWindow::requestClose() {
  inject([](HeadlessWindow& window) { window.delegate_.windowShouldClose(); });
}

void HeadlessWindow::move(NSPoint origin) {
  inject([origin](HeadlessWindow& window) {
    window.options_.frame.origin = origin;
    window.delegate_.windowMoved();
  });
}

void HeadlessWindow::resize(NSSize size) {
  inject([size](HeadlessWindow& window) {
    window.options_.frame.size = size;
    if (window.allocate())
      window.delegate_.windowMustRedraw();
  });
}

void HeadlessWindow::setScale(double scale) {
  inject([scale](HeadlessWindow& window) {
    if (std::exchange(window.scale_, scale) == scale)
      return;
    window.allocate();
    window.delegate_.windowMustRedraw();
  });
}

void HeadlessWindow::setObscured(bool obscured) {
  inject([obscured](HeadlessWindow& window) { window.obscured_ = obscured; });
}

void HeadlessWindow::setHidden(bool hidden) {
  inject([hidden](HeadlessWindow& window) {
    window.hidden_ = hidden;
    if (hidden)
      window.delegate_.windowWasHidden();
  });
}

void HeadlessWindow::loseKey() {
  inject([](HeadlessWindow& window) {
    if (window.isKey())
      window.system_.giveKeyTo(0);
  });
}

void HeadlessWindow::destroyFromOutside() {
  inject([](HeadlessWindow& window) { window.becomeGone(); });
}

void HeadlessWindow::becomeGone() {
  const uint64_t handle = handle_;
  HeadlessWindowSystem& system = system_;
  shown_ = false;
  releasePointer();
  if (isKey())
    system.giveKeyTo(0);
  // Its owner may have closed it on being told that it is no longer key.
  if (HeadlessWindow* window = system.find(handle)) {
    window->gone_ = true;
    window->delegate_.windowGone();
  }
}

}  // namespace cocoa
