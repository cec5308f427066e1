// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <utility>

namespace cocoa {

/// Owns a file descriptor: closes it when it goes. A negative number, such as what a failed call answers, is
/// none.
class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int descriptor) : descriptor_(descriptor) {}
  UniqueFd(UniqueFd&& other) noexcept : descriptor_(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    UniqueFd(std::move(other)).swap(*this);
    return *this;
  }
  ~UniqueFd() {
    if (descriptor_ >= 0)
      close(descriptor_);
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }
  /// Gives the descriptor to the caller, who must close it.
  [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }
  void swap(UniqueFd& other) noexcept { std::swap(descriptor_, other.descriptor_); }

 private:
  int descriptor_ = -1;
};

}  // namespace cocoa
