// SPDX-License-Identifier: MIT
#include <cstring>

#include "foundation/private/InterfaceLoad.h"

namespace cocoa {

namespace {

std::string quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

}  // namespace

void InterfaceLoad::resolve_connections() {
  for (const pugi::xml_node element : elements_) {
    if (std::strcmp(element.parent().name(), "connections") != 0)
      continue;
    NSObject* source = connection_end(element, element.parent().parent());
    if (!source)
      return;
    if (std::strcmp(element.name(), "outlet") == 0) {
      resolve_outlet(element, *source);
    } else if (std::strcmp(element.name(), "action") == 0) {
      resolve_action(element, *source);
    } else {
      fail(element, "is not a kind of connection that can be made");
    }
  }
}

void InterfaceLoad::resolve_outlet(pugi::xml_node element, NSObject& source) {
  const std::string_view property = element.attribute("property").value();
  const Outlet* outlet = source.isa().outlet(property);
  if (!outlet)
    return fail(element, std::string(source.isa().name) + " has no outlet " + quoted(property));
  NSObject* value = connection_end(element, "destination");
  if (value)
    outlets_.push_back({element, &source, outlet, value});
}

void InterfaceLoad::resolve_action(pugi::xml_node element, NSObject& source) {
  const std::string_view selector = element.attribute("selector").value();
  NSObject* target = connection_end(element, "target");
  if (!target)
    return;
  const Action* action = target->isa().action(selector);
  if (!action)
    return fail(element, std::string(target->isa().name) + " does not respond to " + quoted(selector));
  auto* sender = dynamic_cast<ActionSource*>(&source);
  if (!sender)
    return fail(element, std::string(source.isa().name) + " sends no actions");
  actions_.push_back({sender, target, action->selector});
}

NSObject* InterfaceLoad::connection_end(pugi::xml_node connection, const char* id_attribute) {
  const std::string_view id = connection.attribute(id_attribute).value();
  const auto found = by_id_.find(id);
  if (found == by_id_.end()) {
    fail(connection, std::string(id_attribute) + ' ' + quoted(id) + " is not in the file");
    return nullptr;
  }
  return connection_end(connection, found->second);
}

NSObject* InterfaceLoad::connection_end(pugi::xml_node connection, pugi::xml_node end) {
  const std::string_view id = end.attribute("id").value();
  const bool top_level = end.parent() == objects_;
  if (top_level && id == "-2" && owner_)
    return owner_;
  const auto found = made_.find(end);
  if (found == made_.end()) {
    fail(connection, "connects element " + quoted(id) + ", of which no object was made");
    return nullptr;
  }
  // The load itself holds one reference; an object without another one goes when the load is over.
  if (!top_level && found->second->retainCount() == 1) {
    fail(connection, "connects element " + quoted(id) + ", which no object keeps");
    return nullptr;
  }
  return found->second.get();
}

NSObject* InterfaceLoad::made_object(std::string_view id) const {
  const auto element = by_id_.find(id);
  const auto found = element == by_id_.end() ? made_.end() : made_.find(element->second);
  return found == made_.end() ? nullptr : found->second.get();
}

void InterfaceLoad::connect() {
  for (const OutletConnection& connection : outlets_) {
    if (!connection.outlet->set(*connection.source, connection.value)) {
      fail(connection.element, "a " + std::string(connection.value->isa().name) + " does not fit outlet " +
                                   quoted(connection.outlet->name));
      return disconnect_owner();
    }
    ++outlets_set_;
  }
  for (const ActionConnection& connection : actions_)
    connection.source->setTarget_action(connection.target, connection.action);
}

void InterfaceLoad::disconnect_owner() {
  for (size_t i = 0; i < outlets_set_; ++i) {
    if (outlets_[i].source == owner_)
      outlets_[i].outlet->set(*owner_, nullptr);
  }
}

}  // namespace cocoa
