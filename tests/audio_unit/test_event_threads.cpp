// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <iostream>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "listening.h"

namespace cocoa::test {
namespace {

using Random = std::mt19937;

Random seeded() {
  const unsigned seed = std::random_device{}();
  std::cout << "seed " << seed << '\n';
  return Random(seed);
}

class Threads : public Listening {
 protected:
  /// What an editor shows of each parameter: what it was told or has set itself.
  std::array<Float32, 7> shown{};

  void showWhatIsToldTo(Listener& listener) {
    for (AudioUnitParameterID id = 0; id < 7; ++id) {
      listener.add(0, value_change(unit, id));
      shown[id] = effect.value(id);
    }
    listener.then = [this](const Report& report) {
      if (report.type == kAudioUnitEvent_ParameterValueChange)
        shown[report.id] = report.value;
    };
  }
  void expectTheTruth() {
    for (AudioUnitParameterID id = 0; id < 7; ++id)
      EXPECT_EQ(shown[id], effect.value(id)) << "parameter " << id;
  }
};

AudioUnitParameterID any_id(Random& random) {
  return static_cast<AudioUnitParameterID>(random() % 7);
}

/// One random step of a host or of another editor.
void send_something(Random& random, EffectInstance& effect) {
  const AudioUnit unit = effect.audio_unit();
  const AudioUnitParameterID id = any_id(random);
  const auto value = static_cast<Float32>(random() % 1000);
  const AudioUnitParameter parameter = parameter_of(unit, id);
  const AudioUnitEvent change = value_change(unit, id);
  const AudioUnitEvent any = value_change(unit, kAUParameterListener_AnyParameter);
  const AudioUnitEvent begin = gesture_begin(unit, id);
  switch (random() % 8) {
    case 0:
      AUEventListenerNotify(nullptr, nullptr, &change);
      break;
    case 1:
      effect.setFromHost(id, value);
      break;
    case 2:
      AUEventListenerNotify(nullptr, nullptr, random() % 16 == 0 ? &any : &begin);
      break;
    default:
      AUParameterSet(nullptr, nullptr, &parameter, value, 0);
  }
}

std::vector<std::thread> start_senders(Random& random, EffectInstance& effect, std::atomic<int>& running,
                                       int steps) {
  running = 4;
  std::vector<std::thread> senders;
  senders.reserve(4);
  for (int i = 0; i < 4; ++i) {
    senders.emplace_back([&effect, &running, steps, own = Random(random())]() mutable {
      for (int step = 0; step < steps; ++step) {
        send_something(own, effect);
        if (own() % 8 == 0)
          std::this_thread::yield();
      }
      --running;
    });
  }
  return senders;
}

TEST_F(Threads, LeaveAnEditorWithTheTruth) {
  Random random = seeded();
  for (const Float32 granularity : {0.05F, 0.001F}) {
    Listener listener(0.05F, granularity);
    showWhatIsToldTo(listener);
    listener.add(0, gesture_begin(unit, 3));
    std::atomic<int> running = 0;
    auto senders = start_senders(random, effect, running, 4000);
    std::size_t reports = 0;
    while (running > 0) {
      if (random() % 4 == 0) {
        const AudioUnitParameterID id = any_id(random);
        const AudioUnitParameter parameter = parameter_of(unit, id);
        shown[id] = static_cast<Float32>(random() % 1000) + 0.5F;
        AUParameterSet(listener.ref, &objects[0], &parameter, shown[id], 0);
      }
      clock.advance(0.001 * static_cast<double>(random() % 100));
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
      reports += listener.take().size();
    }
    for (std::thread& sender : senders)
      sender.join();
    for (int i = 0; i < 3; ++i) {
      clock.advance(1);
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
    }
    EXPECT_GT(reports + listener.take().size(), 0U);
    expectTheTruth();
  }
}

TEST_F(Threads, MaySendWhileListenersAndUnitsComeAndGo) {
  Random random = seeded();
  std::atomic<int> running = 0;
  auto senders = start_senders(random, effect, running, 3000);
  std::vector<std::unique_ptr<Listener>> listeners;
  while (running > 0) {
    if (listeners.size() < 5) {
      listeners.push_back(std::make_unique<Listener>(0.02F, 0.01F));
      listeners.back()->add(0, value_change(unit, any_id(random)));
    }
    Listener& one = *listeners[random() % listeners.size()];
    const AudioUnitEvent event = value_change(unit, any_id(random));
    one.add(static_cast<int>(random() % 4), event);
    one.then = [&one, doomed = random() % 2 == 0](const Report&) {
      if (doomed)
        one.dispose();
    };
    const EffectInstance passing(seven_parameters());
    clock.advance(0.001 * static_cast<double>(random() % 30));
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
    std::erase_if(listeners, [](const auto& listener) { return !listener->ref; });
    if (listeners.size() > 3)
      listeners.erase(listeners.begin() + static_cast<std::ptrdiff_t>(random() % listeners.size()));
  }
  for (std::thread& sender : senders)
    sender.join();
}

TEST_F(Threads, MayWriteToAUnitThatIsGoing) {
  Random random = seeded();
  for (int i = 0; i < 200; ++i) {
    auto passing = std::make_unique<EffectInstance>(seven_parameters());
    std::atomic<int> written = 0;
    passing->onWrite([&](AudioUnitParameterID, Float32) { ++written; });
    const AudioUnitParameter parameter = parameter_of(passing->audio_unit(), any_id(random));
    std::thread writer([&parameter] {
      while (AUParameterSet(nullptr, nullptr, &parameter, 0.5F, 0) == noErr) {
      }
    });
    while (written < 3)
      std::this_thread::yield();
    passing.reset();
    const int at_the_end = written;
    writer.join();
    EXPECT_EQ(written, at_the_end) << "no observer is called once the effect has gone";
  }
}

TEST_F(Threads, OfTwoLoopsAreToldEachOnItsOwn) {
  std::atomic<bool> ready = false;
  std::atomic<bool> sent = false;
  Reports told_there;
  std::thread::id told_on;
  std::thread other([&] {
    CFRunLoopGetCurrent()->setClock(&clock);
    Listener listener;
    listener.add(1, value_change(unit, 2));
    listener.then = [&](const Report&) { told_on = std::this_thread::get_id(); };
    ready = true;
    while (!sent)
      std::this_thread::yield();
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
    told_there = listener.take();
  });
  const std::thread::id other_id = other.get_id();
  Listener listener;
  listener.add(0, value_change(unit, 2));
  while (!ready)
    std::this_thread::yield();
  set(2, 0.8F);
  turnAt(51);
  sent = true;
  other.join();
  EXPECT_EQ(listener.take(), (Reports{{0, 0, 2, 0.8F}}));
  EXPECT_EQ(told_there, (Reports{{1, 0, 2, 0.8F}}));
  EXPECT_EQ(told_on, other_id);
}

}  // namespace
}  // namespace cocoa::test
