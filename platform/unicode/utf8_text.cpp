// SPDX-License-Identifier: MIT
#include "unicode/utf8_text.h"

namespace cocoa {

namespace {

constexpr std::string_view replacement_character = "\uFFFD";

unsigned byte_at(std::string_view text, size_t offset) {
  return static_cast<unsigned char>(text[offset]);
}

/// Of the sequence that a byte begins; 0 when none does.
size_t length_after(unsigned first) {
  return first == 0     ? 0
         : first < 0x80 ? 1
         : first < 0xC2 ? 0
         : first < 0xE0 ? 2
         : first < 0xF0 ? 3
         : first < 0xF5 ? 4
                        : 0;
}

char32_t decoded(std::string_view text, size_t offset, size_t length) {
  char32_t value = byte_at(text, offset);
  if (length > 1)
    value &= 0x7FU >> length;
  for (size_t i = 1; i < length; ++i)
    value = value << 6 | (byte_at(text, offset + i) & 0x3FU);
  return value;
}

size_t valid_until(std::string_view text, size_t offset) {
  while (offset < text.size()) {
    const size_t length = utf8_sequence_length(text, offset);
    if (length == 0)
      break;
    offset += length;
  }
  return offset;
}

}  // namespace

size_t utf8_sequence_length(std::string_view text, size_t offset) {
  const size_t length = length_after(byte_at(text, offset));
  if (length == 0 || length > text.size() - offset)
    return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((byte_at(text, offset + i) & 0xC0U) != 0x80U)
      return 0;
  }
  const char32_t value = decoded(text, offset, length);
  // Longer than necessary, half of a pair of UTF-16, beyond the last.
  constexpr char32_t smallest[] = {0, 1, 0x80, 0x800, 0x10000};
  const bool is_surrogate = value >= 0xD800 && value <= 0xDFFF;
  return value >= smallest[length] && !is_surrogate && value <= 0x10FFFF ? length : 0;
}

size_t valid_utf8_length(std::string_view text) {
  return valid_until(text, 0);
}

bool is_valid_utf8(std::string_view text) {
  return valid_utf8_length(text) == text.size();
}

std::string valid_utf8(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  for (size_t at = 0;;) {
    const size_t end = valid_until(text, at);
    valid += text.substr(at, end - at);
    if (end == text.size())
      return valid;
    valid += replacement_character;
    at = end + 1;
  }
}

CodePoint code_point_at(std::string_view utf8, size_t offset) {
  const size_t length = length_after(byte_at(utf8, offset));
  return {decoded(utf8, offset, length), length};
}

}  // namespace cocoa
