// SPDX-License-Identifier: MIT
#include <algorithm>

#include "foundation/private/property_list.h"
#include "unicode/utf8_text.h"

/// How bytes and texts stand in a property list.

namespace cocoa {

namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr bool is_space(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

}  // namespace

bool is_xml_character(uint32_t code) {
  if (code < 0x20)
    return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code >= 0xE000 && code < 0xFFFE) || (code >= 0x10000 && code < 0x110000);
}

std::string base64_from_bytes(std::span<const uint8_t> bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t count = std::min<size_t>(3, bytes.size() - i);
    uint32_t bits = 0;
    for (size_t j = 0; j < 3; ++j)
      bits = (bits << 8U) | (j < count ? bytes[i + j] : 0U);
    for (size_t j = 0; j < 4; ++j)
      text += j <= count ? kDigits[(bits >> (18U - 6U * j)) & 0x3FU] : '=';
  }
  return text;
}

std::optional<std::vector<uint8_t>> bytes_from_base64(std::string_view text) {
  std::vector<uint8_t> bytes;
  uint32_t bits = 0;
  size_t digits = 0;
  size_t padding = 0;
  for (const char c : text) {
    if (is_space(c))
      continue;
    if (c == '=') {
      ++padding;
      continue;
    }
    const size_t digit = kDigits.find(c);
    if (digit == std::string_view::npos || padding > 0)
      return std::nullopt;
    bits = (bits << 6U) | static_cast<uint32_t>(digit);
    ++digits;
    if (digits % 4 != 1)
      bytes.push_back(static_cast<uint8_t>(bits >> (6U - 2U * ((digits - 1) % 4))));
  }
  // One digit alone is no byte; two need two signs of padding, three need one.
  const bool is_whole = digits % 4 != 1 && padding == (4 - digits % 4) % 4;
  return is_whole ? std::optional(std::move(bytes)) : std::nullopt;
}

bool is_xml_text(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    const size_t length = utf8_sequence_length(text, at);
    if (length == 0 || !is_xml_character(code_point_at(text, at).value))
      return false;
    at += length;
  }
  return true;
}

}  // namespace cocoa
