// SPDX-License-Identifier: MIT
#include "foundation/private/xml_well_formed.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "foundation/private/property_list.h"
#include "foundation/private/xml_file.h"

namespace cocoa {

namespace {

constexpr std::string_view kSpaces = " \t\r\n";

bool is_space(char c) {
  return kSpaces.find(c) != std::string_view::npos;
}

bool is_name_start(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':';
}

bool is_name_part(char c) {
  return is_name_start(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

/// Of the name of a document type that is known to the public.
bool is_public_name_part(char c) {
  constexpr std::string_view kOthers = " \r\n-'()+,./:=?;!*#@$_%";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         kOthers.find(c) != std::string_view::npos;
}

/// Consumes a document from the front. The first failure sticks, and leaves nothing to consume.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text), rest_(text) {}

  Result<void> scan() {
    take("\xEF\xBB\xBF");
    if (rest_.starts_with("<?xml") && rest_.size() > 5 && is_space(rest_[5]))
      declaration();
    miscellaneous();
    if (take("<!DOCTYPE")) {
      documentType();
      miscellaneous();
    }
    elements();
    miscellaneous();
    if (!rest_.empty())
      fail("something beside the one element of the document");
    return failure_ ? Result<void>(at_line(text_, failed_at_, failure_)) : Result<void>();
  }

 private:
  void fail(const char* cause) {
    if (!failure_) {
      failure_ = cause;
      failed_at_ = text_.size() - rest_.size();
    }
    rest_ = {};
  }
  bool take(std::string_view expected) {
    if (!rest_.starts_with(expected))
      return false;
    rest_.remove_prefix(expected.size());
    return true;
  }
  void need(std::string_view expected, const char* cause) {
    if (!take(expected))
      fail(cause);
  }
  template <typename Matches>
  std::string_view takeWhile(Matches matches) {
    const auto* const end = std::ranges::find_if_not(rest_, matches);
    const auto taken = rest_.substr(0, static_cast<size_t>(end - rest_.begin()));
    rest_.remove_prefix(taken.size());
    return taken;
  }
  bool takeSpaces() { return !takeWhile(is_space).empty(); }
  /// What stands before `end`, which is consumed too.
  std::string_view takeUntil(std::string_view end, const char* cause) {
    const size_t length = rest_.find(end);
    if (length == std::string_view::npos) {
      fail(cause);
      return {};
    }
    const auto taken = rest_.substr(0, length);
    rest_.remove_prefix(length + end.size());
    return taken;
  }
  std::string_view name() {
    if (rest_.empty() || !is_name_start(rest_.front()))
      fail("a name that is none");
    return takeWhile(is_name_part);
  }
  std::string_view quoted() {
    const bool is_double = rest_.starts_with('"');
    if (!is_double && !rest_.starts_with('\'')) {
      fail("a value without quotation marks");
      return {};
    }
    rest_.remove_prefix(1);
    return takeUntil(is_double ? "\"" : "'", "a quotation without an end");
  }

  void declaration();
  void documentType();
  void miscellaneous();
  bool comment();
  bool instruction();
  void elements();
  void attributes();
  void content();
  void references(std::string_view text);

  const std::string_view text_;
  std::string_view rest_;
  std::vector<std::string_view> open_;
  const char* failure_ = nullptr;
  size_t failed_at_ = 0;
};

/// Version, encoding and standalone, in this order; the latter two may be missing.
void Scanner::declaration() {
  constexpr const char* kCause = "a declaration that is none of XML's";
  take("<?xml");
  constexpr std::array<std::string_view, 3> kNames = {"version", "encoding", "standalone"};
  size_t next = 0;
  while (takeSpaces() && !rest_.starts_with("?>")) {
    const auto* const found = std::find(kNames.begin() + next, kNames.end(), name());
    const auto place = static_cast<size_t>(found - kNames.begin());
    takeSpaces();
    need("=", kCause);
    takeSpaces();
    const std::string_view value = quoted();
    if (place == kNames.size() || (next == 0 && place != 0))
      return fail(kCause);
    if (place == 0 && (!value.starts_with("1.") || value.size() != 3 || value[2] < '0' || value[2] > '9'))
      return fail("a version of XML that is not known");
    constexpr std::array<std::string_view, 4> kEncodings = {"UTF-8", "utf-8", "US-ASCII", "us-ascii"};
    if (place == 1 && std::ranges::find(kEncodings, value) == kEncodings.end())
      return fail("an encoding other than UTF-8");
    if (place == 2 && value != "yes" && value != "no")
      return fail(kCause);
    next = place + 1;
  }
  if (next == 0)
    fail(kCause);
  need("?>", kCause);
}

void Scanner::documentType() {
  constexpr const char* kCause = "a document type that is none, or has declarations of its own";
  if (!takeSpaces())
    fail(kCause);
  name();
  if (takeSpaces()) {
    const bool is_public = take("PUBLIC");
    if (is_public || take("SYSTEM")) {
      for (int literals = is_public ? 2 : 1; literals > 0; --literals) {
        if (!takeSpaces())
          fail(kCause);
        const bool is_public_name = literals == 2;
        if (!std::ranges::all_of(quoted(), [=](char c) { return !is_public_name || is_public_name_part(c); }))
          fail(kCause);
      }
      takeSpaces();
    }
  }
  need(">", kCause);
}

void Scanner::miscellaneous() {
  while (takeSpaces() || comment() || instruction()) {
  }
}

bool Scanner::comment() {
  if (!take("<!--"))
    return false;
  takeUntil("--", "a comment without an end");
  need(">", "a comment with two hyphens in it");
  return true;
}

bool Scanner::instruction() {
  if (!take("<?"))
    return false;
  const std::string_view target = name();
  const bool is_reserved = target.size() == 3 && (target[0] == 'x' || target[0] == 'X') &&
                           (target[1] == 'm' || target[1] == 'M') && (target[2] == 'l' || target[2] == 'L');
  if (is_reserved)
    fail("a declaration where none belongs");
  if (!rest_.starts_with("?>") && !takeSpaces())
    fail("a processing instruction that is none");
  takeUntil("?>", "a processing instruction without an end");
  return true;
}

/// The document's element with all that is in it.
void Scanner::elements() {
  do {
    if (take("</")) {
      if (open_.empty() || name() != open_.back())
        return fail("an end of an element that is not open");
      open_.pop_back();
      takeSpaces();
      need(">", "an end of an element without an end");
    } else {
      need("<", "no element");
      open_.push_back(name());
      attributes();
      if (take("/>")) {
        open_.pop_back();
      } else {
        need(">", "the beginning of an element without an end");
      }
    }
    if (!open_.empty())
      content();
  } while (!open_.empty() && !failure_);
}

void Scanner::attributes() {
  std::vector<std::string_view> names;
  while (takeSpaces() && !rest_.starts_with('>') && !rest_.starts_with("/>") && !failure_) {
    names.push_back(name());
    takeSpaces();
    need("=", "an attribute without a value");
    takeSpaces();
    const std::string_view value = quoted();
    if (value.find('<') != std::string_view::npos)
      return fail("an attribute with an element in it");
    references(value);
  }
  std::ranges::sort(names);
  if (std::ranges::adjacent_find(names) != names.end())
    fail("an attribute that stands twice");
}

/// Up to where the next element begins or the open one ends.
void Scanner::content() {
  while (!failure_) {
    const std::string_view text = takeWhile([](char c) { return c != '<'; });
    references(text);
    if (text.find("]]>") != std::string_view::npos)
      fail("an end of a section that is not open");
    if (take("<![CDATA[")) {
      takeUntil("]]>", "a section without an end");
    } else if (!comment() && !instruction()) {
      return rest_.empty() ? fail("an element without an end") : void();
    }
  }
}

/// Of a character, by its number.
bool is_character_reference(std::string_view reference) {
  reference.remove_prefix(1);
  const bool is_hexadecimal = reference.starts_with('x');
  if (is_hexadecimal)
    reference.remove_prefix(1);
  uint32_t code = 0;
  for (const char c : reference) {
    const bool is_decimal_digit = c >= '0' && c <= '9';
    const bool is_letter = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    if (!is_decimal_digit && !(is_hexadecimal && is_letter))
      return false;
    const auto digit = static_cast<uint32_t>(is_decimal_digit ? c - '0' : (c | 0x20) - 'a' + 10);
    code = std::min(0x110000U, code * (is_hexadecimal ? 16 : 10) + digit);
  }
  return !reference.empty() && is_xml_character(code);
}

void Scanner::references(std::string_view text) {
  constexpr std::array<std::string_view, 5> kNames = {"amp", "lt", "gt", "quot", "apos"};
  for (size_t place = text.find('&'); place != std::string_view::npos; place = text.find('&', place + 1)) {
    const size_t end = text.find(';', place);
    const auto reference = text.substr(place + 1, end == std::string_view::npos ? 0 : end - place - 1);
    const bool is_known = reference.starts_with('#') ? is_character_reference(reference)
                                                     : std::ranges::find(kNames, reference) != kNames.end();
    if (!is_known)
      return fail("a reference to an entity that is not known");
  }
}

}  // namespace

Result<void> check_xml(std::string_view text) {
  if (!is_xml_text(text))
    return Failure{"not text in UTF-8"};
  return Scanner(text).scan();
}

}  // namespace cocoa
