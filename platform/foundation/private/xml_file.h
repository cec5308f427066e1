#pragma once

#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>

/// XML that comes with a bundle, read with bounds: such a file is trusted no more than any other input.

namespace cocoa {

/// A text or the cause why there is none.
struct FileText {
  std::string text;
  std::string failure;
};

/// The contents of a regular file of at most 4 MiB; never waits for a pipe or device. The failure is worded
/// to follow the file's name.
FileText read_text_file(const std::string& path);

/// Parses UTF-8 text of at most 4 MiB with elements at most 64 deep into `document`. The failure, with its
/// line, is worded to follow the file's name; empty on success.
std::string parse_xml(std::string_view text, pugi::xml_document& document);

/// `text` without its end where it is overlong, fit for one line of a log as visible_text() makes it.
std::string one_line(std::string_view text);

}  // namespace cocoa
