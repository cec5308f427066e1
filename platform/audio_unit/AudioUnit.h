// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// An effect as its editor sees it: a number of parameters that can be read and written.
///
/// Any thread. Errors are answered as statuses and never logged here: the callers that ask while
/// an effect comes or goes do so in good faith.

namespace cocoa {

using UInt32 = std::uint32_t;
using UInt64 = std::uint64_t;
using Float32 = float;
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;
/// An argument without sense, such as a null pointer where an answer is to go.
inline constexpr OSStatus kAudio_ParamError = -50;
inline constexpr OSStatus kAudioUnitErr_InvalidScope = -10866;
inline constexpr OSStatus kAudioUnitErr_InvalidElement = -10877;
inline constexpr OSStatus kAudioUnitErr_InvalidParameter = -10878;
/// The unit is null, was never one or has gone (0x80008001).
inline constexpr OSStatus badComponentInstance = -2147450879;

/// Names an effect instance; never dereferenced, so that a unit that has gone is told apart and not a crash.
/// Null is no unit. Hosts get one from an EffectInstance (audio_unit/effect_instance.h).
struct OpaqueAudioUnit;
using AudioUnit = OpaqueAudioUnit*;

using AudioUnitParameterID = UInt32;
using AudioUnitPropertyID = UInt32;
using AudioUnitScope = UInt32;
using AudioUnitElement = UInt32;
using AudioUnitParameterValue = Float32;

inline constexpr AudioUnitScope kAudioUnitScope_Global = 0;
inline constexpr AudioUnitScope kAudioUnitScope_Input = 1;
inline constexpr AudioUnitScope kAudioUnitScope_Output = 2;
inline constexpr AudioUnitScope kAudioUnitScope_Group = 3;
inline constexpr AudioUnitScope kAudioUnitScope_Part = 4;
inline constexpr AudioUnitScope kAudioUnitScope_Note = 5;

struct AudioUnitParameter {
  AudioUnit mAudioUnit;
  AudioUnitParameterID mParameterID;
  AudioUnitScope mScope;
  AudioUnitElement mElement;
  bool operator==(const AudioUnitParameter&) const = default;
};

struct AudioUnitProperty {
  AudioUnit mAudioUnit;
  AudioUnitPropertyID mPropertyID;
  AudioUnitScope mScope;
  AudioUnitElement mElement;
  bool operator==(const AudioUnitProperty&) const = default;
};

using AudioUnitEventType = UInt32;
inline constexpr AudioUnitEventType kAudioUnitEvent_ParameterValueChange = 0;
inline constexpr AudioUnitEventType kAudioUnitEvent_BeginParameterChangeGesture = 1;
inline constexpr AudioUnitEventType kAudioUnitEvent_EndParameterChangeGesture = 2;
inline constexpr AudioUnitEventType kAudioUnitEvent_PropertyChange = 3;

struct AudioUnitEvent {
  AudioUnitEventType mEventType;
  union {
    AudioUnitParameter mParameter;  ///< of a value change or gesture
    AudioUnitProperty mProperty;    ///< of a property change
  } mArgument;
};

static_assert(sizeof(AudioUnitParameter) == sizeof(void*) + 12 + (sizeof(void*) == 8 ? 4 : 0));
static_assert(sizeof(AudioUnitProperty) == sizeof(AudioUnitParameter));
static_assert(offsetof(AudioUnitEvent, mArgument) == sizeof(void*));
static_assert(sizeof(AudioUnitEvent) == (sizeof(void*) == 8 ? 32 : 20));

/// The parameter's current value in `*outValue`, which is left alone on an error. All parameters are in the
/// global scope, element 0.
OSStatus AudioUnitGetParameter(AudioUnit inUnit, AudioUnitParameterID inID, AudioUnitScope inScope,
                               AudioUnitElement inElement, AudioUnitParameterValue* outValue);

}  // namespace cocoa
