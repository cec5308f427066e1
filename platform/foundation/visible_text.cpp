// SPDX-License-Identifier: MIT
#include "foundation/visible_text.h"

#include <algorithm>

#include "unicode/utf8_text.h"

namespace cocoa {

namespace {

bool printable(char32_t character) {
  constexpr struct {
    char32_t first;
    char32_t last;
  } not_printable[] = {
      {0, 0x1F},
      {0x7F, 0x9F},      // controls
      {0x2028, 0x202E},  // separators of lines and paragraphs, directions
      {0x2066, 0x2069},  // directions
  };
  return std::ranges::none_of(not_printable, [character](const auto& range) {
    return character >= range.first && character <= range.last;
  });
}

void append_escaped(std::string& text, char byte) {
  constexpr char digits[] = "0123456789abcdef";
  constexpr std::string_view named = "\n\r\t";
  constexpr std::string_view names = "nrt";
  const size_t name = named.find(byte);
  text += '\\';
  if (name != std::string_view::npos) {
    text += names[name];
    return;
  }
  const auto value = static_cast<unsigned char>(byte);
  text += {'x', digits[value >> 4], digits[value & 15]};
}

}  // namespace

std::string visible_text(std::string_view text) {
  std::string visible;
  visible.reserve(text.size());
  for (size_t at = 0; at < text.size();) {
    const size_t length = utf8_sequence_length(text, at);
    const std::string_view sequence = text.substr(at, std::max<size_t>(length, 1));
    if (length > 0 && printable(code_point_at(text, at).value)) {
      visible += sequence;
    } else {
      for (const char byte : sequence)
        append_escaped(visible, byte);
    }
    at += sequence.size();
  }
  return visible;
}

}  // namespace cocoa
