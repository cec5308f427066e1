// SPDX-License-Identifier: MIT
#include "foundation/private/InterfaceLoad.h"

#include <cstring>

#include "foundation/InterfaceDecoder.h"
#include "foundation/NSLog.h"
#include "foundation/private/xml_file.h"

namespace cocoa {

namespace {

enum class Initialiser { Plain, Frame, Interface };

struct ElementKind {
  std::string_view element;
  std::string_view class_name;
  Initialiser initialiser = Initialiser::Interface;
};

constexpr ElementKind element_kinds[] = {
    {"customObject", "NSObject", Initialiser::Plain},
    {"customView", "NSView", Initialiser::Frame},
    {"view", "NSView"},
    {"box", "NSBox"},
    {"window", "NSWindow"},
    {"textField", "NSTextField"},
    {"textFieldCell", "NSTextFieldCell"},
    {"numberFormatter", "NSNumberFormatter"},
    {"colorWell", "NSColorWell"},
    {"button", "NSButton"},
    {"buttonCell", "NSButtonCell"},
    {"popUpButton", "NSPopUpButton"},
    {"popUpButtonCell", "NSPopUpButtonCell"},
    {"menu", "NSMenu"},
    {"menuItem", "NSMenuItem"},
    {"color", "NSColor"},
    {"font", "NSFont"},
};

const ElementKind* kind_of(std::string_view element) {
  for (const ElementKind& kind : element_kinds) {
    if (kind.element == element)
      return &kind;
  }
  return nullptr;
}

bool is_placeholder(std::string_view id) {
  return id == "-1" || id == "-2" || id == "-3";
}

bool is_connection(pugi::xml_node element) {
  return std::strcmp(element.parent().name(), "connections") == 0;
}

/// `<rect key="frame"> in <textField id="13">`
std::string describe(pugi::xml_node element) {
  const pugi::xml_attribute id = element.attribute("id");
  const pugi::xml_attribute key = element.attribute("key");
  std::string text = std::string("<") + element.name();
  if (id || key)
    text += std::string(id ? " id=\"" : " key=\"") + (id ? id : key).value() + '"';
  text += '>';
  const pugi::xml_node parent = element.parent();
  if ((!id || is_connection(element)) && parent.parent())
    text += " in " + describe(is_connection(element) ? parent.parent() : parent);
  return text;
}

bool has_frame(pugi::xml_node element) {
  return std::strcmp(element.find_child_by_attribute("key", "frame").name(), "rect") == 0;
}

}  // namespace

bool load_interface(const std::string& file, std::string_view text, const ClassLookup& classes,
                    NSObject* owner) {
  return InterfaceLoad(file, classes, owner).run(text);
}

bool InterfaceLoad::run(std::string_view text) {
  if (const Result<void> parsed = parse_xml(text, document_); !parsed) {
    fail({}, parsed.cause());
  } else {
    build();
  }
  if (failed()) {
    NSLog("%s", one_line(file_ + ": " + failure_).c_str());
    return false;
  }
  wake();
  return true;
}

void InterfaceLoad::fail(pugi::xml_node element, std::string_view cause) {
  if (failed())
    return;
  if (element)
    failure_ = describe(element) + ": ";
  failure_ += cause;
}

void InterfaceLoad::build() {
  check_document();
  if (!failed())
    index_elements();
  if (!failed())
    make_top_level_objects();
  if (!failed())
    resolve_connections();
  if (!failed())
    connect();
}

void InterfaceLoad::check_document() {
  const pugi::xml_node root = document_.document_element();
  if (std::strcmp(root.name(), "document") != 0 ||
      std::strcmp(root.attribute("type").value(), "com.apple.InterfaceBuilder3.Cocoa.XIB") != 0) {
    return fail(root, "is not an Interface Builder document");
  }
  if (std::strcmp(root.attribute("version").value(), "3.0") != 0)
    return fail(root, "is not of version 3.0");
  objects_ = root.child("objects");
  if (!objects_)
    fail(root, "has no objects");
}

void InterfaceLoad::index_elements() {
  struct Index : pugi::xml_tree_walker {
    explicit Index(InterfaceLoad& owner) : load(owner) {}
    bool for_each(pugi::xml_node& node) override {
      if (node.type() != pugi::node_element)
        return true;
      load.elements_.push_back(node);
      const pugi::xml_attribute id = node.attribute("id");
      if (id && !load.by_id_.emplace(id.value(), node).second)
        load.fail(node, "has the id of another element");
      return !load.failed();
    }
    InterfaceLoad& load;
  };
  Index index(*this);
  objects_.traverse(index);
}

void InterfaceLoad::make_top_level_objects() {
  for (const pugi::xml_node element : objects_.children()) {
    if (element.type() != pugi::node_element || is_placeholder(element.attribute("id").value()))
      continue;
    Ref<NSObject> object = object_of(element);
    if (failed())
      return;
    top_level_.push_back(std::move(object));
  }
  for (const auto& [element, object] : made_)
    check_that_all_were_taken(element);
}

Ref<NSObject> InterfaceLoad::object_of(pugi::xml_node element) {
  if (failed())
    return nullptr;
  if (const auto found = made_.find(element); found != made_.end())
    return found->second;
  Ref<NSObject> object = make_object(element);
  if (!object) {
    fail(element, "could not be made");
    return nullptr;
  }
  made_.emplace(element, object);
  InterfaceDecoder decoder(*this, element.internal_object());
  object->applyInterface(decoder);
  return object;
}

Ref<NSObject> InterfaceLoad::make_object(pugi::xml_node element) {
  const ElementKind* kind = kind_of(element.name());
  if (!kind) {
    fail(element, "is of no kind that can be made into an object");
    return nullptr;
  }
  const Class* made_class = class_of(element, kind->class_name);
  if (!made_class)
    return nullptr;
  InterfaceDecoder decoder(*this, element.internal_object());
  if (kind->initialiser == Initialiser::Plain && made_class->init)
    return made_class->init();
  if (kind->initialiser == Initialiser::Interface && made_class->initWithInterface)
    return made_class->initWithInterface(decoder);
  if (kind->initialiser == Initialiser::Frame && made_class->initWithFrame) {
    const NSRect frame = decoder.frame();
    return failed() ? nullptr : made_class->initWithFrame(frame);
  }
  fail(element, std::string(made_class->name) + " cannot be made from an element of this kind");
  return nullptr;
}

const Class* InterfaceLoad::class_of(pugi::xml_node element, std::string_view platform_class) {
  const std::string_view custom = element.attribute("customClass").value();
  const std::string_view name = custom.empty() ? platform_class : custom;
  const Class* base = classes_(platform_class);
  const Class* found = custom.empty() ? base : classes_(custom);
  if (!found) {
    fail(element, "no class is named \"" + std::string(name) + '"');
    return nullptr;
  }
  if (base && !found->isSubclassOf(*base)) {
    fail(element, std::string(name) + " is not a kind of " + std::string(platform_class));
    return nullptr;
  }
  return found;
}

/// A class that does not read the subviews or the content view of its element would leave a hole in the
/// interface that no connection need reveal.
void InterfaceLoad::check_that_all_were_taken(pugi::xml_node element) {
  for (const pugi::xml_node child : element.children()) {
    if (has_frame(child) && !made_.contains(child))
      fail(child, "is not taken by the object around it");
    if (std::strcmp(child.name(), "subviews") != 0 && std::strcmp(child.name(), "items") != 0)
      continue;
    for (const pugi::xml_node item : child.children()) {
      if (item.type() == pugi::node_element && !made_.contains(item))
        fail(item, "is not taken by the object around it");
    }
  }
}

void InterfaceLoad::wake() {
  const Ref<NSObject> owner(owner_);
  for (const pugi::xml_node element : elements_) {
    if (const auto found = made_.find(element); found != made_.end())
      found->second->awakeFromNib();
  }
  if (owner)
    owner->awakeFromNib();
  for (Ref<NSObject>& object : top_level_)
    object.autorelease();
}

}  // namespace cocoa
