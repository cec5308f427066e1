#include "audio_unit/event_ring.h"

namespace cocoa {

EventRing::EventRing(std::size_t capacity) : mask_(capacity - 1), cells_(std::make_unique<Cell[]>(capacity)) {
  for (std::size_t i = 0; i < capacity; ++i)
    cells_[i].turn.store(i, std::memory_order_relaxed);
}

bool EventRing::push(SentEvent event) {
  std::uint64_t ticket = next_push_.load();
  for (;;) {
    Cell& cell = cells_[ticket & mask_];
    const std::uint64_t turn = cell.turn.load(std::memory_order_acquire);
    if (turn == ticket) {
      if (!next_push_.compare_exchange_weak(ticket, ticket + 1))
        continue;
      event.ticket = ticket;
      cell.event = event;
      cell.turn.store(ticket + 1, std::memory_order_release);
      return true;
    }
    // The cell still holds the event of one round before.
    if (turn < ticket)
      return false;
    ticket = next_push_.load();
  }
}

bool EventRing::pop(SentEvent& event) {
  Cell& cell = cells_[next_pop_ & mask_];
  if (cell.turn.load(std::memory_order_acquire) != next_pop_ + 1)
    return false;
  event = cell.event;
  cell.turn.store(next_pop_ + mask_ + 1, std::memory_order_release);
  ++next_pop_;
  return true;
}

}  // namespace cocoa
