#include "audio_unit/AudioUnit.h"

#include "audio_unit/effect.h"

namespace cocoa {

namespace {

OSStatus check_place(AudioUnitScope scope, AudioUnitElement element) {
  if (scope != kAudioUnitScope_Global)
    return kAudioUnitErr_InvalidScope;
  return element == 0 ? noErr : kAudioUnitErr_InvalidElement;
}

}  // namespace

OSStatus AudioUnitGetParameter(AudioUnit inUnit, AudioUnitParameterID inID, AudioUnitScope inScope,
                               AudioUnitElement inElement, AudioUnitParameterValue* outValue) {
  const auto effect = units.lease(inUnit);
  if (!effect)
    return badComponentInstance;
  if (!outValue)
    return kAudio_ParamError;
  if (const OSStatus status = check_place(inScope, inElement); status != noErr)
    return status;
  return effect->read(inID, *outValue) ? noErr : kAudioUnitErr_InvalidParameter;
}

OSStatus AudioUnitSetParameter(AudioUnit inUnit, AudioUnitParameterID inID, AudioUnitScope inScope,
                               AudioUnitElement inElement, AudioUnitParameterValue inValue,
                               UInt32 /*inBufferOffsetInFrames*/) {
  std::uint32_t order = 0;
  return write_parameter({inUnit, inID, inScope, inElement}, inValue, &order);
}

OSStatus write_parameter(const AudioUnitParameter& parameter, Float32 value, std::uint32_t* order) {
  const auto effect = units.lease(parameter.mAudioUnit);
  if (!effect)
    return badComponentInstance;
  if (const OSStatus status = check_place(parameter.mScope, parameter.mElement); status != noErr)
    return status;
  if (!effect->write(parameter.mParameterID, value, order))
    return kAudioUnitErr_InvalidParameter;
  const decltype(units)::CallOut call_out(effect);
  if (effect->on_write)
    effect->on_write(parameter.mParameterID, value);
  return noErr;
}

}  // namespace cocoa
