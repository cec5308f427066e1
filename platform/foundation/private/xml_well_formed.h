#pragma once

#include <string_view>

namespace cocoa {

/// Why the text is not one whole XML document; null when it is one. For files that are changed and written
/// back: the XML library reads on where a document is broken, and what it has skipped would be lost.
///
/// Stricter than XML 1.0 where nothing that we read needs more: UTF-8, names of ASCII characters, a document
/// type without declarations of its own, and so no entities but the five that every document has.
const char* xml_fault(std::string_view text);

}  // namespace cocoa
