// SPDX-License-Identifier: MIT
#include "foundation/CFRunLoop.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include "foundation/NSLog.h"
#include "foundation/NSObject.h"
#include "manual_clock.h"

namespace cocoa {
namespace {

using ondex::test::ManualClock;
using Attachment = CFRunLoop::AttachmentRef;
using Calls = std::vector<std::string>;

int turn(bool return_after_source = false) {
  return CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, return_after_source);
}

bool readable(int descriptor) {
  pollfd entry{.fd = descriptor, .events = POLLIN, .revents = 0};
  return poll(&entry, 1, 0) == 1;
}

/// What is attached to the loop of the test's thread must be gone after every test.
class RunLoop : public testing::Test {
 protected:
  RunLoop() { loop.setClock(&clock); }
  ~RunLoop() override {
    turn();
    loop.setClock(nullptr);
  }
  auto note(const std::string& name) {
    return [this, name] { calls.push_back(name); };
  }

  ManualClock clock{100};
  CFRunLoop& loop = *CFRunLoopGetCurrent();
  Calls calls;
  Calls log;
  NSLogHook hook{[this](std::string_view line) { log.emplace_back(line); }};
};

TEST_F(RunLoop, IsOneForEachThread) {
  EXPECT_EQ(CFRunLoopGetCurrent(), &loop);
  CFRunLoopRef other = nullptr;
  std::thread([&] { other = CFRunLoopGetCurrent(); }).join();
  EXPECT_NE(other, nullptr);
  EXPECT_NE(other, &loop);
}

TEST_F(RunLoop, TurnsPollersThenSourcesThenTimersThenObservers) {
  const auto observer = loop.addBeforeWaiting(note("observer"));
  const auto timer = loop.addTimer(100, note("timer"));
  const auto source = loop.addSource(note("source"));
  const auto poller = loop.addPoller([&] {
    calls.emplace_back("poller");
    return true;
  });
  source->signal();
  EXPECT_EQ(turn(), kCFRunLoopRunTimedOut);
  EXPECT_EQ(calls, (Calls{"poller", "source", "timer", "observer"}));
}

class Noting : public NSObject {
 public:
  explicit Noting(Calls& calls) : calls_(calls) {}
  ~Noting() override { calls_.emplace_back("drained"); }

