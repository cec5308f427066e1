// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/NSCoder.h"

namespace cocoa {

/// Writes one typed stream in little-endian byte order. See typedstream.h for the format.
class TypedStreamWriter final : public NSCoder {
 public:
  TypedStreamWriter();

  void encodeChar(int8_t value) override;
  void encodeFloats(std::span<const float> values) override;
  /// Fails for an object that no archive can be read back to: its class has no initWithCoder.
  void encodeObject(const NSObject* object) override;

  /// What has been written so far.
  const std::vector<uint8_t>& bytes() const { return bytes_; }

 private:
  void writeByte(int8_t byte);
  void writeLittleEndian(uint32_t bits, int byte_count);
  void writeInteger(int32_t value);
  void writeFloat(float value);
  void writeReference(size_t number);
  void writeString(std::string_view text);
  void writeSharedString(std::string_view text);
  void writeClass(const Class* first);
  void writeObject(const NSObject* object);

  std::vector<uint8_t> bytes_;
  std::map<std::string, size_t, std::less<>> strings_;
  std::map<const void*, size_t> objects_and_classes_;
  /// Keeps what was written alive, so that no later object takes its address and with it its number.
  std::vector<Ref<NSObject>> written_;
  int depth_ = 0;
};

}  // namespace cocoa
