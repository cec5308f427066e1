#include "foundation/xml_file.h"

#include <algorithm>
#include <utility>

#include "foundation/small_file.h"

namespace cocoa {

namespace {

constexpr size_t largest_file = size_t{4} << 20;
constexpr int deepest_element = 64;
constexpr size_t longest_line = 1000;

/// The length of the UTF-8 sequence at the start of `text`, 0 when it is malformed: overlong, a surrogate,
/// beyond U+10FFFF, cut off, or the null character, which ends C strings.
size_t sequence_length(std::string_view text) {
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

/// The offset of the first byte that is not part of a text in UTF-8, the length of `text` when all is well.
size_t end_of_valid_text(std::string_view text) {
  size_t offset = 0;
  while (offset < text.size()) {
    const size_t length = sequence_length(text.substr(offset));
    if (length == 0)
      break;
    offset += length;
  }
  return offset;
}

std::string at_line(std::string_view text, size_t offset, std::string_view cause) {
  const std::string_view before = text.substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  return "line " + std::to_string(line) + ": " + std::string(cause);
}

struct DepthWalker : pugi::xml_tree_walker {
  bool for_each(pugi::xml_node&) override { return depth() < deepest_element; }
};

}  // namespace

FileText read_text_file(const std::string& path) {
  SmallFile file = read_small_file(path, largest_file);
  if (file.state != SmallFile::State::kRead)
    return {{}, "cannot be read: " + file.cause};
  return {std::move(file.bytes), {}};
}

std::string parse_xml(std::string_view text, pugi::xml_document& document) {
  if (text.size() > largest_file)
    return "is larger than 4 MiB";
  if (const size_t valid = end_of_valid_text(text); valid < text.size())
    return at_line(text, valid, "is not text in UTF-8");
  const pugi::xml_parse_result parsed = document.load_buffer(
      text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata_single, pugi::encoding_utf8);
  if (!parsed)
    return at_line(text, static_cast<size_t>(parsed.offset), parsed.description());
  DepthWalker walker;
  if (!document.traverse(walker))
    return "elements are nested too deeply";
  return {};
}

std::string one_line(std::string_view text) {
  std::string line(text.substr(0, longest_line));
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; }, '?');
  return line;
}

}  // namespace cocoa
