#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cocoa {

/// Here, a byte of zero is not valid.
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
