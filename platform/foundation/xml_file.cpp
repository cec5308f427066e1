// SPDX-License-Identifier: MIT
#include "foundation/private/xml_file.h"

#include <algorithm>
#include <utility>

#include "foundation/private/nesting_limit.h"
#include "foundation/private/small_file.h"
#include "foundation/visible_text.h"
#include "unicode/utf8_text.h"

namespace cocoa {

namespace {

constexpr size_t largest_file = size_t{4} << 20;
constexpr size_t longest_line = 1000;

struct DepthWalker : pugi::xml_tree_walker {
  bool for_each(pugi::xml_node&) override { return depth() < kMaximumDepth; }
};

}  // namespace

Failure at_line(std::string_view text, size_t offset, std::string_view cause) {
  const std::string_view before = text.substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  return {"line " + std::to_string(line) + ": " + std::string(cause)};
}

Result<std::string> read_text_file(const std::string& path) {
  SmallFile file = read_small_file(path, largest_file);
  if (file.state != SmallFile::State::kRead)
    return Failure{"cannot be read: " + file.cause};
  return std::move(file.bytes);
}

Result<void> parse_xml(std::string_view text, pugi::xml_document& document, unsigned spaces) {
  if (text.size() > largest_file)
    return Failure{"is larger than 4 MiB"};
  if (const size_t valid = valid_utf8_length(text); valid < text.size())
    return at_line(text, valid, "is not text in UTF-8");
  const pugi::xml_parse_result parsed =
      document.load_buffer(text.data(), text.size(), pugi::parse_default | spaces, pugi::encoding_utf8);
  if (!parsed)
    return at_line(text, static_cast<size_t>(parsed.offset), parsed.description());
  DepthWalker walker;
  if (!document.traverse(walker))
    return Failure{"elements are nested too deeply"};
  return {};
}

std::string one_line(std::string_view text) {
  return visible_text(text.substr(0, longest_line)).substr(0, longest_line);
}

}  // namespace cocoa
