// SPDX-License-Identifier: MIT
#include "standalone/private/text_lines.h"

namespace ondex {

namespace {
constexpr size_t longest_line = 8192;
}

void TextLines::append(std::string_view bytes) {
  if (dropping_) {
    const size_t end = bytes.find('\n');
    if (end == std::string_view::npos)
      return;
    bytes.remove_prefix(end + 1);
    dropping_ = false;
  }
  // Here and not at every line: each byte is moved at most once for every one that comes.
  if (taken_ >= bytes_.size() - taken_) {
    bytes_.erase(0, taken_);
    taken_ = 0;
  }
  bytes_ += bytes;
}

std::optional<std::string_view> TextLines::take() {
  const std::string_view rest = pending();
  const size_t end = rest.find('\n');
  if (end == std::string_view::npos)
    return std::nullopt;
  taken_ += end + 1;
  std::string_view line = rest.substr(0, end);
  if (line.ends_with('\r'))
    line.remove_suffix(1);
  return line;
}

bool TextLines::overlong() const {
  return pending().size() > longest_line && pending().find('\n') == std::string_view::npos;
}

void TextLines::drop_overlong() {
  bytes_.clear();
  taken_ = 0;
  dropping_ = true;
}

}  // namespace ondex
