// SPDX-License-Identifier: MIT
#include "text_editing/private/utf8_line.h"

#include "unicode/character_classes.h"
#include "unicode/utf8_text.h"

namespace cocoa {

std::string utf8_line(std::string_view text, size_t longest) {
  const std::string valid = valid_utf8(text);
  std::string line;
  for (size_t at = 0; at < valid.size();) {
    const auto [character, length] = code_point_at(valid, at);
    constexpr char32_t line_separator = 0x2028;
    constexpr char32_t paragraph_separator = 0x2029;
    const bool breaks = character == '\n' || character == '\r' || character == line_separator ||
                        character == paragraph_separator;
    // Blank lines before the text are no text yet.
    if (breaks && !line.empty())
      break;
    if (character == '\t') {
      line += ' ';
    } else if (!is_control(character) && !breaks) {
      if (line.size() + length > longest)
        break;
      line.append(valid, at, length);
    }
    at += length;
  }
  return line;
}

}  // namespace cocoa
