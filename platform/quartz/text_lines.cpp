// SPDX-License-Identifier: MIT
#include "quartz/private/text_lines.h"

#include <algorithm>
#include <string>
#include <utility>

#include "unicode/character_classes.h"
#include "unicode/text_breaks.h"
#include "unicode/utf8_text.h"

namespace cocoa {

namespace {

/// What sums of advances may differ by, points.
constexpr double rounding = 1e-3;

/// Cut at line feeds and what else begins a new line; behind the last may be an empty one.
std::vector<std::string_view> paragraphs(std::string_view utf8) {
  std::vector<std::string_view> result;
  size_t start = 0;
  for (size_t at = 0; at < utf8.size();) {
    const CodePoint c = code_point_at(utf8, at);
    const size_t end = at;
    at += c.length;
    if (c.value != '\n' && c.value != '\r' && c.value != 0x2028 && c.value != 0x2029)
      continue;
    if (c.value == '\r' && at < utf8.size() && utf8[at] == '\n')
      ++at;
    result.push_back(utf8.substr(start, end - start));
    start = at;
  }
  result.push_back(utf8.substr(start));
  return result;
}

std::string_view without_blanks_at_end(std::string_view utf8) {
  const size_t last = utf8.find_last_not_of(" \t");
  return utf8.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

bool runs_from_right(std::string_view utf8) {
  for (size_t at = 0; at < utf8.size();) {
    const CodePoint c = code_point_at(utf8, at);
    if (has_script(c.value))
      return is_right_to_left(c.value);
    at += c.length;
  }
  return false;
}

/// Sets the lines of one text after another.
class LineSetter {
 public:
  LineSetter(FontFamily& family, const TextStyle& style, double width)
      : family_(family),
        style_(style),
        width_(style.line_break == LineBreak::clip ? -1 : width),
        room_(width) {}

  void add(std::string_view paragraph);
  std::vector<TextLine> take() { return std::move(lines_); }

 private:
  bool truncates() const {
    return style_.line_break == LineBreak::truncate_head || style_.line_break == LineBreak::truncate_tail ||
           style_.line_break == LineBreak::truncate_middle;
  }
  ShapedText shaped(std::string_view utf8) const { return {family_, style_.size, utf8}; }
  bool fits(const ShapedText& text) const { return width_ < 0 || text.width() <= width_ + rounding; }
  double start_of(const ShapedText& text, bool from_right) const;
  void add_line(ShapedText text, bool from_right);
  void wrap(std::string_view paragraph, const ShapedText& whole, bool from_right);
  ShapedText shortened(const ShapedText& whole) const;

  FontFamily& family_;
  const TextStyle& style_;
  double width_;  ///< of a line at most; negative for no limit
  double room_;   ///< that it is aligned in; negative for none
  std::vector<TextLine> lines_;
};

void LineSetter::add(std::string_view paragraph) {
  const bool from_right = runs_from_right(paragraph);
  ShapedText whole = shaped(paragraph);
  if (fits(whole)) {
    add_line(std::move(whole), from_right);
  } else if (truncates()) {
    add_line(shortened(whole), from_right);
  } else {
    wrap(paragraph, whole, from_right);
  }
}

double LineSetter::start_of(const ShapedText& text, bool from_right) const {
  const double room = room_ < 0 ? 0 : room_ - text.width();
  switch (style_.alignment) {
    case TextAlignment::center:
      return room / 2;
    case TextAlignment::right:
      return room;
    case TextAlignment::left:
    case TextAlignment::justified:
      return 0;
    case TextAlignment::natural:
      break;
  }
  return from_right ? room : 0;
}

void LineSetter::add_line(ShapedText text, bool from_right) {
  const double top = lines_.empty() ? 0 : lines_.back().bottom;
  TextLine line;
  line.x = start_of(text, from_right);
  line.baseline = top + text.ascent();
  line.bottom = line.baseline + text.descent();
  line.width = text.width();
  line.shaped = std::move(text);
  lines_.push_back(std::move(line));
}

/// Takes as much as fits from the first place on: up to the last break, else up to the last character, but
/// at least one. Answers the index of the place behind it.
size_t end_of_line(const std::vector<CaretPlace>& places, size_t first, const std::vector<size_t>& breaks,
                   std::string_view utf8, double width) {
  size_t last = first + 1;
  size_t best = 0;
  for (size_t i = first + 1; i < places.size(); ++i) {
    const bool is_blank = utf8[places[i - 1].offset] == ' ' || utf8[places[i - 1].offset] == '\t';
    const bool fits = places[i].x - places[first].x <= width + rounding;
    // Blanks at the end of a line may lie outside.
    if (!fits && !is_blank)
      break;
    if (std::binary_search(breaks.begin(), breaks.end(), places[i].offset))
      best = i;
    last = i;
  }
  return best > 0 ? best : last;
}

void LineSetter::wrap(std::string_view paragraph, const ShapedText& whole, bool from_right) {
  const std::vector<CaretPlace> places = whole.caret_places();
  const std::vector<size_t> breaks =
      style_.line_break == LineBreak::char_wrap ? character_breaks(paragraph) : line_breaks(paragraph);
  for (size_t first = 0; first + 1 < places.size();) {
    const size_t end = end_of_line(places, first, breaks, paragraph, width_);
    const size_t start = places[first].offset;
    const std::string_view line = paragraph.substr(start, places[end].offset - start);
    const bool is_last = end + 1 == places.size();
    ShapedText text = shaped(is_last ? line : without_blanks_at_end(line));
    if (style_.alignment == TextAlignment::justified && !is_last)
      text.justify(width_);
    add_line(std::move(text), from_right);
    first = end;
  }
}

/// Keeps characters of both ends, as many as there is room for beside the ellipsis.
ShapedText LineSetter::shortened(const ShapedText& whole) const {
  const std::shared_ptr<FontFace> face = family_.face();
  constexpr char32_t one_character = 0x2026;
  const std::string ellipsis = face && face->has(one_character) ? "\u2026" : "...";
  const std::vector<CaretPlace> places = whole.caret_places();
  const double room = width_ - shaped(ellipsis).width();
  const bool has_head = style_.line_break != LineBreak::truncate_head;
  const bool has_tail = style_.line_break != LineBreak::truncate_tail;
  const double half = has_head && has_tail ? room / 2 : room;
  size_t head = 0;
  while (has_head && head + 1 < places.size() && places[head + 1].x <= half + rounding)
    ++head;
  size_t tail = places.size() - 1;
  const double room_of_tail = has_head ? room - places[head].x : room;
  while (has_tail && tail > head && whole.width() - places[tail - 1].x <= room_of_tail + rounding)
    --tail;
  const std::string_view text = whole.text();
  for (;;) {
    ShapedText result = shaped(std::string(text.substr(0, places[head].offset)) + ellipsis +
                               std::string(text.substr(places[tail].offset)));
    const bool is_least = head == 0 && tail + 1 == places.size();
    if (fits(result) || is_least)
      return result;
    // Letters beside the ellipsis stand at other distances than beside each other.
    if (head > 0) {
      --head;
    } else {
      ++tail;
    }
  }
}

}  // namespace

std::vector<TextLine> text_lines(FontFamily& family, std::string_view utf8, const TextStyle& style,
                                 double width) {
  LineSetter setter(family, style, width);
  for (const std::string_view paragraph : paragraphs(utf8))
    setter.add(paragraph);
  return setter.take();
}

}  // namespace cocoa
