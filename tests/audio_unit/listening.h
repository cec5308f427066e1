// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <vector>

#include "audio_unit/AUEventListener.h"
#include "audio_unit/effect_instance.h"
#include "foundation/CFRunLoop.h"
#include "manual_clock.h"

namespace cocoa {

inline void PrintTo(const AudioUnitEvent& event, std::ostream* out) {
  *out << "event of type " << event.mEventType;
}

namespace test {

/// The seven parameters of a tremolo, as plain numbers from 0 to 1.
std::vector<EffectParameter> seven_parameters();

AudioUnitParameter parameter_of(AudioUnit unit, AudioUnitParameterID id);
AudioUnitEvent value_change(AudioUnit unit, AudioUnitParameterID id);
AudioUnitEvent gesture_begin(AudioUnit unit, AudioUnitParameterID id);
AudioUnitEvent gesture_end(AudioUnit unit, AudioUnitParameterID id);
AudioUnitEvent property_change(AudioUnit unit, AudioUnitPropertyID id);

/// One callback, put short: who was told, of what, with which value.
struct Report {
  int object = 0;
  AudioUnitEventType type = kAudioUnitEvent_ParameterValueChange;
  AudioUnitParameterID id = 0;
  Float32 value = 0;
  bool operator==(const Report&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Report& r) {
    return out << "{object " << r.object << ", type " << r.type << ", id " << r.id << ", value " << r.value
               << "}";
  }
};
using Reports = std::vector<Report>;

/// Objects to register: their places in this array are what reports call them.
extern int objects[4];

/// A listener that writes down what it is told.
class Listener {
 public:
  explicit Listener(Float32 interval = 0.05F, Float32 granularity = 0.05F);
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() { dispose(); }

  void dispose();
  void add(int object, const AudioUnitEvent& event);
  /// What has been told since the last call.
  Reports take();

  AUEventListenerRef ref = nullptr;
  /// Called in every callback, after it was written down.
  std::function<void(const Report&)> then;
  std::vector<UInt64> host_times;

 private:
  static void callback(void* self, void* object, const AudioUnitEvent* event, UInt64 host_time,
                       Float32 value);
  Reports reports_;
};

/// A clock at 100 s that the test drives, and an effect.
class Listening : public testing::Test {
 protected:
  Listening() { loop.setClock(&clock); }
  ~Listening() override { loop.setClock(nullptr); }

  /// Turns the loop at a time given in milliseconds since the start of the test.
  void turnAt(double milliseconds);
  void at(double milliseconds) { clock.set(100 + milliseconds / 1000); }
  /// AUParameterSet with nobody left out.
  void set(AudioUnitParameterID id, Float32 value);
  static void notify(const AudioUnitEvent& event);

  ondex::test::ManualClock clock{100};
  CFRunLoop& loop = *CFRunLoopGetCurrent();
  EffectInstance effect{seven_parameters()};
  const AudioUnit unit = effect.audio_unit();
};

}  // namespace test
}  // namespace cocoa