 private:
  Calls& calls_;
};

TEST_F(RunLoop, DrainsTheAutoreleasePoolOfTheTurnLast) {
  const auto timer = loop.addTimer(100, [&] { make<Noting>(calls).autorelease(); });
  const auto observer = loop.addBeforeWaiting(note("observer"));
  turn();
  EXPECT_EQ(calls, (Calls{"observer", "drained"}));
}

TEST_F(RunLoop, FiresEachTimerOnceTheEarliestFirst) {
  const auto late = loop.addTimer(103, note("103"));
  const auto first = loop.addTimer(102, note("102 first"));
  const auto second = loop.addTimer(102, note("102 second"));
  const auto early = loop.addTimer(101, note("101"));
  const auto never = loop.addTimer(std::nan(""), note("nan"));
  EXPECT_EQ(loop.nextTimerFireDate(), 101);
  clock.set(std::nextafter(101.0, 0.0));
  turn();
  EXPECT_EQ(calls, Calls{});
  clock.set(102);
  turn();
  EXPECT_EQ(calls, (Calls{"101", "102 first", "102 second"}));
  EXPECT_EQ(loop.nextTimerFireDate(), 103);
  clock.set(1e9);
  turn();
  turn();
  EXPECT_EQ(calls, (Calls{"101", "102 first", "102 second", "103"}));
  EXPECT_EQ(loop.nextTimerFireDate(), std::numeric_limits<double>::infinity());
}

TEST_F(RunLoop, KeepsATimerThatATimerAddsForTheNextTurn) {
  Attachment added;
  const auto timer = loop.addTimer(100, [&] { added = loop.addTimer(0, note("added")); });
  turn();
  EXPECT_EQ(calls, Calls{});
  turn();
  EXPECT_EQ(calls, Calls{"added"});
}

TEST_F(RunLoop, FiresATimerThatASourceAddsInTheSameTurn) {
  Attachment added;
  const auto source = loop.addSource([&] { added = loop.addTimer(100, note("added")); });
  source->signal();
  turn();
  EXPECT_EQ(calls, Calls{"added"});
}

TEST_F(RunLoop, DoesNotRunWhatIsAttachedDuringItsStep) {
  Attachment poller_added;
  Attachment observer_added;
  const auto poller = loop.addPoller([&] {
    if (!poller_added) {
      poller_added = loop.addPoller([&] {
        calls.emplace_back("poller");
        return false;
      });
    }
    return false;
  });
  const auto observer = loop.addBeforeWaiting([&] {
    if (!observer_added)
      observer_added = loop.addBeforeWaiting(note("observer"));
  });
  turn();
  EXPECT_EQ(calls, Calls{});
  turn();
  EXPECT_EQ(calls, (Calls{"poller", "observer"}));
}

TEST_F(RunLoop, LetsAnAttachmentGoInItsOwnCallback) {
  Attachment poller;
  Attachment timer;
  Attachment observer;
  CFRunLoop::SourceRef source;
  const auto alive = std::make_shared<int>(7);
  poller = loop.addPoller([&, alive] {
    poller.reset();
    return *alive == 7;
  });
  source = loop.addSource([&, alive] {
    source.reset();
    calls.push_back("source " + std::to_string(*alive));
  });
  timer = loop.addTimer(0, [&, alive] {
    timer.reset();
    calls.push_back("timer " + std::to_string(*alive));
  });
  observer = loop.addBeforeWaiting([&, alive] {
    observer.reset();
    calls.push_back("observer " + std::to_string(*alive));
  });
  source->signal();
  turn();
  turn();
  EXPECT_EQ(calls, (Calls{"source 7", "timer 7", "observer 7"}));
  EXPECT_EQ(alive.use_count(), 1) << "the callbacks went with their attachments";
}

TEST_F(RunLoop, SkipsWhatAnEarlierCallbackOfTheStepHasDetached) {
  Attachment second;
  const auto first = loop.addTimer(100, [&] { second.reset(); });
  second = loop.addTimer(100, note("second"));
  CFRunLoop::SourceRef second_source;
  const auto first_source = loop.addSource([&] { second_source.reset(); });
  second_source = loop.addSource(note("second source"));
  first_source->signal();
  second_source->signal();
  turn();
  EXPECT_EQ(calls, Calls{});
}

TEST_F(RunLoop, RunsASourceOnceForManySignals) {
  const auto source = loop.addSource(note("source"));
  turn();
  EXPECT_EQ(calls, Calls{});
  source->signal();
  source->signal();
  turn();
  turn();
  EXPECT_EQ(calls, Calls{"source"});
}

TEST_F(RunLoop, KeepsASignalFromASourceForTheNextTurn) {
  CFRunLoop::SourceRef later;
  CFRunLoop::SourceRef itself;
  itself = loop.addSource([&] {
    calls.emplace_back("first");
    if (calls.size() == 1) {
      itself->signal();
      later->signal();
    }
  });
  later = loop.addSource(note("later"));
  itself->signal();
  turn();
  EXPECT_EQ(calls, Calls{"first"});
  EXPECT_TRUE(readable(loop.wakeDescriptor()));
  turn();
  EXPECT_EQ(calls, (Calls{"first", "first", "later"}));
  EXPECT_FALSE(readable(loop.wakeDescriptor()));
}

TEST_F(RunLoop, AnswersFinishedOnlyWhenNothingButObserversIsAttached) {
  const auto observer = loop.addBeforeWaiting(note("observer"));
  EXPECT_EQ(turn(), kCFRunLoopRunFinished);
  EXPECT_EQ(calls, Calls{"observer"});
  {
    const auto poller = loop.addPoller([] { return false; });
    EXPECT_EQ(turn(), kCFRunLoopRunTimedOut);
  }
  {
    const auto source = loop.addSource([] {});
    EXPECT_EQ(turn(), kCFRunLoopRunTimedOut);
  }
  const auto timer = loop.addTimer(100, [] {});
  EXPECT_EQ(turn(), kCFRunLoopRunTimedOut);
  EXPECT_EQ(turn(), kCFRunLoopRunFinished) << "the timer has fired";
}

TEST_F(RunLoop, ReturnsAfterOneSourceWhenAsked) {
  const auto first = loop.addSource(note("first"));
  const auto second = loop.addSource(note("second"));
  const auto timer = loop.addTimer(100, note("timer"));
  first->signal();
  second->signal();
  EXPECT_EQ(turn(true), kCFRunLoopRunHandledSource);
  EXPECT_EQ(calls, (Calls{"first", "timer"}));
  EXPECT_TRUE(readable(loop.wakeDescriptor())) << "the second one still waits";
  EXPECT_EQ(turn(true), kCFRunLoopRunHandledSource);
  EXPECT_EQ(turn(true), kCFRunLoopRunTimedOut);
  EXPECT_EQ(calls, (Calls{"first", "timer", "second"}));
}

TEST_F(RunLoop, CountsAPollerThatFoundSomethingAsASource) {
  bool found = true;
  const auto poller = loop.addPoller([&] { return found; });
  const auto source = loop.addSource(note("source"));
  source->signal();
  EXPECT_EQ(turn(true), kCFRunLoopRunHandledSource);
  EXPECT_EQ(calls, Calls{});
  found = false;
  EXPECT_EQ(turn(true), kCFRunLoopRunHandledSource);
  EXPECT_EQ(calls, Calls{"source"});
}

TEST_F(RunLoop, RefusesToNest) {
  int inner = 0;
  const auto timer = loop.addTimer(100, [&] { inner = turn(); });
  const auto other = loop.addTimer(100, note("other"));
  EXPECT_EQ(turn(), kCFRunLoopRunTimedOut);
  EXPECT_EQ(inner, kCFRunLoopRunFinished);
  EXPECT_EQ(calls, Calls{"other"});
  EXPECT_EQ(log, Calls{"A run loop cannot be run from inside its own turn"});
}

TEST_F(RunLoop, LogsAModeItDoesNotKnowAndATimeToWait) {
  const auto timer = loop.addTimer(100, note("timer"));
  EXPECT_EQ(CFRunLoopRunInMode("tracking", 0, false), kCFRunLoopRunFinished);
  EXPECT_EQ(CFRunLoopRunInMode(nullptr, 0, false), kCFRunLoopRunFinished);
  EXPECT_EQ(calls, Calls{});
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 1e9, false), kCFRunLoopRunTimedOut);
  EXPECT_EQ(calls, Calls{"timer"});
  EXPECT_EQ(log, (Calls{"There is no run loop mode tracking", "There is no run loop mode without a name",
                        "The run loop turns without waiting: it belongs to the host"}));
}

