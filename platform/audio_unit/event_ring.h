#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "audio_unit/AudioUnit.h"

namespace cocoa {

/// Which of the listener's objects are not told, because they are the sender.
enum class Excluded : std::uint8_t { nobody, one_object, all_objects };

/// An event on its way to one listener.
struct SentEvent {
  AudioUnitEvent event{};
  double time = 0;  ///< when it occurred, in seconds of the listener's clock
  Excluded excluded = Excluded::nobody;
  void* excluded_object = nullptr;
  /// What was written; without it the value is read when the event is told.
  std::optional<Float32> value = std::nullopt;
  /// Which write of the parameter was the last when the event was sent (see Effect::write).
  std::optional<std::uint32_t> order = std::nullopt;
  /// How many events were sent to the listener before; those sent before a registration are not for it.
  std::uint64_t ticket = 0;
};

/// A queue of bounded length that many threads fill and one empties. Nobody waits, nothing is allocated.
///
/// Each cell carries a turn: ticket t may be written to cell t mod n once the cell's turn is t, which then
/// becomes t + 1; it may be taken out once the turn is t + 1, which then becomes t + n.
class EventRing {
 public:
  /// `capacity` is a power of two.
  explicit EventRing(std::size_t capacity);

  /// Any thread. Gives the event its ticket; false when there is no room.
  bool push(SentEvent event);
  /// The queue's own thread. False when there is nothing, or the next sender has not finished yet.
  bool pop(SentEvent& event);
  /// The ticket of the next event. Any thread.
  std::uint64_t nextTicket() const { return next_push_.load(); }
  std::size_t capacity() const { return mask_ + 1; }

 private:
  struct Cell {
    std::atomic<std::uint64_t> turn = 0;
    SentEvent event;
  };
  const std::uint64_t mask_;
  const std::unique_ptr<Cell[]> cells_;
  alignas(64) std::atomic<std::uint64_t> next_push_ = 0;
  alignas(64) std::uint64_t next_pop_ = 0;
};

}  // namespace cocoa
