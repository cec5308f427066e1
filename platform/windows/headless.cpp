// SPDX-License-Identifier: MIT
#include "windows/headless.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/NSLog.h"

namespace cocoa {

namespace {
std::array<std::optional<std::string>, 2>& offered_texts() {
  static std::array<std::optional<std::string>, 2> texts;
  return texts;
}
}  // namespace

HeadlessWindowSystem::HeadlessWindowSystem(const Clock& clock, double scale, NSSize screen_size)
    : clock_(clock), default_scale_(scale), screen_size_(screen_size) {}

HeadlessWindowSystem::~HeadlessWindowSystem() = default;

std::unique_ptr<PlatformWindow> HeadlessWindowSystem::makeWindow(const WindowOptions& options,
                                                                 PlatformWindowDelegate& delegate) {
  if (!connected_ || refuses_) {
    NSLog("The window \"%s\" could not be made.", options.title.c_str());
    return nullptr;
  }
  auto window = std::make_unique<HeadlessWindow>(*this, options, delegate, ++last_handle_);
  windows_.push_back(window.get());
  return window;
}

bool HeadlessWindowSystem::dispatch() {
  const bool any = hasQueued();
  for (const TextRequest& request : owners_answer_ ? std::exchange(requests_, {}) : std::deque<TextRequest>())
    request.use(offeredText(request.pasteboard));
  while (!queue_.empty()) {
    const Posted posted = std::move(queue_.front());
    queue_.pop_front();
    if (HeadlessWindow* window = find(posted.window))
      posted.deliver(*window);
  }
  return any;
}

void HeadlessWindowSystem::offerText(Pasteboard pasteboard, std::string text) {
  offered_texts()[static_cast<size_t>(pasteboard)] = std::move(text);
}

void HeadlessWindowSystem::requestText(Pasteboard pasteboard, UseText use) {
  requests_.push_back({pasteboard, std::move(use)});
}

std::optional<std::string> HeadlessWindowSystem::offeredText(Pasteboard pasteboard) {
  return offered_texts()[static_cast<size_t>(pasteboard)];
}

void HeadlessWindowSystem::clearPasteboards() {
  offered_texts() = {};
}

HeadlessWindow* HeadlessWindowSystem::newestWindow() const {
  const auto living = std::find_if(windows_.rbegin(), windows_.rend(),
                                   [](const HeadlessWindow* window) { return !window->gone(); });
  return living == windows_.rend() ? nullptr : *living;
}

void HeadlessWindowSystem::loseKey() {
  if (key_window_) {
    inject(key_window_->handle_, [this](HeadlessWindow& window) {
      if (key_window_ == &window)
        giveKeyTo(0);
    });
  }
}

void HeadlessWindowSystem::loseConnection() {
  connected_ = false;
  for (const HeadlessWindow* window : windows_)
    post(window->handle_, [](HeadlessWindow& lost) { lost.becomeGone(); });
  if (delivery_ == Delivery::at_once)
    dispatch();
}

void HeadlessWindowSystem::post(uint64_t window, std::function<void(HeadlessWindow&)> deliver) {
  queue_.push_back({window, std::move(deliver)});
}

void HeadlessWindowSystem::inject(uint64_t window, std::function<void(HeadlessWindow&)> deliver) {
  post(window, std::move(deliver));
  if (delivery_ == Delivery::at_once)
    dispatch();
}

HeadlessWindow* HeadlessWindowSystem::find(uint64_t window) const {
  const auto found =
      std::find_if(windows_.begin(), windows_.end(), [window](const HeadlessWindow* candidate) {
        return candidate->handle_ == window && !candidate->gone_;
      });
  return found == windows_.end() ? nullptr : *found;
}

void HeadlessWindowSystem::remove(HeadlessWindow& window) {
  windows_.erase(std::remove(windows_.begin(), windows_.end(), &window), windows_.end());
  if (key_window_ == &window)
    key_window_ = nullptr;
  window.releasePointer();
}

void HeadlessWindowSystem::pressComes(const HeadlessWindow& window, double time) {
  if (key_window_ && key_window_->kind() == WindowKind::popup)
    key_window_->press_seen_at_ = time;
  if (presses_give_keys_ && window.kind() != WindowKind::popup)
    giveKeyTo(window.handle_);
}

void HeadlessWindowSystem::giveKeyTo(uint64_t window) {
  if (HeadlessWindow* before = std::exchange(key_window_, nullptr)) {
    if (before->handle_ == window) {
      key_window_ = before;
      return;
    }
    before->delegate_.windowResignedKey();
  }
  // Being told may have closed the window that was to be key.
  HeadlessWindow* now = find(window);
  if (!now || !now->shown_)
    return;
  key_window_ = now;
  now->delegate_.windowBecameKey();
}

}  // namespace cocoa
