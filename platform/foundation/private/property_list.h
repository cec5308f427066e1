// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "foundation/Result.h"

namespace pugi {
class xml_document;
class xml_node;
}  // namespace pugi

namespace cocoa {

std::string base64_from_bytes(std::span<const uint8_t> bytes);
/// Whitespace is skipped wherever it stands. Nothing when there is anything else that base64 does not have,
/// or the padding is wrong.
std::optional<std::vector<uint8_t>> bytes_from_base64(std::string_view text);

/// Whether the code point is one that XML 1.0 has.
bool is_xml_character(uint32_t code);
/// Whether an XML document can hold the text: sound UTF-8, no control characters but tab and line ends.
bool is_xml_text(std::string_view text);

/// A value of a kind that we do not write: a number, a date, an array, data that is no base64 ... It is
/// there, and that is all that is told of it.
struct OpaqueValue {
  std::string element;  ///< its element's name, "integer"
  bool operator==(const OpaqueValue&) const = default;
};

/// The values that we write, data and text, and those that are only read.
using PropertyListValue = std::variant<std::vector<uint8_t>, std::string, OpaqueValue>;

/// An XML property list whose root is a dictionary. Opaque values stay in it as they came.
class PropertyList {
 public:
  /// An empty one.
  PropertyList();
  PropertyList(PropertyList&&) noexcept;
  PropertyList& operator=(PropertyList&&) noexcept;
  ~PropertyList();

  /// From a file's contents. A failure when they are not wholly such a list, as in the binary form that some
  /// tools turn it into, so that whatever is read can be written again without a loss but for comments.
  static Result<PropertyList> fromXML(std::string_view xml);
  std::string xml() const;

  bool contains(std::string_view key) const;
  /// Nothing when there is no such key. Where one stands twice, the first counts.
  std::optional<PropertyListValue> value(std::string_view key) const;
  /// Key and value must be texts that XML can hold, and the value not opaque. What stands there is replaced.
  void setValue(std::string_view key, const PropertyListValue& value);
  void removeValue(std::string_view key);

 private:
  explicit PropertyList(std::unique_ptr<pugi::xml_document> document);
  pugi::xml_node dictionary() const;
  pugi::xml_node keyNode(std::string_view key) const;

  std::unique_ptr<pugi::xml_document> document_;
};

}  // namespace cocoa
