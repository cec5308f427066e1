// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "audio_unit/AUEventListener.h"
#include "audio_unit/private/call_gate.h"
#include "audio_unit/private/handles.h"
#include "audio_unit/private/pending_events.h"

namespace cocoa {

/// Held while values, registrations and events that wait are looked at or changed, so that a value and what
/// is said of it go one way; never while code of others is called.
inline std::mutex audio_unit_lock;

/// Who sends an event; without a listener, nobody of those who are told.
struct EventSender {
  AUEventListenerRef listener = nullptr;
  void* object = nullptr;
};

/// What an AUEventListenerRef stands for. All but queue() and callAtOnce() belongs to the run loop's thread.
class EventListener : public std::enable_shared_from_this<EventListener> {
 public:
  /// Times in seconds; an interval of 0 calls back at once.
  EventListener(AUEventListenerProc proc, void* user_data, CFRunLoop& loop, double interval,
                double granularity);

  void add(void* object, const AudioUnitEvent& event);

  /// Keeps the event for the next round; with an interval of 0 nothing. Under the lock.
  void queue(const SentEvent& event);
  /// With an interval of 0 calls back on the calling thread.
  void callAtOnce(const SentEvent& event);
  /// No callback comes after this, and the run loop knows the listener no more, although senders on other
  /// threads may still keep it for a moment.
  void end();

 private:
  struct Registration {
    void* object;
    AudioUnitEvent event;
    std::uint64_t first_ticket;
  };
  using Registrations = std::vector<Registration>;

  bool isRegisteredFor(const AudioUnitEvent& event) const;
  std::vector<AudioUnitParameter> watchedParameters(AudioUnit unit) const;
  SentEvent stamped(SentEvent event);

  void startRound();
  void finishRound();
  void tell(const SentEvent& sent, std::span<const SentEvent> later);

  const AUEventListenerProc proc_;
  void* const user_data_;
  CFRunLoop& loop_;  // of the thread that it is used on
  const Clock& clock_;
  const double interval_;
  CallGate gate_;
  CFRunLoop::AttachmentRef round_;

  // Of audio_unit_lock.
  Registrations registrations_;
  PendingEvents pending_;
  std::uint64_t tickets_ = 0;    ///< given to events so far
  CFRunLoop::SourceRef source_;  ///< null when the interval is 0, and after the end
};

/// All listeners of the process.
inline Handles<EventListener, AUListenerBase> listeners;

/// The event of a write.
SentEvent value_change_to(const AudioUnitParameter& parameter, Float32 value);

/// Hands the event to everybody but the sender, in two steps: under the lock to those who are told in rounds,
/// and without it to those who are told at once.
void queue_for_all(const SentEvent& event, const EventSender& sender);
void call_at_once(const SentEvent& event, const EventSender& sender);

}  // namespace cocoa
