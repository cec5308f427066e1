#include "foundation/visible_text.h"

#include <algorithm>
#include <cstdint>

namespace cocoa {

namespace {

uint32_t code_point(std::string_view sequence) {
  auto value = static_cast<uint32_t>(static_cast<unsigned char>(sequence.front()));
  if (sequence.size() > 1)
    value &= 0x7FU >> sequence.size();
  for (const char byte : sequence.substr(1))
    value = value << 6 | (static_cast<unsigned char>(byte) & 0x3FU);
  return value;
}

bool printable(uint32_t character) {
  constexpr struct {
    uint32_t first;
    uint32_t last;
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

size_t utf8_sequence_length(std::string_view text) {
  const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80)
    return lead == 0 ? 0 : 1;
  const size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (length == 0 || text.size() < length)
    return 0;
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80)
      return 0;
  }
  const unsigned second = byte(1);
  const bool malformed = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second >= 0xA0) ||
                         (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second >= 0x90);
  return malformed ? 0 : length;
}

std::string visible_text(std::string_view text) {
  std::string visible;
  visible.reserve(text.size());
  while (!text.empty()) {
    const size_t length = utf8_sequence_length(text);
    const std::string_view sequence = text.substr(0, std::max<size_t>(length, 1));
    if (length > 0 && printable(code_point(sequence))) {
      visible += sequence;
    } else {
      for (const char byte : sequence)
        append_escaped(visible, byte);
    }
    text.remove_prefix(sequence.size());
  }
  return visible;
}

}  // namespace cocoa
