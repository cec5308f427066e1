#include "standalone/text_lines.h"

namespace ondex {

namespace {
constexpr size_t longest_line = 8192;
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

}  // namespace ondex
