// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "foundation/NSObject.h"

namespace cocoa {

/// Immutable bytes.
class NSData : public NSObject {
 public:
  static const Class class_;
  explicit NSData(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {}
  const Class& isa() const override { return class_; }

  std::span<const uint8_t> bytes() const { return bytes_; }
  bool isEqualToData(const NSData& other) const { return bytes_ == other.bytes_; }

 private:
  std::vector<uint8_t> bytes_;
};

}  // namespace cocoa
