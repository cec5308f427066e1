// SPDX-License-Identifier: MIT
#include "appkit/NSMenu.h"

#include <algorithm>

#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSMenuItem::class_ = {
    .name = "NSMenuItem",
    .superclass = &NSObject::class_,
    .initWithInterface = [](InterfaceDecoder& decoder) { return Ref<NSObject>(make<NSMenuItem>(decoder)); }};

const Class NSMenu::class_ = {
    .name = "NSMenu",
    .superclass = &NSObject::class_,
    .init = [] { return Ref<NSObject>(make<NSMenu>()); },
    .initWithInterface = [](InterfaceDecoder&) { return Ref<NSObject>(make<NSMenu>()); }};

namespace {
constexpr std::string_view state_names[] = {"mixed", "off", "on"};
}

NSMenuItem::NSMenuItem(InterfaceDecoder& decoder)
    : title_(decoder.attribute("title").value_or("")),
      separator_(decoder.boolean("isSeparatorItem", false)),
      enabled_(decoder.boolean("enabled", true)),
      state_(static_cast<NSCellStateValue>(static_cast<int>(decoder.choice("state", state_names, 1)) - 1)) {
  if (decoder.child("submenu").exists())
    decoder.fail("has a submenu, which no menu here shows");
}

Ref<NSMenuItem> NSMenuItem::separatorItem() {
  auto item = make<NSMenuItem>("");
  item->separator_ = true;
  return item;
}

void NSMenuItem::setTarget_action(NSObject* target, SEL action) {
  target_ = WeakRef<NSObject>(target);
  action_ = action;
}

void NSMenu::applyInterface(InterfaceDecoder& decoder) {
  for (const Ref<NSMenuItem>& item : decoder.objects_as<NSMenuItem>("items"))
    addItem(item.get());
}

NSMenuItem* NSMenu::itemAtIndex(int index) const {
  return index >= 0 && index < numberOfItems() ? items_[static_cast<size_t>(index)].get() : nullptr;
}

int NSMenu::indexOfItem(const NSMenuItem* item) const {
  const auto found =
      std::find_if(items_.begin(), items_.end(), [item](const auto& each) { return each.get() == item; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

int NSMenu::indexOfItemWithTitle(std::string_view title) const {
  const auto found = std::find_if(items_.begin(), items_.end(),
                                  [title](const auto& each) { return each->title() == title; });
  return found == items_.end() ? -1 : static_cast<int>(found - items_.begin());
}

void NSMenu::insertItem_atIndex(NSMenuItem* item, int index) {
  if (item && indexOfItem(item) < 0)
    items_.insert(items_.begin() + std::clamp(index, 0, numberOfItems()), Ref<NSMenuItem>(item));
}

void NSMenu::removeItemAtIndex(int index) {
  if (itemAtIndex(index))
    items_.erase(items_.begin() + index);
}

}  // namespace cocoa
