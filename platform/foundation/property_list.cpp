// SPDX-License-Identifier: MIT
#include "foundation/private/property_list.h"

#include <algorithm>
#include <pugixml.hpp>
#include <utility>

#include "foundation/private/xml_file.h"
#include "foundation/private/xml_well_formed.h"

namespace cocoa {

namespace {

/// All the text in a node, which comments or CDATA sections may have split.
std::string text_of(pugi::xml_node node) {
  std::string text;
  for (const pugi::xml_node part : node.children()) {
    if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata)
      text += part.value();
  }
  return text;
}

/// An empty text is no node at all, as when it is read.
void set_text(pugi::xml_node element, const std::string& text) {
  if (!text.empty())
    element.append_child(pugi::node_pcdata).set_value(text.c_str());
}

pugi::xml_node next_element(pugi::xml_node node) {
  while (node && node.type() != pugi::node_element)
    node = node.next_sibling();
  return node;
}

/// The one element in a node, or none when there are several.
pugi::xml_node only_element(pugi::xml_node node) {
  const pugi::xml_node element = next_element(node.first_child());
  return next_element(element.next_sibling()) ? pugi::xml_node() : element;
}

pugi::xml_node value_of(pugi::xml_node key) {
  return next_element(key.next_sibling());
}

bool is_key(pugi::xml_node node) {
  return std::string_view(node.name()) == "key";
}

bool has_text(pugi::xml_node node) {
  return text_of(node).find_first_not_of(" \t\r\n") != std::string::npos;
}

const char* fault_of_value(pugi::xml_node value);

const char* fault_of_dictionary(pugi::xml_node dictionary) {
  if (has_text(dictionary))
    return "text between keys and values";
  for (pugi::xml_node key = next_element(dictionary.first_child()); key; key = value_of(value_of(key))) {
    if (!is_key(key) || !value_of(key) || is_key(value_of(key)))
      return "keys and values do not pair";
    if (next_element(key.first_child()))
      return "a key that is no text";
    if (const char* fault = fault_of_value(value_of(key)))
      return fault;
  }
  return nullptr;
}

const char* fault_of_array(pugi::xml_node array) {
  if (has_text(array))
    return "text between values";
  for (pugi::xml_node value = next_element(array.first_child()); value; value = value_of(value)) {
    if (const char* fault = fault_of_value(value))
      return fault;
  }
  return nullptr;
}

/// What a number or a date says is for those who know it. Recursive: the depth has been looked at.
const char* fault_of_value(pugi::xml_node value) {
  constexpr std::string_view kTexts[] = {"string", "data", "integer", "real", "date"};
  const std::string_view kind = value.name();
  if (kind == "dict")
    return fault_of_dictionary(value);
  if (kind == "array")
    return fault_of_array(value);
  const bool is_constant = kind == "true" || kind == "false";
  if (!is_constant && std::ranges::find(kTexts, kind) == std::ranges::end(kTexts))
    return "a value of an unknown kind";
  return next_element(value.first_child()) || (is_constant && has_text(value))
             ? "a value that is not of its kind"
             : nullptr;
}

/// Why the document is no property list of keys and values; null when it is one.
const char* fault_of(const pugi::xml_document& document) {
  const pugi::xml_node root = only_element(document);
  const pugi::xml_node dictionary = only_element(root);
  if (std::string_view(root.name()) != "plist" || std::string_view(dictionary.name()) != "dict" ||
      has_text(root))
    return "not a property list with a dictionary";
  return fault_of_dictionary(dictionary);
}

/// Spaces between elements, which are written anew.
void remove_layout(pugi::xml_node container) {
  for (pugi::xml_node node = container.first_child(); node;) {
    const pugi::xml_node next = node.next_sibling();
    const std::string_view name = node.name();
    if (node.type() != pugi::node_element) {
      container.remove_child(node);
    } else if (name == "plist" || name == "dict" || name == "array") {
      remove_layout(node);
    }
    node = next;
  }
}

void prepend_prolog(pugi::xml_document& document) {
  document.prepend_child(pugi::node_doctype)
      .set_value(
          "plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
          "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\"");
  pugi::xml_node declaration = document.prepend_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
}

void fill(pugi::xml_node element, const PropertyListValue& value) {
  if (const auto* data = std::get_if<std::vector<uint8_t>>(&value)) {
    element.set_name("data");
    set_text(element, base64_from_bytes(*data));
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    element.set_name("string");
    set_text(element, *text);
  }
}

}  // namespace

PropertyList::PropertyList() : document_(std::make_unique<pugi::xml_document>()) {
  pugi::xml_node root = document_->append_child("plist");
  root.append_attribute("version") = "1.0";
  root.append_child("dict");
  prepend_prolog(*document_);
}

PropertyList::PropertyList(std::unique_ptr<pugi::xml_document> document) : document_(std::move(document)) {}
PropertyList::PropertyList(PropertyList&&) noexcept = default;
PropertyList& PropertyList::operator=(PropertyList&&) noexcept = default;
PropertyList::~PropertyList() = default;

Result<PropertyList> PropertyList::fromXML(std::string_view xml) {
  if (const Result<void> checked = check_xml(xml); !checked)
    return checked.failure();
  auto document = std::make_unique<pugi::xml_document>();
  // All spaces are read, as a text may be of nothing else or be cut by a comment.
  if (const Result<void> parsed = parse_xml(xml, *document, pugi::parse_ws_pcdata); !parsed)
    return parsed.failure();
  if (const char* fault = fault_of(*document))
    return Failure{fault};
  remove_layout(*document);
  prepend_prolog(*document);
  return PropertyList(std::move(document));
}

std::string PropertyList::xml() const {
  struct Writer : pugi::xml_writer {
    std::string text;
    void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
  } writer;
  document_->save(writer, "\t", pugi::format_default, pugi::encoding_utf8);

  // A carriage return left bare would be read back as a line feed.
  std::string text;
  text.reserve(writer.text.size());
  for (const char c : writer.text) {
    if (c == '\r') {
      text += "&#13;";
    } else {
      text += c;
    }
  }
  return text;
}

pugi::xml_node PropertyList::dictionary() const {
  return document_->child("plist").child("dict");
}

pugi::xml_node PropertyList::keyNode(std::string_view key) const {
  pugi::xml_node node = next_element(dictionary().first_child());
  while (node && text_of(node) != key)
    node = next_element(value_of(node).next_sibling());
  return node;
}

bool PropertyList::contains(std::string_view key) const {
  return static_cast<bool>(keyNode(key));
}

std::optional<PropertyListValue> PropertyList::value(std::string_view key) const {
  const pugi::xml_node element = value_of(keyNode(key));
  if (!element)
    return std::nullopt;
  const std::string_view kind = element.name();
  if (kind == "string")
    return text_of(element);
  if (kind == "data") {
    if (auto bytes = bytes_from_base64(text_of(element)))
      return std::move(*bytes);
  }
  return OpaqueValue{std::string(kind)};
}

void PropertyList::setValue(std::string_view key, const PropertyListValue& value) {
  pugi::xml_node node = keyNode(key);
  if (!node) {
    node = dictionary().append_child("key");
    set_text(node, std::string(key));
  } else {
    dictionary().remove_child(value_of(node));
  }
  fill(dictionary().insert_child_after(pugi::node_element, node), value);
}

void PropertyList::removeValue(std::string_view key) {
  // A file from elsewhere may name a key twice: what is removed must not come back.
  while (const pugi::xml_node node = keyNode(key)) {
    dictionary().remove_child(value_of(node));
    dictionary().remove_child(node);
  }
}

}  // namespace cocoa
