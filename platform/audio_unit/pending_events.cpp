// SPDX-License-Identifier: MIT
#include "audio_unit/private/pending_events.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace cocoa {

bool same_subject(const AudioUnitEvent& a, const AudioUnitEvent& b) {
  if (a.mEventType != b.mEventType)
    return false;
  if (a.mEventType == kAudioUnitEvent_PropertyChange)
    return a.mArgument.mProperty == b.mArgument.mProperty;
  return a.mArgument.mParameter == b.mArgument.mParameter;
}

namespace {

bool is_value_change(const SentEvent& event) {
  return event.event.mEventType == kAudioUnitEvent_ParameterValueChange;
}

/// Whether the event may not change places with a value change of `parameter`.
bool concerns(const SentEvent& sent, const AudioUnitParameter& parameter) {
  const auto& argument = sent.event.mArgument;
  if (sent.event.mEventType == kAudioUnitEvent_PropertyChange)
    return argument.mProperty.mAudioUnit == parameter.mAudioUnit;
  return argument.mParameter == parameter;
}

}  // namespace

void PendingEvents::add(const SentEvent& event) {
  first_time_ = std::min(first_time_, event.time);
  if (is_value_change(event)) {
    const AudioUnitParameter& parameter = event.event.mArgument.mParameter;
    const auto before = std::find_if(events_.rbegin(), events_.rend(),
                                     [&](const SentEvent& other) { return concerns(other, parameter); });
    if (before != events_.rend() && is_value_change(*before) &&
        (event.time < before->time + granularity_ || events_.size() >= crowd)) {
      events_.erase(std::next(before).base());
    }
  }
  events_.push_back(event);
}

std::vector<SentEvent> PendingEvents::take() {
  first_time_ = std::numeric_limits<double>::infinity();
  return std::exchange(events_, {});
}

}  // namespace cocoa
