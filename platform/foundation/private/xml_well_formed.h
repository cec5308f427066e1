// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "foundation/Result.h"

namespace cocoa {

/// Fails, with the line, unless the text is one whole XML document. For files that are changed and written
/// back: the XML library reads on where a document is broken, and what it has skipped would be lost.
///
/// Stricter than XML 1.0 where nothing that we read needs more: UTF-8, names of ASCII characters, a document
/// type without declarations of its own, and so no entities but the five that every document has.
Result<void> check_xml(std::string_view text);

}  // namespace cocoa
