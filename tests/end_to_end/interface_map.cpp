// SPDX-License-Identifier: MIT
#include "interface_map.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>

namespace ondex::test {

namespace {

/// Frames are told within the view above: the content view of a box stands in between like any other.
void collect(const pugi::xml_node& view, Position origin, std::map<std::string, Area>& areas) {
  const pugi::xml_node rect = view.find_child_by_attribute("rect", "key", "frame");
  const Area area = {origin.x + rect.attribute("x").as_double(), origin.y + rect.attribute("y").as_double(),
                     rect.attribute("width").as_double(), rect.attribute("height").as_double()};
  areas[view.attribute("id").as_string()] = area;
  if (const pugi::xml_node content = view.find_child_by_attribute("key", "contentView"))
    collect(content, {area.x, area.y}, areas);
  for (const pugi::xml_node& subview : view.child("subviews").children())
    collect(subview, {area.x, area.y}, areas);
}

template <typename Map>
typename Map::mapped_type found(const Map& map, const std::string& key) {
  const auto entry = map.find(key);
  if (entry != map.end())
    return entry->second;
  ADD_FAILURE() << "the interface file has no " << key;
  return {};
}

}  // namespace

InterfaceMap::InterfaceMap(const std::string& file) {
  pugi::xml_document document;
  EXPECT_TRUE(document.load_file(file.c_str())) << file;
  const pugi::xml_node editor = document.select_node("//customView[@customClass='KVOndexView']").node();
  collect(editor, {}, areas_);
  editor_ = found(areas_, editor.attribute("id").as_string());
  for (const pugi::xml_node& outlet : editor.child("connections").children("outlet"))
    outlets_[outlet.attribute("property").as_string()] = outlet.attribute("destination").as_string();
}

Area InterfaceMap::control(const std::string& outlet) const {
  return element(found(outlets_, outlet));
}

Area InterfaceMap::element(const std::string& id) const {
  return found(areas_, id);
}

}  // namespace ondex::test
