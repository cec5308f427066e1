#include "standalone/text_lines.h"

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
  pending_ += bytes;
}

bool TextLines::take(std::string& line) {
  const size_t end = pending_.find('\n');
  if (end == std::string::npos)
    return false;
  line = pending_.substr(0, end);
  if (!line.empty() && line.back() == '\r')
    line.pop_back();
  pending_.erase(0, end + 1);
  return true;
}

bool TextLines::overlong() const {
  return pending_.size() > longest_line && pending_.find('\n') == std::string::npos;
}

void TextLines::drop_overlong() {
  pending_.clear();
  dropping_ = true;
}

}  // namespace ondex
