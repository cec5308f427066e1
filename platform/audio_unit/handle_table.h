#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>
#include <utility>

namespace cocoa {

/// Objects that a C interface knows by handles of type Name*, reached from any thread without locks.
///
/// A handle is a number: the slot in the lowest bits, above it how often the slot has been used, so that the
/// handle of an object that has gone is never taken for another one's (2^54 uses on, or 2^22 with 32-bit
/// pointers). Slots are static: nothing is left behind when the library is unloaded.
///
/// Whoever uses an object counts itself in its slot first and looks whether it is still there second. Who
/// retires an object strikes it out first and waits for the users second. All four are sequentially
/// consistent, so at least one of the two sees the other.
template <typename T, typename Name>
class HandleTable {
 public:
  class Lease;
  class CallOut;
  static constexpr std::size_t capacity = 1024;

  /// Takes over the object and names it; null, with the object left where it is, when all slots are taken.
  Name* add(std::unique_ptr<T>& object);

  /// Destroys the object, as soon as nobody uses it, and answers whether there was one. Waits for other
  /// threads' leases. When the calling thread itself is inside a CallOut of the object, the object goes when
  /// the outermost of these ends.
  bool retire(Name* name);

  /// Waits until nobody but the calling thread's own CallOuts uses the object. Answers how many these are.
  std::uint32_t waitForOthers(Name* name);

  /// The object, kept until the lease goes; an empty one when it has gone.
  Lease lease(Name* name);

  /// Calls `visit` with a lease on each object.
  template <typename Visit>
  void forEach(Visit visit);

 private:
  struct alignas(64) Slot {
    std::atomic<std::uintptr_t> name = 0;  // 0: nobody's, or being retired
    std::atomic<std::uint32_t> users = 0;
    std::atomic<bool> taken = false;
    std::uintptr_t uses = 0;  // touched by who has taken the slot
    T* object = nullptr;
  };

  Slot& slotOf(Name* name) { return slots_[reinterpret_cast<std::uintptr_t>(name) % capacity]; }
  static std::uint32_t ownCallOuts(const Slot& slot, CallOut** outermost);

  std::array<Slot, capacity> slots_{};
  std::atomic<std::size_t> used_ = 0;  // no slot at or above this was ever taken
  static inline constinit thread_local CallOut* innermost_ = nullptr;
};

template <typename T, typename Name>
class HandleTable<T, Name>::Lease {
 public:
  Lease() = default;
  Lease(Slot& slot, std::uintptr_t name) : slot_(&slot), name_(name) {
    slot.users.fetch_add(1);
    if (name == 0 || slot.name.load() != name)
      end();
  }
  Lease(Lease&& other) noexcept : slot_(std::exchange(other.slot_, nullptr)), name_(other.name_) {}
  Lease& operator=(Lease&&) = delete;
  ~Lease() { end(); }

  explicit operator bool() const { return slot_ != nullptr; }
  T* operator->() const { return slot_->object; }
  T& operator*() const { return *slot_->object; }
  // NOLINTNEXTLINE(performance-no-int-to-ptr): never dereferenced
  Name* name() const { return reinterpret_cast<Name*>(name_); }
  /// Whether the object has been retired since; it is kept all the same.
  bool retired() const { return slot_->name.load() != name_; }

 private:
  friend HandleTable::CallOut;
  void end() {
    if (slot_)
      slot_->users.fetch_sub(1);
    slot_ = nullptr;
  }
  Slot* slot_ = nullptr;
  std::uintptr_t name_ = 0;
};

/// While it lives, its lease's object may be retired on this thread: around everything that calls code of
/// others. Goes before its lease, and nothing may touch the object afterwards.
template <typename T, typename Name>
class HandleTable<T, Name>::CallOut {
 public:
  explicit CallOut(const Lease& lease) : slot_(*lease.slot_), outer_(std::exchange(innermost_, this)) {}
  CallOut(const CallOut&) = delete;
  CallOut& operator=(const CallOut&) = delete;
  ~CallOut() {
    innermost_ = outer_;
    if (!doomed_)
      return;
    doomed_.reset();
    slot_.taken.store(false, std::memory_order_release);
  }

 private:
  friend HandleTable;
  Slot& slot_;
  CallOut* const outer_;
  std::unique_ptr<T> doomed_;
};

template <typename T, typename Name>
Name* HandleTable<T, Name>::add(std::unique_ptr<T>& object) {
  for (std::size_t i = 0; i < capacity; ++i) {
    Slot& slot = slots_[i];
    if (slot.taken.exchange(true, std::memory_order_acquire))
      continue;
    for (std::size_t used = used_.load(); used <= i && !used_.compare_exchange_weak(used, i + 1);) {
    }
    const std::uintptr_t name = ++slot.uses * capacity + i;
    slot.object = object.release();
    slot.name.store(name);
    return reinterpret_cast<Name*>(name);  // NOLINT(performance-no-int-to-ptr): never dereferenced
  }
  return nullptr;
}

template <typename T, typename Name>
std::uint32_t HandleTable<T, Name>::ownCallOuts(const Slot& slot, CallOut** outermost) {
  std::uint32_t count = 0;
  for (CallOut* call_out = innermost_; call_out; call_out = call_out->outer_) {
    if (&call_out->slot_ != &slot)
      continue;
    ++count;
    *outermost = call_out;
  }
  return count;
}

template <typename T, typename Name>
std::uint32_t HandleTable<T, Name>::waitForOthers(Name* name) {
  const Slot& slot = slotOf(name);
  CallOut* outermost = nullptr;
  const std::uint32_t own = ownCallOuts(slot, &outermost);
  while (slot.users.load() > own)
    std::this_thread::yield();
  return own;
}

template <typename T, typename Name>
bool HandleTable<T, Name>::retire(Name* name) {
  Slot& slot = slotOf(name);
  auto expected = reinterpret_cast<std::uintptr_t>(name);
  if (expected == 0 || !slot.name.compare_exchange_strong(expected, 0))
    return false;
  waitForOthers(name);
  CallOut* outermost = nullptr;
  if (ownCallOuts(slot, &outermost) > 0) {
    outermost->doomed_.reset(slot.object);
    return true;
  }
  delete slot.object;
  slot.taken.store(false, std::memory_order_release);
  return true;
}

template <typename T, typename Name>
auto HandleTable<T, Name>::lease(Name* name) -> Lease {
  return Lease(slotOf(name), reinterpret_cast<std::uintptr_t>(name));
}

template <typename T, typename Name>
template <typename Visit>
void HandleTable<T, Name>::forEach(Visit visit) {
  const std::size_t used = used_.load();
  for (std::size_t i = 0; i < used; ++i) {
    const std::uintptr_t name = slots_[i].name.load();
    if (name == 0)
      continue;
    if (const Lease lease(slots_[i], name); lease)
      visit(lease);
  }
}

}  // namespace cocoa