TEST_F(RunLoop, IsOutlivedByWhatWasAttached) {
  Attachment timer;
  CFRunLoop::SourceRef source;
  std::thread([&] {
    timer = CFRunLoopGetCurrent()->addTimer(0, note("timer"));
    source = CFRunLoopGetCurrent()->addSource(note("source"));
  }).join();
  source->signal();
  timer.reset();
  source.reset();
  EXPECT_EQ(calls, Calls{});
}

TEST_F(RunLoop, LosesNoSignalOfOtherThreads) {
  std::atomic<int> wanted = 0;
  int seen = 0;
  const auto source = loop.addSource([&] { seen = wanted; });
  std::vector<std::thread> senders;
  senders.reserve(4);
  for (int i = 0; i < 4; ++i) {
    senders.emplace_back([&] {
      for (int k = 0; k < 20000; ++k) {
        ++wanted;
        source->signal();
      }
    });
  }
  // Every look at the descriptor that finds nothing to do must find nothing missing either.
  while (seen < 80000) {
    pollfd entry{.fd = loop.wakeDescriptor(), .events = POLLIN, .revents = 0};
    const bool woken = poll(&entry, 1, 60000) == 1;
    EXPECT_TRUE(woken) << "a signal was lost after " << seen;
    if (!woken)
      break;
    turn();
  }
  for (std::thread& sender : senders)
    sender.join();
  EXPECT_EQ(seen, 80000);
}

TEST(Clock, OfTheMachineNeverGoesBack) {
  double before = Clock::system().now();
  for (int i = 0; i < 1000; ++i) {
    const double now = Clock::system().now();
    EXPECT_GE(now, before);
    before = now;
  }
}

}  // namespace
}  // namespace cocoa
