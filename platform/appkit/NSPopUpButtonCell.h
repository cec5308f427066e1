// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string_view>

#include "appkit/NSMenu.h"
#include "appkit/NSView.h"
#include "foundation/NSString.h"

namespace cocoa {

class MenuTracking;

/// The working part of a pop-up button: a menu of which at most one item is selected and marked.
///
/// Titles that are added or inserted by name are kept unique; whoever wants one twice inserts items into the
/// menu itself. Indices outside the list select nothing and remove nothing. Main thread only.
class NSPopUpButtonCell : public NSObject, public ActionSource {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  NSPopUpButtonCell();
  ~NSPopUpButtonCell() override;
  /// Reads the menu and the selected item; without one the first is selected. A pull-down list fails the
  /// load.
  void applyInterface(InterfaceDecoder& decoder) override;

  NSMenu* menu() const { return menu_.get(); }
  /// Null is ignored. The item that was selected stays so only if it is in the new menu.
  void setMenu(NSMenu* menu);

  /// At the end of the list, after an item of the same title, if there is one, has been removed.
  void addItemWithTitle(std::string_view title);
  /// The same at an index of the list that is left after that removal.
  void insertItemWithTitle_atIndex(std::string_view title, int index);
  void removeItemAtIndex(int index);
  void removeItemWithTitle(std::string_view title) { removeItemAtIndex(indexOfItemWithTitle(title)); }
  void removeAllItems();
  int numberOfItems() const { return menu_->numberOfItems(); }
  NSMenuItem* itemAtIndex(int index) const { return menu_->itemAtIndex(index); }
  int indexOfItemWithTitle(std::string_view title) const { return menu_->indexOfItemWithTitle(title); }

  /// Null, or an item that is not in the menu, selects nothing.
  void selectItem(NSMenuItem* item);
  /// -1, and an index beyond the end, select nothing.
  void selectItemAtIndex(int index) { selectItem(itemAtIndex(index)); }
  NSMenuItem* selectedItem() const;
  int indexOfSelectedItem() const { return menu_->indexOfItem(selected_.get()); }
  /// Empty when nothing is selected.
  Ref<NSString> titleOfSelectedItem() const;
  /// Selects the first item when nothing is selected. Adding, inserting and removing by this class do so.
  void synchronizeTitleAndSelectedItem();

  /// Sent by the control, as its own, when the user has chosen an item that has no action of its own.
  void setTarget_action(NSObject* target, SEL action) override;
  /// The control that sends; not retained.
  void setControlView(NSView* view) { control_view_ = WeakRef<NSView>(view); }

  /// Opens the list over `frame`, which is in `view`'s coordinates, the selected item over it, or the first
  /// when none is selected, and lets the user choose. `view` must be in a window that shows; an empty list
  /// does not open.
  ///
  /// The platform's own method comes back once the list is closed: it runs the events itself. A plug-in must
  /// not run its host's events, so this one comes back at once, and `closed` is what follows. It is called
  /// exactly once: before this returns when there is nothing to open, else from the event that closes the
  /// list, after the chosen item is selected and its action sent, and also when nothing was chosen. It is
  /// dropped, uncalled, when the cell, the view or its window goes first.
  void performClickWithFrame_inView(NSRect frame, NSView* view, const std::function<void()>& closed);
  bool isOpen() const { return tracking_.get() != nullptr; }
  /// Closes an open list without a choice.
  void dismissPopUp();

 private:
  friend class MenuTracking;
  void trackingEnded();
  void choose(NSMenuItem* item);

  Ref<NSMenu> menu_;
  Ref<NSMenuItem> selected_;
  WeakRef<NSObject> target_;
  SEL action_;
  WeakRef<NSView> control_view_;
  Ref<MenuTracking> tracking_;
};

}  // namespace cocoa
