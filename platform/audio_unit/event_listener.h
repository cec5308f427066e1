#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "audio_unit/AUEventListener.h"
#include "audio_unit/event_ring.h"
#include "audio_unit/handle_table.h"
#include "audio_unit/pending_events.h"

namespace cocoa {

/// What an AUEventListenerRef stands for. All but receive() belongs to the run loop's thread.
class EventListener {
 public:
  /// Times in seconds; an interval of 0 calls back at once.
  EventListener(AUEventListenerProc proc, void* user_data, CFRunLoop& loop, double interval,
                double granularity);
  EventListener(const EventListener&) = delete;
  EventListener& operator=(const EventListener&) = delete;
  ~EventListener();

  /// Tells the listener its own name, before it takes part in anything.
  void setName(AUEventListenerRef name) { name_ = name; }

  void add(void* object, const AudioUnitEvent& event);
  void remove(void* object, const AudioUnitEvent& event);

  using Table = HandleTable<EventListener, AUListenerBase>;
  /// Hands in an event, whose time is filled in here. Any thread, under `self`, the sender's lease on this.
  void receive(SentEvent event, const Table::Lease& self);

 private:
  struct Registration {
    void* object;
    AudioUnitEvent event;
    std::uint64_t first_ticket;
    bool operator==(const Registration& other) const;
  };
  using Registrations = std::vector<Registration>;

  /// The newest write of a parameter that the listener has heard of.
  struct NewestWrite {
    AudioUnitParameter parameter;
    std::uint32_t order;
    double time;
  };

  void publish(std::unique_ptr<const Registrations> registrations);
  bool isRegistered(const Registration& registration) const;
  std::vector<AudioUnitParameter> watchedParameters(AudioUnit unit) const;

  void drain();
  void accept(SentEvent event);
  bool keepsOrder(SentEvent& event);
  void resynchronise();
  void startRound();
  void finishRound();
  void tell(const SentEvent& sent, std::span<const SentEvent> later, const Table::Lease& self) const;

  const AUEventListenerProc proc_;
  void* const user_data_;
  CFRunLoop& loop_;  // of the thread that it is used on
  const Clock& clock_;
  const double interval_;
  AUEventListenerRef name_ = nullptr;

  /// Never changed but replaced, as senders read it; the ones before stay until nobody can be reading them.
  std::atomic<const Registrations*> registrations_;
  std::vector<std::unique_ptr<const Registrations>> kept_registrations_;

  const std::unique_ptr<EventRing> ring_;  // null when the interval is 0
  std::atomic<bool> overflowed_ = false;
  PendingEvents pending_;
  std::vector<NewestWrite> newest_writes_;
  CFRunLoop::AttachmentRef round_;
  CFRunLoop::SourceRef source_;
};

/// All listeners of the process.
inline constinit EventListener::Table listeners;

/// Who sends an event; without a listener, nobody of those who are told.
struct EventSender {
  AUEventListenerRef listener = nullptr;
  void* object = nullptr;
};

/// Tells everybody but the sender. Any thread, lock-free.
void announce(const AudioUnitEvent& event, const EventSender& sender);
/// Tells everybody but the sender that the parameter was written. `order` is that of Effect::write.
void announce_write(const AudioUnitParameter& parameter, Float32 value, std::uint32_t order,
                    const EventSender& sender);

}  // namespace cocoa
