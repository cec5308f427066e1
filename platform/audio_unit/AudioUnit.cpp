// SPDX-License-Identifier: MIT
#include "audio_unit/AudioUnit.h"

#include <memory>
#include <mutex>

#include "audio_unit/AUEventListener.h"
#include "audio_unit/private/effect.h"

namespace cocoa {

namespace {

/// noErr, with the unit's effect, when the unit is there and the place one that parameters are in.
OSStatus find_effect(const AudioUnitParameter& parameter, std::shared_ptr<Effect>& effect) {
  effect = units.find(parameter.mAudioUnit);
  if (!effect)
    return badComponentInstance;
  if (parameter.mScope != kAudioUnitScope_Global)
    return kAudioUnitErr_InvalidScope;
  return parameter.mElement == 0 ? noErr : kAudioUnitErr_InvalidElement;
}

void tell_host_of_write(Effect& effect, AudioUnitParameterID id, Float32 value) {
  const CallGate::Pass pass(effect.gate);
  if (pass && effect.on_write)
    effect.on_write(id, value);
}

}  // namespace

OSStatus AudioUnitGetParameter(AudioUnit inUnit, AudioUnitParameterID inID, AudioUnitScope inScope,
                               AudioUnitElement inElement, AudioUnitParameterValue* outValue) {
  std::shared_ptr<Effect> effect;
  const OSStatus status = find_effect({inUnit, inID, inScope, inElement}, effect);
  if (status == badComponentInstance)
    return status;
  if (!outValue)
    return kAudio_ParamError;
  if (status != noErr)
    return status;
  const std::lock_guard lock(audio_unit_lock);
  return effect->read(inID, *outValue) ? noErr : kAudioUnitErr_InvalidParameter;
}

OSStatus AUParameterSet(AUParameterListenerRef inSendingListener, void* inSendingObject,
                        const AudioUnitParameter* inParameter, AudioUnitParameterValue inValue,
                        UInt32 /*inBufferOffsetInFrames*/) {
  if (!inParameter)
    return kAudio_ParamError;
  std::shared_ptr<Effect> effect;
  if (const OSStatus status = find_effect(*inParameter, effect); status != noErr)
    return status;
  const EventSender sender{inSendingListener, inSendingObject};
  const SentEvent change = value_change_to(*inParameter, inValue);
  {
    const std::lock_guard lock(audio_unit_lock);
    if (!effect->write(inParameter->mParameterID, inValue))
      return kAudioUnitErr_InvalidParameter;
    queue_for_all(change, sender);
  }
  tell_host_of_write(*effect, inParameter->mParameterID, inValue);
  call_at_once(change, sender);
  return noErr;
}

}  // namespace cocoa
