// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "foundation/NSObject.h"

namespace cocoa {

/// What an object writes its values to in encodeWithCoder and reads them from in Class::initWithCoder: the
/// same calls in the same order. A coder either writes or reads.
///
/// Nothing throws. The first failure sticks: from then on nothing is written, and every read answers failure.
class NSCoder {
 public:
  NSCoder() = default;
  NSCoder(const NSCoder&) = delete;
  NSCoder& operator=(const NSCoder&) = delete;
  virtual ~NSCoder() = default;

  virtual void encodeChar(int8_t value);
  /// One group of values; read back with a span of the same length.
  virtual void encodeFloats(std::span<const float> values);
  /// Null is written too. An object that was written before becomes a reference to what stands there.
  virtual void encodeObject(const NSObject* object);

  virtual std::optional<int8_t> decodeChar();
  /// Fills `values`, or answers false and leaves them undefined.
  [[nodiscard]] virtual bool decodeFloats(std::span<float> values);
  /// The object, or null where null was written and on failure: see failed().
  virtual Ref<NSObject> decodeObject();

  bool failed() const { return failure_ != nullptr; }
  /// What went wrong first, for the log; null while nothing has.
  const char* failure() const { return failure_; }
  /// Gives up, such as on a value that the object cannot have. `cause` is a string literal.
  void fail(const char* cause);

 private:
  const char* failure_ = nullptr;
};

}  // namespace cocoa
