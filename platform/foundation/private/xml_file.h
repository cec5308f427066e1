// SPDX-License-Identifier: MIT
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "foundation/Result.h"

/// XML that comes with a bundle, read with bounds: such a file is trusted no more than any other input.

namespace cocoa {

/// The contents of a regular file of at most 4 MiB; never waits for a pipe or device. A failure is worded
/// to follow the file's name.
Result<std::string> read_text_file(const std::string& path);

/// "line 3: cause", of what begins at an offset of the text.
Failure at_line(std::string_view text, size_t offset, std::string_view cause);

/// Parses UTF-8 text of at most 4 MiB with elements at most kMaximumDepth deep into `document`. `spaces` is
/// pugi's option for texts of nothing but spaces: all are kept, or those alone in their element. A failure,
/// with its line where it has one, is worded to follow the file's name.
Result<void> parse_xml(std::string_view text, pugi::xml_document& document,
                       unsigned spaces = pugi::parse_ws_pcdata_single);

/// `text` without its end where it is overlong, fit for one line of a log as visible_text() makes it.
std::string one_line(std::string_view text);

}  // namespace cocoa
