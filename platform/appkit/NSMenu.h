// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/ActionSource.h"
#include "foundation/NSObject.h"

namespace cocoa {

enum NSCellStateValue : int { NSMixedState = -1, NSOffState = 0, NSOnState = 1 };

/// One line of a menu: a title that can be chosen, or a line that separates others.
class NSMenuItem : public NSObject, public ActionSource {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit NSMenuItem(std::string_view title) : title_(title) {}
  /// Reads title, state, enabled and isSeparatorItem; a submenu fails the load.
  explicit NSMenuItem(InterfaceDecoder& decoder);
  static Ref<NSMenuItem> separatorItem();

  const std::string& title() const { return title_; }
  void setTitle(std::string_view title) { title_ = title; }
  bool isSeparatorItem() const { return separator_; }
  /// A separator never is.
  bool isEnabled() const { return enabled_ && !separator_; }
  void setEnabled(bool enabled) { enabled_ = enabled; }
  /// Whether the item is marked.
  NSCellStateValue state() const { return state_; }
  void setState(NSCellStateValue state) { state_ = state; }

  /// What is sent, with the item, when it is chosen; an item without one leaves that to the control that
  /// shows the menu. The target is not retained.
  void setTarget_action(NSObject* target, SEL action) override;
  NSObject* target() const { return target_.get(); }
  SEL action() const { return action_; }

 private:
  std::string title_;
  bool separator_ = false;
  bool enabled_ = true;
  NSCellStateValue state_ = NSOffState;
  WeakRef<NSObject> target_;
  SEL action_;
};

/// A list of items, which it retains. Titles may stand in it more than once.
class NSMenu : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  NSMenu() = default;
  /// Reads the items.
  void applyInterface(InterfaceDecoder& decoder) override;

  int numberOfItems() const { return static_cast<int>(items_.size()); }
  const std::vector<Ref<NSMenuItem>>& itemArray() const { return items_; }
  /// Null, which is no item, outside the list.
  NSMenuItem* itemAtIndex(int index) const;
  /// -1 for an item that is not in the list.
  int indexOfItem(const NSMenuItem* item) const;
  /// Of the first item with that title; -1 without one.
  int indexOfItemWithTitle(std::string_view title) const;

  void addItem(NSMenuItem* item) { insertItem_atIndex(item, numberOfItems()); }
  /// An index outside the list is taken as its nearer end. Null and an item that the list has are ignored.
  void insertItem_atIndex(NSMenuItem* item, int index);
  /// Ignored outside the list.
  void removeItemAtIndex(int index);
  void removeAllItems() { items_.clear(); }

 private:
  std::vector<Ref<NSMenuItem>> items_;
};

}  // namespace cocoa
