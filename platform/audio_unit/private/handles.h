// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace cocoa {

/// Objects that a C interface knows by handles of type Name*: numbers that are counted up, so that the handle
/// of an object that has gone is not taken for another one's. Any thread.
template <typename T, typename Name>
class Handles {
 public:
  Name* add(std::shared_ptr<T> object) {
    const std::lock_guard lock(mutex_);
    // With 32-bit pointers the count wraps around.
    while (++last_ == 0 || objects_.contains(last_)) {
    }
    objects_.emplace(last_, std::move(object));
    return name_of(last_);
  }

  /// Ends the handle and answers what it stood for; null when it had ended before.
  std::shared_ptr<T> remove(Name* name) {
    const std::lock_guard lock(mutex_);
    auto found = objects_.extract(reinterpret_cast<std::uintptr_t>(name));
    return found ? std::move(found.mapped()) : nullptr;
  }

  /// Null when the handle has ended, and for null.
  std::shared_ptr<T> find(Name* name) const {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(reinterpret_cast<std::uintptr_t>(name));
    return found == objects_.end() ? nullptr : found->second;
  }

  /// All objects in the order of their making.
  std::vector<std::pair<Name*, std::shared_ptr<T>>> all() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::pair<Name*, std::shared_ptr<T>>> all;
    all.reserve(objects_.size());
    for (const auto& [number, object] : objects_)
      all.emplace_back(name_of(number), object);
    return all;
  }

 private:
  static Name* name_of(std::uintptr_t number) {
    return reinterpret_cast<Name*>(number);  // NOLINT(performance-no-int-to-ptr): never dereferenced
  }

  mutable std::mutex mutex_;
  std::map<std::uintptr_t, std::shared_ptr<T>> objects_;
  std::uintptr_t last_ = 0;
};

}  // namespace cocoa
