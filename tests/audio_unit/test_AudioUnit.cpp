// SPDX-License-Identifier: MIT
#include "audio_unit/AudioUnit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "audio_unit/AUCocoaUIBase.h"
#include "audio_unit/AUEventListener.h"
#include "audio_unit/effect_instance.h"
#include "foundation/NSLog.h"
#include "foundation/NSObject.h"
#include "listening.h"

namespace cocoa {
namespace {

using test::gesture_begin;
using test::gesture_end;
using test::parameter_of;
using test::seven_parameters;

constexpr AudioUnitScope global = kAudioUnitScope_Global;

OSStatus get(AudioUnit unit, AudioUnitParameterID id, Float32* value) {
  return AudioUnitGetParameter(unit, id, global, 0, value);
}

OSStatus set(AudioUnit unit, AudioUnitParameterID id, Float32 value, AudioUnitScope scope = global,
             AudioUnitElement element = 0) {
  const AudioUnitParameter parameter = {unit, id, scope, element};
  return AUParameterSet(nullptr, nullptr, &parameter, value, 0);
}

TEST(AudioUnit, StartsWithItsDefaults) {
  const EffectInstance effect(seven_parameters());
  ASSERT_NE(effect.audio_unit(), nullptr);
  for (AudioUnitParameterID id = 0; id < 7; ++id) {
    Float32 value = -1;
    EXPECT_EQ(get(effect.audio_unit(), id, &value), noErr);
    EXPECT_EQ(value, static_cast<Float32>(id) / 8);
    EXPECT_EQ(effect.value(id), value);
  }
}

TEST(AudioUnit, KeepsWhatIsWritten) {
  const EffectInstance effect(seven_parameters());
  EXPECT_EQ(set(effect.audio_unit(), 3, 0.75F), noErr);
  Float32 value = -1;
  EXPECT_EQ(get(effect.audio_unit(), 3, &value), noErr);
  EXPECT_EQ(value, 0.75F);
  EXPECT_EQ(effect.value(3), 0.75F);
  EXPECT_EQ(effect.value(4), 0.5F);
}

TEST(AudioUnit, StoresValuesOutOfRangeAsTheyAre) {
  EffectInstance effect(seven_parameters());
  const AudioUnit unit = effect.audio_unit();
  EXPECT_EQ(set(unit, 0, 1e30F), noErr);
  EXPECT_EQ(effect.value(0), 1e30F);
  EXPECT_TRUE(effect.setFromHost(0, -std::numeric_limits<Float32>::infinity()));
  EXPECT_EQ(effect.value(0), -std::numeric_limits<Float32>::infinity());
  EXPECT_TRUE(effect.setFromHost(0, std::nanf("")));
  EXPECT_TRUE(std::isnan(effect.value(0)));
}

TEST(AudioUnit, TellsWrongPlacesApart) {
  const EffectInstance effect(seven_parameters());
  const AudioUnit unit = effect.audio_unit();
  Float32 value = 7;
  EXPECT_EQ(AudioUnitGetParameter(unit, 7, global, 0, &value), kAudioUnitErr_InvalidParameter);
  EXPECT_EQ(AudioUnitGetParameter(unit, 0, kAudioUnitScope_Note, 0, &value), kAudioUnitErr_InvalidScope);
  EXPECT_EQ(AudioUnitGetParameter(unit, 0, global, 1, &value), kAudioUnitErr_InvalidElement);
  EXPECT_EQ(get(unit, 0, nullptr), kAudio_ParamError);
  EXPECT_EQ(value, 7) << "untouched by a failure";
  EXPECT_EQ(set(unit, 7, 1), kAudioUnitErr_InvalidParameter);
  EXPECT_EQ(set(unit, kAUParameterListener_AnyParameter, 1), kAudioUnitErr_InvalidParameter);
  EXPECT_EQ(set(unit, 0, 1, kAudioUnitScope_Input), kAudioUnitErr_InvalidScope);
  EXPECT_EQ(set(unit, 0, 1, global, 2), kAudioUnitErr_InvalidElement);
  EXPECT_EQ(effect.value(0), 0);
}

TEST(AudioUnit, HasTheStatusesOfThePlatform) {
  EXPECT_EQ(kAudioUnitErr_InvalidParameter, -10878);
  EXPECT_EQ(kAudioUnitErr_InvalidElement, -10877);
  EXPECT_EQ(kAudioUnitErr_InvalidScope, -10866);
  EXPECT_EQ(static_cast<std::uint32_t>(badComponentInstance), 0x80008001U);
}

TEST(AudioUnit, ThatIsNullOrHasGoneIsAnErrorAndNoCrash) {
  auto effect = std::make_unique<EffectInstance>(seven_parameters());
  const AudioUnit gone = effect->audio_unit();
  effect.reset();
  const EffectInstance successor(seven_parameters());
  ASSERT_NE(successor.audio_unit(), gone) << "a handle is never used again";
  // NOLINTNEXTLINE(performance-no-int-to-ptr): any number may be passed off as a unit
  const auto wild = reinterpret_cast<AudioUnit>(std::uintptr_t{0xDEADBEEF});
  for (const AudioUnit unit : {AudioUnit{}, gone, wild}) {
    Float32 value = 7;
    EXPECT_EQ(get(unit, 0, &value), badComponentInstance);
    EXPECT_EQ(set(unit, 0, 1), badComponentInstance);
    const AudioUnitEvent event = test::value_change(unit, 0);
    EXPECT_EQ(AUEventListenerNotify(nullptr, nullptr, &event), badComponentInstance);
    const AudioUnitEvent property = test::property_change(unit, 0);
    EXPECT_EQ(AUEventListenerNotify(nullptr, nullptr, &property), badComponentInstance);
    EXPECT_EQ(value, 7);
  }
}

TEST(EffectInstance, DoesNotKnowOtherParameters) {
  EffectInstance effect(seven_parameters());
  EXPECT_FALSE(effect.setFromHost(7, 1));
  EXPECT_TRUE(std::isnan(effect.value(7)));
  EXPECT_EQ(effect.parameters().size(), 7U);
  EXPECT_EQ(effect.parameters()[2].default_value, 0.25F);
}

TEST(EffectInstance, WithoutParametersHasNothingToReadOrWrite) {
  const EffectInstance effect({});
  Float32 value = 7;
  EXPECT_EQ(get(effect.audio_unit(), 0, &value), kAudioUnitErr_InvalidParameter);
}

TEST(EffectInstance, HearsOfTheEditorsWritesButNotOfItsHosts) {
  using Writes = std::vector<std::pair<AudioUnitParameterID, Float32>>;
  EffectInstance effect(seven_parameters());
  Writes writes;
  effect.onWrite([&](AudioUnitParameterID id, Float32 value) {
    EXPECT_EQ(effect.value(id), value) << "it is stored already";
    writes.emplace_back(id, value);
  });
  effect.setFromHost(1, 0.1F);
  EXPECT_EQ(set(effect.audio_unit(), 2, 0.2F), noErr);
  EXPECT_EQ(set(effect.audio_unit(), 3, 0.3F), noErr);
  EXPECT_NE(set(effect.audio_unit(), 9, 0.9F), noErr);
  EXPECT_EQ(writes, (Writes{{2, 0.2F}, {3, 0.3F}}));
}

TEST(EffectInstance, HearsOfGestures) {
  using Gestures = std::vector<std::pair<AudioUnitParameterID, bool>>;
  EffectInstance effect(seven_parameters());
  Gestures gestures;
  effect.onGesture([&](AudioUnitParameterID id, bool begins) { gestures.emplace_back(id, begins); });
  for (const AudioUnitEvent& event :
       {gesture_begin(effect.audio_unit(), 4), gesture_end(effect.audio_unit(), 4),
        gesture_begin(effect.audio_unit(), 9), test::value_change(effect.audio_unit(), 4),
        test::property_change(effect.audio_unit(), 4)}) {
    EXPECT_EQ(AUEventListenerNotify(nullptr, nullptr, &event), noErr);
  }
  EXPECT_EQ(gestures, (Gestures{{4, true}, {4, false}}));
}

TEST(EffectInstance, MayGoInItsOwnObserver) {
  auto effect = std::make_unique<EffectInstance>(seven_parameters());
  const AudioUnit unit = effect->audio_unit();
  const auto alive = std::make_shared<int>(0);
  effect->onWrite([&effect, alive](AudioUnitParameterID, Float32) {
    effect.reset();
    ++*alive;
  });
  const AudioUnitParameter parameter = parameter_of(unit, 0);
  EXPECT_EQ(AUParameterSet(nullptr, nullptr, &parameter, 0.5F, 0), noErr);
  EXPECT_EQ(*alive, 1);
  EXPECT_EQ(alive.use_count(), 1) << "the observer went with its effect";
  EXPECT_EQ(AUParameterSet(nullptr, nullptr, &parameter, 0.5F, 0), badComponentInstance);
}

TEST(EffectInstance, ThereMayBeManyAtOnce) {
  std::vector<std::unique_ptr<EffectInstance>> effects;
  for (int i = 0; i < 300; ++i) {
    effects.push_back(std::make_unique<EffectInstance>(seven_parameters()));
    ASSERT_TRUE(effects.back()->setFromHost(0, static_cast<Float32>(i)));
  }
  for (int i = 0; i < 300; ++i) {
    Float32 value = -1;
    EXPECT_EQ(get(effects[static_cast<size_t>(i)]->audio_unit(), 0, &value), noErr);
    EXPECT_EQ(value, static_cast<Float32>(i));
  }
}

class Factory : public NSObject, public AUCocoaUIBase {
 public:
  UInt32 interfaceVersion() const override { return 0; }
  NSView* uiViewForAudioUnit_withSize(AudioUnit, NSSize) override { return nullptr; }
};

TEST(AUCocoaUIBase, CanBeFoundFromAnObjectOfUnknownClass) {
  const auto object = make<Factory>();
  NSObject* unknown = object.get();
  auto* factory = dynamic_cast<AUCocoaUIBase*>(unknown);
  ASSERT_NE(factory, nullptr);
  EXPECT_EQ(factory->interfaceVersion(), 0U);
  EXPECT_EQ(factory->uiViewForAudioUnit_withSize(nullptr, NSSize{}), nullptr);
}

}  // namespace
}  // namespace cocoa
