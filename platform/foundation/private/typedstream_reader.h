// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/NSCoder.h"

namespace cocoa {

/// Reads one typed stream, whichever byte order it was written in. See typedstream.h for the format.
///
/// The bytes may come from anybody. Memory and time stay in proportion to their number and depth is bounded;
/// what does not hold together is a failure.
class TypedStreamReader final : public NSCoder {
 public:
  /// Answers the class of a name, or null for one that is not known.
  using ClassLookup = std::function<const Class*(std::string_view name)>;

  /// Reads the header. `bytes` must outlive the reader.
  TypedStreamReader(std::span<const uint8_t> bytes, ClassLookup class_of_name);

  std::optional<int8_t> decodeChar() override;
  [[nodiscard]] bool decodeFloats(std::span<float> values) override;
  Ref<NSObject> decodeObject() override;

  bool atEnd() const { return rest_.empty(); }

 private:
  /// An object that is still being read: nothing can refer to it yet.
  struct Unfinished {};
  struct ArchivedClass {
    /// Null for a class that is not known here; that matters only to an object of just that class.
    const Class* known;
    int32_t version;
  };
  using Numbered = std::variant<Unfinished, ArchivedClass, Ref<NSObject>>;

  std::span<const uint8_t> take(size_t count);
  int8_t takeByte();
  uint32_t takeBits(size_t byte_count);
  int32_t takeInteger() { return integerAfter(takeByte()); }
  int32_t integerAfter(int8_t head);
  float takeFloat();
  size_t numberAfter(int8_t head, size_t count);
  std::string_view takeString();
  std::string_view takeSharedString();
  bool takeType(std::string_view expected);
  const Class* takeClass();
  Ref<NSObject> takeObject();
  Ref<NSObject> takeNewObject();

  std::span<const uint8_t> rest_;
  ClassLookup class_of_name_;
  bool is_big_endian_ = false;
  std::vector<std::string_view> strings_;
  std::vector<Numbered> numbered_;
  int depth_ = 0;
};

}  // namespace cocoa
