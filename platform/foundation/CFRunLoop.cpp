// SPDX-License-Identifier: MIT
#include "foundation/CFRunLoop.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include "foundation/NSLog.h"
#include "foundation/NSObject.h"
#include "foundation/UniqueFd.h"

namespace cocoa {

enum CFRunLoopStep : std::uint8_t { step_poll, step_source, step_timer, step_observe, step_count };

/// Owned by its attachment, so that neither a list nor a step ever destroys a callback in mid-change; a step
/// holds it too while it runs, so that its attachment may go meanwhile.
struct CFRunLoop::Item {
  CFRunLoopStep step = step_poll;
  std::function<bool()> perform;
  double fire_date = 0;
  bool attached = true;
  std::atomic<bool> signalled = false;
};

/// A counter of the kernel that is readable while it is not 0.
class CFRunLoop::WakeDescriptor {
 public:
  WakeDescriptor() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (!descriptor_)
      NSLog("The run loop cannot be woken by other threads: %s", std::strerror(errno));
  }

  int descriptor() const { return descriptor_.get(); }
  void set() const {
    // A refused write means a counter at its limit: readable as well.
    const std::uint64_t one = 1;
    if (descriptor_)
      std::ignore = write(descriptor_.get(), &one, sizeof one);
  }
  void clear() const {
    std::uint64_t count = 0;
    if (descriptor_)
      std::ignore = read(descriptor_.get(), &count, sizeof count);
  }

 private:
  const UniqueFd descriptor_;
};

struct CFRunLoop::Impl {
  using ItemRef = std::shared_ptr<Item>;

  ItemRef add(CFRunLoopStep step, std::function<bool()> perform, double fire_date = 0);
  void remove(const ItemRef& item) { std::erase(items[item->step], item); }
  bool isEmpty() const {
    return items[step_poll].empty() && items[step_source].empty() && items[step_timer].empty();
  }
  bool runOnce(bool stop_after_one);
  bool poll(bool stop_after_one);
  bool performSources(bool stop_after_one);
  void fireTimers();
  void observe();

  std::array<std::vector<ItemRef>, step_count> items;  // each in the order of addition
  std::vector<ItemRef> running;                        // what the current step is going through
  const std::shared_ptr<const WakeDescriptor> wake = std::make_shared<const WakeDescriptor>();
  const Clock* clock = &Clock::system();
  bool in_pass = false;
};

CFRunLoop::Impl::ItemRef CFRunLoop::Impl::add(CFRunLoopStep step, std::function<bool()> perform,
                                              double fire_date) {
  auto item = std::make_shared<Item>();
  item->step = step;
  item->perform = std::move(perform);
  item->fire_date = fire_date;
  items[step].push_back(item);
  return item;
}

bool CFRunLoop::Impl::runOnce(bool stop_after_one) {
  in_pass = true;
  bool handled = false;
  {
    const NSAutoreleasePool pool;
    // Before the flags of the sources are read: a signal that comes later makes it readable again.
    wake->clear();
    handled = poll(stop_after_one);
    if (handled && stop_after_one) {
      wake->set();
    } else if (performSources(stop_after_one)) {
      handled = true;
    }
    fireTimers();
    observe();
  }
  in_pass = false;
  return handled;
}

bool CFRunLoop::Impl::poll(bool stop_after_one) {
  bool handled = false;
  running = items[step_poll];
  for (ItemRef& entry : running) {
    const ItemRef item = std::move(entry);
    if (item->attached && !(handled && stop_after_one) && item->perform())
      handled = true;
  }
  return handled;
}

bool CFRunLoop::Impl::performSources(bool stop_after_one) {
  running = items[step_source];
  // A source that another one signals waits for the next pass, wherever the two stand in the list.
  std::erase_if(running,
                [](const ItemRef& item) { return !item->signalled.load(std::memory_order_acquire); });
  bool handled = false;
  for (ItemRef& entry : running) {
    const ItemRef item = std::move(entry);
    if (!item->attached)
      continue;
    if (handled && stop_after_one) {
      wake->set();
      continue;
    }
    // Lowered before the call: a signal that comes during it counts for the next pass.
    item->signalled.exchange(false, std::memory_order_acq_rel);
    item->perform();
    handled = true;
  }
  return handled;
}

