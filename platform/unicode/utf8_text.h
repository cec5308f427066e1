// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cocoa {

/// UTF-8, as all texts here are. A byte of zero is not valid, nor what is overlong, a surrogate, beyond
/// U+10FFFF or cut off. Any thread.

/// Of the valid sequence that begins at an offset before the text's end, in bytes; 0 when none does.
size_t utf8_sequence_length(std::string_view text, size_t offset);
/// Of the longest beginning of the text that is valid, in bytes.
size_t valid_utf8_length(std::string_view text);
bool is_valid_utf8(std::string_view text);
/// The text with a replacement character in the place of each byte that is not valid.
std::string valid_utf8(std::string_view text);

struct CodePoint {
  char32_t value = 0;
  size_t length = 0;  ///< bytes
};
/// What begins at an offset of valid UTF-8, which must lie before its end.
CodePoint code_point_at(std::string_view utf8, size_t offset);

}  // namespace cocoa
