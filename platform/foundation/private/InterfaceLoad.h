// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/ActionSource.h"
#include "foundation/NSObject.h"
#include "foundation/private/InterfaceLoader.h"

namespace cocoa {

/// One load of one interface file, from its text to awake objects or to a log line. Used once.
///
/// Nothing of the owner is touched before every object is made and every connection is resolved, so a broken
/// file is noticed while all there is to undo is to release what was made.
class InterfaceLoad {
 public:
  InterfaceLoad(std::string file, const ClassLookup& classes, NSObject* owner)
      : file_(std::move(file)), classes_(classes), owner_(owner) {}
  bool run(std::string_view text);

  /// The object of an element, made when it is first asked for; null when it cannot be made.
  Ref<NSObject> object_of(pugi::xml_node element);
  /// The object already made of the element with that id; null when there is none.
  NSObject* made_object(std::string_view id) const;
  /// Keeps the first cause; without an element, of the whole file.
  void fail(pugi::xml_node element, std::string_view cause);

 private:
  struct OutletConnection {
    pugi::xml_node element;
    NSObject* source;
    const Outlet* outlet;
    NSObject* value;
  };
  struct ActionConnection {
    ActionSource* source;
    NSObject* target;
    SEL action;
  };

  bool failed() const { return !failure_.empty(); }
  void build();
  void check_document();
  void index_elements();
  void make_top_level_objects();
  Ref<NSObject> make_object(pugi::xml_node element);
  const Class* class_of(pugi::xml_node element, std::string_view platform_class);
  void check_that_all_were_taken(pugi::xml_node element);

  void resolve_connections();
  void resolve_outlet(pugi::xml_node element, NSObject& source);
  void resolve_action(pugi::xml_node element, NSObject& source);
  NSObject* connection_end(pugi::xml_node connection, pugi::xml_node end);
  NSObject* connection_end(pugi::xml_node connection, const char* id_attribute);
  void connect();
  void disconnect_owner();
  void wake();

  std::string file_;
  const ClassLookup& classes_;
  NSObject* owner_;
  std::string failure_;
  pugi::xml_document document_;
  pugi::xml_node objects_;
  /// All that lies in `objects_`, in document order.
  std::vector<pugi::xml_node> elements_;
  std::map<std::string_view, pugi::xml_node> by_id_;
  std::map<pugi::xml_node, Ref<NSObject>> made_;
  std::vector<Ref<NSObject>> top_level_;
  std::vector<OutletConnection> outlets_;
  std::vector<ActionConnection> actions_;
  size_t outlets_set_ = 0;
};

}  // namespace cocoa
