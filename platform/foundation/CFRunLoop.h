// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "foundation/CFBase.h"
#include "foundation/Clock.h"

/// The loop of one thread or of one editor on it, which somebody else runs: a host's idle call or a
/// program's poll.
///
/// One pass is CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false). It never waits and never nests a loop.
/// Each pass has its own autorelease pool and does, in this order: pollers, sources, due timers, observers;
/// then the pool drains. What is attached while one of these steps runs has to wait for the next step of its
/// kind, what is detached no longer runs.
/// Everything but Source::signal belongs to the loop's own thread.

namespace cocoa {

class CFRunLoop;
using CFRunLoopRef = CFRunLoop*;
/// The only mode there is: no nested loop ever runs.
inline constexpr CFStringRef kCFRunLoopDefaultMode = "kCFRunLoopDefaultMode";

inline constexpr int kCFRunLoopRunFinished = 1;
inline constexpr int kCFRunLoopRunTimedOut = 3;
inline constexpr int kCFRunLoopRunHandledSource = 4;

/// The loop of the innermost CFRunLoopScope, or else the calling thread's own, which is made on first use and
/// gone with the thread.
CFRunLoopRef CFRunLoopGetCurrent();

/// One pass of the calling thread's loop. `seconds` other than 0 would block inside a host: it is logged and
/// taken as 0. An unknown mode, or a call from inside a pass, is logged and nothing runs (finished).
///
/// With `returnAfterSourceHandled`, at most one poller or source does something in this pass and the others
/// keep for the next, which wakeDescriptor() asks for.
/// Answers kCFRunLoopRunHandledSource when that is wanted and a poller or source did something; otherwise
/// kCFRunLoopRunFinished when neither poller, source nor timer was attached at the start (observers ran all
/// the same), else kCFRunLoopRunTimedOut.
int CFRunLoopRunInMode(CFStringRef mode, double seconds, bool returnAfterSourceHandled);

class CFRunLoop {
 public:
  /// Something attached to the loop; detaches when it goes. May go from inside its own callback and may
  /// outlive the loop.
  class Attachment;
  using AttachmentRef = std::unique_ptr<Attachment>;

  /// What other threads may poke. The loop runs `perform` once on its next pass after one or more signals.
  class Source;
  using SourceRef = std::unique_ptr<Source>;

  /// A loop beside the thread's own, for one of several editors that are run apart. It belongs to the
  /// thread that opens scopes on it, and is destroyed after all that was made in them.
  CFRunLoop();
  CFRunLoop(const CFRunLoop&) = delete;
  CFRunLoop& operator=(const CFRunLoop&) = delete;
  ~CFRunLoop();

  /// Called first on every pass, to fetch what has come in from outside (window system events). Answers
  /// whether there was anything.
  AttachmentRef addPoller(std::function<bool()> poll);
  SourceRef addSource(std::function<void()> perform);
  /// Called once, on the first pass at or after `fire_date` in seconds of clock(); the earliest first, and
  /// those of one date in the order of their addition. A date that is not a number never comes.
  AttachmentRef addTimer(double fire_date, std::function<void()> fire);
  /// Called at the end of every pass: views show here what it has changed.
  AttachmentRef addBeforeWaiting(std::function<void()> observe);

  const Clock& clock() const;
  /// Replaces the clock, such as by one that a test drives; null restores the machine's. The clock must
  /// outlive its use.
  void setClock(const Clock* clock);

  /// The date of the earliest timer in seconds of clock(), or +infinity when there is none.
  double nextTimerFireDate() const;
  /// Readable when another thread wants a pass; for the program's poll. -1 when the system refused one.
  int wakeDescriptor() const;

 private:
  friend int CFRunLoopRunInMode(CFStringRef mode, double seconds, bool returnAfterSourceHandled);
  struct Item;
  struct Impl;
  class WakeDescriptor;

  const std::shared_ptr<Impl> impl_;  // shared only to be observed by what may outlive the loop
};

/// While it lives, a loop is the current one of the thread. They nest.
class CFRunLoopScope {
 public:
  explicit CFRunLoopScope(CFRunLoop& loop);
  ~CFRunLoopScope();
  CFRunLoopScope(const CFRunLoopScope&) = delete;
  CFRunLoopScope& operator=(const CFRunLoopScope&) = delete;

 private:
  CFRunLoop* const outer_;
};

class CFRunLoop::Attachment {
 public:
  Attachment(const std::shared_ptr<Impl>& loop, std::shared_ptr<Item> item);
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
  ~Attachment();

 private:
  std::weak_ptr<Impl> loop_;
  std::shared_ptr<Item> item_;
};

class CFRunLoop::Source {
 public:
  Source(const std::shared_ptr<Impl>& loop, std::shared_ptr<Item> item);
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  ~Source();

  /// Asks for `perform` on the loop's thread. Any thread, also while the loop runs or after it has gone;
  /// lock-free. The source itself must still be there.
  void signal() const;

 private:
  const std::shared_ptr<Item> item_;
  const std::shared_ptr<const WakeDescriptor> wake_;
  const Attachment attachment_;
};

}  // namespace cocoa
