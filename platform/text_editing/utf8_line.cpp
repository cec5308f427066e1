#include "text_editing/utf8_line.h"

#include <glib.h>

#include <memory>

namespace cocoa {

std::string utf8_line(std::string_view text, size_t longest) {
  const std::unique_ptr<char, decltype(&g_free)> valid(
      g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), &g_free);
  std::string line;
  for (const char* at = valid.get(); *at != '\0';) {
    const char* next = g_utf8_next_char(at);
    const gunichar character = g_utf8_get_char(at);
    constexpr gunichar line_separator = 0x2028;
    constexpr gunichar paragraph_separator = 0x2029;
    const bool breaks = character == '\n' || character == '\r' || character == line_separator ||
                        character == paragraph_separator;
    // Blank lines before the text are no text yet.
    if (breaks && !line.empty())
      break;
    if (character == '\t') {
      line += ' ';
    } else if (!g_unichar_iscntrl(character) && !breaks) {
      if (line.size() + static_cast<size_t>(next - at) > longest)
        break;
      line.append(at, next);
    }
    at = next;
  }
  return line;
}

}  // namespace cocoa
