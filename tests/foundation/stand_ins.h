// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/ActionSource.h"
#include "foundation/InterfaceDecoder.h"
#include "foundation/NSLog.h"
#include "foundation/NSObject.h"
#include "foundation/private/InterfaceLoader.h"

/// Stand-ins for views and controls, just enough to be made, connected and woken by an interface file.

namespace cocoa::stand_in {

/// Counts what is alive and notes who is woken, in order.
class Object : public NSObject {
 public:
  static inline int alive = 0;
  static inline std::vector<const NSObject*> woken;
  Object() { ++alive; }
  ~Object() override { --alive; }
  void awakeFromNib() override { woken.push_back(this); }
};

class View : public Object {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit View(NSRect frame) : frame_(frame) {}
  explicit View(InterfaceDecoder& decoder) : View(decoder.frame()) { made_from_element = true; }
  void applyInterface(InterfaceDecoder& decoder) override;

  NSRect frame_;
  unsigned mask = 0;
  int applied = 0;
  bool made_from_element = false;
  std::vector<Ref<View>> subviews;
};

class Box : public View {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  using View::View;
  void applyInterface(InterfaceDecoder& decoder) override;

  std::string title;
  size_t border = 0;
  Ref<View> content_view;
};

class Window : public Object {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit Window(InterfaceDecoder& decoder);
  void applyInterface(InterfaceDecoder& decoder) override;

  NSRect content_rect;
  bool titled = false;
  bool closable = false;
  bool released_when_closed = true;
  Ref<View> content_view;
  NSObject* delegate = nullptr;
};

class Formatter : public Object {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit Formatter(InterfaceDecoder& decoder);

  double minimum;
  double maximum;
  int64_t fraction_digits;
};

class Cell : public Object {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  void applyInterface(InterfaceDecoder& decoder) override;

  std::string title;
  Ref<Formatter> formatter;
};

class Color : public Object {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  explicit Color(InterfaceDecoder& decoder);

  double red, green, blue, alpha;
};

class Control : public View, public ActionSource {
 public:
  using View::View;
  void setTarget_action(NSObject* new_target, SEL new_action) override {
    target = new_target;
    action = new_action;
  }
  void press() { target->performSelector_withObject(action, this); }

  NSObject* target = nullptr;
  SEL action;
};

class TextField : public Control {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  using Control::Control;
  void applyInterface(InterfaceDecoder& decoder) override;
  Ref<Cell> cell;
};

class ColorWell : public Control {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  using Control::Control;
  void applyInterface(InterfaceDecoder& decoder) override;
  Ref<Color> color;
};

class DemoRoot : public View {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  using View::View;
  View* partner = nullptr;
};

class DemoDial : public View {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  using View::View;
};

/// A view that forgets the subviews of its element.
class DeafView : public View {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  using View::View;
  void applyInterface(InterfaceDecoder&) override {}
};

/// A view that makes its subviews and does not keep them.
class CarelessView : public View {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  using View::View;
  void applyInterface(InterfaceDecoder& decoder) override { decoder.objects("subviews"); }
};

/// Shows its decoder to a test.
class Probe : public Object {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  static inline std::function<void(InterfaceDecoder&)> look;
  void applyInterface(InterfaceDecoder& decoder) override {
    if (look)
      look(decoder);
  }
};

class Owner : public Object {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }
  void fieldChanged(NSObject* sender) { fields_changed.push_back(sender); }
  void wellChanged(ColorWell* sender) { wells_changed.push_back(sender); }

  DemoRoot* root = nullptr;
  DemoDial* left = nullptr;
  DemoDial* right = nullptr;
  TextField* field = nullptr;
  Window* panel = nullptr;
  ColorWell* well = nullptr;
  std::vector<NSObject*> fields_changed;
  std::vector<ColorWell*> wells_changed;
};

/// All of them, as an executable's span of classes; views among them are named as the platform's.
std::span<const Class* const> classes();
const Class* class_named(std::string_view name);

/// Messages logged on this thread while it lives.
struct Log {
  std::vector<std::string> lines;
  NSLogHook hook{[this](std::string_view message) { lines.emplace_back(message); }};
};

/// A window, a field with a formatter, a box, two dials and a colour well, all connected to an Owner.
extern const std::string_view demo_document;

/// A document around `objects`, the File's Owner not among them.
std::string document(std::string_view objects);

/// Loads `text` as "Demo.xib" with the stand-in classes.
bool load(std::string_view text, NSObject* owner = nullptr);

}  // namespace cocoa::stand_in
