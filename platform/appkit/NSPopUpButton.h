// SPDX-License-Identifier: MIT
#pragma once

#include "appkit/NSPopUpButtonCell.h"

namespace cocoa {

/// A button that shows which item of a list is selected and opens the list when it is pressed. All but
/// drawing is its cell's.
class NSPopUpButton : public NSView, public ActionSource {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit NSPopUpButton(NSRect frame);
  explicit NSPopUpButton(InterfaceDecoder& decoder);
  ~NSPopUpButton() override;
  /// Reads the cell.
  void applyInterface(InterfaceDecoder& decoder) override;

  NSPopUpButtonCell* cell() const { return cell_.get(); }
  NSMenu* menu() const { return cell_->menu(); }

  void addItemWithTitle(std::string_view title);
  void insertItemWithTitle_atIndex(std::string_view title, int index);
  void removeAllItems();
  int numberOfItems() const { return cell_->numberOfItems(); }
  NSMenuItem* itemAtIndex(int index) const { return cell_->itemAtIndex(index); }

  void selectItemAtIndex(int index);
  NSMenuItem* selectedItem() const { return cell_->selectedItem(); }
  int indexOfSelectedItem() const { return cell_->indexOfSelectedItem(); }
  /// Null when nothing is selected.
  Ref<NSString> titleOfSelectedItem() const;

  void setTarget_action(NSObject* target, SEL action) override { cell_->setTarget_action(target, action); }

  void drawRect(NSRect dirty) override;
  void mouseDown(NSEvent* event) override;
  bool mouseDownCanMoveWindow() const override { return false; }

 private:
  void setCell(NSPopUpButtonCell* cell);
  Ref<NSPopUpButtonCell> cell_;
};

}  // namespace cocoa
