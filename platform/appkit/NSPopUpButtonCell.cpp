// SPDX-License-Identifier: MIT
#include "appkit/NSPopUpButtonCell.h"

#include <utility>

#include "appkit/private/menu_tracking.h"
#include "foundation/InterfaceDecoder.h"

namespace cocoa {

const Class NSPopUpButtonCell::class_ = {
    .name = "NSPopUpButtonCell",
    .superclass = &NSObject::class_,
    .init = [] { return Ref<NSObject>(make<NSPopUpButtonCell>()); },
    .initWithInterface = [](InterfaceDecoder&) { return Ref<NSObject>(make<NSPopUpButtonCell>()); }};

NSPopUpButtonCell::NSPopUpButtonCell() : menu_(make<NSMenu>()) {}

NSPopUpButtonCell::~NSPopUpButtonCell() {
  if (tracking_)
    tracking_->cancel();
}

void NSPopUpButtonCell::applyInterface(InterfaceDecoder& decoder) {
  if (decoder.boolean("pullsDown", false))
    decoder.fail("is a pull-down list, which is of no use here");
  setMenu(decoder.object_as<NSMenu>("menu").get());
  auto* item = dynamic_cast<NSMenuItem*>(decoder.reference("selectedItem"));
  if (decoder.attribute("selectedItem") && menu_->indexOfItem(item) < 0)
    decoder.fail("has a selected item that is not in its menu");
  // The marks that the file gives the items are those of its selection.
  for (const Ref<NSMenuItem>& each : menu_->itemArray())
    each->setState(NSOffState);
  selectItem(item);
  synchronizeTitleAndSelectedItem();
}

void NSPopUpButtonCell::setMenu(NSMenu* menu) {
  if (!menu || menu_ == menu)
    return;
  menu_ = menu;
  synchronizeTitleAndSelectedItem();
}

void NSPopUpButtonCell::addItemWithTitle(std::string_view title) {
  removeItemWithTitle(title);
  insertItemWithTitle_atIndex(title, numberOfItems());
}

void NSPopUpButtonCell::insertItemWithTitle_atIndex(std::string_view title, int index) {
  menu_->removeItemAtIndex(indexOfItemWithTitle(title));
  menu_->insertItem_atIndex(make<NSMenuItem>(title).get(), index);
  synchronizeTitleAndSelectedItem();
}

void NSPopUpButtonCell::removeItemAtIndex(int index) {
  menu_->removeItemAtIndex(index);
  synchronizeTitleAndSelectedItem();
}

void NSPopUpButtonCell::removeAllItems() {
  menu_->removeAllItems();
  synchronizeTitleAndSelectedItem();
}

void NSPopUpButtonCell::selectItem(NSMenuItem* item) {
  if (selected_)
    selected_->setState(NSOffState);
  selected_ = menu_->indexOfItem(item) >= 0 ? Ref<NSMenuItem>(item) : nullptr;
  if (selected_)
    selected_->setState(NSOnState);
}

NSMenuItem* NSPopUpButtonCell::selectedItem() const {
  return indexOfSelectedItem() >= 0 ? selected_.get() : nullptr;
}

Ref<NSString> NSPopUpButtonCell::titleOfSelectedItem() const {
  const NSMenuItem* item = selectedItem();
  return make<NSString>(item ? std::string_view(item->title()) : std::string_view());
}

void NSPopUpButtonCell::synchronizeTitleAndSelectedItem() {
  if (!selectedItem())
    selectItemAtIndex(0);
}

void NSPopUpButtonCell::setTarget_action(NSObject* target, SEL action) {
  target_ = WeakRef<NSObject>(target);
  action_ = action;
}

void NSPopUpButtonCell::performClickWithFrame_inView(NSRect frame, NSView* view,
                                                     const std::function<void()>& closed) {
  const Ref<NSPopUpButtonCell> self(this);
  dismissPopUp();
  const auto tracking = make<MenuTracking>(*this, closed);
  if (view && numberOfItems() > 0 && tracking->open(frame, *view)) {
    tracking_ = tracking;
  } else if (closed) {
    closed();
  }
}

void NSPopUpButtonCell::dismissPopUp() {
  if (const Ref<MenuTracking> tracking = tracking_)
    tracking->close();
}

void NSPopUpButtonCell::trackingEnded() {
  tracking_ = nullptr;
}

/// What the user's choice does.
void NSPopUpButtonCell::choose(NSMenuItem* item) {
  // The list shows the items that there were when it was opened.
  if (menu_->indexOfItem(item) < 0)
    return;
  selectItem(item);
  const Ref<NSView> control(control_view_.get());
  if (control)
    control->setNeedsDisplay(true);
  if (NSObject* target = item->target()) {
    target->performSelector_withObject(item->action(), item);
  } else if (NSObject* receiver = target_.get()) {
    receiver->performSelector_withObject(action_, control ? static_cast<NSObject*>(control.get()) : this);
  }
}

}  // namespace cocoa