void CFRunLoop::Impl::fireTimers() {
  const double now = clock->now();
  running.clear();
  const auto is_earlier = [](const ItemRef& a, const ItemRef& b) { return a->fire_date < b->fire_date; };
  for (const ItemRef& item : items[step_timer]) {
    if (item->fire_date <= now)
      running.insert(std::upper_bound(running.begin(), running.end(), item, is_earlier), item);
  }
  for (ItemRef& entry : running) {
    const ItemRef item = std::move(entry);
    if (!item->attached)
      continue;
    remove(item);
    item->perform();
  }
}

void CFRunLoop::Impl::observe() {
  running = items[step_observe];
  for (ItemRef& entry : running) {
    const ItemRef item = std::move(entry);
    if (item->attached)
      item->perform();
  }
  running.clear();
}

CFRunLoop::CFRunLoop() : impl_(std::make_shared<Impl>()) {}
CFRunLoop::~CFRunLoop() = default;

CFRunLoop::Attachment::Attachment(const std::shared_ptr<Impl>& loop, std::shared_ptr<Item> item)
    : loop_(loop), item_(std::move(item)) {}

CFRunLoop::Attachment::~Attachment() {
  item_->attached = false;
  if (const auto loop = loop_.lock())
    loop->remove(item_);
}

CFRunLoop::Source::Source(const std::shared_ptr<Impl>& loop, std::shared_ptr<Item> item)
    : item_(std::move(item)), wake_(loop->wake), attachment_(loop, item_) {}

CFRunLoop::Source::~Source() = default;

void CFRunLoop::Source::signal() const {
  if (!item_->signalled.exchange(true, std::memory_order_acq_rel))
    wake_->set();
}

namespace {

std::function<bool()> answering_true(std::function<void()> callback) {
  return [callback = std::move(callback)] {
    callback();
    return true;
  };
}

}  // namespace

CFRunLoop::AttachmentRef CFRunLoop::addPoller(std::function<bool()> poll) {
  return std::make_unique<Attachment>(impl_, impl_->add(step_poll, std::move(poll)));
}

CFRunLoop::SourceRef CFRunLoop::addSource(std::function<void()> perform) {
  return std::make_unique<Source>(impl_, impl_->add(step_source, answering_true(std::move(perform))));
}

CFRunLoop::AttachmentRef CFRunLoop::addTimer(double fire_date, std::function<void()> fire) {
  return std::make_unique<Attachment>(impl_,
                                      impl_->add(step_timer, answering_true(std::move(fire)), fire_date));
}

CFRunLoop::AttachmentRef CFRunLoop::addBeforeWaiting(std::function<void()> observe) {
  return std::make_unique<Attachment>(impl_, impl_->add(step_observe, answering_true(std::move(observe))));
}

const Clock& CFRunLoop::clock() const {
  return *impl_->clock;
}

void CFRunLoop::setClock(const Clock* clock) {
  impl_->clock = clock ? clock : &Clock::system();
}

double CFRunLoop::nextTimerFireDate() const {
  double earliest = std::numeric_limits<double>::infinity();
  for (const auto& timer : impl_->items[step_timer])
    earliest = std::min(earliest, timer->fire_date);
  return earliest;
}

int CFRunLoop::wakeDescriptor() const {
  return impl_->wake->descriptor();
}

namespace {

thread_local CFRunLoop* innermost_loop = nullptr;

}  // namespace

CFRunLoopScope::CFRunLoopScope(CFRunLoop& loop) : outer_(innermost_loop) {
  innermost_loop = &loop;
}
CFRunLoopScope::~CFRunLoopScope() {
  innermost_loop = outer_;
}

CFRunLoopRef CFRunLoopGetCurrent() {
  if (innermost_loop)
    return innermost_loop;
  thread_local CFRunLoop loop;
  return &loop;
}

int CFRunLoopRunInMode(CFStringRef mode, double seconds, bool returnAfterSourceHandled) {
  if (!mode || std::strcmp(mode, kCFRunLoopDefaultMode) != 0) {
    NSLog("There is no run loop mode %s", mode ? mode : "without a name");
    return kCFRunLoopRunFinished;
  }
  CFRunLoop::Impl& loop = *CFRunLoopGetCurrent()->impl_;
  if (loop.in_pass) {
    NSLog("A run loop cannot be run from inside its own turn");
    return kCFRunLoopRunFinished;
  }
  if (seconds != 0)
    NSLog("The run loop turns without waiting: it belongs to the host");
  const bool was_empty = loop.isEmpty();
  const bool handled = loop.runOnce(returnAfterSourceHandled);
  if (handled && returnAfterSourceHandled)
    return kCFRunLoopRunHandledSource;
  return was_empty ? kCFRunLoopRunFinished : kCFRunLoopRunTimedOut;
}

}  // namespace cocoa
